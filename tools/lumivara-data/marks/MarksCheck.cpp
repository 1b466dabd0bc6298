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

/// What a column must be able to hold.
enum class Holds { Number, SmallNumber, Text, Bytes, Moment };

struct Wanted
{
    SchemaName table, column;
    Holds holds;
    int length = 0; ///< characters of a text
};

constexpr Wanted AllWanted[] = {
    {Table::SuttaList, Field::NikSut, Holds::Number},
    {Table::SuttaList, Field::NicSut, Holds::Number},
    {Table::SuttaList, Field::NameSutVie, Holds::Text, Length::Name},
    {Table::SuttaList, Field::NameSutPal, Holds::Text, Length::Name},
    {Table::SuttaList, Field::NameSutEng, Holds::Text, Length::Name},
    {Table::SuttaList, Field::FavouriteSut, Holds::SmallNumber},
    {Table::SuttaTextFocus, Field::IdFoc, Holds::Number},
    {Table::SuttaTextFocus, Field::NameFoc, Holds::Text, Length::Name},
    {Table::SuttaTextFocus, Field::TextFoc, Holds::Bytes},
    {Table::SuttaTextFocus, Field::PriorityFoc, Holds::Number},
    {Table::SuttaTextFocus, Field::DescFoc, Holds::Text, Length::Desc},
    {Table::SuttaTextFocus, Field::NikSut, Holds::Number},
    {Table::SuttaTextFocus, Field::NicSut, Holds::Number},
    {Table::SuttaTextFocus, Field::DatetimeFoc, Holds::Moment},
    {Table::SuttaTextFocus, Field::KeywordFoc, Holds::Text, Length::Keyword},
};

/// RDB$FIELD_TYPE of Firebird's system tables.
namespace StoredType {
constexpr int Small = 7, Long = 8, Char = 14, Big = 16, Moment = 35, Varying = 37, Blob = 261;
} // namespace StoredType

bool CanHold(const Wanted &wanted, int type, int length)
{
    switch (wanted.holds) {
    case Holds::SmallNumber:
        return type == StoredType::Small || type == StoredType::Long || type == StoredType::Big;
    case Holds::Number:
        return type == StoredType::Long || type == StoredType::Big;
    case Holds::Text:
        return (type == StoredType::Varying || type == StoredType::Char) && length >= wanted.length;
    case Holds::Bytes:
        return type == StoredType::Blob;
    case Holds::Moment:
        return type == StoredType::Moment;
    }
    return false;
}

/// True if every column is there, be it right or not.
bool CheckColumns(DataFile &file, MarksReport &report)
{
    bool areAllThere = true;
    for (const Wanted &wanted : AllWanted) {
        const auto rows = file.Rows(
            u"select F.RDB$FIELD_TYPE, F.RDB$CHARACTER_LENGTH from RDB$RELATION_FIELDS R join RDB$FIELDS F "
            "on F.RDB$FIELD_NAME = R.RDB$FIELD_SOURCE where R.RDB$RELATION_NAME = '%1' and R.RDB$FIELD_NAME = '%2'"_s
                .arg(wanted.table, wanted.column));
        const QString place = u"column %1 of %2"_s.arg(QString(wanted.column), QString(wanted.table));
        if (rows.isEmpty())
            report.columnFaults.append({place, u"is missing"_s});
        else if (!CanHold(wanted, rows[0][0].toInt(), rows[0][1].toInt()))
            report.columnFaults.append({place, u"cannot hold what the program stores in it"_s});
        areAllThere = areAllThere && !rows.isEmpty();
    }
    return areAllThere;
}

void CheckKeys(DataFile &file, MarksReport &report)
{
    for (const QString &table : {QString(Table::SuttaList), QString(Table::SuttaTextFocus)}) {
        const auto keys = file.Rows(u"select RDB$CONSTRAINT_NAME from RDB$RELATION_CONSTRAINTS where "
                                    "RDB$RELATION_NAME = '%1' and RDB$CONSTRAINT_TYPE = 'PRIMARY KEY'"_s.arg(table));
        if (keys.isEmpty())
            report.remarks.append({table, u"has no primary key"_s});
    }
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
    MarksReport report{CountOf(file, Table::SuttaList), CountOf(file, Table::SuttaTextFocus), {}, {}, {}};
    CheckKeys(file, report);
    if (!CheckColumns(file, report))
        return report; // what follows needs them
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
