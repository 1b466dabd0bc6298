#include "program/ProgramRun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>

#include <csignal>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// The row of the tree that the program opens with the settings as they stand.
QString OpeningRow(const ProductCopy &product)
{
    ProgramRun program(product);
    program.Open();
    return program.Send(u"get qryTreeSutas RecNo"_s);
}

TEST(Leaving, ByTheWindowKeepsTheTextForTheNextStartAndByTheTrayDoesNot)
{
    ProductCopy product;
    product.WriteOptions({{u"LastKelora"_s, 1101}});
    QString row;
    {
        ProgramRun program(product);
        program.Open();
        program.Do({u"select-row 9971"_s});
        row = program.Send(u"get qryTreeSutas RecNo"_s);
        program.Do({u"trigger acExit"_s, u"wait msgBox"_s, u"answer yes"_s});
        EXPECT_EQ(program.ExitCode(), 0);
        EXPECT_EQ(product.StoredOption(u"LastKelora"_s), 1101);
    }
    EXPECT_NE(OpeningRow(product), row);
    {
        ProgramRun program(product);
        program.Open();
        program.Do({u"select-row 9971"_s, u"close frmMain"_s, u"wait msgBox"_s, u"answer no"_s, u"wait-gone msgBox"_s});
        EXPECT_EQ(product.StoredOption(u"LastKelora"_s), 1101);
        EXPECT_EQ(program.Quit(), 0);
    }
    EXPECT_EQ(product.StoredOption(u"LastKelora"_s), 9971);
    EXPECT_EQ(OpeningRow(product), row);
}

TEST(Leaving, WithAnOpenDialogEndsCleanly)
{
    for (const auto &[action, window] : {std::pair(u"acFindDialog"_s, u"dlgFind"_s),
                                         {u"acPrintPreview"_s, u"frmPrintPreview"_s},
                                         {u"acPrint"_s, u"dlgPrint"_s},
                                         {u"acSave"_s, u"dlgSave"_s}}) {
        ProductCopy product;
        ProgramRun program(product);
        program.Open();
        program.Do({u"trigger "_s + action, u"wait "_s + window});
        EXPECT_EQ(program.Quit(), 0) << program.ErrorOutput().constData();
    }
}

TEST(Leaving, ASignalEndsTheProgram)
{
    ProductCopy product;
    for (const int signal : {SIGTERM, SIGINT}) {
        ProgramRun program(product);
        program.Open();
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
    program.Do({u"wait msgBox"_s});
    const QFileInfoList files = QDir(product.File(u"lock"_s)).entryInfoList(QDir::Files | QDir::System);
    EXPECT_FALSE(files.isEmpty());
    for (const QFileInfo &file : files) {
        struct stat status = {};
        EXPECT_EQ(::stat(QFile::encodeName(file.filePath()).constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0666U) << file.fileName().toStdString();
    }
}

} // namespace
