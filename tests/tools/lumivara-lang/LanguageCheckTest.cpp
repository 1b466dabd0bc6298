#include "lumivara-lang/LanguageCheck.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

WindowTable SmallWindow()
{
    WindowTable window;
    window.section = u"frmSmall"_s;
    window.texts = {
        {1, u"frmSmall.Caption"_s, u"Cửa sổ"_s, true},
        {2, u"btnGo.Caption"_s, u"&Đi"_s, true},
        {3, u"lbCount.Caption"_s, u"Có %d trên %s: 100%"_s, true},
        {5, u"lbNote.Caption"_s, u"\r\nGhi chú\r\n"_s, true},
        {6, u"acGo.Category"_s, u"Small"_s, false},
    };
    return window;
}

const QString Header = u"; a comment = not read\n LANGID = 1036 \nAUTHOR=x\n[ FrmSmall ]\n"_s;
const QString Texts = u"00000001=Fenêtre\n2=&Aller\n3=%d de %s : 100 %\n5=\\nNote\\n\n"_s;

TEST(LanguageCheck, TellsWhatIsWrong)
{
    const std::pair<QString, const char *> rows[]{
        // "line: text"
        {Header + Texts + u"6=x\n[$Constants]\nname=value\n"_s, ""},
        {QString(Header + Texts).replace(u'\n', u"\r\n"_s), ""},
        {u"[frmSmall]\nLANGID=1036\n"_s + Texts, "1: there is no LANGID: the program passes the file over\n"
                                                 "2: \"LANGID\" is no number: the program skips the line\n"},
        {u"LANGID=66570\n[frmSmall]\n"_s + Texts, "1: \"66570\" is no language id: the program passes the file over\n"},
        {u"LANGID=1066\n[frmSmall]\n"_s + Texts,
         "1: 1066 is the language of the windows themselves: the program takes nothing from the file\n"},
        {u"LANGID=9999\n[frmSmall]\n"_s + Texts,
         "1: 9999 is no known language: the program has no name for it but the number\n"},
        {Header + Texts + u"=x\n[open\n0=x\nx=y\n4=x\n[$CONSTANTS]\n1=x\n[FRMSMALL]\n1=x\n[frmLarge]\n"_s,
         "9: not of the form \"name=value\": the program skips the line\n"
         "10: not of the form \"[name]\": the program skips the line\n"
         "11: \"0\" is no number: the program skips the line\n"
         "12: \"x\" is no number: the program skips the line\n"
         "13: frmSmall 4: no text has this number\n"
         "17: frmSmall 1 stands in line 5 too: the program refuses the file\n"
         "18: no window is called \"frmLarge\"\n"},
        {u"LANGID=1036\n"_s,
         "2: frmSmall 1 frmSmall.Caption is missing: Cửa sổ\n2: frmSmall 2 btnGo.Caption is missing: &Đi\n"
         "2: frmSmall 3 lbCount.Caption is missing: Có %d trên %s: 100%\n"
         "2: frmSmall 5 lbNote.Caption is missing: \\nGhi chú\\n\n"},
        {Header + u"1=\n2=&&Aller\n3=%s\n"_s, "4: frmSmall 5 lbNote.Caption is missing: \\nGhi chú\\n\n"
                                              "5: frmSmall 1 frmSmall.Caption is empty\n"
                                              "6: frmSmall 2 btnGo.Caption has lost its mnemonic \"&\"\n"
                                              "7: frmSmall 3 lbCount.Caption has placeholders other than \"%d %s\"\n"},
        {Header + u"1=&Fenêtre\n2=Aller\n3=%d %s\n5=\\n\\nNote\\n\n"_s,
         "5: frmSmall 1 frmSmall.Caption has a mnemonic \"&\" that its text has not; write \"&&\"\n"
         "6: frmSmall 2 btnGo.Caption has lost its mnemonic \"&\"\n"
         "8: frmSmall 5 lbNote.Caption begins or ends with other line breaks than its text\n"}};
    for (const auto &[file, findings] : rows) {
        QString told;
        for (const LanguageFinding &finding : CheckLanguage(LinesOf(file.toUtf8()), {SmallWindow()}))
            told += u"%1: %2\n"_s.arg(finding.line).arg(finding.text);
        EXPECT_EQ(told.toStdString(), findings);
    }
}

} // namespace
