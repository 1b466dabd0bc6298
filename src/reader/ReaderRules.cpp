#include "reader/ReaderRules.h"

#include "base/Messages.h"
#include "stores/Schema.h"

namespace {

constexpr Message quitTitle{u"Thông báo", u"Information"};
constexpr Message quitText{u"Đồng ý thoát khỏi Lumivara?", u"Are you sure you wish to quit Lumivara?"};
constexpr Message clientDatabaseNotOpen{u"Hệ thống dữ liệu chưa sẵn sàng!", u"Client database is not open!"};

} // namespace

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
    constexpr qsizetype longestValue = 3 * Length::Name; // bytes that the engine takes for such a name
    const QString value = QLatin1Char('%') + trimmedText.toLower() + QLatin1Char('%');
    // The statement with a value that the engine refuses would give no row at all, and the groups have to stay. So a
    // pattern that fits takes its place, which asks for one letter more than any name has.
    return value.toUtf8().size() > longestValue ? QString(Length::Name + 1, QLatin1Char('_')) : value;
}

bool IsGroupRow(qint64 idVic, const QString &treeId)
{
    // The tree's statement gives a group its key with 1000 added; the TREE_ID of a text begins with its ID_VIC, and is
    // greater than that.
    constexpr qint64 added = 1000;
    return idVic == treeId.toLongLong() + added;
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
    return {TextOrNone(quitTitle, interfaceLang), TextOrNone(quitText, interfaceLang)};
}

QString ClientDatabaseNotOpenText(int interfaceLang)
{
    return TextOrNone(clientDatabaseNotOpen, interfaceLang);
}
