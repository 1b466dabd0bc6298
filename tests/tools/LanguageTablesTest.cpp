#include "presentation/LangData.h"
#include "support/TestSupport.h"
#include "tools/ToolSupport.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray Window = R"(<ui version="4.0"><class>frmSmall</class>
 <widget class="QWidget" name="frmSmall">
  <property name="windowTitle"><string>Cửa sổ </string></property>
  <property name="styleSheet"><string>color: red</string></property>
  <layout class="QVBoxLayout" name="loSmall">
   <item><widget class="TcxButton" name="btnGo">
    <property name="text"><string>&amp;Đi</string></property>
    <property name="toolTip"><string>Đi ngay
hôm nay</string></property>
    <property name="KeyField" stdset="0"><string>ID</string></property>
    <property name="shortcut"><string>Ctrl+G</string></property>
   </widget></item>
   <item><spacer name="spSmall"><property name="orientation"><enum>Qt::Vertical</enum></property></spacer></item>
   <item><widget class="QComboBox" name="cbLevel">
    <item><property name="text"><string>Cao</string></property></item>
    <item><property name="text"><string>Thấp</string></property></item>
   </widget></item>
  </layout>
  <action name="acGo">
   <property name="text"><string>12 + 3</string></property>
   <property name="Category" stdset="0"><string notr="true">Small</string></property>
   <property name="Tags" stdset="0"><stringlist><string>a</string><string>b</string></stringlist></property>
  </action>
  <action name="acDraft"><property name="text"><string>acDraft</string></property></action>
  <addaction name="separator"/>
 </widget>
 <customwidgets><customwidget><class>TcxButton</class><extends>QToolButton</extends></customwidget></customwidgets>
 <buttongroups><buttongroup name="bgSmall"/></buttongroups>
</ui>
)";

const QString List = u"frmSmall\t1\tfrmSmall.Caption\tCửa sổ \n"
                     "frmSmall\t2\tbtnGo.Caption\t&Đi\n"
                     "frmSmall\t3\tbtnGo.Hint\tĐi ngay\\nhôm nay\n"
                     "frmSmall\t4\tcbLevel.Properties.Items\tCao\\nThấp\n"
                     "frmSmall\t5\tacGo.Category\tSmall\n"
                     "frmSmall\t6\tacGo.Tags\ta\\nb\n"
                     "frmSmall\t7\tacDraft.Caption\tacDraft\n"_s;

class LanguageTables : public testing::Test
{
protected:
    void SetUp() override { Describe(Window); }

    ToolRun Run(const QStringList &arguments) { return RunLangTool(arguments, m_scratch.Path(u""_s)); }
    void Describe(const QByteArray &ui) { WriteFile(m_scratch.Path(u"src/a/Small.ui"_s), ui); }
    void Describe(const QByteArray &before, const QByteArray &after)
    {
        ASSERT_TRUE(Window.contains(before)) << before.toStdString();
        Describe(QByteArray(Window).replace(before, after));
    }
    QByteArray Ledger() { return BytesOf(m_scratch.Path(u"data/languages/numbers.tsv"_s)); }
    void Number()
    {
        WriteFile(m_scratch.Path(u"data/languages/numbers.tsv"_s), "# numbers\n");
        const ToolRun run = Run({u"number"_s});
        ASSERT_EQ(run.exitCode, 0) << qPrintable(run.errors + run.output);
    }

    ScratchFolder m_scratch;
};

TEST_F(LanguageTables, NumberTakesEveryStoredTextInTheOrderOfTheDescription)
{
    Number();
    EXPECT_EQ(Run({u"list"_s}).output.toStdString(), List.toStdString());
    EXPECT_EQ(Ledger().count('\n'), 8);
    EXPECT_EQ(Run({u"verify"_s}).exitCode, 0);

    const auto table = LoadLangData(BytesOf(m_scratch.Path(u"src/a/Small.langdata"_s)));
    QStringList owned;
    for (const auto &entry : *table->FOwnedCompEntries)
        owned += entry->FName;
    owned.sort();
    EXPECT_EQ(owned.join(u' ').toStdString(), "acDraft acGo bgSmall btnGo cbLevel loSmall");
}

