#include "everywhere/EverywhereRows.h"

#include "everywhere/ReadingPlaces.h"
#include "stores/Schema.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

constexpr int RowsOfAPiece = 256;

/// Opens a dataset or fetches more of its rows; false if it has all.
bool FetchSome(TpFIBDataSet &rows)
{
    if (!rows.Active())
        rows.Open();
    else
        rows.FetchUpTo(rows.RecordCount() + RowsOfAPiece - 1);
    return !rows.AllFetched();
}

int IntegerAt(TpFIBDataSet &rows, int row, const QString &field)
{
    return rows.ValueAt(row, rows.FieldByName(field).Index()).toInt();
}

QString TextAt(TpFIBDataSet &rows, int row, const QString &field)
{
    return rows.TextAt(row, rows.FieldByName(field).Index());
}

} // namespace

EverywhereCanon::EverywhereCanon(TpFIBDatabase &canon)
{
    m_groups.SetDatabase(&canon);
    m_groups.SelectSQL() = {u"select T.ID_VIT, T.P_ID_VIT, T.NAME_VIT_VIE, T.NAME_VIT_PAL, T.NAME_VIT_ENG"_s,
                            u"from KELORA_TREE T"_s};
    // No order: it would make Firebird sort the names of all texts before the first one comes.
    m_texts.SetDatabase(&canon);
    m_texts.SelectSQL() = {u"select N.ID_VIT, N.ID_VIC, N.NAME_VIC_PAL, N.NAME_VIC_ENG, N.NAME_VIC_VIE,"_s,
                           u"N.CONTENT_VIC_PAL, N.CONTENT_VIC_ENG, N.CONTENT_VIC_VIE, N.CONTENT_VIC_PAL_VIE"_s,
                           u"from KELORA_CONTENT N"_s};
}

bool EverywhereCanon::ReadSome()
{
    if (m_isComplete)
        return false;
    if (FetchSome(m_groups) || FetchSome(m_texts))
        return true;
    Arrange();
    m_isComplete = true;
    return false;
}

void EverywhereCanon::Arrange()
{
    std::vector<TreeGroup> groups;
    for (int row = 0; row < m_groups.RecordCount(); ++row) {
        groups.push_back({IntegerAt(m_groups, row, Field::IdVit), IntegerAt(m_groups, row, Field::ParentIdVit)});
        m_groupRows.insert(groups.back().idVit, row);
    }
    std::vector<TreeText> texts;
    for (int row = 0; row < m_texts.RecordCount(); ++row)
        texts.push_back({IntegerAt(m_texts, row, Field::IdVic), IntegerAt(m_texts, row, Field::IdVit)});
    m_rows = ReadingOrder(groups, texts);
    for (int place = Count() - 1; place >= 0; --place)
        m_places.insert(texts[static_cast<std::size_t>(m_rows[static_cast<std::size_t>(place)])].idVic, place);
}

void EverywhereCanon::Close()
{
    m_groups.Close();
    m_texts.Close();
    m_isComplete = false;
    m_rows.clear();
    m_places.clear();
    m_groupRows.clear();
}

EverywhereText EverywhereCanon::Describe(int place)
{
    const int row = m_rows[static_cast<std::size_t>(place)];
    EverywhereText text;
    text.collection = Collection::Kelora;
    text.idVic = IntegerAt(m_texts, row, Field::IdVic);
    text.idVit = IntegerAt(m_texts, row, Field::IdVit);
    text.names = {Name(place, PageMode::Pali), Name(place, PageMode::Vietnamese), Name(place, PageMode::English)};
    if (const int group = m_groupRows.value(text.idVit, -1); group >= 0) {
        text.group = {TextAt(m_groups, group, Field::NameVitPal), TextAt(m_groups, group, Field::NameVitVie),
                      TextAt(m_groups, group, Field::NameVitEng)};
    }
    return text;
}

QString EverywhereCanon::Name(int place, int language)
{
    const QString field = language == PageMode::Pali      ? Field::NameVicPal
                          : language == PageMode::English ? Field::NameVicEng
                                                          : Field::NameVicVie;
    return TextAt(m_texts, m_rows[static_cast<std::size_t>(place)], field);
}

void EverywhereCanon::PageInto(int place, int language, QByteArray &page)
{
    m_texts.BlobInto(m_rows[static_cast<std::size_t>(place)], m_texts.FieldByName(ContentColumn(language)).Index(),
                     page);
}

EverywhereMarks::EverywhereMarks(TpFIBDatabase *marks) : m_hasMarks(marks)
{
    m_marks.SetDatabase(marks);
    m_marks.SelectSQL() = {
        u"select F.ID_FOC, F.NIK_SUT, F.NIC_SUT, F.NAME_FOC, F.KEYWORD_FOC, F.DESC_FOC, F.TEXT_FOC,"_s,
        u"S.NAME_SUT_VIE, S.NAME_SUT_PAL, S.NAME_SUT_ENG"_s, u"from SUTTA_TEXT_FOCUS F"_s,
        u"inner join SUTTA_LIST S on (S.NIK_SUT = F.NIK_SUT and S.NIC_SUT = F.NIC_SUT)"_s};
}

bool EverywhereMarks::ReadSome(const EverywhereCanon &canon)
{
    if (!m_hasMarks)
        return false;
    if (FetchSome(m_marks))
        return true;
    m_order.clear();
    for (int row = 0; row < m_marks.RecordCount(); ++row) {
        Mark mark{.textPlace = canon.Count(),
                  .collection = IntegerAt(m_marks, row, Field::NikSut),
                  .idVic = IntegerAt(m_marks, row, Field::NicSut),
                  .idFoc = IntegerAt(m_marks, row, Field::IdFoc),
                  .row = row};
        if (mark.collection == Collection::Kelora)
            mark.textPlace = canon.PlaceOf(mark.idVic);
        m_order.push_back(mark);
    }
    std::sort(m_order.begin(), m_order.end());
    return false;
}

void EverywhereMarks::Close()
{
    m_marks.Close();
    m_order.clear();
}

bool EverywhereMarks::IsOfSameText(int place, int other) const
{
    const Mark &left = m_order[static_cast<std::size_t>(place)];
    const Mark &right = m_order[static_cast<std::size_t>(other)];
    return left.collection == right.collection && left.idVic == right.idVic;
}

EverywhereText EverywhereMarks::Describe(int place, EverywhereCanon &canon)
{
    const Mark &mark = m_order[static_cast<std::size_t>(place)];
    EverywhereText text;
    if (mark.textPlace < canon.Count())
        text = canon.Describe(mark.textPlace);
    text.isMarks = true;
    text.collection = mark.collection;
    text.idVic = mark.idVic;
    text.names = {TextAt(m_marks, mark.row, Field::NameSutPal), TextAt(m_marks, mark.row, Field::NameSutVie),
                  TextAt(m_marks, mark.row, Field::NameSutEng)};
    return text;
}

void EverywhereMarks::FieldInto(int place, EverywhereField field, QByteArray &bytes)
{
    const QString column = field == EverywhereField::Title      ? Field::NameFoc
                           : field == EverywhereField::Keywords ? Field::KeywordFoc
                           : field == EverywhereField::Note     ? Field::DescFoc
                                                                : Field::TextFoc;
    m_marks.BlobInto(m_order[static_cast<std::size_t>(place)].row, m_marks.FieldByName(column).Index(), bytes);
}
