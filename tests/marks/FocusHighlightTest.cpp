#include "marks/FocusHighlight.h"

#include "marks/Excerpt.h"
#include "marks/FocusEdit.h"
#include "marks/MarksWindow.h"
#include "presentation/languages/DKLang.h"
#include "stores/engine/Scripter.h"
#include "support/PageInput.h"
#include "toolkit/bound/CxGridDBTableView.h"
#include "toolkit/bound/DBNavigator.h"
#include "toolkit/controls/BarCombo.h"
#include "toolkit/controls/LayoutItem.h"
#include "toolkit/skin/SkinController.h"

#include <QAbstractEventDispatcher>
#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>

using namespace Qt::StringLiterals;

namespace {

class FocusHighlight : public MarksWindow
{
protected:
    /// Three marks of this collection and one of another, in a browser of marks.
    void OpenWithMarks()
    {
        Open(9971);
        const auto other = AnotherCopy();
        AddMark(*other, u"Đại phẩm"_s, "<p>viet</p>", 1101);
        AddMark(*other, u"100% kinh"_s, "\xEF\xBB\xBF<p>kinh</p>", 1201);
        AddMark(*other, u"foreign"_s, "x", 5, 1);
        AddMark(*other, u"straße"_s, "<p>kinh</p>", 1201);
        OpenMarks();
    }
    /// 9,000 more, every ninth of another collection, two with a word that no other has; some keys were given anew.
    void AddManyMarks()
    {
        TpFIBScripter script;
        script.SetDatabase(&clients->dbClientTarune);
        script.Script() = QStringList{
            u"SET TERM ^ ;"_s,
            u"execute block as declare I integer = 10; begin while (I < 9010) do begin I = I + 1;"_s,
            u"insert into SUTTA_TEXT_FOCUS (ID_FOC, NAME_FOC, NIK_SUT, NIC_SUT, KEYWORD_FOC) values (:I, 'Phẩm ' || :I,"_s,
            u"iif(mod(:I, 9) = 0, 5, 6), iif(mod(:I, 2) = 0, 1101, 9971), iif(mod(:I, 4000) = 0, 'tìm', null)); end"_s,
            u"update SUTTA_TEXT_FOCUS set ID_FOC = ID_FOC + 10000 where mod(ID_FOC, 7) = 0; end^"_s,
            u"COMMIT WORK^"_s};
        script.ExecuteScript();
    }
    /// What the statement of the list gives when Firebird runs it at a stretch.
    QStringList PlainTitles(const QString &pattern)
    {
        TpFIBDataSet rows;
        rows.SetDatabase(&clients->dbClientTarune);
        rows.SetTransaction(&clients->trClientTarune);
        rows.SelectSQL() = Marks().SelectSQL();
        rows.ParamByName(u"SEARCH_TEXT"_s).SetAsString(pattern);
        QStringList titles;
        for (rows.Open(); !rows.Eof(); rows.Next())
            titles.append(rows.FieldByName(u"NAME_FOC"_s).AsString());
        return titles;
    }
    bool WaitSearched()
    {
        return WaitFor([this] { return !Marks().IsPaused(); });
    }
    void Press(const char *button) { QTest::mouseClick(&InMarks<QToolButton>(button), Qt::LeftButton); }
    void Search(const QString &text)
    {
        SearchBox().setText(text);
        Key(Qt::Key_Shift);
    }
    QString Titles()
    {
        QStringList titles;
        for (int row = 0; row < List().model()->rowCount(); ++row)
            titles.append(List().RowTexts(row).last());
        return titles.join(u'|');
    }
    QByteArray Excerpt() { return InMarks<TBrowserControl>("ebFocusText").Source(); }
    TcxGridDBTableView &List() { return InMarks<TcxGridDBTableView>("gtvFocus"); }
    QLineEdit &Title() { return InMarks<QLineEdit>("edTitleFocus"); }
    QLineEdit &SearchBox() { return InMarks<QLineEdit>("edSearch"); }
    int Key(Qt::Key key)
    {
        QTest::keyClick(&SearchBox(), key);
        return Marks().RecNo();
    }
    void Post(const QString &title)
    {
        Title().setText(title);
        Title().setFocus();
        EXPECT_EQ(Actions(), "PCD");
        Press("bPost");
    }
    /// Which of post, cancel and delete are enabled once the event loop has nothing left to do.
    std::string Actions()
    {
        QEventLoop loop;
        // Behind all that is posted, and then behind the other handlers of the loop's rest.
        const auto rest = [&loop] {
            QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, &loop,
                             &QEventLoop::quit);
        };
        QMetaObject::invokeMethod(&loop, rest, Qt::QueuedConnection);
        loop.exec();
        std::string enabled;
        for (const char *name : {"DataSetPost1", "DataSetCancel1", "DataSetDelete1"})
            enabled += InMarks<QAction>(name).isEnabled() ? name[7] : '-';
        return enabled;
    }
};

} // namespace

