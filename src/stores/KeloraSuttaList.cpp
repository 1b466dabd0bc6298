#include "stores/KeloraSuttaList.h"

using namespace Qt::StringLiterals;

namespace {

struct TextRow
{
    int number;
    const char16_t *vietnamese, *pali;
};

constexpr TextRow TextRows[] = {
#include "KeloraSuttaRows.inc"
};

QString Literal(QString title)
{
    return title.isNull() ? u"NULL"_s : u'\'' + title.replace(u'\'', u"''"_s) + u'\'';
}

} // namespace

QList<KeloraText> KeloraTexts()
{
    QList<KeloraText> texts;
    for (const TextRow &row : TextRows)
        texts.append({row.number, QString::fromUtf16(row.vietnamese), QString::fromUtf16(row.pali)});
    return texts;
}

QStringList KeloraSuttaListScript()
{
    QStringList script;
    for (const KeloraText &text : KeloraTexts()) {
        script.append(
            u"INSERT INTO SUTTA_LIST (NIK_SUT, NIC_SUT, NAME_SUT_VIE, NAME_SUT_PAL, NAME_SUT_ENG, FAVOURITE_SUT)"_s);
        script.append(u"                VALUES (6, %1, %2, %3, NULL, NULL);"_s.arg(
            QString::number(text.number), Literal(text.vietnamese), Literal(text.pali)));
    }
    script.append(u"COMMIT WORK;"_s);
    return script;
}
