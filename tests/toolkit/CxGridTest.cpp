#include "stores/DataSource.h"
#include "stores/DatabaseError.h"
#include "stores/MemData.h"
#include "support/WaitFor.h"
#include "toolkit/CxGridDBTableView.h"
#include "toolkit/Doors.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QScopeGuard>
#include <QScrollBar>
#include <QTest>
#include <QToolTip>

#include <gmock/gmock.h>

#include <numeric>

using namespace Qt::StringLiterals;

namespace {

/// As many rows as asked for, fetched one by one; those from `broken` on cannot be.
class NumberedRows : public TDataSet
{
public:
    explicit NumberedRows(int count) : m_count(count) { AddField(u"NUMBER"_s, FieldType::Integer); }
    QVariant ValueAt(int row, int) const override { return row + 1; }
    int broken = -1;

protected:
    void DoOpen() override {}
    void DoClose() override {}
    bool DoFetchNext() override
    {
        if (RecordCount() == broken)
            throw DatabaseError(u"broken"_s);
        return RecordCount() < m_count;
    }
    void DoInsertRow(const QList<QVariant> &) override {}
    void DoUpdateRow(int, const QList<QVariant> &, const QList<QVariant> &) override {}
    void DoDeleteRow(int) override {}

private:
    int m_count;
};

class CxGrid : public testing::Test
{
protected:
    CxGrid()
    {
        rows.AddField(u"ID"_s, FieldType::Integer);
        rows.AddField(u"NAME"_s, FieldType::WideString, 127).SetDisplayLabel(u"Label"_s);
        rows.AddField(u"TEXT"_s, FieldType::WideString, 127);
        id.SetFieldName(u"ID"_s);
        id.SetVisible(false);
        name.SetFieldName(u"NAME"_s);
        name.SetWidth(100);
        text.SetFieldName(u"TEXT"_s);
        text.SetWidth(200);
        text.SetCaption(u"Caption"_s);
        view.SetKeyField(u"ID"_s);
        view.resize(300, 200);
        source.SetDataSet(&rows);
    }
    ~CxGrid() override { view.SetDataSource(nullptr); }

    void Fill(int count)
    {
        rows.Close();
        rows.Open();
        rows.DisableControls();
        for (int number = 1; number <= count; ++number) {
            rows.Append();
            rows.FieldByName(u"ID"_s).SetAsInteger(number);
            rows.FieldByName(u"NAME"_s).SetAsString(u"n%1"_s.arg(number));
            rows.FieldByName(u"TEXT"_s).SetAsString(u"<b>t%1</b>"_s.arg(number));
            rows.Post();
        }
        rows.EnableControls();
        rows.First();
    }
    void Show()
    {
        view.SetDataSource(&source);
        view.show();
        view.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    }
    QRect Cell(int row, int column) { return view.visualRect(view.model()->index(row, column)); }

    TdxMemData rows;
    TDataSource source;
    TcxGridDBTableView view;
    TcxGridDBColumn id{&view}, name{&view}, text{&view};
};

} // namespace

