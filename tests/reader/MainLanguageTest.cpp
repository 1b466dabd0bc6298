#include "reader/ReaderWindow.h"

#include "presentation/languages/DKLang.h"
#include "toolkit/browser/FindBar.h"
#include "toolkit/controls/BarCombo.h"

#include <QAccessible>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace {

/// The numbers are part of the product: every language file ever written counts on them.
const QByteArray English = "LANGID=1033\n[FRMMAIN]\n1=Reader\n7=Find a word\n15=Mark\\n it\n16=Side by side\n"
                           "[frmSearchSutas]\n1=Search for passages\n[dlgFind]\n7=Not here\n[$CONSTANTS]\nA=b\n";
const QByteArray German = "LANGID=1031\n[frmMain]\n7=Wort suchen\n";

const QByteArray Broken = "LANGID=1033\n[frmMain]\n7=a\n7=b\n";

class MainLanguage : public ReaderWindow
{
protected:
    MainLanguage()
    {
        AddLanguage(u"English.LNG"_s, English);
        AddLanguage(u"German.lng"_s, German);
        AddLanguage(u"none.lng"_s, "[frmMain]\n1=x\n");
    }
    QString Names()
    {
        return u"%1|%2|%3|%4"_s.arg(window->windowTitle(), Hint("btnFindDialog"), TreeName(),
                                    FindForm(u"frmSearchSutas"_s)->windowTitle());
    }
    TBarCombo &Language() { return Find<TBarCombo>("bcbLanguage"); }
    QString Hint(const char *button) { return Find<QToolButton>(button).toolTip(); }
    QString TreeName() { return Tree().currentIndex().data().toString(); }
};

TEST_F(MainLanguage, FollowsTheChoiceInEveryOpenWindow)
{
    StartOn();
    ASSERT_EQ(Language().count(), 3);
    EXPECT_EQ(Language().itemText(0) + Language().itemText(1) + Language().itemText(2), u"VietnameseEnglishGerman"_s);
    Trigger("acSearchSutas");
    Trigger("acFindDialog");
    Find<FindBar>("dlgFind").ShowResult(0, 0);
    for (int round = 0; round < 2; ++round) {
        Language().SetItemIndex(1);
        EXPECT_EQ(Names(), u"Reader|Find a word|Paṭhama|Search for passages"_s);
        EXPECT_EQ(Hint("btnVietPali"), u"Side by side"_s);
        EXPECT_EQ(Find<QToolButton>("btnFocusHighlight").text().replace(u"\r\n"_s, u"\n"_s), u"Mark\n it"_s);
        EXPECT_EQ(Find<QMenu>("bsiSystem").title(), u"Hệ thống"_s) << "no word for it in this file";
        EXPECT_EQ(Find<QLabel>("lbNotFound").text(), u"Not here"_s) << "a message on show";
        EXPECT_EQ(Stored(u"InterfaceLang"_s), QVariant(1));
        Language().SetItemIndex(0);
        EXPECT_EQ(Names(), u"Lumivara 1.1|Tìm từ, ngữ, đoạn văn trong bài kinh|Giới thứ nhất|"
                           "Tìm kiếm bài kinh có từ ngữ..."_s);
    }
}

TEST_F(MainLanguage, AFurtherLanguageHasCaptionsAndNoMessagesAndLastsUntilTheEnd)
{
    StartOn();
    Language().SetItemIndex(1);
    Language().SetItemIndex(2);
    EXPECT_EQ(Hint("btnFindDialog"), u"Wort suchen"_s);
    EXPECT_EQ(window->windowTitle(), u"Lumivara 1.1"_s) << "what the file lacks is as it was designed";
    EXPECT_EQ(TreeName(), u"Paṭhama"_s) << "the tree keeps the names that it showed";
    EXPECT_FALSE(window->close());
    CheckBoxes({{QString(), QString()}});
    End();
    LangManager().ForgetLanguages();
    Start();
    EXPECT_EQ(Language().ItemIndex(), -1) << "a start knows two languages alone";
    EXPECT_EQ(Stored(u"InterfaceLang"_s), QVariant(0));
}

TEST_F(MainLanguage, ALanguageThatCannotBeReadIsToldOnceAndChangesNothing)
{
    const Box told{u"Lumivara 1.0"_s, u"Loading translations failed.\r\n"
                                      "Line 3: Duplicate property value translation ID (7)"_s};
    AddLanguage(u"English.lng"_s, Broken); // after the other: its text counts
    StartOn(1101, 1, 1);
    CheckBoxes({told});
    EXPECT_EQ(Hint("btnFindDialog"), u"Tìm từ, ngữ, đoạn văn trong bài kinh"_s);
    EXPECT_EQ(TreeName(), u"Giới thứ nhất"_s);
    EXPECT_EQ(PassageNames().size(), 4) << "the canon opens all the same";
    EXPECT_EQ(Language().ItemIndex() + InterfaceLang, 0) << "the list stands on the language in force";
    Trigger("acFindDialog");
    CheckBoxes({});

    Language().setCurrentIndex(2); // as the user does
    Language().setCurrentIndex(1);
    CheckBoxes({told});
    EXPECT_EQ(Language().ItemIndex(), 2);
    EXPECT_EQ(InterfaceLang, 2);
    EXPECT_EQ(Hint("btnFindDialog"), u"Wort suchen"_s);
}

TEST_F(MainLanguage, ALanguageThatBreaksWhileItIsInForceIsToldByOneWindow)
{
    AddLanguage(u"English.lng"_s, English);
    StartOn(1101, 1, 1);
    AddLanguage(u"English.lng"_s, Broken);
    for (int round = 0; round < 2; ++round) {
        Trigger("acSearchSutas");
        EXPECT_EQ(boxes.size(), 1);
        FindForm(u"frmSearchSutas"_s)->close();
    }
    Trigger("acFindDialog");
    EXPECT_THAT(TakeBox(), testing::HasSubstr("Line 3"));
}

TEST_F(MainLanguage, TheFilterSaysWhatItSeeksInTheLanguageOfTheInterface)
{
    AddLanguage(u"English.lng"_s, "LANGID=1033\n[frmMain]\n110=A name\n");
    StartOn();
    auto &box = Find<QLineEdit>("edFilterSutta");
    const auto said = [&] {
        return QAccessible::queryAccessibleInterface(&box)->text(QAccessible::Description) + u'|' + box.text();
    };
    EXPECT_EQ(said(), u"Tên bài, đúng dấu|"_s);
    Language().SetItemIndex(1);
    EXPECT_EQ(said(), u"A name|"_s);
    QTest::keyClick(&box, Qt::Key_Home);
    EXPECT_EQ(PassageNames().size(), 4) << "it is no text";
    Language().SetItemIndex(0);
    EXPECT_EQ(said(), u"Tên bài, đúng dấu|"_s);
}

} // namespace
