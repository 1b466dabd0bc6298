#include "program/ProgramRun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>

#include <csignal>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

const QString optionsKey = u"Software\\Melko\\Kelora\\Options"_s;

/// Lays down all the options that a start asks for, so that it opens the last text.
void WriteOptions(const ProductCopy &product, int lastKelora)
{
    QJsonObject options;
    const auto set = [&](const QString &name, int value) {
        options.insert(name, QJsonObject{{u"type"_s, u"integer"_s}, {u"value"_s, value}});
    };
    for (const QString &name : {u"OpenSutta"_s, u"PopupActive"_s, u"PopupTime"_s, u"LanguageSutta"_s})
        set(name, 1);
    for (const QString &name : {u"BgColor"_s, u"SeachHighlightColor"_s})
        set(name, 0xFFFFFF);
    set(u"InterfaceLang"_s, 0);
    set(u"LastKelora"_s, lastKelora);
    const QJsonObject root{{u"format"_s, 1}, {u"keys"_s, QJsonObject{{optionsKey, options}}}};
    EXPECT_TRUE(QDir().mkpath(QFileInfo(product.SettingsFile()).path()));
    QFile file(product.SettingsFile());
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QJsonDocument(root).toJson());
}

int StoredLastKelora(const ProductCopy &product)
{
    QFile file(product.SettingsFile());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    return document[u"keys"_s][optionsKey][u"LastKelora"_s][u"value"_s].toInt();
}

void ExpectStarted(ProgramRun &program)
{
    program.Start();
    EXPECT_EQ(program.Send(u"wait frmMain"_s), QString());
    EXPECT_EQ(program.Send(u"wait-page ebContent"_s), QString());
}

/// The row of the tree that the program opens with the settings as they stand.
QString OpeningRow(const ProductCopy &product)
{
    ProgramRun program(product);
    ExpectStarted(program);
    return program.Send(u"get qryTreeSutas RecNo"_s);
}

TEST(Leaving, ByTheWindowKeepsTheTextForTheNextStartAndByTheTrayDoesNot)
{
    ProductCopy product;
    WriteOptions(product, 1101);
    QString row;
    {
        ProgramRun program(product);
        ExpectStarted(program);
        EXPECT_EQ(program.Send(u"select-row 9971"_s), QString());
        row = program.Send(u"get qryTreeSutas RecNo"_s);
        EXPECT_EQ(program.Send(u"trigger acExit"_s), QString());
        EXPECT_EQ(program.Send(u"wait msgBox"_s), QString());
        EXPECT_EQ(program.Send(u"answer yes"_s), QString());
        EXPECT_EQ(program.ExitCode(), 0);
        EXPECT_EQ(StoredLastKelora(product), 1101);
    }
    EXPECT_NE(OpeningRow(product), row);
    {
        ProgramRun program(product);
        ExpectStarted(program);
        EXPECT_EQ(program.Send(u"select-row 9971"_s), QString());
        EXPECT_EQ(program.Send(u"close frmMain"_s), QString());
        EXPECT_EQ(program.Send(u"wait msgBox"_s), QString());
        EXPECT_EQ(program.Send(u"answer no"_s), QString());
        EXPECT_EQ(program.Send(u"wait-gone msgBox"_s), QString());
        EXPECT_EQ(StoredLastKelora(product), 1101);
        EXPECT_EQ(program.Quit(), 0);
    }
    EXPECT_EQ(StoredLastKelora(product), 9971);
    EXPECT_EQ(OpeningRow(product), row);
}

struct OpenDialog
{
    const char *action, *window;
};

class LeavingWith : public testing::TestWithParam<OpenDialog>
{};

TEST_P(LeavingWith, AnOpenDialogEndsCleanly)
{
    ProductCopy product;
    ProgramRun program(product);
    ExpectStarted(program);
    EXPECT_EQ(program.Send(u"trigger "_s + QString::fromLatin1(GetParam().action)), QString());
    EXPECT_EQ(program.Send(u"wait "_s + QString::fromLatin1(GetParam().window)), QString());
    EXPECT_EQ(program.Quit(), 0) << program.ErrorOutput().constData();
}

INSTANTIATE_TEST_SUITE_P(Dialogs, LeavingWith,
                         testing::Values(OpenDialog{"acFindDialog", "dlgFind"},
                                         OpenDialog{"acPrintPreview", "frmPrintPreview"},
                                         OpenDialog{"acPrint", "dlgPrint"}, OpenDialog{"acSave", "dlgSave"}),
                         [](const auto &info) { return std::string(info.param.action); });

TEST(Leaving, ASignalEndsTheProgram)
{
    ProductCopy product;
    for (const int signal : {SIGTERM, SIGINT}) {
        ProgramRun program(product);
        ExpectStarted(program);
        ::kill(static_cast<pid_t>(program.ProcessId()), signal);
        EXPECT_NE(program.ExitCode(10000), -2) << "still running after signal " << signal;
    }
}

TEST(Leaving, AFailedStartShutsNobodyOutOfTheLockFolder)
{
    ProductCopy product;
    for (const QString &name : {u"KELORA.FDB"_s, u"TARUNECLIENT.FDB"_s, u"PALIDICT.FDB"_s})
        QFile::remove(product.File(name));
    ProgramRun program(product);
    program.Start();
    EXPECT_EQ(program.Send(u"wait msgBox"_s), QString());
    const QFileInfoList files = QDir(product.File(u"lock"_s)).entryInfoList(QDir::Files | QDir::System);
    EXPECT_FALSE(files.isEmpty());
    for (const QFileInfo &file : files) {
        struct stat status = {};
        EXPECT_EQ(::stat(QFile::encodeName(file.filePath()).constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0666U) << file.fileName().toStdString();
    }
}

} // namespace
