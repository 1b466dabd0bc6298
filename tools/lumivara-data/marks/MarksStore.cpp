#include "lumivara-data/marks/MarksStore.h"

#include "common/Console.h"
#include "common/Interrupt.h"
#include "common/Leftover.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/marks/MarksRows.h"
#include "stores/Schema.h"
#include "stores/engine/DatabaseError.h"
#include "stores/engine/Scripter.h"
#include "stores/engine/Statement.h"

#include <QThread>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

bool HoldsPairs(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar unit) { return unit.isSurrogate(); });
}

/// True if another copy took the key, or is at it: then the next one will do.
bool IsClash(const DatabaseError &error)
{
    static constexpr std::array codes{335544336, 335544345, 335544349, 335544451, 335544665};
    return std::find(codes.begin(), codes.end(), error.EngineCode()) != codes.end();
}

bool HasNone(const std::array<QString, 3> &names)
{
    return std::all_of(names.begin(), names.end(), [](const QString &name) { return name.isEmpty(); });
}

template <typename Text>
QVariant OrNull(const Text &text)
{
    return text.isNull() ? QVariant() : QVariant(text);
}

QVariant NullIfEmpty(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

} // namespace

MarksStore::MarksStore(DataFile &file, const QString &path, const QString &source, const QList<KeloraText> &canonTexts,
                       Report &report)
    : m_file(file), m_path(path), m_source(source), m_canonTexts(canonTexts), m_report(report)
{
    if (!m_gathered.open())
        throw ToolError(u"%1: %2"_s.arg(m_gathered.fileTemplate(), m_gathered.errorString()));
    m_stream.setDevice(&m_gathered);
    const auto otherColumns = m_file.Rows(
        u"select count(*) from RDB$RELATION_FIELDS R join RDB$FIELDS F on F.RDB$FIELD_NAME = R.RDB$FIELD_SOURCE "
        "where R.RDB$RELATION_NAME in ('SUTTA_LIST', 'SUTTA_TEXT_FOCUS') and F.RDB$FIELD_TYPE in (14, 37) "
        "and F.RDB$CHARACTER_SET_ID <> 3"_s); // UNICODE_FSS
    m_storesPairs = otherColumns[0][0].toLongLong() == 0;
    const auto add = [this](const QList<QVariant> &row) {
        m_known.Add(row[0].toInt(), row[1].toInt(), {row[2].toString(), row[3].toString(), row[4].toString()});
    };
    for (const QList<QVariant> &row : m_file.Rows(u"select S.NIK_SUT, S.NIC_SUT, S.NAME_SUT_VIE, S.NAME_SUT_PAL, "
                                                  "S.NAME_SUT_ENG from SUTTA_LIST S"_s))
        add(row);
    if (ListLacksKelora(m_file)) {
        for (const KeloraText &text : m_canonTexts)
            m_known.Add(Collection::Kelora, text.number, {text.vietnamese, text.pali});
    }
}

bool MarksStore::ListLacksKelora(DataFile &file)
{
    return file.Rows(u"select first 1 1 from SUTTA_LIST S where S.NIK_SUT = %1"_s.arg(Collection::Kelora)).isEmpty();
}

bool MarksStore::IsStorable(const Mark &mark) const
{
    return m_storesPairs ||
           !HoldsPairs(mark.title + mark.keywords + mark.note + mark.nameVietnamese + mark.namePali + mark.nameEnglish);
}

void MarksStore::Want(const Mark &mark)
{
    Names &names = m_wanted[{mark.collection, mark.text}];
    if (HasNone(names))
        names = {mark.nameVietnamese, mark.namePali, mark.nameEnglish};
}

void MarksStore::Append(const MarkAtLine &source)
{
    const Mark &mark = source.mark;
    m_stream << qint64(source.line) << mark.collection << mark.text << mark.title << mark.keywords << mark.note
             << mark.priority.value_or(0) << mark.time << mark.excerpt;
    if (m_stream.status() != QDataStream::Ok)
        throw ToolError(u"%1: %2"_s.arg(m_gathered.fileName(), m_gathered.errorString()));
    ++m_count;
}

void MarksStore::Write(Console &console)
{
    if (!m_gathered.flush())
        throw ToolError(u"%1: %2"_s.arg(m_gathered.fileName(), m_gathered.errorString()));
    constexpr int mostTries = 50;
    constexpr unsigned long pauseMilliseconds = 100;
    for (int attempt = 1;; ++attempt) {
        try {
            WriteAll(console);
            return;
        } catch (const DatabaseError &error) {
            if (m_file.Transaction().Active())
                m_file.Transaction().Rollback();
            if (!IsClash(error) || attempt == mostTries)
                throw ToolError(u"%1: no mark was added: %2"_s.arg(m_path, error.Text()));
        }
        QThread::msleep(pauseMilliseconds);
        ThrowIfInterrupted();
    }
}

void MarksStore::WriteAll(Console &console)
{
    if (!m_file.Transaction().Active())
        m_file.Transaction().SetActive(true);
    QList<std::pair<QString, QString>> notes;
    const qsizetype texts = WriteTexts(notes);
    WriteMarks(console);
    ThrowIfInterrupted();
    // The engine itself would go on in a file that was moved away.
    m_file.Database().CheckFileInPlace();
    Leftover::Complete(m_path, [this] { m_file.Transaction().Commit(); });
    m_report.Count(u"texts added to the list"_s, texts);
    for (const auto &[place, note] : std::as_const(notes))
        m_report.Note(place, note);
}

qsizetype MarksStore::WriteTexts(QList<std::pair<QString, QString>> &notes)
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

void MarksStore::WriteMarks(Console &console)
{
    m_gathered.seek(0);
    m_stream.resetStatus();
    // The program's own rule for keys.
    qint64 key = m_file.Rows(u"select max(F.ID_FOC) from SUTTA_TEXT_FOCUS F"_s)[0][0].toLongLong();
    if (key + m_count > std::numeric_limits<qint32>::max())
        throw ToolError(u"%1: its keys are used up"_s.arg(m_path));
    MarksRowWriter rows(m_file);
    for (qsizetype i = 0; i < m_count; ++i) {
        qint64 line = 0;
        Mark mark;
        int priority = 0;
        m_stream >> line >> mark.collection >> mark.text >> mark.title >> mark.keywords >> mark.note >> priority >>
            mark.time >> mark.excerpt;
        if (priority != 0)
            mark.priority = priority;
        if (m_stream.status() != QDataStream::Ok)
            throw ToolError(u"%1: cannot be read back"_s.arg(m_gathered.fileName()));
        console.Progress(u"adding marks"_s, i, m_count);
        try {
            rows.Append(Table::SuttaTextFocus,
                        {++key, OrNull(mark.title), OrNull(mark.excerpt),
                         mark.priority ? QVariant(*mark.priority) : QVariant(), OrNull(mark.note), mark.collection,
                         mark.text, NullIfEmpty(mark.time), OrNull(mark.keywords)});
        } catch (const DatabaseError &error) {
            if (IsClash(error))
                throw;
            throw ToolError(
                u"%1: no mark was added, for that of %2:%3: %4"_s.arg(m_path, m_source).arg(line).arg(error.Text()));
        }
    }
    console.EndProgress();
}
