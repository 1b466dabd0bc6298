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

QString Literal(const char16_t *title)
{
    return title ? u'\'' + QString::fromUtf16(title).replace(u'\'', u"''"_s) + u'\'' : u"NULL"_s;
}

} // namespace

QStringList KeloraSuttaListScript()
{
    QStringList script;
    for (const TextRow &row : TextRows) {
        script.append(
            u"INSERT INTO SUTTA_LIST (NIK_SUT, NIC_SUT, NAME_SUT_VIE, NAME_SUT_PAL, NAME_SUT_ENG, FAVOURITE_SUT)"_s);
        script.append(u"                VALUES (6, %1, %2, %3, NULL, NULL);"_s.arg(
            QString::number(row.number), Literal(row.vietnamese), Literal(row.pali)));
    }
    script.append(u"COMMIT WORK;"_s);
    return script;
}
