#include "program/ProgramRun.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongestWait = 30000;
const QString optionsKey = u"Software\\Melko\\Kelora\\Options"_s;

} // namespace

StandIn::StandIn(const QString &path, const QByteArray &work)
{
    const QByteArray calls = QFile::encodeName(path + u".calls"_s);
    EXPECT_EQ(::mkfifo(calls.constData(), 0600), 0);
    m_calls = ::open(calls.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    QFile script(path);
    EXPECT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\n" + work + "\necho \"$? $*\" >'" + calls + "'\n");
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

StandIn::~StandIn()
{
    ::close(m_calls);
}

std::string StandIn::NextCall()
{
    for (pollfd ready{m_calls, POLLIN, 0}; !m_told.contains('\n') && ::poll(&ready, 1, LongestWait) == 1;) {
        char buffer[4096];
        m_told.append(buffer, std::max<ssize_t>(::read(m_calls, buffer, sizeof buffer), 0));
    }
    const qsizetype end = m_told.indexOf('\n');
    const std::string call = m_told.left(std::max<qsizetype>(end, 0)).toStdString();
    m_told.remove(0, end + 1);
    return call;
}

ProductCopy::ProductCopy(const QString &name) : m_folder(m_scratch.Path(name))
{
    EXPECT_EQ(QProcess::execute(u"cp"_s, {u"-a"_s, ProductFolder(), m_folder}), 0);
    QDir(File(u"lock"_s)).removeRecursively();
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

ProgramRun::ProgramRun(const ProductCopy &product) : m_executable(product.File(u"Lumivara"_s))
{
    environment.insert(u"XDG_CONFIG_HOME"_s, product.ConfigFolder());
    environment.insert(u"HOME"_s, product.Scratch(u"home"_s));
    environment.insert(u"QT_PLUGIN_PATH"_s, QCoreApplication::applicationDirPath() + u"/plugins"_s);
    environment.insert(u"QT_QPA_GENERIC_PLUGINS"_s, u"lumivara-driver"_s);
    if (::getuid() == 0)
        environment.insert(u"QTWEBENGINE_DISABLE_SANDBOX"_s, u"1"_s);
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
            return u"error: no answer to \"%1\""_s.arg(command);
        m_process.waitForReadyRead(100);
    }
    const QString answer = QString::fromUtf8(m_process.readLine()).trimmed();
    if (answer == u"ok")
        return {};
    return answer.startsWith(u"ok ") ? answer.mid(3) : answer;
}

void ProgramRun::Do(const QStringList &commands)
{
    for (const QString &command : commands)
        EXPECT_EQ(Send(command).toStdString(), "") << qPrintable(command);
}

void ProgramRun::Open()
{
    Start();
    Do({u"wait frmMain"_s, u"wait-page ebContent"_s});
}

int ProgramRun::ExitCode(int milliseconds)
{
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(milliseconds))
        return -2;
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

int ProgramRun::Quit()
{
    for (const QString &command : {u"close frmMain"_s, u"wait msgBox"_s, u"answer yes"_s})
        Send(command);
    return ExitCode();
}
