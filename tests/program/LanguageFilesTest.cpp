#include "program/ProgramRun.h"

#include <QFile>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

TEST(LanguageFiles, AFurtherOneBesideTheProgramIsOfferedAndLastsUntilTheEnd)
{
    ProductCopy product;
    product.WriteOptions();
    QFile file(product.File(u"French.LNG"_s));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("LANGID=1036\n[frmMain]\n1=Lecteur\n7=Chercher un mot\\nCtrl+F\n");
    file.close();
    QString designedHint;
    {
        ProgramRun program(product);
        program.Open();
        designedHint = program.Send(u"get btnFindDialog toolTip"_s);
        EXPECT_EQ(program.Send(u"get bcbLanguage count"_s), u"3"_s);
        // By the mouse and the keys, as a reader does.
        program.Do({u"popup bsiLanguage"_s, u"wait bcbLanguage"_s, u"click bcbLanguage"_s, u"pause 300"_s,
                    u"press End"_s, u"press Return"_s, u"pause 300"_s, u"press Escape"_s, u"pause 300"_s});
        EXPECT_EQ(program.Send(u"get bcbLanguage currentText"_s), u"French"_s);
        EXPECT_EQ(program.Send(u"get frmMain windowTitle"_s), u"Lecteur"_s);
        EXPECT_EQ(program.Send(u"get btnFindDialog toolTip"_s), u"Chercher un mot\\nCtrl+F"_s);
        EXPECT_EQ(product.StoredOption(u"InterfaceLang"_s), 2);
        program.Do({u"close frmMain"_s, u"wait msgBox"_s});
        EXPECT_EQ(program.Send(u"get msgBox text"_s), QString()) << "the question has no words in it";
        program.Do({u"answer yes"_s});
        EXPECT_EQ(program.ExitCode(), 0);
    }
    ProgramRun next(product);
    next.Open();
    EXPECT_EQ(next.Send(u"get bcbLanguage ItemIndex"_s), u"-1"_s) << "a start knows two languages alone";
    EXPECT_EQ(next.Send(u"get btnFindDialog toolTip"_s), designedHint);
    EXPECT_EQ(next.Quit(), 0);
    EXPECT_EQ(product.StoredOption(u"InterfaceLang"_s), 0);
}

} // namespace
