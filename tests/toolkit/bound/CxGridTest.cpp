#include "stores/data/DataSource.h"
#include "stores/data/MemData.h"
#include "stores/engine/DatabaseError.h"
#include "support/WaitFor.h"
#include "toolkit/bound/CxGridDBTableView.h"
#include "toolkit/program/Doors.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QScrollBar>
#include <QTest>
#include <QToolTip>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

/// As many rows as asked for, fetched one by one; those from `broken` on cannot be.
class NumberedRows : public TDataSet
{
public:
    explicit NumberedRows(int count, int broken = -1) : m_count(count), m_broken(broken)
    {
        AddField(u"NAME"_s, FieldType::Integer);
        Open();
    }
    QVariant ValueAt(int row, int) const override { return row + 1; }
    bool isSlow = false; ///< pauses before each row

protected:
    void DoOpen() override {}
    void DoClose() override {}
    int DoFetch(int) override
    {
        if (RecordCount() == m_broken)
            throw DatabaseError(u"broken"_s);
        if (isSlow && MayPause() && std::exchange(m_isDue, !m_isDue))
            return -1;
        return RecordCount() < m_count ? 1 : 0;
    }
    void DoInsertRow(const QList<QVariant> &) override {}
    void DoUpdateRow(int, const QList<QVariant> &, const QList<QVariant> &) override {}
    void DoDeleteRow(int) override {}

private:
    int m_count, m_broken;
    bool m_isDue = true;
};

class CxGrid : public testing::Test
{
protected:
    CxGrid()
    {
        Doors().messageBox = [this](auto &&, const QString &text, auto &&...) {
            boxes.append(text);
            return true;
        };
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
    ~CxGrid() override
    {
        view.SetDataSource(nullptr);
        Doors() = m_realDoors;
    }

    void Fill(int count)
    {
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
    void SetText(const QString &to)
    {
        rows.Edit();
        rows.FieldByName(u"TEXT"_s).SetAsString(to);
        rows.Post();
    }
    void Show(TDataSet &shown)
    {
        source.SetDataSet(&shown);
        view.SetDataSource(&source);
        view.show();
        view.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    }
    QRect Cell(int row, int column) { return view.visualRect(view.model()->index(row, column)); }
    void Click(int row, int column, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, Cell(row, column).center());
    }

    QStringList boxes;
    TdxMemData rows;
    TDataSource source;
    TcxGridDBTableView view;
    TcxGridDBColumn id{&view}, name{&view}, text{&view};
    QAbstractItemModelTester tester{view.model(), QAbstractItemModelTester::FailureReportingMode::Fatal};

private:
    PlatformDoors m_realDoors = Doors();
};

} // namespace

TEST_F(CxGrid, ShowsRowsUnderCaptionsAndFollowsReopening)
{
    view.SetDataSource(&source);
    Fill(3);
    EXPECT_EQ(view.RowTexts(1), (QStringList{u"n2"_s, u"<b>t2</b>"_s}));
    const auto caption = [&](int column) { return view.model()->headerData(column, Qt::Horizontal).toString(); };
    EXPECT_EQ(caption(1) + caption(2), u"LabelCaption"_s);
    name.SetVisible(false);
    id.SetVisible(true);
    rows.FieldByName(u"TEXT"_s).OnGetText = [](const TField &field) { return field.AsString().toUpper(); };
    SetText(u"new"_s);
    EXPECT_EQ(view.RowTexts(0), (QStringList{u"1"_s, u"NEW"_s}));
    rows.Close();
    EXPECT_EQ(view.model()->rowCount(), 0);
    EXPECT_FALSE(view.currentIndex().isValid());
}

TEST_F(CxGrid, FocusAndCursorFollowEachOther)
{
    Fill(100);
    Show(rows);
    rows.MoveTo(90);
    EXPECT_EQ(view.currentIndex().row(), 90);
    EXPECT_TRUE(view.viewport()->rect().contains(Cell(90, 1).center()));
    const std::pair<Qt::Key, int> keys[]{{Qt::Key_Up, 89},  {Qt::Key_Home, 0}, {Qt::Key_Left, 0},
                                         {Qt::Key_Down, 1}, {Qt::Key_End, 99}, {Qt::Key_Down, 99}};
    for (const auto &[key, row] : keys) {
        QTest::keyClick(&view, key);
        EXPECT_EQ(rows.RecNo(), row) << key;
        EXPECT_EQ(view.currentIndex().row(), row) << key;
    }
    view.scrollToTop();
    Click(3, 2);
    EXPECT_EQ(rows.RecNo(), 3);
}

