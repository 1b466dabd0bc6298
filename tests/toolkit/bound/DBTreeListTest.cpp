#include "toolkit/bound/DBTreeList.h"

#include "stores/data/DataSource.h"
#include "stores/data/MemData.h"
#include "support/WaitFor.h"
#include "toolkit/program/Doors.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>

#include <gmock/gmock.h>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

class DBTreeList : public testing::Test
{
protected:
    DBTreeList()
    {
        for (const QString &name : {u"ID"_s, u"PARENT"_s, u"NAME"_s, u"OTHER"_s})
            rows.AddField(name, FieldType::WideString, 127);
        source.SetDataSet(&rows);
        tree.SetKeyField(u"ID"_s);
        tree.SetParentField(u"PARENT"_s);
        tree.SetRootValue(u"-1"_s);
        tree.AddColumn(u"NAME"_s, u"treeNAME"_s, true);
        tree.AddColumn(u"OTHER"_s, u"treeOTHER"_s, false);
        tree.resize(300, 400);
        Fill();
        tree.SetDataSource(&source);
        tree.FullExpand();
    }

    void Add(const QString &id, const QString &parent)
    {
        rows.Append();
        int column = 0;
        for (const QString &value : {id, parent, u"name "_s + id, u"other "_s + id})
            rows.Fields()[column++]->SetAsString(value);
        rows.Post();
    }
    /// Two groups with passages, the second group before its passages.
    void Fill()
    {
        rows.Open();
        const std::pair<QString, QString> nodes[]{
            {u"1"_s, u"-1"_s}, {u"11"_s, u"1"_s}, {u"12"_s, u"1"_s}, {u"2"_s, u"-1"_s}, {u"21"_s, u"2"_s}};
        for (const auto &[id, parent] : nodes)
            Add(id, parent);
        rows.First();
    }

    /// The texts on the screen, from the top, indented by level.
    QString Shown() const
    {
        QStringList texts;
        for (QModelIndex node = tree.model()->index(0, 0); node.isValid(); node = tree.indexBelow(node)) {
            const QString text = node.siblingAtColumn(tree.treePosition()).data().toString();
            texts.append((node.parent().isValid() ? u" "_s : QString()) + text);
        }
        return texts.join(u'|');
    }

    TdxMemData rows;
    TDataSource source;
    TDBTreeList tree;
    QAbstractItemModelTester tester{tree.model(), QAbstractItemModelTester::FailureReportingMode::Fatal};
};

} // namespace

TEST_F(DBTreeList, ShowsTheRowsAsATreeAndFollowsReopening)
{
    const QString whole = u"name 1| name 11| name 12|name 2| name 21"_s;
    EXPECT_EQ(Shown(), whole);
    rows.Close();
    EXPECT_EQ(Shown(), QString());
    EXPECT_FALSE(tree.currentIndex().isValid());
    Fill();
    tree.FullExpand();
    EXPECT_EQ(Shown(), whole);
}

TEST_F(DBTreeList, FocusAndCursorFollowEachOther)
{
    rows.MoveTo(4);
    EXPECT_EQ(tree.RowOf(tree.currentIndex()), 4);
    tree.show();
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(tree.NodeOf(2)).center());
    EXPECT_EQ(rows.RecNo(), 2);
    QTest::keyClick(&tree, Qt::Key_Down);
    EXPECT_EQ(rows.RecNo(), 3);
    // No gesture takes the selection off the row of the cursor.
    const QPoint here = tree.visualRect(tree.currentIndex()).center();
    for (const auto &[modifiers, point] : {std::pair(Qt::ControlModifier, here), {Qt::NoModifier, QPoint(50, 390)}}) {
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, modifiers, point);
        EXPECT_TRUE(tree.selectionModel()->isSelected(tree.NodeOf(3)));
    }
    QTest::keyClick(&tree, Qt::Key_Space, Qt::ControlModifier);
    EXPECT_TRUE(tree.selectionModel()->isSelected(tree.NodeOf(3)));
    // A node far away is brought into view.
    for (int number = 100; number < 400; ++number)
        Add(QString::number(number), u"2"_s);
    rows.First();
    ASSERT_TRUE(rows.Locate(u"ID"_s, u"399"_s));
    EXPECT_EQ(tree.currentIndex().data().toString(), u"name 399"_s);
    EXPECT_TRUE(tree.viewport()->rect().contains(tree.visualRect(tree.currentIndex())));
}

