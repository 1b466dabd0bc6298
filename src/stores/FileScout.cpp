#include "stores/FileScout.h"

#include "stores/engine/DatabaseError.h"
#include "stores/examination/StoredFile.h"

#include <QFileInfo>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace {

/// By the file's pages alone.
Verdict FirstLook(const QString &file)
{
    try {
        const StoredFile facts = ReadStoredFile(file);
        if (facts.fault.isEmpty() && !facts.namesFiles && !facts.WantsTooMuchCache())
            return {Verdict::Manner::AsItIs};
        return {Verdict::Manner::NotAtAll, {}, facts.fault};
    } catch (const DatabaseError &error) {
        return {Verdict::Manner::NotAtAll, {}, error.Text()};
    }
}

} // namespace

FileScout::FileScout(const QString &tool, const QStringList &files) : m_tool(tool)
{
    Start(files);
}

void FileScout::Start(const QStringList &files)
{
    m_files = files;
    m_taken = 0;
    m_process.setProcessChannelMode(QProcess::SeparateChannels);
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.start(m_tool, QStringList{u"scout"_s} + files, QIODevice::ReadOnly);
}

FileScout::~FileScout()
{
    m_process.kill();
    m_process.waitForFinished();
}

bool FileScout::TakeLine(int milliseconds)
{
    while (!m_process.canReadLine()) {
        if (m_process.state() == QProcess::NotRunning || !m_process.waitForReadyRead(milliseconds))
            return false;
    }
    const auto verdict = Verdict::FromJson(QJsonDocument::fromJson(m_process.readLine()).object());
    if (m_taken < m_files.size() && verdict)
        m_verdicts[m_files[m_taken]] = *verdict;
    ++m_taken;
    return true;
}

Verdict FileScout::VerdictOn(const QString &file, const std::function<bool(QIODevice &)> &isPatient)
{
    if (const auto known = m_verdicts.find(file);
        known != m_verdicts.end() && !known->second.stamp.IsSameFile(FileStamp::Of(file))) {
        m_verdicts.erase(known);
        m_process.kill();
        m_process.waitForFinished();
        Start({file});
    }
    while (!m_verdicts.contains(file)) {
        if (TakeLine(PatienceMilliseconds))
            continue;
        if (m_process.state() == QProcess::NotRunning && !m_process.canReadLine())
            return QFileInfo::exists(file) ? FirstLook(file) : Verdict{Verdict::Manner::AsItIs};
        if (!isPatient(m_process))
            return {Verdict::Manner::NotAtAll, {}, u"it does not answer"_s};
    }
    return m_verdicts[file];
}

void FileScout::RememberLeft(const TpFIBDatabase &database)
{
    ExaminedFiles memory(ExaminedFiles::UsualFolder());
    const bool isCopy = database.DBName().startsWith(memory.Folder() + u'/');
    if (!database.StampLeft() || isCopy || memory.Find(database.DBName()))
        return;
    memory.Remember(database.DBName(), {Verdict::Manner::AsItIs, {}, {}, *database.StampLeft()});
}
