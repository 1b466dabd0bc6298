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
    : m_file(file), m_path(path), m_source(source), m_report(report), m_storesPairs(StoresPairs(file)),
      m_wanted(file, path, source, canonTexts)
{
    if (!m_gathered.open())
        throw ToolError(u"%1: %2"_s.arg(m_gathered.fileTemplate(), m_gathered.errorString()));
    m_stream.setDevice(&m_gathered);
    const auto add = [this](const QList<QVariant> &row) {
        m_known.Add(row[0].toInt(), row[1].toInt(), {row[2].toString(), row[3].toString(), row[4].toString()});
    };
    for (const QList<QVariant> &row : m_file.Rows(u"select S.NIK_SUT, S.NIC_SUT, S.NAME_SUT_VIE, S.NAME_SUT_PAL, "
                                                  "S.NAME_SUT_ENG from SUTTA_LIST S"_s))
        add(row);
    if (TextsOfMarks::ListLacksKelora(m_file)) {
        for (const KeloraText &text : canonTexts)
            m_known.Add(Collection::Kelora, text.number, {text.vietnamese, text.pali});
    }
}

bool MarksStore::IsStorable(const Mark &mark) const
{
    return m_storesPairs ||
           !HoldsPairs(mark.title + mark.keywords + mark.note + mark.nameVietnamese + mark.namePali + mark.nameEnglish);
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
            if (!IsClashOfCopies(error) || attempt == mostTries)
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
    const qsizetype texts = m_wanted.Write(notes);
    WriteMarks(console);
    ThrowIfInterrupted();
    // The engine itself would go on in a file that was moved away.
    m_file.Database().CheckFileInPlace();
    Leftover::Complete(m_path, [this] { m_file.Transaction().Commit(); });
    m_report.Count(u"texts added to the list"_s, texts);
    for (const auto &[place, note] : std::as_const(notes))
        m_report.Note(place, note);
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
            if (IsClashOfCopies(error))
                throw;
            throw ToolError(
                u"%1: no mark was added, for that of %2:%3: %4"_s.arg(m_path, m_source).arg(line).arg(error.Text()));
        }
    }
    console.EndProgress();
}
