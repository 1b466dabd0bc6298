#include "tools/ToolSupport.h"

#include "stores/Statement.h"
#include "support/StoreSupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>

using namespace Qt::StringLiterals;

QString ToolPath()
{
    return ProductFolder() + u"lumivara-data"_s;
}

namespace {

ToolRun RunProgram(const QString &path, const QStringList &arguments, const QString &workingFolder,
                   const QStringList &environment)
{
    constexpr int longestRunMilliseconds = 120000;
    QProcess process;
    process.setWorkingDirectory(workingFolder);
    // The leak checker of a sanitizer build crashes in a process that ends while the engine's threads still end; leaks
    // of what the tool is made of are found by the tests that call it.
    QStringList settings = environment.isEmpty() ? QProcess::systemEnvironment() : environment;
    settings.append(u"ASAN_OPTIONS="_s + qEnvironmentVariable("ASAN_OPTIONS") + u":detect_leaks=0"_s);
    process.setEnvironment(settings);
    process.start(path, arguments);
    ToolRun run;
    if (process.waitForFinished(longestRunMilliseconds) && process.exitStatus() == QProcess::NormalExit)
        run.exitCode = process.exitCode();
    run.output = QString::fromUtf8(process.readAllStandardOutput());
    run.errors = QString::fromUtf8(process.readAllStandardError());
    return run;
}

} // namespace

ToolRun RunDataTool(const QStringList &arguments, const QString &workingFolder, const QStringList &environment)
{
    return RunProgram(ToolPath(), arguments, workingFolder, environment);
}

ToolRun RunLangTool(const QStringList &arguments, const QString &workingFolder)
{
    return RunProgram(ProductFolder() + u"lumivara-lang"_s, arguments, workingFolder, {});
}

ToolRun RunSkinsTool(const QStringList &arguments)
{
    return RunProgram(ProductFolder() + u"lumivara-skins"_s, arguments, {}, {});
}

QString WindowSources()
{
    return QCoreApplication::applicationDirPath() + u"/windows"_s;
}

QString SampleSources()
{
    return QCoreApplication::applicationDirPath() + u"/data"_s;
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

void WriteSmallSources(const QString &folder)
{
    WriteFile(folder + u"/canon/groups.csv"_s, "ID_VIT,P_ID_VIT,NAME_VIT_VIE,NAME_VIT_PAL,NAME_VIT_ENG\n"
                                               "1,-1,Gốc,Mūlaṃ,Root\n"
                                               "2,1,Nhánh,Sākhā,\n");
    WriteFile(folder + u"/canon/texts.csv"_s,
              "NUMBER_VIC,ID_VIC,ID_VIT,NAME_VIC_PAL,NAME_VIC_VIE,NAME_VIC_ENG,WITHOUT\n"
              "1,1101,2,Paṭhamaṃ,Thứ nhất,\"First, and only\",\n"
              "2,1201,2,Dutiyaṃ,Thứ nhì,,pal\n");
    QByteArray formulas;
    for (const char *form : {"label", "opening", "story", "rule", "analysis", "closing"})
        formulas += QByteArray("@form ") + form + "\n{title} " + form + " | {title} " + form + " vi | {title} en\n";
    WriteFile(folder + u"/canon/formulas.txt"_s,
              formulas + "@form heads\na | b | c\na | b | c\na | b | c\na | b | c\n");
    WriteFile(folder + u"/canon/passages/own.txt"_s, "@text 1101\nĀdi | Đầu | Start\n");
    WriteFile(folder + u"/dictionary/pali.txt"_s, "dictionary 5\n% ādi\n@ādi\n- đầu\n");
}

OpenedDatabase::OpenedDatabase(const QString &path)
{
    Prepare(m_database, m_transaction, path);
    m_database.SetConnected(true);
    m_transaction.SetActive(true);
}

QList<QList<QVariant>> OpenedDatabase::Rows(const QString &select)
{
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

void OpenedDatabase::Execute(const QString &statement)
{
    RunScript(statement + u';');
}

void OpenedDatabase::Hold(const QString &statement)
{
    Statement(m_database.Attachment(), m_transaction.Native(), statement).Execute(m_transaction.Native(), {});
}

void OpenedDatabase::RunScript(const QString &script)
{
    ::RunScript(m_database, script);
}
