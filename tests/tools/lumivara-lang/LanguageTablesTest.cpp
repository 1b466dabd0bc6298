#include "presentation/languages/LangData.h"
#include "support/FullDisk.h"
#include "tools/ToolSupport.h"

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

const QByteArray Window = R"(<ui version="4.0"><class>frmSmall</class><widget class="QWidget" name="frmSmall">
 <property name="windowTitle"><string>Cửa sổ </string></property>
 <property name="styleSheet"><string>color: red</string></property>
 <layout class="QVBoxLayout" name="loSmall">
  <item><widget class="TcxButton" name="btnGo"><property name="text"><string>&amp;Đi</string></property>
   <property name="toolTip"><string>Đi ngay
hôm nay</string></property>
   <property name="KeyField" stdset="0"><string>ID</string></property>
   <property name="shortcut"><string>Ctrl+G</string></property></widget></item>
  <item><spacer name="spSmall"/></item>
  <item><widget class="QComboBox" name="cbLevel"><item><property name="text"><string>Cao</string></property></item>
   <item><property name="text"><string>Thấp</string></property></item></widget></item></layout>
 <action name="acGo"><property name="text"><string>12 + 3</string></property>
  <property name="Category" stdset="0"><string notr="true">Small</string></property>
  <property name="Tags" stdset="0"><stringlist><string>a</string><string>b</string></stringlist></property></action>
 <action name="acDraft"><property name="text"><string>acDraft</string></property></action>
 <addaction name="separator"/></widget>
 <customwidgets><customwidget><class>TcxButton</class><extends>QToolButton</extends></customwidget></customwidgets>
 <buttongroups><buttongroup name="bgSmall"/></buttongroups></ui>)";

const std::string List = "frmSmall\t1\tfrmSmall.Caption\tCửa sổ \n"
                         "frmSmall\t2\tbtnGo.Caption\t&Đi\n"
                         "frmSmall\t3\tbtnGo.Hint\tĐi ngay\\nhôm nay\n"
                         "frmSmall\t4\tcbLevel.Properties.Items\tCao\\nThấp\n"
                         "frmSmall\t5\tacGo.Category\tSmall\n"
                         "frmSmall\t6\tacGo.Tags\ta\\nb\n"
                         "frmSmall\t7\tacDraft.Caption\tacDraft\n";

const QString Ledger = u"data/languages/numbers.tsv"_s, Table = u"src/a/Small.langdata"_s;

class LanguageTables : public ToolTest
{
protected:
    LanguageTables() : ToolTest(u"lumivara-lang"_s) {}
    void SetUp() override { Number(); }
    void Describe(const QByteArray &ui) const { Put(u"src/a/Small.ui"_s, ui); }
    void Describe(const QByteArray &before, const QByteArray &after) const
    {
        EXPECT_TRUE(Window.contains(before)) << before.toStdString();
        Describe(QByteArray(Window).replace(before, after));
    }
    /// Tables and numbers as at the first time.
    void Number() const
    {
        Describe(Window);
        Put(Ledger, "# numbers\n");
        Run(0, "number");
    }
};

TEST_F(LanguageTables, NumberTakesEveryStoredTextInTheOrderOfTheDescription)
{
    EXPECT_EQ(Run(0, "list"), List);
    Run(0, "verify");
    const auto table = LoadLangData(Bytes(Table));
    QStringList owned;
    for (const auto &entry : *table->FOwnedCompEntries)
        owned += entry->FName;
    owned.sort();
    EXPECT_EQ(owned.join(u' '), u"acDraft acGo bgSmall btnGo cbLevel loSmall"_s);
}

TEST_F(LanguageTables, ANumberStaysWithItsTextAndIsNeverGivenAgain)
{
    const QByteArray before = Bytes(Ledger);
    Describe("<string>acDraft</string>", "<string>77</string>");
    EXPECT_THAT(Run(1, "number"), StartsWith("frmSmall 7 acDraft.Caption is gone"));
    EXPECT_EQ(Bytes(Ledger), before);
    Run(0, "number --retire");
    // A text that comes back is a new text; another one comes in front of all others.
    Describe(" <layout", "<property name=\"toolTip\"><string>Mới</string></property> <layout");
    EXPECT_THAT(Run(0, "number"), StartsWith("new frmSmall 8 frmSmall.Hint\nnew frmSmall 9 acDraft.Caption\n"));
    EXPECT_EQ(Bytes(Ledger), before + "frmSmall\t7\t-\nfrmSmall\t8\tfrmSmall.Hint\nfrmSmall\t9\tacDraft.Caption\n");
    Run(0, "verify");
}

