#include "search/SearchSutas.h"

#include "reader/ReaderWindow.h"
#include "support/WaitFor.h"

#include "presentation/GlobalUnit.h"
#include "toolkit/BrowserControl.h"
#include "toolkit/CxGridDBTableView.h"
#include "toolkit/Forms.h"

#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProgressBar>
#include <QScreen>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

const QString Green = u"rgb(0, 255, 0)"_s;
const QString Yellow = u"rgb(255, 255, 0)"_s;

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
        T *found = form->findChild<T *>(QLatin1StringView(name));
        if (!found)
            throw std::runtime_error(std::string("no ") + name);
        return *found;
    }
    bool Shows(const char *name) { return In<QWidget>(name).isVisible(); }
    QLineEdit &Edit() { return In<QLineEdit>("edSearchText"); }
    TcxGridDBTableView &List() { return In<TcxGridDBTableView>("gtvSutas"); }
    void Enter() { QTest::keyClick(&Edit(), Qt::Key_Return); }
    void Search(const QString &text)
    {
        Edit().setText(text);
        Enter();
    }
    QList<int> Found()
    {
        QList<int> found;
        const TField *id = form->mdSearchResult.FindField(u"ID_VIC"_s);
        for (int row = 0; form->mdSearchResult.Active() && row < form->mdSearchResult.RecordCount(); ++row)
            found.append(form->mdSearchResult.ValueAt(row, id->Index()).toInt());
        return found;
    }
    int CurrentId() { return window->qryTreeSutas.FieldByName(u"ID_VIC"_s).AsInteger(); }
    /// The texts that show a colour, parted by "|".
    QString Coloured(const QString &colour)
    {
        return Browser()
            .Evaluate(u"[...document.querySelectorAll('font')].filter((e) => "
                      "getComputedStyle(e).backgroundColor == '%1').map((e) => e.textContent).join('|')"_s.arg(colour))
            .toString();
    }

    QPointer<TfrmSearchSutas> form;
};

} // namespace

TEST_F(SearchSutas, OpensAtTheRightAndOnlyOnce)
{
    Open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    const QRect desk = form->screen()->geometry();
    EXPECT_TRUE(WaitFor([&] {
        const QRect frame = form->frameGeometry();
        return frame.top() == desk.top() + 95 && frame.right() == desk.right() - 25;
    }));
    EXPECT_EQ(form->size(), QSize(624, 262));
    EXPECT_FALSE(Shows("lcSearchSuttaItemProgress") || Shows("lcSearchSuttaItemResult"));
    form->showMinimized();
    Trigger("acSearchSutas");
    EXPECT_FALSE(form->isMinimized());
    EXPECT_EQ(FindForm(u"frmSearchSutas"_s), form);
    // The memo behind everything keeps its place and size.
    EXPECT_EQ(In<QPlainTextEdit>("mmTmp").geometry(), QRect(0, 0, 750, 36));
}

