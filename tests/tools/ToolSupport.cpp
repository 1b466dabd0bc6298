#include "tools/ToolSupport.h"

#include "stores/engine/Statement.h"
#include "support/StoreSupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

ToolRun EndOf(QProcess &process)
{
    constexpr int longestRunMilliseconds = 120000;
    ToolRun run;
    if (process.waitForFinished(longestRunMilliseconds) && process.exitStatus() == QProcess::NormalExit)
        run.exitCode = process.exitCode();
    run.output = QString::fromUtf8(process.readAllStandardOutput());
    run.errors = QString::fromUtf8(process.readAllStandardError());
    return run;
}

void StartTool(QProcess &process, const QString &tool, const QStringList &arguments, QStringList environment = {})
{
    if (environment.isEmpty())
        environment = QProcess::systemEnvironment();
    // The leak checker of a sanitizer build crashes in a process that ends while the engine's threads still end; leaks
    // of what the tool is made of are found by the tests that call it.
    environment.append(u"ASAN_OPTIONS="_s + qEnvironmentVariable("ASAN_OPTIONS") + u":detect_leaks=0"_s);
    process.setEnvironment(environment);
    process.start(ProductFolder() + tool, arguments);
}

} // namespace

ToolRun RunDataTool(const QStringList &arguments)
{
    QProcess process;
    StartTool(process, u"lumivara-data"_s, arguments);
    return EndOf(process);
}

void ToolTest::Start(QProcess &process, const std::string &words, const QStringList &more) const
{
    process.setWorkingDirectory(Path());
    StartTool(process, m_tool, QString::fromStdString(words).split(u' ', Qt::SkipEmptyParts) + more, m_environment);
}

std::string ToolTest::Run(int exitCode, const std::string &words, const QStringList &more,
                          const QByteArray &input) const
{
    QProcess process;
    Start(process, words, more);
    process.write(input);
    process.closeWriteChannel();
    const ToolRun run = EndOf(process);
    EXPECT_EQ(run.exitCode, exitCode) << words << '\n' << qPrintable(run.output + run.errors);
    return (exitCode == 2 ? run.output + run.errors : run.output).toStdString();
}

std::string ToolTest::Stopped(bool isKilled, const std::string &stage, const std::string &words) const
{
    // Only a terminal hears of each stage.
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_TRUE(::grantpt(terminal) == 0 && ::unlockpt(terminal) == 0);
    const QByteArray name = ::ptsname(terminal);
    QProcess process;
    process.setChildProcessModifier([&name] {
        const int errors = ::open(name.constData(), O_WRONLY | O_NOCTTY);
        ::dup2(errors, STDERR_FILENO);
        ::close(errors);
    });
    Start(process, words);
    EXPECT_TRUE(process.waitForStarted());
    std::string told;
    const auto readOn = [&] {
        std::array<char, 4096> bytes;
        const ssize_t size = ::read(terminal, bytes.data(), bytes.size());
        told.append(bytes.data(), static_cast<size_t>(std::max<ssize_t>(size, 0)));
        return size > 0; // there is nobody at the other end any more
    };
    while (told.find(stage) == std::string::npos && readOn()) {
    }
    isKilled ? process.kill() : process.terminate();
    while (readOn()) {
    }
    EXPECT_EQ(EndOf(process).exitCode, isKilled ? -1 : 2) << stage;
    ::close(terminal);
    return told;
}

void ExpectParts(const std::string &text, const std::vector<std::string> &parts)
{
    for (const std::string &part : parts)
        EXPECT_NE(text.find(part), std::string::npos) << part << "\nstands not in\n" << text;
}

QString BesideTests(const QString &name)
{
    return QCoreApplication::applicationDirPath() + u'/' + name;
}

QString LiveFolder()
{
    OpenedDatabase(ProductFolder() + u"KELORA.FDB"_s); // makes the locks of this process
    return QFileInfo(qEnvironmentVariable("FIREBIRD_LOCK")).path();
}

QByteArray BytesOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return file.readAll();
}

void WriteFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
    EXPECT_EQ(file.write(bytes), bytes.size());
}

OpenedDatabase::OpenedDatabase(const QString &path)
{
    Prepare(m_database, m_transaction, path);
    m_database.SetConnected(true);
    m_transaction.SetActive(true);
}

QList<QList<QVariant>> OpenedDatabase::Rows(const QString &select)
{
    m_transaction.SetActive(true);
    TpFIBDataSet rows;
    rows.SetDatabase(&m_database);
    rows.SetTransaction(&m_transaction);
    rows.SelectSQL() = {select};
    QList<QList<QVariant>> values;
    for (rows.Open(); !rows.Eof(); rows.Next()) {
        QList<QVariant> row;
        for (const auto &field : rows.Fields())
            row.append(field->Value());
        values.append(row);
    }
    return values;
}

std::string OpenedDatabase::Text(const std::string &select)
{
    QByteArrayList rows;
    for (const QList<QVariant> &row : Rows(QString::fromStdString(select))) {
        QByteArrayList values;
        for (const QVariant &value : row)
            values.append(value.isNull() ? "null" : value.toByteArray());
        rows.append(values.join(','));
    }
    return rows.join('|').toStdString();
}

void OpenedDatabase::Hold(const QString &statement)
{
    m_transaction.SetActive(true);
    Statement(m_database.Attachment(), m_transaction.Native(), statement).Execute(m_transaction.Native(), {});
}

void OpenedDatabase::RunScript(const QString &script)
{
    ::RunScript(m_database, script);
}
