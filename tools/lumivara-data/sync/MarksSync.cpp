#include "lumivara-data/sync/MarksSync.h"

#include "common/Console.h"
#include "common/Interrupt.h"
#include "common/Leftover.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/UnfinishedFile.h"
#include "lumivara-data/marks/MarksRows.h"
#include "lumivara-data/sync/CarriedFile.h"
#include "stores/Schema.h"
#include "stores/engine/DatabaseError.h"
#include "stores/engine/Statement.h"

#include <QThread>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

const QString Prefix = u"lumivara-marks-"_s, Ending = u".sync"_s;
constexpr qsizetype MostFiles = 100; ///< of a folder that are read

/// A copy of the marks on another machine has another name, so that what carries the folder never finds one file
/// changed on two sides.
QString NameOnThisMachine(const QByteArray &fileName)
{
    return Prefix + QString::fromLatin1(SyncId::Of({fileName, ThisUserHere()}).Hex()) + Ending;
}

template <typename Text>
QVariant OrNull(const Text &text)
{
    return text.isNull() ? QVariant() : QVariant(text);
}

QList<QVariant> RowOf(const Mark &mark, int key)
{
    return {key,
            OrNull(mark.title),
            OrNull(mark.excerpt),
            mark.priority ? QVariant(*mark.priority) : QVariant(),
            OrNull(mark.note),
            mark.collection,
            mark.text,
            mark.time.isEmpty() ? QVariant() : QVariant(mark.time),
            OrNull(mark.keywords)};
}

/// The title that messages show of a mark that may have no key here.
QString TitleIn(const Mark &mark)
{
    const QString title = QString(mark.title).remove(QChar::ByteOrderMark).simplified();
    return title.isEmpty() ? u"a mark on text %1 of collection %2"_s.arg(mark.text).arg(mark.collection) : title;
}

} // namespace

MarksSync::MarksSync(DataFile &file, const QString &path, const QDir &folder, const QList<KeloraText> &canonTexts,
                     bool isTrial, Report &report, Console &console)
    : m_file(file), m_path(path), m_folder(folder), m_canonTexts(canonTexts), m_isTrial(isTrial), m_report(report),
      m_console(console)
{}

MarksSync::~MarksSync() = default;

void MarksSync::Run()
{
    ReadFolder();
    if (!m_isTrial)
        m_ownName = NameOnThisMachine(SyncTables::Make(m_file));
    constexpr int mostTries = 50;
    constexpr unsigned long pauseMilliseconds = 100;
    for (int attempt = 1;; ++attempt) {
        try {
            RunOnce();
            break;
        } catch (const DatabaseError &error) {
            if (m_file.Transaction().Active())
                m_file.Transaction().Rollback();
            if (!IsClashOfCopies(error) || attempt == mostTries)
                throw ToolError(u"%1: nothing was changed: %2"_s.arg(m_path, error.Text()));
        }
        QThread::msleep(pauseMilliseconds);
        ThrowIfInterrupted();
    }
    Tell();
}

void MarksSync::ReadFolder()
{
    // What carries the folder may have given a file a longer name, because it had two of that name.
    const QStringList names =
        m_folder.entryList({Prefix + u'*' + Ending}, QDir::Files | QDir::System | QDir::CaseSensitive, QDir::Name);
    const bool storesPairs = StoresPairs(m_file);
    for (qsizetype i = 0; i < names.size(); ++i) {
        m_console.Progress(u"reading the folder"_s, i, names.size(), u"files"_s);
        const QString &name = names[i];
        if (i >= MostFiles) {
            m_report.Find(name, u"left out: the folder has more than %1 files"_s.arg(MostFiles));
            continue;
        }
        Other other{name, std::make_unique<QFile>(), nullptr};
        if (const QString fault = OpenCarried(m_folder.filePath(name), *other.file); !fault.isEmpty()) {
            m_report.Find(name, u"left out: "_s + fault);
            continue;
        }
        try {
            other.reader = std::make_unique<SyncFileReader>(*other.file, name);
        } catch (const ToolError &error) {
            ThrowIfInterrupted();
            m_report.Find(name, u"left out: "_s + error.Text().sliced(name.size() + 2));
            continue;
        }
        if (!storesPairs && other.reader->HasPairs()) {
            m_report.Find(name,
                          u"left out: it holds a character that this file of marks cannot store (above U+FFFF)"_s);
            continue;
        }
        m_others.push_back(std::move(other));
    }
    m_console.EndProgress();
}

