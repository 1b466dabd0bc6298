#include "program/ProgramRun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>

#include <csignal>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

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
    product.WriteOptions({{u"LastKelora"_s, 1101}});
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
        EXPECT_EQ(product.StoredOption(u"LastKelora"_s), 1101);
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
        EXPECT_EQ(product.StoredOption(u"LastKelora"_s), 1101);
        EXPECT_EQ(program.Quit(), 0);
    }
    EXPECT_EQ(product.StoredOption(u"LastKelora"_s), 9971);
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
