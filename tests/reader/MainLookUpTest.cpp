#include "dictionary/DictionaryWindow.h"
#include "dictionary/FormsList.h"
#include "stores/data/FIBDataSet.h"
#include "support/PageInput.h"

#include <QGuiApplication>
#include <QScopedValueRollback>
#include <QSignalSpy>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

class LookUp : public DictionaryWindow
{
protected:
    /// A press on the end of the passage's first letters, as a hand does it, until what it calls has returned.
    void Press(Qt::KeyboardModifiers modifiers, Qt::MouseButton button = Qt::RightButton)
    {
        bool isOver = false;
        const auto answer = Browser().OnClick;
        const QScopedValueRollback<decltype(Browser().OnClick)> watched(Browser().OnClick, [&](auto... press) {
            answer(press...);
            isOver = true;
        });
        QTest::mouseClick(Browser().focusProxy(), button, modifiers, QPoint(14, 26));
        EXPECT_TRUE(WaitFor([&] { return isOver; }));
    }
    void LookUpAt() { Press(Qt::ControlModifier); }
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
    auto &menu = Find<QMenu>("ppContent");
    const QSignalSpy asked(&Browser(), &QWidget::customContextMenuRequested);
    EXPECT_TRUE(TakesInput(Browser()));
    Press({});
    EXPECT_TRUE(WaitFor([&] { return menu.isVisible(); }));
    menu.close();
    Press(Qt::ControlModifier, Qt::LeftButton);
    Press({}, Qt::LeftButton);
    EXPECT_FALSE(FindForm(u"frmDictionary"_s));
    LookUpAt();
    EXPECT_TRUE(WaitFor([&] { return asked.size() == 2; }));
    EXPECT_FALSE(menu.isVisible());
    FindDictionary();
    EXPECT_EQ(Edit().text(), u"pali"_s);
    EXPECT_EQ(Word(), u"pali"_s);
    EXPECT_EQ(Caption(), u"Pāli-Việt"_s);
}

TEST_F(LookUp, FollowsTheLanguageOfThePassage)
{
    StartReader();
    for (const auto &[language, kindBefore, page, kind, text, word] :
         {std::tuple(0, 8, "<p>ABCĐ", 5, u"abcĐ"_s, u""_s),
          {0, 0, "<p>Dhamma, x", 5, u"dhamma"_s, u"dhamma"_s},
          {0, 0, "<p>Giới&nbsp;", 6, u"giới"_s, u"giới"_s},
          {1, 1, "<p>dhamma", 5, u"dhamma"_s, u"dhamma"_s},
          {2, 5, "<p>Dogs.", 1, u"dog"_s, u"dog"_s},
          {10, 7, "<p>sīla", 8, u"sīla"_s, u"sīla"_s},
          {10, 0, "<p>zero", 0, u"zero"_s, u"zero"_s},
          {0, 0, "<img width=90 height=90 src='data:image/gif;base64,R0lGODlhAQABAAAAACw='>", 5, u""_s, u"dhamma"_s},
          {0, 0, "", 5, u""_s, u"dhamma"_s}}) {
        SCOPED_TRACE(page);
        kelora->vLanguageSutta = language;
        for (const bool isOpen : {false, true}) {
            if (isOpen)
                OpenOn(kindBefore);
            DictionaryKind = kindBefore;
            Show(page);
            LookUpAt();
            FindDictionary();
            EXPECT_EQ(form->vTypeDict, kind);
            EXPECT_EQ(Edit().text(), text);
            EXPECT_EQ(Word(), word);
            EXPECT_FALSE(Waits());
            form->close();
        }
    }
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
}

TEST_F(LookUp, RestoresAMinimisedWindowAndLeavesAnotherWhereItIs)
{
    StartReader();
    OpenOn(5);
    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    Activate();
    const QSignalSpy focusMoves(qApp, &QGuiApplication::focusWindowChanged);
    LookUpAt();
    Trigger("acDictionary");
    EXPECT_EQ(FindForm(u"frmDictionary"_s), form);
    EXPECT_EQ(Edit().text(), u"pali"_s);
    for (const bool byGesture : {true, false}) {
        form->showMinimized();
        ASSERT_TRUE(WaitFor([&] { return !form->windowHandle()->isExposed(); }));
        // The desktop does one thing after the other, so that it would have moved the focus by now.
        EXPECT_TRUE(!byGesture || focusMoves.isEmpty());
        byGesture ? LookUpAt() : Trigger("acDictionary");
        EXPECT_FALSE(form->isMinimized());
        ASSERT_TRUE(QTest::qWaitForWindowExposed(form));
    }
}

