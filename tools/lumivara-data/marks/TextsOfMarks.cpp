#include "lumivara-data/marks/TextsOfMarks.h"

#include "lumivara-data/files/DataFile.h"
#include "stores/Schema.h"
#include "stores/engine/DatabaseError.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QVariant NullIfEmpty(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

} // namespace

TextsOfMarks::TextsOfMarks(DataFile &file, const QString &path, const QString &source,
                           const QList<KeloraText> &canonTexts)
    : m_file(file), m_path(path), m_source(source), m_canonTexts(canonTexts)
{}

bool TextsOfMarks::ListLacksKelora(DataFile &file)
{
    return file.Rows(u"select first 1 1 from SUTTA_LIST S where S.NIK_SUT = %1"_s.arg(Collection::Kelora)).isEmpty();
}

bool TextsOfMarks::HasNone(const Names &names)
{
    return std::all_of(names.begin(), names.end(), [](const QString &name) { return name.isEmpty(); });
}

void TextsOfMarks::Want(const Mark &mark)
{
    Names &names = m_wanted[{mark.collection, mark.text}];
    if (HasNone(names))
        names = {mark.nameVietnamese, mark.namePali, mark.nameEnglish};
}

qsizetype TextsOfMarks::Write(QList<std::pair<QString, QString>> &notes)
{
    const auto isThere = [this](const std::pair<int, int> &text) {
        return !m_file
                    .Rows(
                        u"select first 1 1 from SUTTA_LIST S where S.NIK_SUT = %1 and S.NIC_SUT = %2"_s.arg(text.first)
                            .arg(text.second))
                    .isEmpty();
    };
    RowWriter list(m_file, Table::SuttaList, ListColumns());
    const auto add = [&](const std::pair<int, int> &text, const Names &names) {
        list.Append({text.first, text.second, NullIfEmpty(names[0]), NullIfEmpty(names[1]), NullIfEmpty(names[2])});
    };
    // The program enters the Kelora's texts only as long as the list has none of them: one alone would keep the marks
    // on all others out of sight for ever.
    const bool wantsKelora =
        m_wanted.lower_bound({Collection::Kelora, 0}) != m_wanted.lower_bound({Collection::Kelora + 1, 0});
    const bool enters = wantsKelora && ListLacksKelora(m_file);
    QList<KeloraText> entered = enters ? m_canonTexts : QList<KeloraText>();
    if (enters && entered.isEmpty())
        notes.append({m_path, u"the list of texts gets those with marks alone; \"lumivara-data update-list\" adds "
                              "the others"_s});
    qsizetype count = 0;
    for (const auto &wanted : m_wanted) {
        const auto &[text, names] = wanted;
        const auto known = std::find_if(entered.begin(), entered.end(), [&wanted](const KeloraText &kelora) {
            return std::pair(Collection::Kelora, kelora.number) == wanted.first;
        });
        const bool isKnown = known != entered.end();
        if (isKnown ? HasNone(names) : isThere(text))
            continue;
        if (isKnown)
            entered.erase(known); // the names that come with the mark hold
        add(text, names);
        ++count;
        if (isKnown)
            continue;
        notes.append(
            {m_source, u"text %1 of collection %2 (%3) is missing in the list of texts: added"_s.arg(text.second)
                           .arg(text.first)
                           .arg(names[0].isEmpty() ? u"no name"_s : names[0])});
    }
    for (const KeloraText &text : std::as_const(entered))
        add({Collection::Kelora, text.number}, {text.vietnamese, text.pali, {}});
    count += entered.size();
    return count;
}

bool StoresPairs(DataFile &file)
{
    const auto otherColumns = file.Rows(
        u"select count(*) from RDB$RELATION_FIELDS R join RDB$FIELDS F on F.RDB$FIELD_NAME = R.RDB$FIELD_SOURCE "
        "where R.RDB$RELATION_NAME in ('SUTTA_LIST', 'SUTTA_TEXT_FOCUS') and F.RDB$FIELD_TYPE in (14, 37) "
        "and F.RDB$CHARACTER_SET_ID <> 3"_s); // UNICODE_FSS
    return otherColumns[0][0].toLongLong() == 0;
}

bool IsClashOfCopies(const DatabaseError &error)
{
    static constexpr std::array codes{335544336, 335544345, 335544349, 335544451, 335544665};
    return std::find(codes.begin(), codes.end(), error.EngineCode()) != codes.end();
}
