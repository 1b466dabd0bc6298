#include "lumivara-data/sealed/SealedRun.h"

#include "base/Messages.h"
#include "common/Console.h"
#include "common/Interrupt.h"
#include "common/Leftover.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/files/PrivateCopy.h"
#include "lumivara-data/sealed/Seal.h"
#include "stores/engine/FileStamp.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 MostMemoryBytes = quint64{480} * 1024 * 1024;
constexpr qint64 LongestSilenceMilliseconds = 20000;
constexpr int LookMilliseconds = 50; // between two looks at the process and at interrupts
constexpr int MostCopies = 3;        // of a file that changes while it is copied

QString FolderPrefix(const QString &wanted)
{
    const QString prefix = wanted.isEmpty() ? PrivateFolder::TemporaryPrefix() : wanted + u"/sealed"_s;
    // Firebird could not open a file there, see PathAlias; a sealed process can make no link elsewhere.
    return prefix.contains(u':') ? u"/tmp/lumivara-work"_s : prefix;
}

} // namespace

SealedRun::SealedRun(const QString &source, Console &console, const QString &base)
    : m_source(source), m_console(console), m_folder(FolderPrefix(base))
{
    m_copy = m_folder.Path(u"copy"_s);
    Copy();
}

SealedRun::~SealedRun() = default;

void SealedRun::Copy()
{
    for (int copies = 1;; ++copies) {
        const FileStamp before = FileStamp::Of(m_source);
        CopyPrivately(m_source, m_copy);
        if (copies == MostCopies || FileStamp::Of(m_source) == before)
            return;
    }
}

StoredFile SealedRun::PrepareDatabase()
{
    const StoredFile facts = ReadStoredFile(m_copy);
    if (!facts.fault.isEmpty())
        Fail(facts.fault);
    MakeHarmless(m_copy);
    return facts;
}

void SealedRun::Fail(const QString &why) const
{
    throw ToolError(m_place.isEmpty() ? u"%1: %2"_s.arg(m_source, why)
                                      : Sentence({u"%1: %2, ở %3", u"%1: %2, at %3"}).arg(m_source, why, m_place));
}

void SealedRun::Run(const QString &task, const QStringList &words, Report &report)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"TMPDIR"_s, m_folder.Path());
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setChildProcessModifier(LetInterruptsThrough);
    process.start(QCoreApplication::applicationFilePath(),
                  QStringList{u"sealed"_s, task, m_copy, SpeechOfTools::isVietnamese ? u"vi"_s : u"en"_s} + words);
    if (!process.waitForStarted())
        Fail(process.errorString());
    const ChildOfWork child(process.processId());
    const auto end = [&process] {
        process.kill();
        process.waitForFinished();
    };
    FrameReader frames;
    QElapsedTimer silence;
    silence.start();
    try {
        for (bool isOver = false; !isOver;) {
            isOver = process.state() == QProcess::NotRunning;
            if (!isOver)
                process.waitForReadyRead(LookMilliseconds);
            ThrowIfInterrupted();
            frames.Append(process.readAllStandardOutput());
            while (const auto frame = frames.Next()) {
                silence.start();
                Take(*frame, report);
            }
            if (MemoryOf(process.processId()) > MostMemoryBytes)
                Fail(Sentence({u"đọc tệp này tốn hơn %1 MB bộ nhớ", u"reading it takes more than %1 MB of memory"})
                         .arg(MostMemoryBytes / (1024 * 1024)));
            if (silence.elapsed() > LongestSilenceMilliseconds)
                Fail(Sentence({u"việc đọc tệp này đứng yên %1 giây", u"reading it did not go on for %1 s"})
                         .arg(LongestSilenceMilliseconds / 1000));
        }
    } catch (const ToolError &) {
        end();
        throw;
    } catch (const std::exception &error) {
        end();
        Fail(QString::fromUtf8(error.what()));
    }
    m_console.EndProgress();
    if (!m_failure.isEmpty())
        Fail(m_failure);
    if (!m_isDone)
        Fail(Sentence({u"bộ máy dữ liệu bị sập khi đọc tệp này, vậy là tệp hỏng",
                       u"the database engine broke down on it, so it is damaged"}));
}

void SealedRun::Take(const Frame &frame, Report &report)
{
    // Firebird knows the copy alone.
    const auto text = [&](int i) { return frame.values.value(i).toString().replace(m_copy, m_source); };
    switch (frame.kind) {
    case Frame::Kind::Progress:
        if (text(0).isEmpty())
            break; // it goes on
        m_place = text(0) + u' ' + text(1);
        m_console.Progress(text(0), frame.values.value(1).toLongLong(), frame.values.value(2).toLongLong(), text(3));
        break;
    case Frame::Kind::Row:
        if (takeRow)
            takeRow(text(0), frame.values.mid(1));
        break;
    case Frame::Kind::Value:
        if (takeValue)
            takeValue(text(0), text(1));
        break;
    case Frame::Kind::Finding:
        report.Find(text(0), text(1));
        break;
    case Frame::Kind::Untold:
        report.AddUntold(frame.values.value(0).toLongLong());
        break;
    case Frame::Kind::Note:
        report.Note(text(0), text(1));
        break;
    case Frame::Kind::Count:
        report.Count(text(0), frame.values.value(1).toLongLong());
        break;
    case Frame::Kind::Failure:
        m_failure = text(0);
        break;
    case Frame::Kind::Done:
        m_isDone = true;
        break;
    }
}