TEST_F(FocusHighlight, OpensOnceOnAnEmptyListAndStartsAnew)
{
    AddEnglish();
    Open(1101, 1);
    LangManager().SetCurrentLanguage(1066);
    OpenMarks();
    EXPECT_EQ(form->size(), QSize(944, 602));
    EXPECT_FALSE(InMarks<QWidget>("lcLeftItemSuttaType").isVisible());
    EXPECT_EQ(InMarks<TdxLayoutItem>("lcFocusItemTitle").Caption(), u"Title"_s);
    EXPECT_EQ(List().property("OptionsView.NoDataToDisplayInfoText"), u"Không có ghi chép nào!"_s);
    EXPECT_TRUE(Title().isReadOnly()) << "an edit makes no row";
    EXPECT_EQ(InMarks<QWidget>("pnFocus").palette().color(QPalette::Window), QColor(0xF2, 0xF3, 0xF4));
    form->setWindowState(Qt::WindowMinimized | Qt::WindowMaximized);
    Trigger("acOrganization");
    EXPECT_EQ(form->windowState(), Qt::WindowNoState);
    InMarks<QToolButton>("bIsViewSutta").click();
    QTimer::singleShot(0, form, &QWidget::close);
    EXPECT_TRUE(WaitFor([&] { return !form; }));
    EXPECT_FALSE(Marks().Active());
    OpenMarks();
    EXPECT_FALSE(InMarks<QToolButton>("bIsViewSutta").isChecked());
    form->close();
    // Failures while the window is made are deliberately not reported.
    LangManager().SetCurrentLanguage(1033);
    AddLanguage(u"English.lng"_s, "LANGID=1033\n[frmFocusHighlight]\n1=a\n1=b\n");
    Trigger("acOrganization");
    EXPECT_FALSE(FindForm(u"frmFocusHighlight"_s));
    clients->vIsOKClients = false;
    EXPECT_TRUE(WaitFor([&] { return !Action("acOrganization").isEnabled(); }));
}

TEST_F(FocusHighlight, KeepsAnEditWhileItIsMinimised)
{
    OpenWithMarks();
    Title().setText(u"sửa dở"_s);
    form->showMinimized();
    Trigger("acOrganization");
    EXPECT_EQ(Title().text(), u"sửa dở"_s);
    EXPECT_EQ(Marks().State(), DataSetState::Edit);
}