TEST_F(SearchSutas, SearchesInTheLanguageOfTheReaderAndOpensTheFirstResult)
{
    const struct
    {
        int language, interfaceLang;
        QString word;
        QList<int> found;
        QString firstSample, label;
        bool vietnamese, pali;
    } rows[]{
        {1, 0, u"\x01 VIET \t"_s, {1101, 1102, 1201}, u"viet 1101ngoài"_s, u"Kết quả tìm kiếm: 3"_s, true, false},
        {0, 1, u"ali"_s, {1101, 1102, 1201, 9971}, u"ali 1101"_s, u"Result: 4"_s, false, true},
        {10, 1, u"1102"_s, {1102}, u"1102"_s, u"Result: 1"_s, true, false},
        {2, 2, u"english"_s, {}, QString(), QString(), false, false},
        {1, 1, u"Đ"_s, {}, QString(), u"Result: 0"_s, true, false},
        {1, 1, QString(10'000, u'v'), {}, QString(), u"Result: 0"_s, true, false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.word.left(20).toStdString());
        Open(row.language, row.interfaceLang);
        Search(row.word);
        EXPECT_EQ(Found(), row.found);
        EXPECT_EQ(form->mdSearchResult.FieldByName(u"SAMPLE_TEXT"_s).AsString(), row.firstSample);
        EXPECT_EQ(CurrentId(), row.found.value(0, 9971));
        EXPECT_EQ(In<QLabel>("lbResult").text(), row.label);
        EXPECT_EQ(In<TcxGridDBColumn>("gtvSutasNAME_VIC_VIE").Visible(), row.vietnamese);
        EXPECT_EQ(In<TcxGridDBColumn>("gtvSutasNAME_VIC_PAL").Visible(), row.pali);
        EXPECT_TRUE(Shows("lcSearchSuttaItemResult") && !Shows("lcSearchSuttaItemProgress"));
        EXPECT_FALSE(QGuiApplication::overrideCursor());
        EXPECT_EQ(In<QProgressBar>("pbSearch").value(), 4);
        EXPECT_EQ(List().currentIndex().row(), row.found.isEmpty() ? -1 : 0);
        End();
    }
}

TEST_F(SearchSutas, AResultIsYellowAndOtherPagesHaveTheColourOfTheOption)
{
    Open();
    Search(u"viet"_s);
    EXPECT_EQ(Coloured(Yellow), u"viet"_s);
    EXPECT_EQ(Coloured(Green), QString());
    ASSERT_TRUE(window->qryTreeSutas.Locate(u"ID_VIC"_s, 1201));
    ASSERT_TRUE(WaitFor([&] { return Coloured(Green) == u"viet"_s; }));
    // The second pass takes the text as it stands, the first the word that was sought.
    Edit().setText(u"1102"_s);
    form->mdSearchResult.MoveTo(1);
    EXPECT_EQ(CurrentId(), 1102);
    EXPECT_EQ(Coloured(Green), u"viet"_s);
    EXPECT_EQ(Coloured(Yellow), u"1102"_s);
    // Not trimmed, it may find nothing.
    Search(u" viet"_s);
    EXPECT_EQ(Found().size(), 3);
    EXPECT_EQ(Coloured(Yellow), QString());
    EXPECT_EQ(Coloured(Green), u"viet"_s);
}

TEST_F(SearchSutas, APassageThatIsNotInTheTreeLeavesThePage)
{
    Open();
    Search(u"viet"_s);
    auto &filter = Find<QLineEdit>("edFilterSutta");
    filter.setText(u"Chương lớn"_s);
    QTest::keyClick(&filter, Qt::Key_Space);
    ASSERT_TRUE(WaitPage());
    const int current = CurrentId();
    const QByteArray page = Browser().Source();
    form->mdSearchResult.MoveTo(1);
    EXPECT_EQ(CurrentId(), current);
    EXPECT_EQ(Browser().Source(), page);
    CheckBoxes({});
}

TEST_F(SearchSutas, BlankClearAndCloseEndASearch)
{
    Open();
    Search(u"viet"_s);
    EXPECT_EQ(window->vFindSuttaStr, u"viet"_s);
    Edit().setText(u" \t"_s);
    EXPECT_EQ(window->vFindSuttaStr, QString());
    EXPECT_EQ(Found().size(), 3);
    Enter();
    EXPECT_FALSE(form->mdSearchResult.Active() || form->qryListSutas.Active() || Shows("lcSearchSuttaItemResult"));
    Search(u"viet"_s);
    In<QToolButton>("btnClear").click();
    EXPECT_EQ(Edit().text() + window->vFindSuttaStr, QString());
    EXPECT_FALSE(form->mdSearchResult.Active() || form->qryListSutas.Active() || Shows("lcSearchSuttaItemResult"));
    Edit().setText(u"viet"_s);
    In<QToolButton>("btnSearch").click();
    EXPECT_EQ(Found().size(), 3);
    form->close();
    EXPECT_EQ(window->vFindSuttaStr, QString());
    // The program's own loop deletes it on its next turn.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(form);
    CheckBoxes({});
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
    EXPECT_EQ(window->vFindSuttaStr, u"viet"_s);
    EXPECT_EQ(In<QLabel>("lbResult").text(), u"Kết quả tìm kiếm: 2"_s);
    form->mdSearchResult.BeforePost = nullptr;
    form->LoadSutas();
    EXPECT_FALSE(Shows("lcSearchSutta"));
    CheckBoxes({});
}

TEST_F(SearchSutas, AFailureOfTheWholeSearchIsSilentByTheKeyAndToldByTheButton)
{
    Open();
    const QStringList statement = form->qryListSutas.SelectSQL();
    form->qryListSutas.SelectSQL() = {u"select nothing"_s};
    Search(u"viet"_s);
    EXPECT_TRUE(boxes.isEmpty());
    EXPECT_TRUE(Shows("lcSearchSuttaItemProgress"));
    EXPECT_TRUE(QGuiApplication::overrideCursor());
    In<QToolButton>("btnSearch").click();
    EXPECT_EQ(boxes.size(), 1);
    form->qryListSutas.SelectSQL() = statement;
    Search(u"viet"_s);
    EXPECT_EQ(List().model()->rowCount(), 3);
    EXPECT_EQ(CurrentId(), 1101);
    EXPECT_FALSE(QGuiApplication::overrideCursor());
}

TEST_F(SearchSutas, FastMovesEndOnTheNewestResultInYellow)
{
    Open(0);
    int moves = 0;
    QTimer keys;
    QObject::connect(&keys, &QTimer::timeout, form, [&] {
        QTest::keyClick(&List(), moves % 4 == 3 ? Qt::Key_End : moves % 4 == 0 ? Qt::Key_Home : Qt::Key_Down);
        if (++moves == 60)
            keys.stop();
    });
    keys.start(2);
    Search(u"pali"_s);
    ASSERT_TRUE(WaitFor([&] { return moves == 60; }));
    ASSERT_TRUE(WaitPage());
    EXPECT_EQ(CurrentId(), 9971);
    EXPECT_TRUE(WaitFor([&] { return Coloured(Yellow) == u"pali"_s; }));
    EXPECT_TRUE(Shows("lcSearchSuttaItemResult"));
    EXPECT_FALSE(QGuiApplication::overrideCursor());
}

TEST_F(SearchSutas, ASearchInsideTheWaitOfAnotherWins)
{
    Open();
    QTimer::singleShot(0, form, [this] { Search(u"1201"_s); });
    Search(u"viet"_s);
    EXPECT_TRUE(WaitFor([&] { return Coloured(Yellow) == u"1201"_s; }));
    EXPECT_EQ(Found(), QList<int>{1201});
    EXPECT_EQ(In<QLabel>("lbResult").text(), u"Kết quả tìm kiếm: 1"_s);
    EXPECT_FALSE(QGuiApplication::overrideCursor());
    QTimer::singleShot(0, form, [this] { In<QToolButton>("btnClear").click(); });
    Search(u"viet"_s);
    EXPECT_FALSE(Shows("lcSearchSuttaItemResult") || Shows("lcSearchSuttaItemProgress"));
}

TEST_F(SearchSutas, ClosedWhileAPassWaitsItGoesWhenThePassEnds)
{
    for (const bool byTheList : {false, true}) {
        Open();
        if (byTheList) {
            Search(u"viet"_s);
            QTimer::singleShot(0, form, &QWidget::close);
            QTest::keyClick(&List(), Qt::Key_Down);
        } else {
            QTimer::singleShot(0, form, &QWidget::close);
            Search(u"viet"_s);
        }
        EXPECT_EQ(window->vFindSuttaStr, QString());
        EXPECT_FALSE(QGuiApplication::overrideCursor());
        EXPECT_TRUE(WaitFor([&] { return !form; }));
        EXPECT_FALSE(FindForm(u"frmSearchSutas"_s));
        End();
    }
    CheckBoxes({});
}

TEST_F(SearchSutas, TheProgramCanBeLeftWhileAPassWaits)
{
    Open();
    QTimer::singleShot(0, form, [this] {
        QTimer::singleShot(0, form, [] { QCoreApplication::exit(7); });
        Search(u"viet"_s);
    });
    EXPECT_EQ(QCoreApplication::exec(), 7);
    EXPECT_EQ(Found().size(), 3);
    End();
    EXPECT_FALSE(form);
}
