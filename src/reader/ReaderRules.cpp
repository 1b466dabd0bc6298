#include "reader/ReaderRules.h"

#include "stores/Schema.h"

QString TreeFilterClause(NameColumn column)
{
    switch (column) {
    case NameColumn::Pali:
        return QStringLiteral(" where (lower(n.name_vic_pal) like :SEARCH_TEXT)");
    case NameColumn::Vietnamese:
        return QStringLiteral(" where (lower(n.name_vic_vie) like :SEARCH_TEXT)");
    case NameColumn::English:
        return QStringLiteral(" where (lower(n.name_vic_eng) like :SEARCH_TEXT)");
    case NameColumn::None:
        break;
    }
    return {};
}

QString TreeFilterValue(const QString &trimmedText)
{
    constexpr qsizetype longestName = 127;              // characters
    constexpr qsizetype longestValue = 3 * longestName; // bytes that Firebird accepts for such a name
    const QString value = QLatin1Char('%') + trimmedText.toLower() + QLatin1Char('%');
    // With a value that Firebird rejects the statement would return no rows at all, but the groups have to stay. So use
    // a pattern that is accepted and matches no name: one letter longer than any.
    return value.toUtf8().size() > longestValue ? QString(longestName + 1, QLatin1Char('_')) : value;
}

NameView NameViewOfMode(int mode)
{
    switch (mode) {
    case PageMode::Pali:
        return {NameColumn::Pali, NameColumn::Pali, true};
    case PageMode::Vietnamese:
        return {NameColumn::Vietnamese, NameColumn::Vietnamese, true};
    case PageMode::Parallel:
        // The parallel page has no margin.
        return {NameColumn::Vietnamese, NameColumn::Vietnamese, false};
    default:
        return {};
    }
}

int RandomSuttaNumber(quint32 drawn)
{
    // By multiplication, because a remainder would favour low numbers.
    constexpr quint64 highest = 204;
    return 1 + static_cast<int>((drawn * highest) >> 32);
}

BoxText QuitPrompt(int interfaceLang)
{
    if (interfaceLang == 0)
        return {QStringLiteral("Thông báo"), QStringLiteral("Đồng ý thoát khỏi Lumivara?")};
    if (interfaceLang == 1)
        return {QStringLiteral("Information"), QStringLiteral("Are you sure you wish to quit Lumivara?")};
    return {};
}

QString ClientDatabaseNotOpenText(int interfaceLang)
{
    if (interfaceLang == 0)
        return QStringLiteral("Hệ thống dữ liệu chưa sẵn sàng!");
    if (interfaceLang == 1)
        return QStringLiteral("Client database is not open!");
    return {};
}