TEST_F(FocusHighlight, FiltersOnEachReleasedKey)
{
    OpenWithMarks();
    const QString all = u"Đại phẩm|100% kinh|straße"_s;
    EXPECT_EQ(Titles(), all);
    const std::pair<QString, QString> rows[]{{u" đẠI \t"_s, u"Đại phẩm"_s}, {u"0%"_s, u"100% kinh"_s},
                                             {u"_Ạ"_s, u"Đại phẩm"_s},      {u"' or 1=1"_s, {}},
                                             {QString(10'000, u'x'), {}},   {u""_s, all}};
    for (const auto &[text, titles] : rows) {
        Search(text);
        EXPECT_EQ(Titles(), titles) << qPrintable(text.left(20));
    }
    // Enter means nothing, Up and Down move and do nothing at the ends.
    SearchBox().setText(u"đại"_s);
    Key(Qt::Key_Return);
    EXPECT_EQ(Marks().RecordCount(), 3);
    std::string walked;
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Up, Qt::Key_Up})
        walked += std::to_string(Key(key));
    EXPECT_EQ(walked, "122100");
    // An empty result keeps the excerpt and empties the rest.
    EXPECT_TRUE(WaitFor([&] { return Excerpt() == "<p>viet</p>"; }));
    Search(u"nothing"_s);
    EXPECT_EQ(Excerpt(), "<p>viet</p>");
    EXPECT_EQ(Title().text() + InMarks<QLabel>("edSuttaName").text(), u""_s);
    // The toggle shows the current row anew, and there is none.
    InMarks<QToolButton>("bIsViewSutta").click();
    EXPECT_EQ(Excerpt(), "");
    EXPECT_EQ(CurrentId(), 9971);
}

TEST_F(FocusHighlight, TheNavigatorMovesThroughTheListAndReadsItAnew)
{
    OpenWithMarks();
    const auto buttons = InMarks<TDBNavigator>("gtvFocusNavigator").findChildren<QToolButton *>();
    const QStringList hints{u"Dòng đầu"_s, u"Dòng trước"_s, u"Dòng sau"_s, u"Dòng cuối"_s, u"Đọc lại"_s};
    const auto state = [&] { // the row, and a letter for each button that is enabled
        std::string told = std::to_string(Marks().RecNo()) + ' ';
        for (const QToolButton *button : buttons)
            told += button->isEnabled() ? "FPNLR"[hints.indexOf(button->toolTip())] : '-';
        return told;
    };
    EXPECT_EQ(state(), "0 --NLR");
    AddMark(*AnotherCopy(), u"new"_s, "x", 9971); // the last text of the list
    const std::pair<int, const char *> rows[]{{0, "0 --NLR"}, {2, "1 FPNLR"}, {3, "2 FP--R"}, {2, "2 FP--R"},
                                              {4, "2 FPNLR"}, {3, "3 FP--R"}, {1, "2 FPNLR"}, {0, "0 --NLR"}};
    for (const auto &[button, after] : rows) {
        QTest::mouseClick(buttons.at(button), Qt::LeftButton);
        EXPECT_EQ(state(), after) << "after " << qPrintable(hints.at(button));
        EXPECT_EQ(List().currentIndex().row(), Marks().RecNo());
        EXPECT_TRUE(SearchBox().hasFocus());
    }
    for (const auto &[text, after] : {std::pair(u"100%"_s, "0 ----R"), {u"nothing"_s, "-1 ----R"}}) {
        Search(text);
        EXPECT_EQ(state(), after) << qPrintable(text);
    }
}

TEST_F(FocusHighlight, AChangeIsPostedWithANewKey)
{
    OpenWithMarks();
    EXPECT_EQ(Title().text(), u"Đại phẩm"_s);
    EXPECT_EQ(InMarks<QLabel>("edSuttaName").text(), u"(Tạng Luật - Giới thứ nhất)"_s);
    EXPECT_EQ(Actions(), "---") << "the search box is bound to nothing";
    Title().setFocus();
    EXPECT_EQ(Actions(), "--D");
    Title().setText(u"one"_s);
    EXPECT_EQ(Actions(), "PCD");
    EXPECT_EQ(List().RowTexts(0).last(), u"one"_s);
    Press("bCancel");
    EXPECT_EQ(Title().text(), u"Đại phẩm"_s);
    InMarks<TBrowserControl>("ebFocusText").setFocus();
    EXPECT_EQ(Actions(), "---");
    Post(u"two"_s);
    EXPECT_EQ(Stored(), u"2 100% kinh|3 foreign|4 straße|5 two"_s);

    // The open list of a combo is the combo; the choice goes to the row.
    QComboBox &priority = InMarks<QComboBox>("edPriority");
    priority.setFocus();
    priority.showPopup();
    QTest::keyClick(priority.view(), Qt::Key_Down);
    EXPECT_EQ(Actions(), "--D");
    QTest::keyClick(priority.view(), Qt::Key_Return);
    EXPECT_EQ(Value("PRIORITY_FOC"), u"3"_s);
    // A note that nobody touches keeps its line ends, and a move posts what was changed.
    Marks().FieldByName(u"DESC_FOC"_s).SetAsString(u"a\rb\nc\r\n"_s);
    Key(Qt::Key_Down);
    EXPECT_EQ(Stored(), u"2 100% kinh|3 foreign|4 straße|6 two"_s);
    Key(Qt::Key_Up);
    EXPECT_EQ(InMarks<QPlainTextEdit>("mmDesc").toPlainText(), u"a\nb\nc\n"_s);
    Post(u"three"_s);
    EXPECT_EQ(Value("DESC_FOC"), u"a\rb\nc\r\n"_s);

    InterfaceLang = 1; // the question is in Vietnamese all the same
    answers = {false, true};
    Press("bDelete");
    EXPECT_TRUE(Stored().endsWith(u"7 three"_s));
    Press("bDelete");
    EXPECT_EQ(Stored(), u"2 100% kinh|3 foreign|4 straße"_s);
    CheckBoxes(QList<Box>(2, Box{u"Thông báo"_s, u"Đồng ý xóa dữ liệu đang chọn?"_s}));
}

TEST_F(FocusHighlight, TheToggleMovesTheReader)
{
    OpenWithMarks();
    QToolButton &toggle = InMarks<QToolButton>("bIsViewSutta");
    Key(Qt::Key_Down);
    Key(Qt::Key_Up);
    EXPECT_TRUE(WaitFor([&] { return Excerpt() == "<p>viet</p>"; }));
    EXPECT_EQ(CurrentId(), 9971) << "the toggle is up";
    toggle.click();
    EXPECT_TRUE(WaitFor([&] { return CurrentId() == 1101 && Coloured() == u"viet"_s; }));
    // Behind the mark of its bytes an excerpt moves the tree and is not found again.
    Key(Qt::Key_Down);
    EXPECT_TRUE(WaitFor([&] { return CurrentId() == 1201 && Browser().IsComplete(); }));
    // The loop of that wait has ended, and with it all that the move began.
    EXPECT_EQ(Coloured(), QString());
    Key(Qt::Key_Down);
    EXPECT_TRUE(WaitFor([&] { return Coloured() == u"kinh|kinh|kinh"_s; }));
    // Each key that leaves a row moves the reader again, and a text that the tree's filter hides is not found.
    GoTo(9971);
    Search(u"đại"_s);
    EXPECT_TRUE(WaitFor([&] { return CurrentId() == 1101; }));
    toggle.click();
    Search(u""_s);
    Key(Qt::Key_Down);
    EXPECT_TRUE(WaitFor([&] { return Excerpt() == "\xEF\xBB\xBF<p>kinh</p>"; }));
    EXPECT_EQ(CurrentId(), 1101);
    // A window that is closed while its page is waited for takes nothing down.
    toggle.click();
    QTimer::singleShot(0, form, &QWidget::close);
    Key(Qt::Key_Down);
    EXPECT_TRUE(WaitFor([&] { return !form; }));
}

TEST_F(FocusHighlight, WhatFollowsADeletedMarkMovesTheReaderAlsoWithTheSameExcerpt)
{
    Open(9971);
    const auto other = AnotherCopy();
    AddMark(*other, u"first"_s, "<p>viet</p>", 1101);
    AddMark(*other, u"second"_s, "<p>viet</p>", 1201);
    OpenMarks();
    InMarks<QToolButton>("bIsViewSutta").click();
    EXPECT_TRUE(WaitFor([&] { return CurrentId() == 1101 && Browser().IsComplete(); }));
    List().setFocus();
    EXPECT_EQ(Actions(), "--D");
    answers = {true};
    Press("bDelete");
    TakeBox();
    EXPECT_EQ(Titles(), u"second"_s);
    EXPECT_TRUE(WaitFor([&] { return CurrentId() == 1201; }));
}

TEST_F(FocusHighlight, AMarkingInTheReaderShowsHereWhilePending)
{
    OpenWithMarks();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    GoTo(1102);
    EXPECT_TRUE(WaitPage());
    window->activateWindow();
    MarkAll([&](TfrmFocusEdit &editor) {
        EXPECT_EQ(List().currentIndex().row(), 3);
        EXPECT_EQ(List().RowTexts(3).last(), u"\uFEFFviet 1102"_s);
        In<QLineEdit>(editor, "edNameFocus").setText(u"pending"_s);
        EXPECT_EQ(Title().text(), u"pending"_s);
        EXPECT_EQ(List().RowTexts(3).last(), u"pending"_s);
        editor.close();
    });
    // A click on another row posts it.
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, List().visualRect(List().model()->index(0, 1)).center());
    EXPECT_EQ(Stored(), u"1 Đại phẩm|2 100% kinh|3 foreign|4 straße|5 pending"_s);
    EXPECT_EQ(Marks().RecNo(), 0);
    MarkAll([&](TfrmFocusEdit &editor) { editor.close(); });
    EXPECT_EQ(List().model()->rowCount(), 5);
    Search(u"straße"_s);
    EXPECT_EQ(Titles(), u"straße"_s) << "a new list drops the row";
}