TEST_F(CxGrid, ShowsRowsUnderCaptionsAndFollowsReopening)
{
    const QAbstractItemModelTester tester(view.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    view.SetDataSource(&source);
    EXPECT_EQ(view.model()->rowCount(), 0);
    Fill(3);
    EXPECT_EQ(view.model()->rowCount(), 3);
    EXPECT_EQ(view.RowTexts(1), (QStringList{u"n2"_s, u"<b>t2</b>"_s}));
    const auto caption = [&](int column) { return view.model()->headerData(column, Qt::Horizontal).toString(); };
    EXPECT_EQ(caption(1), u"Label"_s);
    EXPECT_EQ(caption(2), u"Caption"_s);
    name.SetVisible(false);
    id.SetVisible(true);
    EXPECT_EQ(view.RowTexts(2), (QStringList{u"3"_s, u"<b>t3</b>"_s}));
    rows.FieldByName(u"TEXT"_s).OnGetText = [](const TField &field) { return field.AsString().toUpper(); };
    EXPECT_EQ(view.RowTexts(0).last(), u"<B>T1</B>"_s);
    rows.Edit();
    rows.FieldByName(u"TEXT"_s).SetAsString(u"new"_s);
    rows.Post();
    EXPECT_EQ(view.RowTexts(0).last(), u"NEW"_s);
    rows.Close();
    EXPECT_EQ(view.model()->rowCount(), 0);
    EXPECT_FALSE(view.currentIndex().isValid());
}

TEST_F(CxGrid, FocusAndCursorFollowEachOther)
{
    Fill(100);
    Show();
    EXPECT_EQ(view.currentIndex().row(), 0);
    rows.MoveTo(90);
    EXPECT_EQ(view.currentIndex().row(), 90);
    EXPECT_TRUE(view.viewport()->rect().contains(Cell(90, 1).center()));
    for (const auto &[key, row] : {std::pair(Qt::Key_Up, 89),
                                   {Qt::Key_Home, 0},
                                   {Qt::Key_Left, 0},
                                   {Qt::Key_Right, 0},
                                   {Qt::Key_Down, 1},
                                   {Qt::Key_End, 99},
                                   {Qt::Key_Down, 99}}) {
        QTest::keyClick(&view, key);
        EXPECT_EQ(rows.RecNo(), row) << key;
        EXPECT_EQ(view.currentIndex().row(), row) << key;
    }
    QTest::keyClick(&view, Qt::Key_PageUp);
    EXPECT_LT(rows.RecNo(), 97);
    EXPECT_GT(rows.RecNo(), 85);
    view.scrollToTop();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, Cell(3, 2).center());
    EXPECT_EQ(rows.RecNo(), 3);
    text.SetVisible(false);
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_EQ(rows.RecNo(), 4);
}

TEST_F(CxGrid, AMoveThatFailsIsToldOnceAndTheFocusStaysWithTheCursor)
{
    QStringList boxes;
    const auto restore = qScopeGuard([doors = Doors()] { Doors() = doors; });
    Doors().messageBox = [&](auto &&, const QString &text, auto &&...) {
        boxes.append(text);
        return true;
    };
    NumberedRows many(1000);
    many.broken = 600;
    many.Open();
    source.SetDataSet(&many);
    name.SetFieldName(u"NUMBER"_s);
    Show();
    QTest::keyClick(&view, Qt::Key_End);
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(boxes, QStringList{u"broken"_s});
    EXPECT_EQ(view.model()->rowCount(), 600);
    EXPECT_EQ(many.RecNo(), 599);
    EXPECT_EQ(view.currentIndex().row(), 599);
    view.SetDataSource(nullptr);
}