void MarksSync::Begin()
{
    // All rows as of one moment; what the program posts from then on makes a change of the same row a clash.
    TpFIBTransaction &transaction = m_file.Transaction();
    if (transaction.Active())
        transaction.Rollback();
    transaction.TRParams() = {u"write"_s, u"isc_tpb_nowait"_s, u"concurrency"_s};
    transaction.SetActive(true);
}

std::vector<SyncRow> MarksSync::ReadRows()
{
    std::vector<SyncRow> rows;
    m_titles.clear();
    m_staying.clear();
    VisitMarks(m_file, [&](const Mark &mark) {
        ThrowIfInterrupted();
        if (!m_titles.emplace(mark.key, TitleIn(mark)).second)
            throw ToolError(
                u"%1: mark %2 stands twice, or its text in the list; \"lumivara-data check\" tells more"_s.arg(m_path)
                    .arg(mark.key));
        if (Travels(mark))
            rows.push_back({mark.key, FactsOf(mark)});
        else
            m_staying.append(ShownTitle(mark));
    });
    return rows;
}

void MarksSync::RunOnce()
{
    Begin();
    m_before = SyncTables::Read(m_file);
    std::vector<const SyncState *> states;
    for (const Other &other : m_others)
        states.push_back(&other.reader->State());
    m_plan = PlanSync(m_before, ReadRows(), states);
    if (m_plan.state.live.size() > size_t{SyncFile::MostMarks} || m_plan.state.past.size() > size_t{SyncFile::MostPast})
        throw ToolError(u"%1: there are more marks than a sync takes"_s.arg(m_path));
    if (m_isTrial)
        m_file.Transaction().Rollback();
    else
        Make();
}

void MarksSync::Make()
{
    // Made before anything is done for good: what the folder can't take ends the sync.
    FileInTheMaking own(m_folder.filePath(m_ownName));
    m_after = {m_plan.state, m_plan.kept};
    std::vector<std::pair<SyncId, int>> placed;
    WriteSteps(placed);
    m_after.keys.insert(placed.begin(), placed.end());
    SyncTables::Write(m_file, m_before, m_after);
    const QByteArray checksum = WriteOwn(own.Path());
    ThrowIfInterrupted();
    m_file.Database().CheckFileInPlace();
    Leftover::Complete(m_path, [this] { m_file.Transaction().Commit(); });
    // A run that is killed here leaves an older file in the folder, and the next one makes up for it.
    const bool isThere = std::any_of(m_others.begin(), m_others.end(), [&](const Other &other) {
        return other.name == m_ownName && other.reader->Checksum() == checksum;
    });
    if (!isThere)
        own.Finish();
}

void MarksSync::WriteSteps(std::vector<std::pair<SyncId, int>> &placed)
{
    // The program's own rule for keys, also for a mark that is changed.
    qint64 key = m_file.Rows(u"select max(F.ID_FOC) from SUTTA_TEXT_FOCUS F"_s)[0][0].toLongLong();
    if (key + static_cast<qint64>(m_plan.steps.size()) > std::numeric_limits<qint32>::max())
        throw ToolError(u"%1: its keys are used up"_s.arg(m_path));
    TextsOfMarks texts(m_file, m_path, m_folder.path(), m_canonTexts);
    const auto &native = m_file.Transaction().Native();
    Statement remove(m_file.Database().Attachment(), native,
                     u"delete from SUTTA_TEXT_FOCUS where ID_FOC = :OLD_ID_FOC"_s);
    MarksRowWriter rows(m_file);
    qsizetype done = 0;
    for (const SyncStep &step : m_plan.steps) {
        m_console.Progress(u"writing marks"_s, done++, static_cast<qsizetype>(m_plan.steps.size()), u"marks"_s);
        if (step.kind != SyncStep::Kind::Delete)
            ++key;
        if (step.kind == SyncStep::Kind::Retime) {
            Retime(step, static_cast<int>(key));
        } else {
            if (step.kind != SyncStep::Kind::Add)
                remove.Execute(native, {step.key});
            if (step.kind != SyncStep::Kind::Delete) {
                const Mark mark = ContentOf(step.version);
                texts.Want(mark);
                rows.Append(Table::SuttaTextFocus, RowOf(mark, static_cast<int>(key)));
            }
        }
        for (const SyncId &version : step.versions)
            placed.emplace_back(version, static_cast<int>(key));
    }
    m_console.EndProgress();
    m_notes.clear();
    m_textCount = texts.Write(m_notes);
}