TEST_F(FocusHighlight, ARowChangedByAnotherCopyIsNotOverwritten)
{
    OpenWithMarks();
    const auto other = AnotherCopy();
    other->qryFocus.Edit();
    other->qryFocus.FieldByName(u"DESC_FOC"_s).SetAsString(u"theirs"_s);
    other->qryFocus.Post();
    Post(u"mine"_s);
    TakeBox();
    EXPECT_EQ(Marks().State(), DataSetState::Edit);
    EXPECT_EQ(Title().text(), u"mine"_s) << "what was typed is still there";
    EXPECT_TRUE(Stored().endsWith(u"5 Đại phẩm"_s));
    Press("bCancel");
    EXPECT_EQ(Title().text(), u"Đại phẩm"_s);
    EXPECT_EQ(InMarks<QPlainTextEdit>("mmDesc").toPlainText(), u"theirs"_s) << "the row as it is now";
}

namespace {

class DarkExcerpt : public FocusHighlight
{
protected:
    DarkExcerpt() { SetSkins(SkinDocument({WholeSkin(u"Light"_s), WholeSkin(u"Night"_s, true)})); }
    ~DarkExcerpt() override
    {
        End();
        TdxSkinController controller;
        controller.NativeStyle = true;
        controller.Refresh();
    }
};

} // namespace