TEST_F(LanguageTables, ANumberStaysWithItsTextAndIsNeverGivenAgain)
{
    Number();
    const QByteArray before = Ledger();
    // The last text leaves, and a new one comes in front of all others.
    const QByteArray changed =
        QByteArray(Window)
            .replace("<string>acDraft</string>", "<string>77</string>")
            .replace("  <layout", "  <property name=\"toolTip\"><string>Mới</string></property>\n  <layout");
    Describe(changed);
    const ToolRun refused = Run({u"number"_s});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(refused.output.startsWith(u"frmSmall 7 acDraft.Caption is gone"_s)) << qPrintable(refused.output);
    EXPECT_EQ(Ledger(), before);

    EXPECT_EQ(Run({u"number"_s, u"--retire"_s}).exitCode, 0);
    EXPECT_EQ(Ledger(), before + "frmSmall\t7\t-\nfrmSmall\t8\tfrmSmall.Hint\n");
    EXPECT_EQ(Run({u"verify"_s}).exitCode, 0);

    Describe(Window); // a text that comes back is a new text
    EXPECT_EQ(Run({u"number"_s, u"--retire"_s}).output.section(u'\n', 0, 1).toStdString(),
              "new frmSmall 9 acDraft.Caption\nretired frmSmall 8 frmSmall.Hint");
}

TEST_F(LanguageTables, VerifyFindsEveryDisagreement)
{
    const auto ledgerWith = [this](const QByteArray &line, const QByteArray &instead) {
        const QByteArray ledger = Ledger();
        EXPECT_TRUE(ledger.contains(line));
        WriteFile(m_scratch.Path(u"data/languages/numbers.tsv"_s), QByteArray(ledger).replace(line, instead));
    };
    const QString table = m_scratch.Path(u"src/a/Small.langdata"_s);
    const std::tuple<const char *, std::function<void()>, QString> cases[]{
        {"text added", [&] { Describe("12 + 3", "Đi"); }, u"frmSmall acGo.Caption has no number"_s},
        {"text gone", [&] { Describe("&amp;Đi", ""); }, u"frmSmall 2 btnGo.Caption has vanished from "_s},
        {"component renamed", [&] { Describe("cbLevel", "cbGrade"); },
         u"frmSmall 4 cbLevel.Properties.Items has vanished"_s},
        {"window gone", [&] { Describe("name=\"frmSmall\"", "name=\"frmOther\""); },
         u"frmSmall has numbers and is no window"_s},
        {"number moved", [&] { ledgerWith("\t3\t", "\t33\t"); }, u"frmSmall 3 has vanished from the numbers"_s},
        {"number given twice", [&] { ledgerWith("\t3\t", "\t4\t"); }, u"frmSmall 4 was given out before"_s},
        {"line removed", [&] { ledgerWith("frmSmall\t3\tbtnGo.Hint\n", ""); }, u"frmSmall btnGo.Hint has no number"_s},
        {"numbers swapped",
         [&] {
             ledgerWith("\t5\tacGo.Category", "\t6\tacGo.Category");
             ledgerWith("\t6\tacGo.Tags", "\t5\tacGo.Tags");
         },
         u"Small.langdata is not the table of "_s},
        {"table damaged", [&] { WriteFile(table, BytesOf(table).chopped(1)); },
         u"Small.langdata is not the table of "_s},
        {"table missing", [&] { QFile::remove(table); }, u"Small.langdata is missing"_s},
    };
    for (const auto &[what, spoil, finding] : cases) {
        Describe(Window);
        Number();
        spoil();
        const ToolRun run = Run({u"verify"_s});
        EXPECT_EQ(run.exitCode, 1) << what;
        EXPECT_TRUE(run.output.contains(finding)) << what << '\n' << qPrintable(run.output);
    }
}

TEST_F(LanguageTables, ATextThatCouldNotBeTranslatedIsRefused)
{
    const QByteArray list =
        R"(<widget class="QListWidget" name="lw"><item><property name="text"><string>Một</string></property></item></widget>)";
    const QByteArray tab =
        R"(<widget class="QWidget" name="tab"><attribute name="title"><string>Thẻ</string></attribute></widget>)";
    const std::tuple<QByteArray, QByteArray, QString> cases[]{
        {"<action name=\"acGo\">", list + "<action name=\"acGo\">", u"the text of an item of QListWidget can't be"_s},
        {"<action name=\"acGo\">", tab + "<action name=\"acGo\">", u"the attribute \"title\" can't be translated"_s},
        {"acDraft", "acGo", u"two components are called \"acGo\""_s},
        {"QVBoxLayout", "QTallLayout", u"what the class QTallLayout extends is not known"_s},
        {"</buttongroups>", "</buttongroup>", u"Small.ui:"_s},
        {"<ui version", "<gui version", u"not a window's description"_s},
    };
    for (const auto &[before, after, error] : cases) {
        Describe(before, after);
        const ToolRun run = Run({u"number"_s});
        EXPECT_EQ(run.exitCode, 2) << after.toStdString();
        EXPECT_TRUE(run.errors.contains(error)) << qPrintable(run.errors);
    }
}

