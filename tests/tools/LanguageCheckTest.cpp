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

QString Without(const QString &line)
{
    return Header + QString(Texts).remove(line);
}

TEST(LanguageCheck, TellsWhatIsWrong)
{
    const struct
    {
        const char *rule;
        QString file;
        QString findings; // "line: text", the first alone if it ends with "..."
    } rows[]{{"Clean", Header + Texts + u"[$Constants]\nname=value\n"_s, {}},
             {"NamesOfNoInterestMayStand", Header + Texts + u"6=x\n"_s, {}},
             {"CarriageReturnsEndLinesToo", QString(Header + Texts).replace(u'\n', u"\r\n"_s), {}},
             {"NoLanguage", u"[frmSmall]\n"_s + Texts, u"1: there is no LANGID: the program passes the file over\n"_s},
             {"LanguageInASection", u"[frmSmall]\nLANGID=1036\n"_s + Texts,
              u"1: there is no LANGID: the program passes the file over\n"
              "2: \"LANGID\" is no number: the program skips the line\n"_s},
             {"LanguageZero", u"LANGID=0\n[frmSmall]\n"_s + Texts,
              u"1: \"0\" is no language id: the program passes the file over\n"_s},
             {"LanguageBeyondSixteenBits", u"LANGID=66570\n[frmSmall]\n"_s + Texts,
              u"1: \"66570\" is no language id: the program passes the file over\n"_s},
             {"LanguageOfTheWindows", u"LANGID=1066\n[frmSmall]\n"_s + Texts,
              u"1: 1066 is the language of the windows themselves: the program takes nothing from the file\n"_s},
             {"LanguageWithoutAName", u"LANGID=9999\n[frmSmall]\n"_s + Texts,
              u"1: 9999 is no known language: the program has no name for it but the number\n"_s},
             {"LinesThatAreSkipped", Header + Texts + u"words\n=x\n[open\n[]\n0=x\n-1=x\nx=y\n"_s,
              u"9: not of the form \"name=value\": the program skips the line\n"
              "10: not of the form \"name=value\": the program skips the line\n"
              "11: not of the form \"[name]\": the program skips the line\n"
              "12: not of the form \"[name]\": the program skips the line\n"
              "13: \"0\" is no number: the program skips the line\n"
              "14: \"-1\" is no number: the program skips the line\n"
              "15: \"x\" is no number: the program skips the line\n"_s},
             {"UnknownSection", Header + Texts + u"[frmLarge]\n1=x\n"_s, u"9: no window is called \"frmLarge\"\n"_s},
             {"UnknownNumber", Header + Texts + u"4=x\n"_s, u"9: frmSmall 4: no text has this number\n"_s},
             {"NumberTwice", Header + Texts + u"[$CONSTANTS]\n1=x\n[FRMSMALL]\n1=x\n"_s,
              u"12: frmSmall 1 stands in line 5 too: the program refuses the file\n"_s},
             {"MissingText", Without(u"2=&Aller\n"_s), u"4: frmSmall 2 btnGo.Caption is missing: &Đi\n"_s},
             {"MissingSection", u"LANGID=1036\n"_s,
              u"2: frmSmall 1 frmSmall.Caption is missing: Cửa sổ\n2: frmSmall 2 btnGo.Caption is missing: &Đi\n"
              "2: frmSmall 3 lbCount.Caption is missing: Có %d trên %s: 100%\n"
              "2: frmSmall 5 lbNote.Caption is missing: \\nGhi chú\\n\n"_s},
             {"EmptyText", Without(u"Fenêtre"_s), u"5: frmSmall 1 frmSmall.Caption is empty\n"_s},
             {"LostMnemonic", Without(u"&"_s), u"6: frmSmall 2 btnGo.Caption has lost its mnemonic \"&\"\n"_s},
             {"ShownAmpersandIsNone", Without(u"x"_s).replace(u"&A"_s, u"&&A"_s),
              u"6: frmSmall 2 btnGo.Caption has lost its mnemonic \"&\"\n"_s},
             {"NewMnemonic", Without(u"x"_s).replace(u"Fen"_s, u"&Fen"_s),
              u"5: frmSmall 1 frmSmall.Caption has a mnemonic \"&\" that its text has not; write \"&&\"\n"_s},
             {"LostPlaceholder", Without(u"%d de "_s),
              u"7: frmSmall 3 lbCount.Caption has placeholders other than \"%d %s\"\n"_s},
             {"LostLineBreak", Without(u"\\n"_s).replace(u"Note"_s, u"\\nNote"_s),
              u"8: frmSmall 5 lbNote.Caption begins or ends with other line breaks than its text\n"_s}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.rule);
        QString told;
        for (const LanguageFinding &finding : CheckLanguage(LinesOf(row.file.toUtf8()), {SmallWindow()}))
            told += u"%1: %2\n"_s.arg(finding.line).arg(finding.text);
        EXPECT_EQ(told.toStdString(), row.findings.toStdString());
    }
}

} // namespace
