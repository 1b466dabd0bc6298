#include "program/ProgramRun.h"

#include <QFile>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

void WriteLanguage(const ProductCopy &product, const QString &name, const QByteArray &text)
{
    QFile::remove(product.File(name));
    QFile file(product.File(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

void ExpectStarted(ProgramRun &program)
{
    EXPECT_EQ(program.Send(u"wait frmMain"_s), QString());
    EXPECT_EQ(program.Send(u"wait-page ebContent"_s), QString());
}

/// By the mouse and the keys, as a reader does.
void ChooseLastLanguage(ProgramRun &program)
{
    for (const QString &step : {u"popup bsiLanguage"_s, u"wait bcbLanguage"_s, u"click bcbLanguage"_s, u"pause 300"_s,
                                u"press End"_s, u"press Return"_s, u"pause 300"_s, u"press Escape"_s, u"pause 300"_s})
        EXPECT_EQ(program.Send(step), QString()) << step.toStdString();
}

TEST(LanguageFiles, AFurtherOneBesideTheProgramIsOfferedAndLastsUntilTheEnd)
{
    ProductCopy product;
    product.WriteOptions();
    WriteLanguage(product, u"French.LNG"_s, "LANGID=1036\n[frmMain]\n1=Lecteur\n7=Chercher un mot\\nCtrl+F\n");
    QString designedHint;
    {
        ProgramRun program(product);
        program.Start();
        ExpectStarted(program);
        designedHint = program.Send(u"get btnFindDialog toolTip"_s);
        EXPECT_EQ(program.Send(u"get bcbLanguage count"_s), u"3"_s);
        ChooseLastLanguage(program);
        EXPECT_EQ(program.Send(u"get bcbLanguage currentText"_s), u"French"_s);
        EXPECT_EQ(program.Send(u"get frmMain windowTitle"_s), u"Lecteur"_s);
        EXPECT_EQ(program.Send(u"get btnFindDialog toolTip"_s), u"Chercher un mot\\nCtrl+F"_s);
        EXPECT_EQ(product.StoredOption(u"InterfaceLang"_s), 2);
        EXPECT_EQ(program.Send(u"close frmMain"_s), QString());
        EXPECT_EQ(program.Send(u"wait msgBox"_s), QString());
        EXPECT_EQ(program.Send(u"get msgBox text"_s), QString()) << "the question has no words in it";
        EXPECT_EQ(program.Send(u"answer yes"_s), QString());
        EXPECT_EQ(program.ExitCode(), 0);
    }
    ProgramRun next(product);
    next.Start();
    ExpectStarted(next);
    EXPECT_EQ(next.Send(u"get bcbLanguage ItemIndex"_s), u"-1"_s) << "a start knows two languages alone";
    EXPECT_EQ(next.Send(u"get btnFindDialog toolTip"_s), designedHint);
    EXPECT_EQ(next.Quit(), 0);
    EXPECT_EQ(product.StoredOption(u"InterfaceLang"_s), 0);
}

TEST(LanguageFiles, ADamagedOneIsToldAtTheStartAndTheReaderIsUsable)
{
    ProductCopy product;
    product.WriteOptions({{u"InterfaceLang"_s, 1}});
    WriteLanguage(product, u"English.lng"_s, "LANGID=1033\n[frmMain]\n7=a\n7=b\n");
    ProgramRun program(product);
    program.Start();
    for (const char *time : {"chosen", "shown"}) {
        EXPECT_EQ(program.Send(u"wait msgBox"_s), QString()) << time;
        EXPECT_THAT(program.Send(u"get msgBox text"_s).toStdString(), testing::HasSubstr("ID (7)")) << time;
        EXPECT_EQ(program.Send(u"answer ok"_s), QString()) << time;
    }
    ExpectStarted(program);
    EXPECT_GT(program.Send(u"get qryTreeSutas RecordCount"_s).toInt(), 200);
    EXPECT_EQ(program.Send(u"select-row 9971"_s), QString());
    EXPECT_EQ(program.Send(u"wait-page ebContent"_s), QString());
    EXPECT_EQ(program.Quit(), 0);
}

} // namespace
