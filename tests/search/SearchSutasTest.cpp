#include "search/SearchSutas.h"

#include "reader/ReaderWindow.h"

#include "toolkit/bound/CxGridDBTableView.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace {

const char Green[] = "rgb(0, 255, 0)";

class SearchSutas : public ReaderWindow
{
protected:
    void Open(int languageSutta = 1, int interfaceLang = 0)
    {
        StoreDefaults(1, 9971, languageSutta);
        Store(u"SeachHighlightColor"_s, 0x0000FF00);
        Start();
        InterfaceLang = interfaceLang;
        ASSERT_TRUE(WaitPage());
        Trigger("acSearchSutas");
        form = qobject_cast<TfrmSearchSutas *>(FindForm(u"frmSearchSutas"_s));
        ASSERT_TRUE(form);
    }
    template <typename T>
    T &In(const char *name)
    {
        return ReaderWindow::In<T>(*form, name);
    }
    bool Shows(const char *name) { return In<QWidget>(name).isVisible(); }
    QLineEdit &Edit() { return In<QLineEdit>("edSearchText"); }
    TcxGridDBTableView &List() { return In<TcxGridDBTableView>("gtvSutas"); }
    QString Result() { return In<QLabel>("lbResult").text(); }
    void Click(const char *button) { In<QToolButton>(button).click(); }
    void Search(const QString &text)
    {
        Edit().setText(text);
        QTest::keyClick(&Edit(), Qt::Key_Return);
    }
    QList<int> Found()
    {
        QList<int> found;
        const TField *id = form->mdSearchResult.FindField(u"ID_VIC"_s);
        for (int row = 0; form->mdSearchResult.Active() && row < form->mdSearchResult.RecordCount(); ++row)
            found.append(form->mdSearchResult.ValueAt(row, id->Index()).toInt());
        return found;
    }
    void ExpectEnded()
    {
        EXPECT_EQ(window->vFindSuttaStr, QString());
        EXPECT_FALSE(form->mdSearchResult.Active() || form->qryListSutas.Active() || Shows("lcSearchSuttaItemResult"));
    }

    QPointer<TfrmSearchSutas> form;
};

} // namespace

TEST_F(SearchSutas, OpensAtTheRightAndOnlyOnce)
{
    Open();
    const QPoint corner = form->screen()->geometry().topRight() + QPoint(-25, 95);
    EXPECT_TRUE(WaitFor([&] { return form->frameGeometry().topRight() == corner; }));
    EXPECT_EQ(form->size(), QSize(624, 262));
    EXPECT_FALSE(Shows("lcSearchSuttaItemProgress") || Shows("lcSearchSuttaItemResult"));
    form->showMinimized();
    Trigger("acSearchSutas");
    EXPECT_FALSE(form->isMinimized());
    EXPECT_EQ(FindForm(u"frmSearchSutas"_s), form);
    EXPECT_EQ(In<QPlainTextEdit>("mmTmp").geometry(), QRect(0, 0, 750, 36)) << "behind everything";
}

TEST_F(SearchSutas, KeepsItsResultsWhileItIsMinimised)
{
    Open();
    Search(u"viet"_s);
    form->showMinimized();
    Trigger("acSearchSutas");
    EXPECT_TRUE(Shows("lcSearchSuttaItemResult"));
    EXPECT_EQ(Found(), (QList<int>{1101, 1102, 1201}));
}