TEST_F(LanguageTables, VerifyFindsEveryDisagreement)
{
    const auto renumber = [&](const QByteArray &line, const QByteArray &instead) {
        EXPECT_TRUE(Bytes(Ledger).contains(line));
        Put(Ledger, Bytes(Ledger).replace(line, instead));
    };
    const std::pair<std::function<void()>, const char *> cases[]{
        {[&] { Describe("12 + 3", "Đi"); }, "frmSmall acGo.Caption has no number"},
        {[&] { Describe("cbLevel", "cbGrade"); }, "frmSmall 4 cbLevel.Properties.Items has vanished from "},
        {[&] { Describe("name=\"frmSmall\"", "name=\"frmOther\""); }, "frmSmall has numbers and is no window"},
        {[&] { renumber("\t3\t", "\t4\t"); }, "frmSmall 4 was given out before"},
        {[&] { renumber("frmSmall\t3\tbtnGo.Hint\n", ""); }, "frmSmall btnGo.Hint has no number"},
        {[&] { renumber("5\tacGo.Category\nfrmSmall\t6\tacGo.Tags", "5\tacGo.Tags\nfrmSmall\t6\tacGo.Category"); },
         "Small.langdata is not the table of "},
        {[&] { Put(Table, Bytes(Table).chopped(1)); }, "Small.langdata is not the table of "},
        {[&] { QFile::remove(Path(Table)); }, "Small.langdata is missing"},
    };
    for (const auto &[spoil, finding] : cases) {
        Number();
        spoil();
        EXPECT_THAT(Run(1, "verify"), HasSubstr(finding));
    }
}

TEST_F(LanguageTables, ATextThatCouldNotBeTranslatedIsRefused)
{
    const std::tuple<QByteArray, QByteArray, const char *> cases[]{
        {"QComboBox", "QListWidget", "the text of an item of QListWidget can't be"},
        {"<spacer name=\"spSmall\"/>",
         "<widget class=\"QFrame\" name=\"tab\"><attribute name=\"title\"><string>x</string></attribute></widget>",
         "the attribute \"title\" can't be translated"},
        {"acDraft", "acGo", "two components are called \"acGo\""},
        {"QVBoxLayout", "QTallLayout", "what the class QTallLayout extends is not known"},
        {"</buttongroups>", "</buttongroup>", "Small.ui:"},
    };
    for (const auto &[before, after, error] : cases) {
        Describe(before, after);
        EXPECT_THAT(Run(2, "number"), HasSubstr(error));
    }
}

TEST_F(LanguageTables, AFreshFileNeedsNothingButTranslating)
{
    EXPECT_EQ(Run(0, "fresh 1036"),
              "; Lumivara: French (France)\n"
              "; Replace what stands behind each \"=\". \"\\n\" is a line break, \"\\\\\" a backslash.\n"
              "LANGID=1036\n\n[frmSmall]\n; frmSmall.Caption\n00000001=Cửa sổ\n; btnGo.Caption\n00000002=&Đi\n"
              "; btnGo.Hint\n00000003=Đi ngay\\nhôm nay\n; cbLevel.Properties.Items\n00000004=Cao\\nThấp\n"
              "; acGo.Tags\n00000006=a\\nb\n");
    {
        const FullDisk full(100);
        Run(2, "fresh 1036 French.lng");
    }
    Run(0, "fresh 1036 French.lng"); // no half of one is in the way
    Run(0, "check French.lng");
    EXPECT_EQ(Run(0, "list --untranslated French.lng"), "");
    Put(u"French.lng"_s, "LANGID=1036\n[FRMSMALL]\n1=x\n4=x\n");
    Run(2, "fresh 1036 French.lng"); // never over a translator's work
    EXPECT_EQ(Run(0, "list --untranslated French.lng"), "frmSmall\t2\tbtnGo.Caption\t&Đi\n"
                                                        "frmSmall\t3\tbtnGo.Hint\tĐi ngay\\nhôm nay\n"
                                                        "frmSmall\t6\tacGo.Tags\ta\\nb\n");
}

TEST_F(LanguageTables, WrongUsageEndsWithTwo)
{
    Put(Ledger, "frmSmall seven\n");
    EXPECT_EQ(::mkfifo(qPrintable(Path(u"pipe"_s)), 0600), 0);
    for (const std::string words : {"", "translate", "check", "check missing.lng", "check pipe", "fresh",
                                    "fresh English", "list x", "verify --root nowhere", "number src/None.ui", "verify"})
        EXPECT_THAT(Run(2, words), StartsWith("lumivara-lang: "));
    EXPECT_THAT(Run(0, "list --help"), StartsWith("Usage: lumivara-lang list"));
}

TEST_F(LanguageTables, OfTheProjectAgreeAndEnglishIsComplete)
{
    const QString windows = BesideTests(u"windows"_s), english = windows + u"/data/languages/English.lng"_s;
    Run(0, "verify --root", {windows});
    Run(0, "check --root", {windows, english});
    EXPECT_EQ(BytesOf(ProductFolder() + u"English.lng"_s), BytesOf(english));
    // Language files made elsewhere rely on these.
    ExpectParts(Run(0, "list --root", {windows}),
                {"frmMain\t1\tfrmMain.Caption\tLumivara 1.1\n",
                 "frmMain\t7\tbtnFindDialog.Hint\tTìm từ, ngữ, đoạn văn trong bài kinh\n",
                 "frmMain\t15\tbtnFocusHighlight.Caption\tĐánh dấu...\n",
                 "frmMain\t16\tbtnVietPali.Hint\tXem song ngữ Pali-Việt\n"});
}

} // namespace