TEST_F(LookUp, TheCommandTakesTheSelectionWithItsCapitals)
{
    StartReader();
    Activate();
    Trigger("acGetWord");
    FindDictionary();
    EXPECT_EQ(Word(), u"dhamma"_s) << "nothing selected: the whole dictionary";
    Show("<p>&nbsp; Nibb\u0101napura</p>");
    Activate();
    Trigger("acSelectAll");
    ASSERT_TRUE(WaitFor([&] { return !Browser().GetSelectedText().isEmpty(); }));
    Trigger("acGetWord");
    EXPECT_EQ(Edit().text().trimmed(), u"Nibb\u0101napura"_s);
    Browser().LoadFromString("<p>loading");
    Trigger("acGetWord");
    EXPECT_EQ(Edit().text(), QString());
    LookUpAt();
    EXPECT_FALSE(Waits());
}

TEST_F(LookUp, FailsWithoutAWordAndGivesTheCursorBack)
{
    StartReader();
    Show("<p>bad");
    for (int round = 0; round < 2; ++round) { // opens the window, finds it open
        LookUpAt();
        EXPECT_FALSE(Waits());
        FindDictionary();
        EXPECT_EQ(Edit().text(), u"bad"_s);
    }
    kelora->vLanguageSutta = 10;
    DictionaryKind = 4;
    Trigger("acGetWord");
    EXPECT_EQ(Word(), u"chó"_s) << "the rest of the list can't be fetched";
    form->close();
    dictionary->dbDictionary.SetConnected(false);
    LookUpAt();
    EXPECT_FALSE(Waits());
    Trigger("acGetWord");
    EXPECT_FALSE(Waits());
    dictionary->vIsOKDictionary = false;
    FindDictionary();
    form->close();
    LookUpAt();
    EXPECT_FALSE(FindForm(u"frmDictionary"_s));
}

TEST_F(LookUp, TakesTheSyllablesBesideTheOneUnderTheMouseAlong)
{
    StartReader(1);
    RunScript(u"insert into WORDS values (6, 201, 'tỳ khưu ni', '- bhikkhunī');\ncommit work;"_s);
    for (const bool isOpen : {false, true}) {
        SCOPED_TRACE(isOpen);
        Show("<p>Tỳ khưu ni, vị ấy");
        LookUpAt();
        FindDictionary();
        EXPECT_EQ(Edit().text(), u"tỳ"_s);
        auto &forms = In<TFormsList>("lstForms");
        EXPECT_TRUE(WaitFor([&] { return forms.count() == 1; }));
        EXPECT_EQ(forms.item(0)->text(), u"tỳ khưu ni · Việt-Pāli\ntỳ → tỳ khưu ni"_s);
        Show("<p>viet, khưu ni");
        LookUpAt();
        EXPECT_TRUE(WaitFor([&] { return !form->TimerForms.isActive(); }));
        EXPECT_EQ(forms.count(), 0);
    }
}

TEST_F(LookUp, ListsOnceInANewWindow)
{
    StartReader();
    RunScript(uR"(
create generator LISTS;
commit work;
set term ^ ;
alter procedure SP_GET_LIST_WORDS (A_DICT integer)
returns (WORD_NAME varchar(63) character set unicode_fss, DICT_TYPE integer) as declare variable N bigint; begin
    N = gen_id(LISTS, 1);
    for select NAME, KIND from WORDS where KIND = :A_DICT order by NUM into :WORD_NAME, :DICT_TYPE do suspend;
end^
set term ; ^
commit work;
)"_s);
    TpFIBDataSet lists;
    lists.SetDatabase(&dictionary->dbDictionary);
    lists.SetTransaction(&dictionary->trDictionary);
    lists.SelectSQL() = QStringList{u"select gen_id(LISTS, 0) N from RDB$DATABASE"_s};
    const auto count = [&] {
        lists.Close();
        lists.Open();
        return lists.FieldByName(u"N"_s).AsInteger();
    };
    LastWord = u"v42"_s;
    Show("<p>nibb\u0101na");
    LookUpAt();
    FindDictionary();
    EXPECT_EQ(Word(), u"nibbāna"_s);
    EXPECT_EQ(count(), 1) << "the last word is not sought in a list of its own";
    form->close();
    OpenOn(5);
    EXPECT_EQ(Word(), u"nibbāna"_s) << "by its command it opens at the last word";
    form->close();
    LastWord = u"v42"_s;
    Show("<p>bad");
    LookUpAt();
    FindDictionary();
    EXPECT_EQ(Edit().text() + u' ' + Word(), u"bad v42"_s) << "a word that can't be looked up leaves it there";
    lists.Close();
}
