#include "lumivara-data/marks/MarksCheck.h"

#include "lumivara-data/files/DataFile.h"
#include "stores/Schema.h"

using namespace Qt::StringLiterals;

namespace {

/// A key in words; null for a missing number.
QString Shown(const QVariant &number)
{
    return number.isNull() ? u"null"_s : number.toString();
}

QString TextName(const QVariant &collection, const QVariant &number)
{
    return u"text %1 of collection %2"_s.arg(Shown(number), Shown(collection));
}

qsizetype CountOf(DataFile &file, const QString &table)
{
    return static_cast<qsizetype>(file.Rows(u"select count(*) from "_s + table)[0][0].toLongLong());
}

} // namespace

bool IsMarks(DataFile &file)
{
    return file.HasTable(Table::SuttaList) && file.HasTable(Table::SuttaTextFocus);
}

MarksReport CheckMarks(DataFile &file)
{
    MarksReport report{CountOf(file, Table::SuttaList), CountOf(file, Table::SuttaTextFocus), {}};
    if (file.Rows(u"select MON$FORCED_WRITES from MON$DATABASE"_s)[0][0].toInt() == 0)
        report.findings.append({u"the file"_s, u"forced writes are off, a power cut may take marks with it"_s});
    const auto texts = file.Rows(u"select S.NIK_SUT, S.NIC_SUT, count(*) from SUTTA_LIST S group by 1, 2 "
                                 "having count(*) > 1 or S.NIK_SUT is null or S.NIC_SUT is null order by 1, 2"_s);
    for (const QList<QVariant> &row : texts) {
        const bool isNull = row[0].isNull() || row[1].isNull();
        report.findings.append({TextName(row[0], row[1]), isNull ? u"stands in the list without a whole key"_s
                                                                 : u"stands in the list %1 times, and so does each "
                                                                   "of its marks"_s.arg(row[2].toInt())});
    }
    const auto keys = file.Rows(u"select F.ID_FOC, count(*) from SUTTA_TEXT_FOCUS F group by 1 "
                                "having count(*) > 1 or F.ID_FOC is null order by 1"_s);
    for (const QList<QVariant> &row : keys) {
        report.findings.append(
            {u"mark %1"_s.arg(Shown(row[0])),
             row[0].isNull() ? u"%1 have no key, so they can be neither changed nor deleted"_s.arg(row[1].toInt())
                             : u"%1 have this key, so they can be neither changed nor deleted"_s.arg(row[1].toInt())});
    }
    const auto strays = file.Rows(
        u"select F.ID_FOC, F.NIK_SUT, F.NIC_SUT from SUTTA_TEXT_FOCUS F where not exists (select 1 from SUTTA_LIST S "
        "where S.NIK_SUT = F.NIK_SUT and S.NIC_SUT = F.NIC_SUT) order by 1, 2, 3"_s);
    for (const QList<QVariant> &row : strays) {
        report.findings.append(
            {u"mark %1"_s.arg(Shown(row[0])),
             u"%1 is missing in the list, so the mark is never shown"_s.arg(TextName(row[1], row[2]))});
    }
    return report;
}