TEST_F(DBTreeList, AGroupThatCollapsesAroundTheFocusTakesIt)
{
    Add(u"111"_s, u"11"_s); // row 5
    tree.FullExpand();
    const auto collapse = [this](int row) { tree.collapse(tree.NodeOf(row).siblingAtColumn(0)); };
    const std::tuple<const char *, int, std::function<void()>, int> rows_[]{
        {"from a node in it", 5, [&] { collapse(1); }, 1}, {"from far below", 5, [&] { collapse(0); }, 0},
        {"another group", 5, [&] { collapse(3); }, 5},     {"the focused one itself", 1, [&] { collapse(1); }, 1},
        {"all", 5, [&] { tree.FullCollapse(); }, 0},       {"all, from the top", 3, [&] { tree.FullCollapse(); }, 3}};
    for (const auto &[what, focused, act, expected] : rows_) {
        tree.FullExpand();
        rows.MoveTo(focused);
        act();
        EXPECT_EQ(rows.RecNo(), expected) << what;
        EXPECT_EQ(tree.RowOf(tree.currentIndex()), expected) << what;
        EXPECT_FALSE(tree.visualRect(tree.currentIndex()).isEmpty()) << what << ": it is in sight";
    }
}

TEST_F(DBTreeList, ANameThatIsCutOffIsToldInAHint)
{
    tree.show();
    const auto hintOver = [this](int row) {
        const QPoint point = tree.visualRect(tree.NodeOf(row)).center();
        QHelpEvent event(QEvent::ToolTip, point, tree.viewport()->mapToGlobal(point));
        QCoreApplication::sendEvent(tree.viewport(), &event);
        const QString text = QToolTip::text();
        QToolTip::hideText();
        EXPECT_TRUE(WaitFor([] { return QToolTip::text().isEmpty(); }));
        return text;
    };
    EXPECT_EQ(hintOver(1), QString());
    const QString name = u"<b> "_s + QString(100, u'x');
    rows.MoveTo(1);
    rows.Edit();
    rows.FieldByName(u"NAME"_s).SetAsString(name);
    rows.Post();
    EXPECT_EQ(hintOver(1), u"<qt>"_s + name.toHtmlEscaped() + u"</qt>"_s);
}

TEST_F(DBTreeList, AFailingDetailLeavesFocusAndCursorTogether)
{
    QStringList reported;
    const auto realBox = std::exchange(Doors().messageBox, [&](auto &&, const QString &text, auto &&...) {
        reported.append(text);
        return true;
    });
    rows.AfterScroll = [] { throw std::runtime_error("no detail"); };
    tree.setCurrentIndex(tree.NodeOf(4));
    rows.AfterScroll = nullptr;
    Doors().messageBox = realBox;
    EXPECT_EQ(reported, QStringList{u"no detail"_s});
    EXPECT_EQ(tree.RowOf(tree.currentIndex()), rows.RecNo());
}

TEST_F(DBTreeList, TheVisibleColumnCarriesTheBranchesAndFillsTheWidth)
{
    tree.show();
    tree.Column(u"NAME"_s)->SetVisible(false);
    tree.Column(u"OTHER"_s)->SetVisible(true);
    EXPECT_TRUE(Shown().startsWith(u"other 1| other 11"_s));
    EXPECT_EQ(tree.columnWidth(tree.treePosition()), tree.viewport()->width());
    EXPECT_EQ(tree.visualRect(tree.NodeOf(1)).height(), 23);
    tree.Column(u"OTHER"_s)->SetVisible(false); // a blank tree still has its nodes
    rows.MoveTo(3);
    EXPECT_TRUE(tree.findChild<QObject *>(u"treeNAME"_s)->setProperty("Visible", true));
    EXPECT_EQ(tree.currentIndex().data().toString(), u"name 2"_s);
}

TEST_F(DBTreeList, OutlivesItsDataset)
{
    auto passing = std::make_unique<TdxMemData>();
    for (const QString &name : {u"ID"_s, u"PARENT"_s, u"NAME"_s})
        passing->AddField(name, FieldType::WideString, 31);
    source.SetDataSet(passing.get());
    passing->Open();
    passing->Append();
    passing->FieldByName(u"NAME"_s).SetAsString(u"one"_s);
    passing->Post();
    EXPECT_EQ(Shown(), u"one"_s);
    passing.reset();
    EXPECT_EQ(Shown(), QString());
    tree.grab();
}