TEST_F(CxGrid, RowsAreFetchedWhenTheyComeNearAndAFailureIsToldOnce)
{
    NumberedRows many(350'000, 6'000);
    Show(many);
    QTest::keyClick(&view, Qt::Key_PageDown);
    EXPECT_GT(many.RecNo(), 3);
    EXPECT_LT(many.RecordCount(), 100);
    // Others fetch, too, and the view learns of it by the move.
    ASSERT_TRUE(many.Locate(u"NAME"_s, 5'000));
    EXPECT_EQ(view.currentIndex().row(), 4'999);
    EXPECT_LT(many.RecordCount(), 5'100);
    QTest::keyClick(&view, Qt::Key_End);
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(boxes, QStringList{u"broken"_s});
    EXPECT_EQ(view.model()->rowCount(), 6'000);
    EXPECT_EQ(view.currentIndex().row(), 5'999);
    view.SetDataSource(nullptr);
}

TEST_F(CxGrid, RowsThatTakeLongToFindAppearOneByOne)
{
    NumberedRows slow(3);
    slow.Close();
    slow.isSlow = true;
    slow.OnPause = [] {};
    Show(slow);
    slow.Open();
    EXPECT_EQ(view.model()->rowCount(), 0);
    EXPECT_FALSE(slow.Eof()) << "not known yet";
    std::string counts;
    while (slow.IsPaused()) {
        slow.Resume();
        counts += std::to_string(view.model()->rowCount());
        EXPECT_EQ(view.currentIndex().row(), 0);
    }
    EXPECT_EQ(counts, "1233");
    EXPECT_TRUE(slow.AllFetched());
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
        {"bottom", 1'000, [](QScrollBar &bar) { bar.setValue(bar.maximum()); }, -1, true},
        {"past a near end", 30, [](QScrollBar &bar) { bar.setValue(40); }, -1, true},
        {"all fit", 5, [](QScrollBar &bar) { bar.setValue(bar.maximum()); }, 0, true},
        {"thumb held", 1'000, [](QScrollBar &bar) { bar.setSliderDown(true); }, 0, true},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        NumberedRows numbers(c.rows);
        Show(numbers);
        QCoreApplication::processEvents();
        QScrollBar &bar = *view.verticalScrollBar();
        const int known = numbers.RecordCount();
        EXPECT_LT(known, 25);                              // as much as fits before the view has its size
        EXPECT_EQ(bar.maximum() >= known, c.rows > known); // never the end while rows follow
        c.scroll(bar);
        const int value = bar.value();
        QCoreApplication::processEvents();
        EXPECT_EQ(bar.value(), value);
        EXPECT_EQ(view.rowAt(c.top < 0 ? view.viewport()->height() - 1 : 0), c.top < 0 ? c.rows - 1 : c.top);
        EXPECT_EQ(numbers.AllFetched(), c.isWhole);
        const int last = std::max(0, c.rows - view.viewport()->height() / view.DataRowHeight());
        EXPECT_EQ(bar.maximum() == last, c.isWhole);
        bar.setSliderDown(false);
        view.SetDataSource(nullptr);
    }
}

TEST_F(CxGrid, SeveralRowsAreSelectedAndCopied)
{
    Fill(5);
    Show(rows);
    QTest::keyClick(&view, Qt::Key_Down);
    QTest::keyClick(&view, Qt::Key_Down, Qt::ShiftModifier);
    Click(4, 1, Qt::ControlModifier);
    EXPECT_EQ(view.SelectedKeys(), (QVariantList{2, 3, 5}));
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"n2\t<b>t2</b>\nn3\t<b>t3</b>\nn5\t<b>t5</b>"_s);
    rows.MoveTo(0);
    EXPECT_EQ(view.SelectedKeys(), QVariantList{1});
}

TEST_F(CxGrid, ColumnsShareTheWidthButForOneOfImages)
{
    QPixmap red(16, 16);
    red.fill(Qt::red);
    id.SetFixed(true);
    id.SetWidth(24);
    id.SetImage(2, red);
    Fill(3);
    Show(rows);
    const auto expectFilled = [&](int first) {
        EXPECT_EQ(view.columnWidth(0), first);
        EXPECT_EQ(first + view.columnWidth(1) + view.columnWidth(2), view.viewport()->width());
    };
    view.resize(600, 200);
    expectFilled(0);
    EXPECT_NEAR(view.columnWidth(2), 2 * view.columnWidth(1), 2);
    for (const auto &[column, width] : {std::pair(1, 450), {1, 5000}, {2, 5}}) {
        view.horizontalHeader()->resizeSection(column, width);
        expectFilled(0);
    }
    id.SetVisible(true);
    expectFilled(24);
    EXPECT_EQ(view.model()->headerData(0, Qt::Horizontal).toString() + view.RowTexts(1).first(), QString());
    EXPECT_EQ(view.viewport()->grab().toImage().pixelColor(Cell(1, 0).center()), QColor(Qt::red));
}

TEST_F(CxGrid, OnlyACellThatIsCutOffHasAHint)
{
    Fill(1);
    Show(rows);
    const auto hintOver = [&](int column) {
        const QPoint point = Cell(0, column).center();
        QHelpEvent event(QEvent::ToolTip, point, view.viewport()->mapToGlobal(point));
        QCoreApplication::sendEvent(view.viewport(), &event);
        return QToolTip::text();
    };
    EXPECT_EQ(hintOver(2), QString());
    SetText(u"<i>"_s + QString(100, u'x'));
    EXPECT_EQ(hintOver(2), u"<qt>&lt;i&gt;"_s + QString(100, u'x') + u"</qt>"_s);
    hintOver(1);
    EXPECT_TRUE(WaitFor([] { return QToolTip::text().isEmpty(); }));
}

TEST_F(CxGrid, ARowBeingInsertedStandsAtTheEnd)
{
    Fill(3);
    Show(rows);
    int told = 0;
    view.OnSelectionChanged = [&] { ++told; };
    rows.MoveTo(1);
    EXPECT_TRUE(WaitFor([&] { return told == 1; }));
    rows.Insert();
    rows.FieldByName(u"TEXT"_s).SetAsString(u"new"_s);
    EXPECT_EQ(view.currentIndex().row(), 3);
    EXPECT_EQ(view.RowTexts(3).last(), u"new"_s);
    EXPECT_EQ(view.RowTexts(1).last(), u"<b>t2</b>"_s);
    EXPECT_TRUE(WaitFor([&] { return told == 2; })) << "several changes are told once, when the cursor has followed";
    rows.Cancel();
    EXPECT_EQ(view.model()->rowCount(), 3);
    EXPECT_EQ(view.currentIndex().row(), 1);
    // A post that fails leaves the focus with the row.
    rows.BeforePost = [] { throw DatabaseError(u"refused"_s); };
    rows.Insert();
    rows.FieldByName(u"TEXT"_s).SetAsString(u"new"_s);
    Click(0, 1);
    EXPECT_EQ(view.currentIndex().row(), 3);
    EXPECT_EQ(boxes, QStringList{u"refused"_s});
    rows.BeforePost = nullptr;
    Click(0, 1);
    EXPECT_EQ(view.model()->rowCount(), 4);
    EXPECT_EQ(rows.RecNo(), 0);
}

TEST_F(CxGrid, RowsGrowWithTheirTextsWhenTheyAreSeenAndTheFocusStaysInView)
{
    Fill(1000);
    rows.FieldByName(u"TEXT"_s).OnGetText = [](const TField &field) { return (field.AsString() + u' ').repeated(12); };
    view.SetCellAutoHeight(true);
    Show(rows);
    const auto isSeen = [&] {
        return view.rowHeight(rows.RecNo()) > view.DataRowHeight() &&
               view.viewport()->rect().contains(view.visualRect(view.currentIndex()));
    };
    EXPECT_EQ(view.rowHeight(700), view.DataRowHeight()) << "was measured though nobody saw it";
    rows.MoveTo(700);
    EXPECT_TRUE(WaitFor(isSeen));
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_End, Qt::Key_Up}) {
        QTest::keyClick(&view, key);
        EXPECT_TRUE(WaitFor(isSeen)) << rows.RecNo();
    }
    const int before = view.rowHeight(rows.RecNo());
    view.resize(view.width() * 3, view.height());
    EXPECT_TRUE(WaitFor([&] { return view.rowHeight(rows.RecNo()) < before; }));
}

TEST_F(CxGrid, AnEmptyTableSaysSo)
{
    Show(rows);
    const auto shown = [&](const QString &text) {
        view.setProperty("OptionsView.NoDataToDisplayInfoText", text);
        return view.viewport()->grab().toImage();
    };
    EXPECT_NE(shown(u"Nothing"_s), shown({}));
    Fill(1);
    EXPECT_EQ(shown(u"Nothing"_s), shown({}));
}
