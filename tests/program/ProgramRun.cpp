#include "program/ProgramRun.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString optionsKey = u"Software\\Melko\\Kelora\\Options"_s;

void CopyFolder(const QString &from, const QString &to)
{
    QDir().mkpath(to);
    const QFileInfoList entries =
        QDir(from).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
    for (const QFileInfo &entry : entries) {
        const QString target = to + QLatin1Char('/') + entry.fileName();
        if (entry.isSymLink())
            QFile::link(entry.symLinkTarget(), target);
        else if (entry.isDir() && entry.fileName() != u"lock")
            CopyFolder(entry.filePath(), target);
        else if (entry.isFile())
            QFile::copy(entry.filePath(), target);
    }
}

} // namespace

ProductCopy::ProductCopy(const QString &name) : m_folder(m_scratch.Path(name))
{
    CopyFolder(ProductFolder(), m_folder);
}

void ProductCopy::WriteOptions(const QMap<QString, int> &changed) const
{
    QMap<QString, int> values{{u"OpenSutta"_s, 1},     {u"PopupActive"_s, 1},    {u"PopupTime"_s, 1},
                              {u"LanguageSutta"_s, 1}, {u"BgColor"_s, 0xFFFFFF}, {u"SeachHighlightColor"_s, 0xFFFFFF},
                              {u"InterfaceLang"_s, 0}, {u"LastKelora"_s, 1101}};
    values.insert(changed);
    QJsonObject options;
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        options.insert(value.key(), QJsonObject{{u"type"_s, u"integer"_s}, {u"value"_s, value.value()}});
    const QJsonObject root{{u"format"_s, 1}, {u"keys"_s, QJsonObject{{optionsKey, options}}}};
    QDir().mkpath(QFileInfo(SettingsFile()).path());
    QFile file(SettingsFile());
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QJsonDocument(root).toJson());
}

int ProductCopy::StoredOption(const QString &name) const
{
    QFile file(SettingsFile());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QJsonDocument::fromJson(file.readAll())[u"keys"_s][optionsKey][name][u"value"_s].toInt();
}

ProgramRun::ProgramRun(const ProductCopy &product) : m_executable(product.File(QStringLiteral("Lumivara")))
{
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), product.ConfigFolder());
    environment.insert(QStringLiteral("HOME"), product.Scratch(QStringLiteral("home")));
    environment.insert(QStringLiteral("QT_PLUGIN_PATH"),
                       QCoreApplication::applicationDirPath() + QStringLiteral("/plugins"));
    environment.insert(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("lumivara-driver"));
    if (::getuid() == 0)
        environment.insert(QStringLiteral("QTWEBENGINE_DISABLE_SANDBOX"), QStringLiteral("1"));
}

ProgramRun::~ProgramRun()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}

void ProgramRun::Start()
{
    m_process.setProcessEnvironment(environment);
    m_process.setProgram(m_executable);
    m_process.setArguments(arguments);
    m_process.start();
    m_process.waitForStarted();
}

QString ProgramRun::Send(const QString &command, int milliseconds)
{
    m_process.write(command.toUtf8() + '\n');
    QElapsedTimer clock;
    clock.start();
    while (!m_process.canReadLine()) {
        if (m_process.state() == QProcess::NotRunning || clock.elapsed() > milliseconds)
            return QStringLiteral("error: no answer to \"%1\"").arg(command);
        m_process.waitForReadyRead(100);
    }
    const QString answer = QString::fromUtf8(m_process.readLine()).trimmed();
    if (answer == u"ok")
        return {};
    return answer.startsWith(u"ok ") ? answer.mid(3) : answer;
}

bool ProgramRun::KillAfter(quint32 microseconds, const QString &command)
{
    m_process.write(command.toUtf8() + '\n');
    m_process.waitForBytesWritten();
    QThread::usleep(microseconds);
    m_process.kill();
    m_process.waitForFinished();
    return m_process.readAllStandardOutput().startsWith("ok");
}

int ProgramRun::ExitCode(int milliseconds)
{
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(milliseconds))
        return -2;
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

int ProgramRun::Quit()
{
    Send(QStringLiteral("close frmMain"));
    Send(QStringLiteral("wait msgBox"));
    Send(QStringLiteral("answer yes"));
    return ExitCode();
}