TEST_F(SearchSutas, SearchesInTheLanguageOfTheReaderAndOpensTheFirstResult)
{
    using Ids = QList<int>;
    for (const auto &[language, interfaceLang, word, found, sample, label] :
         {std::tuple(1, 0, u"\x01 VIET \t"_s, Ids{1101, 1102, 1201}, u"viet 1101ngoài"_s, u"Kết quả tìm kiếm: 3"_s),
          {0, 1, u"ali"_s, Ids{1101, 1102, 1201, 9971}, u"ali 1101"_s, u"Result: 4"_s},
          {10, 1, u"1102"_s, Ids{1102}, u"1102"_s, u"Result: 1"_s},
          {2, 2, u"english"_s, Ids{}, u""_s, u""_s},
          {1, 1, QString(10'000, u'v'), Ids{}, u""_s, u"Result: 0"_s}}) {
        SCOPED_TRACE(word.left(20).toStdString());
        Open(language, interfaceLang);
        Search(word);
        EXPECT_EQ(Found(), found);
        EXPECT_EQ(form->mdSearchResult.FieldByName(u"SAMPLE_TEXT"_s).AsString(), sample);
        EXPECT_EQ(CurrentId(), found.value(0, 9971));
        EXPECT_EQ(Result(), label);
        EXPECT_EQ(In<TcxGridDBColumn>("gtvSutasNAME_VIC_VIE").Visible(), language == 1 || language == 10);
        EXPECT_EQ(In<TcxGridDBColumn>("gtvSutasNAME_VIC_PAL").Visible(), language == 0);
        EXPECT_TRUE(Shows("lcSearchSuttaItemResult") && !Shows("lcSearchSuttaItemProgress"));
        EXPECT_FALSE(QGuiApplication::overrideCursor());
        EXPECT_EQ(In<QProgressBar>("pbSearch").value(), 4);
        EXPECT_EQ(List().currentIndex().row(), found.isEmpty() ? -1 : 0);
        End();
    }
}

TEST_F(SearchSutas, TurnsVelthuisLettersWhereThePaliTextIsSearched)
{
    for (const auto &[language, text] : {std::pair(0, u"dhammaṃ"_s), {10, u"dhammaṃ"_s}, {1, u"dhamma.m"_s}}) {
        Open(language);
        Trigger("acVelthuis");
        EXPECT_EQ(Action("acVelthuis").isChecked(), true);
        Type(Edit(), u"dhamma.m"_s);
        EXPECT_EQ(Edit().text(), text) << language;
        Trigger("acVelthuis"); // the settings stay for the next round
        End();
    }
}

TEST_F(SearchSutas, WalksTheHitsOfThePageByF3FromItsOwnWindow)
{
    Open();
    Search(u"viet"_s);
    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    QTest::keyClick(&List(), Qt::Key_F3);
    EXPECT_TRUE(WaitFor([this] { return Browser().Evaluate(u"getSelection().toString()"_s).toString() == u"viet"_s; }));
}

TEST_F(SearchSutas, AResultIsYellowAndOtherPagesHaveTheColourOfTheOption)
{
    Open();
    Search(u"viet"_s);
    EXPECT_EQ(Coloured(), u"viet"_s);
    EXPECT_EQ(Coloured(Green), QString());
    GoTo(1201);
    ASSERT_TRUE(WaitFor([&] { return Coloured(Green) == u"viet"_s; }));
    // The second pass takes the text as it stands, the first the word that was sought.
    Edit().setText(u"1102"_s);
    form->mdSearchResult.MoveTo(1);
    EXPECT_EQ(CurrentId(), 1102);
    EXPECT_EQ(Coloured(Green), u"viet"_s);
    EXPECT_EQ(Coloured(), u"1102"_s);
    Search(u" viet"_s); // not trimmed, it may find nothing
    EXPECT_EQ(Found().size(), 3);
    EXPECT_EQ(Coloured(), QString());
    EXPECT_EQ(Coloured(Green), u"viet"_s);
    // A passage that the tree hides leaves the page.
    auto &filter = Find<QLineEdit>("edFilterSutta");
    filter.setText(u"Chương lớn"_s);
    QTest::keyClick(&filter, Qt::Key_Space);
    ASSERT_TRUE(WaitPage());
    const std::string page = Page();
    form->mdSearchResult.MoveTo(1);
    EXPECT_EQ(Page(), page);
}

TEST_F(SearchSutas, BlankClearAndCloseEndASearch)
{
    Open();
    Search(u"viet"_s);
    EXPECT_EQ(window->vFindSuttaStr, u"viet"_s);
    Edit().setText(u" \t"_s);
    EXPECT_EQ(window->vFindSuttaStr, QString());
    EXPECT_EQ(Found().size(), 3);
    QTest::keyClick(&Edit(), Qt::Key_Return);
    ExpectEnded();
    Search(u"viet"_s);
    Click("btnClear");
    EXPECT_EQ(Edit().text(), QString());
    ExpectEnded();
    Edit().setText(u"viet"_s);
    Click("btnSearch");
    EXPECT_EQ(Found().size(), 3);
    form->close();
    EXPECT_EQ(window->vFindSuttaStr, QString());
    // The program's own loop deletes it on its next turn.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(form);
}

TEST_F(SearchSutas, AFailingRowLeavesTheBareMemoAndTheOtherRowsAreFound)
{
    Open();
    form->mdSearchResult.BeforePost = [this] {
        if (form->mdSearchResult.FieldByName(u"ID_VIC"_s).AsInteger() == 1102)
            throw std::runtime_error("broken row");
    };
    Search(u"viet"_s);
    EXPECT_FALSE(Shows("lcSearchSutta"));
    EXPECT_EQ(form->childAt(10, 10)->parentWidget(), &In<QWidget>("mmTmp"));
    EXPECT_EQ(Found(), (QList<int>{1101, 1201}));
    EXPECT_EQ(Result(), u"Kết quả tìm kiếm: 2"_s);
}

TEST_F(SearchSutas, AFailureOfTheWholeSearchIsSilentByTheKeyAndToldByTheButton)
{
    Open();
    const QStringList statement = form->qryListSutas.SelectSQL();
    form->qryListSutas.SelectSQL() = {u"select nothing"_s};
    Search(u"viet"_s);
    EXPECT_TRUE(boxes.isEmpty() && Shows("lcSearchSuttaItemProgress") && QGuiApplication::overrideCursor());
    Click("btnSearch");
    TakeBox();
    form->qryListSutas.SelectSQL() = statement;
    Search(u"viet"_s);
    EXPECT_EQ(List().model()->rowCount(), 3);
    EXPECT_FALSE(QGuiApplication::overrideCursor());
}

TEST_F(SearchSutas, FastMovesEndOnTheNewestResultInYellow)
{
    Open(0);
    int moves = 0;
    const std::function<void()> move = [&] {
        QTest::keyClick(&List(), moves % 4 == 3 ? Qt::Key_End : moves % 4 == 0 ? Qt::Key_Home : Qt::Key_Down);
        if (++moves < 60)
            QTimer::singleShot(0, form, move);
    };
    QTimer::singleShot(0, form, move);
    Search(u"pali"_s);
    ASSERT_TRUE(WaitFor([&] { return moves == 60 && Browser().IsComplete() && Coloured() == u"pali"_s; }));
    EXPECT_EQ(CurrentId(), 9971);
    EXPECT_FALSE(QGuiApplication::overrideCursor());
}

TEST_F(SearchSutas, ASearchInsideTheWaitOfAnotherWins)
{
    Open();
    QTimer::singleShot(0, form, [this] { Search(u"1201"_s); });
    Search(u"viet"_s);
    EXPECT_TRUE(WaitFor([&] { return Coloured() == u"1201"_s; }));
    EXPECT_EQ(Found(), QList<int>{1201});
    EXPECT_EQ(Result(), u"Kết quả tìm kiếm: 1"_s);
    EXPECT_FALSE(QGuiApplication::overrideCursor());
    QTimer::singleShot(0, form, [this] { Click("btnClear"); });
    Search(u"viet"_s);
    EXPECT_FALSE(Shows("lcSearchSuttaItemResult") || Shows("lcSearchSuttaItemProgress"));
}

TEST_F(SearchSutas, ClosedWhileAPassWaitsItGoesWhenThePassEnds)
{
    for (const bool byTheList : {false, true}) {
        Open();
        if (byTheList)
            Search(u"viet"_s);
        QTimer::singleShot(0, form, &QWidget::close);
        if (byTheList)
            QTest::keyClick(&List(), Qt::Key_Down);
        else
            Search(u"viet"_s);
        EXPECT_EQ(window->vFindSuttaStr, QString());
        EXPECT_FALSE(QGuiApplication::overrideCursor());
        EXPECT_TRUE(WaitFor([&] { return !form; }));
        End();
    }
}