void MarksSync::Retime(const SyncStep &step, int key)
{
    const auto &native = m_file.Transaction().Native();
    const QString &time = m_plan.state.live.at(step.version).facts.time;
    Statement(
        m_file.Database().Attachment(), native,
        u"update SUTTA_TEXT_FOCUS set ID_FOC = :ID_FOC, DATETIME_FOC = cast(cast(:DATETIME_FOC as varchar(30)) as "
        "timestamp) where ID_FOC = :OLD_ID_FOC"_s)
        .Execute(native, {key, time.isEmpty() ? QVariant() : QVariant(time), step.key});
}

QByteArray MarksSync::WriteOwn(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw ToolError(u"%1: %2"_s.arg(path, WriteFault(file)));
    std::map<int, std::vector<SyncId>> versionsOf;
    for (const auto &[version, key] : m_after.keys)
        versionsOf[key].push_back(version);
    SyncFileWriter writer(file, path);
    writer.Head(m_after.state.live.size(), m_after.state.past.size());
    VisitMarks(m_file, [&](const Mark &row) {
        ThrowIfInterrupted();
        const auto versions = versionsOf.find(row.key);
        if (versions == versionsOf.end())
            return;
        Mark mark = row;
        for (const SyncId &version : versions->second) {
            const SyncVersion &known = m_after.state.live.at(version);
            mark.time = known.facts.time;
            writer.Put(version, known.mark, mark);
        }
    });
    const QByteArray checksum = writer.Finish(m_after.state.past);
    file.close();
    if (file.error() != QFile::NoError)
        throw ToolError(u"%1: %2"_s.arg(path, WriteFault(file)));
    return checksum;
}

Mark MarksSync::ContentOf(const SyncId &version) const
{
    const SyncId &content = m_plan.state.live.at(version).facts.content;
    for (const Other &other : m_others) {
        const auto known = other.reader->State().live.find(version);
        if (known != other.reader->State().live.end() && known->second.facts.content == content)
            return other.reader->Read(version);
    }
    throw ToolError(u"%1: a mark is missing in the files of the folder"_s.arg(m_folder.path()));
}

QString MarksSync::TitleOf(const SyncId &version) const
{
    const auto kept = m_plan.kept.find(version);
    if (kept != m_plan.kept.end())
        return m_titles.at(kept->second);
    for (const SyncStep &step : m_plan.steps) {
        if (step.kind == SyncStep::Kind::Retime && step.version == version)
            return m_titles.at(step.key);
    }
    return TitleIn(ContentOf(version));
}

void MarksSync::Tell()
{
    const auto count = [this](auto... kinds) {
        return static_cast<qsizetype>(
            std::count_if(m_plan.steps.begin(), m_plan.steps.end(),
                          [=](const SyncStep &step) { return ((step.kind == kinds) || ...); }));
    };
    for (const QString &title : std::as_const(m_staying))
        m_report.Note(title,
                      u"stays on this machine: it is on no text, or longer than the columns of a file as made"_s);
    for (const auto &[place, note] : std::as_const(m_notes))
        m_report.Note(place, note);
    for (const SyncId &version : m_plan.returned)
        m_report.Note(TitleOf(version), u"was deleted here, and edited on another machine: it is back"_s);
    for (const std::vector<SyncId> &rows : m_plan.conflicts) {
        QStringList titles;
        for (const SyncId &version : rows)
            titles.append(TitleOf(version));
        titles.removeDuplicates();
        m_report.Find(titles.join(u" / "_s),
                      u"was edited on two machines; both are kept, %1 marks now"_s.arg(rows.size()));
    }
    m_report.Count(u"marks added"_s, count(SyncStep::Kind::Add));
    m_report.Count(u"changed"_s, count(SyncStep::Kind::Change, SyncStep::Kind::Retime));
    m_report.Count(u"deleted"_s, count(SyncStep::Kind::Delete));
    m_report.Count(u"conflicts"_s, static_cast<qsizetype>(m_plan.conflicts.size()));
    m_report.Count(u"files read"_s, static_cast<qsizetype>(m_others.size()));
    if (m_textCount > 0)
        m_report.Count(u"texts added to the list"_s, m_textCount);
}