TEST_F(DarkExcerpt, FollowsTheSkinOnTheScreenAloneAndComesBackByItsRow)
{
    OpenWithMarks();
    auto &excerpt = InMarks<TBrowserControl>("ebFocusText");
    const QByteArray source = Excerpt();
    const auto shows = [&](const QString &ground) {
        return WaitFor([&] {
            return excerpt.IsComplete() &&
                   excerpt.Evaluate(u"getComputedStyle(document.body).backgroundColor"_s).toString() == ground;
        });
    };
    for (const int skin : {1, 0, 1}) {
        Find<TBarCombo>("bcbInterface").SetItemIndex(skin);
        EXPECT_TRUE(shows(skin == 1 ? u"rgb(16, 16, 16)"_s : u"rgba(0, 0, 0, 0)"_s)) << skin;
        EXPECT_EQ(Excerpt(), source);
    }
    EmptyForGood(excerpt);
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, List().visualRect(List().currentIndex()).center());
    EXPECT_TRUE(shows(u"rgb(16, 16, 16)"_s));
    EXPECT_FALSE(excerpt.IsPageGone());
}

TEST_F(FocusHighlight, AmongManyMarksTheWindowLivesWhileASearchGoesOn)
{
    OpenWithMarks();
    AddManyMarks();
    const std::tuple<QString, QString, bool> rows[]{{u"không có"_s, u"%KHÔNG CÓ%"_s, true},
                                                    {u"TìM"_s, u"%TÌM%"_s, true},
                                                    {u"phẩm 8_9"_s, u"%PHẨM 8_9%"_s, true},
                                                    {u"phẩm"_s, u"%PHẨM%"_s, false}};
    for (const auto &[text, pattern, takesLong] : rows) {
        Search(text);
        EXPECT_EQ(Marks().IsPaused(), takesLong) << qPrintable(text);
        EXPECT_TRUE(WaitSearched());
        Marks().Last();
        Marks().First();
        EXPECT_EQ(Titles().split(u'|', Qt::SkipEmptyParts), PlainTitles(pattern)) << qPrintable(text);
        EXPECT_EQ(Marks().RecNo(), Marks().RecordCount() > 0 ? 0 : -1);
    }
    // Down waits for the row that it goes to, the row is shown, and a newer key drops all that.
    Search(u"tìm"_s);
    Key(Qt::Key_Down);
    Key(Qt::Key_Down);
    EXPECT_TRUE(WaitSearched());
    EXPECT_EQ(Marks().RecNo(), 1);
    EXPECT_EQ(Title().text(), u"Phẩm 8000"_s);
    Search(u"tìm"_s);
    Key(Qt::Key_Down);
    Search(u"phẩm 89"_s);
    EXPECT_TRUE(WaitSearched());
    EXPECT_EQ(Marks().RecNo(), 0);
    EXPECT_TRUE(List().RowTexts(0).last().startsWith(u"Phẩm 89"_s));
    // A change of a row that was found comes back with all its fields.
    const QString text = InMarks<QLabel>("edSuttaName").text();
    EXPECT_TRUE(text.startsWith(u"(Tạng Luật - "_s));
    Post(u"tìm ra"_s);
    EXPECT_EQ(InMarks<QLabel>("edSuttaName").text(), text);
    // Closing the window ends a search, too.
    Search(u"không có"_s);
    QTimer::singleShot(0, form, &QWidget::close);
    EXPECT_TRUE(WaitFor([&] { return !form; }));
    EXPECT_FALSE(Marks().Active() || Marks().OnPause);
}

TEST_F(FocusHighlight, AnExcerptThatIsTooLongIsSaidToBe)
{
    Open(9971);
    const auto other = AnotherCopy();
    const QByteArray excerpt = "<p>" + QByteArray(LongestShownExcerpt, 'x');
    AddMark(*other, u"long"_s, excerpt);
    OpenMarks();
    EXPECT_TRUE(Excerpt().contains("quá dài để hiện"));
    InMarks<QToolButton>("bIsViewSutta").click();
    EXPECT_TRUE(WaitFor([&] { return CurrentId() == 1101 && Browser().IsComplete(); }));
    Post(u"still long"_s);
    EXPECT_EQ(Marks().FieldByName(u"TEXT_FOC"_s).AsBytes(), excerpt);
}