TEST_F(LanguageTables, AFreshFileNeedsNothingButTranslating)
{
    Number();
    EXPECT_EQ(Run({u"fresh"_s, u"1036"_s}).output.toStdString(),
              "; Lumivara: French (France)\n"
              "; Replace what stands behind each \"=\". \"\\n\" is a line break, \"\\\\\" a backslash.\n"
              "LANGID=1036\n\n"
              "[frmSmall]\n"
              "; frmSmall.Caption\n00000001=Cửa sổ\n"
              "; btnGo.Caption\n00000002=&Đi\n"
              "; btnGo.Hint\n00000003=Đi ngay\\nhôm nay\n"
              "; cbLevel.Properties.Items\n00000004=Cao\\nThấp\n"
              "; acGo.Tags\n00000006=a\\nb\n");
    EXPECT_EQ(Run({u"fresh"_s, u"1036"_s, u"French.lng"_s}).exitCode, 0);
    EXPECT_EQ(Run({u"check"_s, u"French.lng"_s}).exitCode, 0);
    EXPECT_EQ(Run({u"list"_s, u"--untranslated"_s, u"French.lng"_s}).output.toStdString(), "");
    EXPECT_EQ(Run({u"fresh"_s, u"1036"_s, u"French.lng"_s}).exitCode, 2) << "a translator's work was overwritten";

    WriteFile(m_scratch.Path(u"French.lng"_s), "LANGID=1036\n[FRMSMALL]\n1=x\n4=x\n");
    EXPECT_EQ(Run({u"list"_s, u"--untranslated"_s, u"French.lng"_s}).output.toStdString(),
              "frmSmall\t2\tbtnGo.Caption\t&Đi\n"
              "frmSmall\t3\tbtnGo.Hint\tĐi ngay\\nhôm nay\n"
              "frmSmall\t6\tacGo.Tags\ta\\nb\n");
}

TEST_F(LanguageTables, WrongUsageEndsWithTwo)
{
    WriteFile(m_scratch.Path(u"data/languages/numbers.tsv"_s), "frmSmall seven\n");
    for (const char *words : {"", "translate", "check", "check missing.lng", "fresh", "fresh English", "list x",
                              "verify --root nowhere", "number src/None.ui", "verify"}) {
        const ToolRun run = Run(QString::fromLatin1(words).split(u' ', Qt::SkipEmptyParts));
        EXPECT_EQ(run.exitCode, 2) << words;
        EXPECT_TRUE(run.errors.startsWith(u"lumivara-lang: "_s)) << qPrintable(run.errors);
    }
    for (const QString &verb : {u"number"_s, u"list"_s, u"check"_s, u"fresh"_s, u"verify"_s})
        EXPECT_TRUE(Run({verb, u"--help"_s}).output.startsWith(u"Usage: lumivara-lang "_s + verb));
}

TEST(ProjectLanguages, WindowsTablesAndNumbersAgree)
{
    const ToolRun run = RunLangTool({u"verify"_s, u"--root"_s, WindowSources()});
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.output + run.errors);
    // Language files made elsewhere rely on these.
    const QString list = RunLangTool({u"list"_s, u"--root"_s, WindowSources()}).output;
    for (const QString &row : {u"frmMain\t1\tfrmMain.Caption\tLumivara 1.1\n"_s,
                               u"frmMain\t7\tbtnFindDialog.Hint\tTìm từ, ngữ, đoạn văn trong bài kinh\n"_s,
                               u"frmMain\t15\tbtnFocusHighlight.Caption\tĐánh dấu...\n"_s,
                               u"frmMain\t16\tbtnVietPali.Hint\tXem song ngữ Pali-Việt\n"_s})
        EXPECT_TRUE(list.contains(row)) << qPrintable(row);
}

TEST(ProjectLanguages, EnglishIsComplete)
{
    const QString file = WindowSources() + u"/data/languages/English.lng"_s;
    const ToolRun run = RunLangTool({u"check"_s, u"--root"_s, WindowSources(), file});
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.output + run.errors);
    EXPECT_EQ(BytesOf(ProductFolder() + u"English.lng"_s), BytesOf(file));
}

} // namespace