TEST_F(CxGrid, RowsAreFetchedWhenTheyComeNear)
{
    NumberedRows many(350'000);
    many.Open();
    source.SetDataSet(&many);
    name.SetFieldName(u"NUMBER"_s);
    const QAbstractItemModelTester tester(view.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    Show();
    QTest::keyClick(&view, Qt::Key_PageDown);
    EXPECT_GT(many.RecNo(), 3);
    EXPECT_LT(many.RecordCount(), 100);
    // Others fetch, too, and the view learns of it by the move.
    ASSERT_TRUE(many.Locate(u"NUMBER"_s, 5'000));
    EXPECT_EQ(view.currentIndex().row(), 4'999);
    EXPECT_LT(many.RecordCount(), 5'100);
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(many.RecNo(), 349'999);
    EXPECT_EQ(view.RowTexts(349'999).first(), u"350000"_s);
    view.SetDataSource(nullptr);
}

TEST_F(CxGrid, TheScrollBarLeadsToTheTrueEnd)
{
    const struct
    {
        const char *what;
        int rows;
        void (*scroll)(QScrollBar &);
        int top; ///< row at the top then; -1 where the last row is at the bottom
        bool isWhole;
    } cases[]{
        {"one step", 1'000, [](QScrollBar &bar) { bar.triggerAction(QScrollBar::SliderSingleStepAdd); }, 1, false},
        {"one page", 1'000, [](QScrollBar &bar) { bar.triggerAction(QScrollBar::SliderPageStepAdd); }, 8, false},
        {"bottom", 1'000, [](QScrollBar &bar) { bar.setValue(bar.maximum()); }, -1, true},
        {"past a near end", 30, [](QScrollBar &bar) { bar.setValue(40); }, -1, true},
        {"all fit", 5, [](QScrollBar &bar) { bar.setValue(bar.maximum()); }, 0, true},
        {"thumb held", 1'000, [](QScrollBar &bar) { bar.setSliderDown(true); }, 0, true},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        NumberedRows rows(c.rows);
        rows.Open();
        source.SetDataSet(&rows);
        name.SetFieldName(u"NUMBER"_s);
        Show();
        QCoreApplication::processEvents();
        QScrollBar &bar = *view.verticalScrollBar();
        const int whole = view.viewport()->height() / view.DataRowHeight();
        const int known = rows.RecordCount();
        EXPECT_LT(known, 25);                              // as much as fits before the view has its size
        EXPECT_EQ(bar.maximum() >= known, c.rows > known); // never the end while rows follow
        c.scroll(bar);
        const int value = bar.value();
        QCoreApplication::processEvents();
        EXPECT_EQ(bar.value(), value);
        const int last = std::max(0, c.rows - whole);
        if (c.top >= 0) {
            EXPECT_EQ(view.rowAt(0), c.top);
        } else {
            EXPECT_EQ(view.rowAt(view.viewport()->height() - 1), c.rows - 1);
        }
        EXPECT_EQ(rows.AllFetched(), c.isWhole);
        EXPECT_EQ(bar.maximum() == last, c.isWhole);
        bar.setSliderDown(false);
        view.SetDataSource(nullptr);
    }
}

TEST_F(CxGrid, SeveralRowsAreSelectedAndCopied)
{
    Fill(5);
    Show();
    QTest::keyClick(&view, Qt::Key_Down);
    QTest::keyClick(&view, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(rows.RecNo(), 2);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::ControlModifier, Cell(4, 1).center());
    EXPECT_EQ(rows.RecNo(), 4);
    EXPECT_EQ(view.SelectedKeys(), (QVariantList{2, 3, 5}));
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"n2\t<b>t2</b>\nn3\t<b>t3</b>\nn5\t<b>t5</b>"_s);
    rows.MoveTo(0);
    EXPECT_EQ(view.SelectedKeys(), QVariantList{1});
}

TEST_F(CxGrid, ColumnsShareTheWidth)
{
    Fill(1);
    Show();
    const auto filled = [&] {
        EXPECT_EQ(view.columnWidth(0) + view.columnWidth(1) + view.columnWidth(2), view.viewport()->width());
    };
    for (const int width : {300, 600}) {
        view.resize(width, 200);
        filled();
        EXPECT_NEAR(view.columnWidth(2), 2 * view.columnWidth(1), 2);
    }
    view.horizontalHeader()->resizeSection(1, 450);
    EXPECT_EQ(view.columnWidth(1), 450);
    filled();
    view.horizontalHeader()->resizeSection(1, 5000);
    filled();
    view.horizontalHeader()->resizeSection(2, 5);
    filled();
    id.SetVisible(true);
    filled();
    EXPECT_GT(view.columnWidth(0), 0);
}

TEST_F(CxGrid, OnlyACellThatIsCutOffHasAHint)
{
    Fill(1);
    Show();
    const auto hintOver = [&](int column) {
        const QPoint point = Cell(0, column).center();
        QHelpEvent event(QEvent::ToolTip, point, view.viewport()->mapToGlobal(point));
        QCoreApplication::sendEvent(view.viewport(), &event);
        return QToolTip::text();
    };
    EXPECT_EQ(hintOver(2), QString());
    rows.Edit();
    rows.FieldByName(u"TEXT"_s).SetAsString(u"<i>"_s + QString(100, u'x'));
    rows.Post();
    EXPECT_EQ(hintOver(2), u"<qt>&lt;i&gt;"_s + QString(100, u'x') + u"</qt>"_s);
    hintOver(1);
    EXPECT_TRUE(WaitFor([] { return QToolTip::text().isEmpty(); }));
}

TEST_F(CxGrid, ARowBeingInsertedStandsAtTheEnd)
{
    const QAbstractItemModelTester tester(view.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    Fill(3);
    Show();
    int told = 0;
    view.OnSelectionChanged = [&] { ++told; };
    rows.MoveTo(1);
    EXPECT_TRUE(WaitFor([&] { return told == 1; }));
    rows.Insert();
    rows.FieldByName(u"TEXT"_s).SetAsString(u"new"_s);
    EXPECT_EQ(view.model()->rowCount(), 4);
    EXPECT_EQ(view.currentIndex().row(), 3);
    EXPECT_EQ(view.RowTexts(3).last(), u"new"_s);
    EXPECT_EQ(view.RowTexts(1).last(), u"<b>t2</b>"_s);
    EXPECT_TRUE(WaitFor([&] { return told == 2; })) << "several changes are told once, when the cursor has followed";
    rows.Cancel();
    EXPECT_EQ(view.model()->rowCount(), 3);
    EXPECT_EQ(view.currentIndex().row(), 1);
    EXPECT_EQ(rows.RecNo(), 1);
    // A post that fails leaves the focus with the row.
    rows.BeforePost = [] { throw DatabaseError(u"refused"_s); };
    rows.Insert();
    rows.FieldByName(u"TEXT"_s).SetAsString(u"new"_s);
    const auto box = std::exchange(Doors().messageBox, [](auto &&...) { return true; });
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, Cell(0, 1).center());
    EXPECT_EQ(view.currentIndex().row(), 3);
    rows.BeforePost = nullptr;
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, Cell(0, 1).center());
    Doors().messageBox = box;
    EXPECT_EQ(view.model()->rowCount(), 4);
    EXPECT_EQ(rows.RecNo(), 0);
}

TEST_F(CxGrid, RowsGrowWithTheirTextsWhenTheyAreSeen)
{
    Fill(1000);
    rows.MoveTo(700);
    rows.Edit();
    rows.FieldByName(u"TEXT"_s).SetAsString(u"word "_s.repeated(25));
    rows.Post();
    rows.First();
    view.SetCellAutoHeight(true);
    Show();
    EXPECT_EQ(view.rowHeight(0), view.DataRowHeight());
    EXPECT_EQ(view.rowHeight(700), view.DataRowHeight()) << "was measured though nobody saw it";
    rows.MoveTo(700);
    EXPECT_TRUE(WaitFor([&] { return view.rowHeight(700) > 3 * view.DataRowHeight(); }));
    view.resize(view.width() * 3, view.height());
    const int before = view.rowHeight(700);
    EXPECT_TRUE(WaitFor([&] { return view.rowHeight(700) < before; }));
}

TEST_F(CxGrid, TheFocusStaysInViewWhileRowsGrow)
{
    Fill(100);
    rows.FieldByName(u"TEXT"_s).OnGetText = [](const TField &field) { return (field.AsString() + u' ').repeated(12); };
    view.SetCellAutoHeight(true);
    Show();
    const auto isSeen = [&] {
        return view.rowHeight(rows.RecNo()) > view.DataRowHeight() &&
               view.viewport()->rect().contains(view.visualRect(view.currentIndex()));
    };
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_End, Qt::Key_Up}) {
        QTest::keyClick(&view, key);
        EXPECT_TRUE(WaitFor(isSeen)) << rows.RecNo();
    }
}

TEST_F(CxGrid, AnImageColumnKeepsItsWidthAndShowsNoText)
{
    QPixmap red(16, 16);
    red.fill(Qt::red);
    id.SetFixed(true);
    id.SetWidth(24);
    id.SetVisible(true);
    id.SetImage(2, red);
    Fill(3);
    Show();
    EXPECT_EQ(view.columnWidth(0), 24);
    EXPECT_EQ(view.columnWidth(1) + view.columnWidth(2), view.viewport()->width() - 24);
    view.resize(view.width() + 100, view.height());
    EXPECT_EQ(view.columnWidth(0), 24);
    EXPECT_EQ(view.model()->headerData(0, Qt::Horizontal).toString() + view.RowTexts(1).first(), QString());
    const auto image = [&](int row) { return view.model()->index(row, 0).data(Qt::DecorationRole).value<QIcon>(); };
    EXPECT_TRUE(image(0).isNull());
    EXPECT_FALSE(image(1).isNull());
    EXPECT_EQ(view.viewport()->grab().toImage().pixelColor(Cell(1, 0).center()), QColor(Qt::red));
}

TEST_F(CxGrid, AnEmptyTableSaysSo)
{
    Show();
    const auto shown = [&] { return view.viewport()->grab().toImage(); };
    const auto say = [&](const QString &text) { view.setProperty("OptionsView.NoDataToDisplayInfoText", text); };
    const QImage blank = shown();
    say(u"Nothing"_s);
    EXPECT_NE(shown(), blank);
    Fill(1);
    const QImage filled = shown();
    say({});
    EXPECT_EQ(shown(), filled);
}
