#include "dictionary/DictionaryWindow.h"
#include "support/WaitFor.h"

#include "presentation/GlobalUnit.h"
#include "toolkit/BrowserControl.h"
#include "toolkit/Forms.h"

#include <QGuiApplication>
#include <QLineEdit>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace {

class LookUp : public DictionaryWindow
{
protected:
    /// A right press on the end of the passage's first letters, as a hand does it.
    void Press(Qt::KeyboardModifiers modifiers, Qt::MouseButton button = Qt::RightButton, QPoint place = {14, 26})
    {
        QTest::mouseClick(Browser().focusProxy(), button, modifiers, place);
        Pause(150);
    }
    void LookUpAt(QPoint place = {14, 26}) { Press(Qt::ControlModifier, Qt::RightButton, place); }
    bool IsOpen() { return FindForm(u"frmDictionary"_s); }
    void Show(const QByteArray &page)
    {
        Browser().LoadFromString(page);
        ASSERT_TRUE(WaitPage());
    }
    bool Waits() { return QGuiApplication::overrideCursor(); }
};

} // namespace

TEST_F(LookUp, TakesTheWordUnderTheMouseByCtrlAndTheRightButtonAlone)
{
    StartReader();
    Press({});
    EXPECT_TRUE(Find<QMenu>("ppContent").isVisible());
    Find<QMenu>("ppContent").close();
    Press(Qt::ControlModifier, Qt::LeftButton);
    Press({}, Qt::LeftButton);
    EXPECT_FALSE(IsOpen());
    LookUpAt();
    EXPECT_FALSE(Find<QMenu>("ppContent").isVisible());
    FindDictionary();
    EXPECT_EQ(Edit().text(), u"pali"_s);
    EXPECT_EQ(Word(), u"pali"_s);
    EXPECT_EQ(form->vTypeDict, 5);
    EXPECT_EQ(Caption(), u"Pāli-Việt"_s);
    EXPECT_FALSE(Waits());
    CheckBoxes({});
}

TEST_F(LookUp, FollowsTheLanguageOfThePassage)
{
    const struct
    {
        int languageSutta, kindBefore;
        const char *page;
        int kind;
        QString text, word;
    } rows[]{
        {0, 8, "<p>ABCĐ", 5, u"abcĐ"_s, QString()},
        {0, 0, "<p>Dhamma, x", 5, u"dhamma"_s, u"dhamma"_s},
        {0, 0, "<p>Giới&nbsp;", 6, u"giới"_s, u"giới"_s},
        {1, 1, "<p>dhamma", 5, u"dhamma"_s, u"dhamma"_s},
        {2, 5, "<p>Dogs.", 1, u"dog"_s, u"dog"_s},
        {10, 7, "<p>s\u012bla", 8, u"s\u012bla"_s, u"s\u012bla"_s},
        {10, 0, "<p>zero", 0, u"zero"_s, u"zero"_s},
        {0, 0, "<p>&nbsp;", 5, QString(), u"dhamma"_s},
        {0, 0, "<img width=90 height=90 src='data:image/gif;base64,R0lGODlhAQABAAAAACw='>", 5, QString(), u"dhamma"_s},
        {0, 0, "", 5, QString(), u"dhamma"_s},
    };
    StartReader();
    for (const bool isOpen : {false, true}) {
        for (const auto &row : rows) {
            SCOPED_TRACE(row.page);
            kelora->vLanguageSutta = row.languageSutta;
            if (isOpen)
                OpenOn(row.kindBefore);
            DictionaryKind = row.kindBefore;
            Show(row.page);
            LookUpAt();
            FindDictionary();
            EXPECT_EQ(form->vTypeDict, row.kind);
            EXPECT_EQ(Edit().text(), row.text);
            EXPECT_EQ(Word(), row.word);
            EXPECT_FALSE(Waits());
            form->close();
        }
    }
    CheckBoxes({});
}

TEST_F(LookUp, InAnOpenWindowSetsTheKindWithoutASwitch)
{
    StartReader();
    OpenOn(1);
    Edit().setText(u"dogm"_s);
    bool waited = false;
    form->qryCheckWord.BeforeOpen = [&] { waited = Waits(); };
    Show("<p>unknown");
    LookUpAt();
    EXPECT_TRUE(waited);
    EXPECT_EQ(form->vTypeDict, 5);
    EXPECT_EQ(Caption(), u"Anh-Việt"_s) << "neither dictionary of the pair has it";
    EXPECT_TRUE(Words().isEmpty());
    In<QAction>("acEVShow").trigger();
    EXPECT_EQ(Edit().text(), QString()) << "the text of the kind being left was not kept";
    Show("<p>dhamma");
    LookUpAt();
    EXPECT_EQ(Caption(), u"Pāli-Việt"_s);
    CheckBoxes({});
}

TEST_F(LookUp, RestoresAMinimisedWindowAndLeavesAnotherWhereItIs)
{
    StartReader();
    OpenOn(5);
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    for (const bool byGesture : {true, false}) {
        form->showMinimized();
        ASSERT_TRUE(WaitFor([&] { return form->isMinimized(); }));
        byGesture ? LookUpAt() : Trigger("acDictionary");
        EXPECT_TRUE(WaitFor([&] { return !form->isMinimized(); }));
    }
    Pause(300); // the desktop may still be about to give the restored window the focus
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    const TfrmDictionary *first = form;
    LookUpAt();
    Trigger("acDictionary");
    Pause(100);
    EXPECT_TRUE(WaitFor([&] { return window->isActiveWindow(); }));
    EXPECT_EQ(FindForm(u"frmDictionary"_s), first);
    EXPECT_EQ(Edit().text(), u"pali"_s);
}

TEST_F(LookUp, TheCommandTakesTheSelectionWithItsCapitals)
{
    StartReader();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    Trigger("acGetWord");
    FindDictionary();
    EXPECT_EQ(Word(), u"dhamma"_s) << "nothing selected: the whole dictionary";
    Show("<p>&nbsp; Nibb\u0101napura</p>");
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    Trigger("acSelectAll");
    ASSERT_TRUE(WaitFor([&] { return !Browser().GetSelectedText().isEmpty(); }));
    Trigger("acGetWord");
    EXPECT_EQ(Edit().text().trimmed(), u"Nibb\u0101napura"_s);
    Browser().LoadFromString("<p>loading");
    Trigger("acGetWord");
    EXPECT_EQ(Edit().text(), QString());
    LookUpAt();
    EXPECT_FALSE(Waits());
    CheckBoxes({});
}

TEST_F(LookUp, FailsWithoutAWordAndGivesTheCursorBack)
{
    StartReader();
    for (const bool isOpen : {false, true}) {
        SCOPED_TRACE(isOpen);
        Show("<p>bad");
        LookUpAt();
        EXPECT_TRUE(IsOpen());
        EXPECT_FALSE(Waits());
    }
    FindDictionary();
    EXPECT_EQ(Edit().text(), u"bad"_s);
    form->close();
    dictionary->dbDictionary.SetConnected(false);
    LookUpAt();
    EXPECT_FALSE(Waits());
    Trigger("acGetWord");
    EXPECT_FALSE(Waits());
    CheckBoxes({});
    dictionary->vIsOKDictionary = false;
    if (QWidget *opened = FindForm(u"frmDictionary"_s))
        opened->close();
    LookUpAt();
    EXPECT_FALSE(IsOpen());
}
