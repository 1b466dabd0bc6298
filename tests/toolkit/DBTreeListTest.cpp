#include "toolkit/DBTreeList.h"

#include "stores/DataSource.h"
#include "stores/MemData.h"
#include "toolkit/Doors.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QPainter>
#include <QTest>

#include <gmock/gmock.h>

#include <numeric>

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
        tree.AddColumn(u"ID"_s, u"treeID"_s, false);
        tree.AddColumn(u"NAME"_s, u"treeNAME"_s, true);
        tree.AddColumn(u"OTHER"_s, u"treeOTHER"_s, false);
        tree.resize(300, 400);
    }

    void Add(const QString &id, const QString &parent)
    {
        rows.Append();
        int column = 0;
        for (const QString &value : {id, parent, u"name "_s + id, u"other "_s + id})
            rows.Fields()[column++]->SetAsString(value);
        rows.Post();
    }
    /// Two groups with two passages each, the second group before its passages.
    void Fill()
    {
        rows.Open();
        for (const auto &[id, parent] : {std::pair(u"1"_s, u"-1"_s),
                                         {u"11"_s, u"1"_s},
                                         {u"12"_s, u"1"_s},
                                         {u"2"_s, u"-1"_s},
                                         {u"21"_s, u"2"_s},
                                         {u"22"_s, u"2"_s}})
            Add(id, parent);
        rows.First();
    }

    /// The texts on the screen, from the top, indented by level.
    QStringList Shown() const
    {
        QStringList texts;
        for (QModelIndex node = tree.model()->index(0, 0); node.isValid(); node = tree.indexBelow(node)) {
            int level = 0;
            for (QModelIndex above = node.parent(); above.isValid(); above = above.parent())
                ++level;
            texts.append(QString(level, u' ') + node.siblingAtColumn(tree.treePosition()).data().toString());
        }
        return texts;
    }

    TdxMemData rows;
    TDataSource source;
    TDBTreeList tree;
};

} // namespace

TEST_F(DBTreeList, ShowsTheRowsAsATreeAndFollowsReopening)
{
    const QAbstractItemModelTester tester(tree.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    tree.SetDataSource(&source);
    EXPECT_EQ(Shown(), QStringList());
    Fill();
    tree.FullExpand();
    const QStringList whole{u"name 1"_s, u" name 11"_s, u" name 12"_s, u"name 2"_s, u" name 21"_s, u" name 22"_s};
    EXPECT_EQ(Shown(), whole);
    tree.FullCollapse();
    EXPECT_EQ(Shown(), (QStringList{u"name 1"_s, u"name 2"_s}));
    rows.Close();
    EXPECT_EQ(Shown(), QStringList());
    EXPECT_FALSE(tree.currentIndex().isValid());
    Fill();
    tree.FullExpand();
    EXPECT_EQ(Shown(), whole);
}

TEST_F(DBTreeList, FocusAndCursorFollowEachOther)
{
    Fill();
    tree.SetDataSource(&source);
    tree.FullExpand();
    EXPECT_EQ(tree.RowOf(tree.currentIndex()), 0);
    rows.MoveTo(4);
    EXPECT_EQ(tree.RowOf(tree.currentIndex()), 4);
    EXPECT_TRUE(tree.selectionModel()->isSelected(tree.currentIndex()));
    tree.show();
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(tree.NodeOf(2)).center());
    EXPECT_EQ(rows.RecNo(), 2);
    QTest::keyClick(&tree, Qt::Key_Down);
    EXPECT_EQ(rows.RecNo(), 3);
    // A node far away is brought into view.
    for (int number = 100; number < 400; ++number)
        Add(QString::number(number), u"2"_s);
    rows.First();
    ASSERT_TRUE(rows.Locate(u"ID"_s, u"399"_s));
    EXPECT_EQ(tree.currentIndex().data().toString(), u"name 399"_s);
    EXPECT_TRUE(tree.viewport()->rect().contains(tree.visualRect(tree.currentIndex())));
}

TEST_F(DBTreeList, AFailingDetailLeavesFocusAndCursorTogether)
{
    Fill();
    tree.SetDataSource(&source);
    tree.FullExpand();
    QStringList reported;
    const auto realBox =
        std::exchange(Doors().messageBox, [&](const QString &, const QString &text, BoxButtons, BoxIcon) {
            reported.append(text);
            return true;
        });
    rows.AfterScroll = [] { throw std::runtime_error("no detail"); };
    tree.setCurrentIndex(tree.NodeOf(5));
    rows.AfterScroll = nullptr;
    Doors().messageBox = realBox;
    EXPECT_EQ(reported, QStringList{u"no detail"_s});
    EXPECT_EQ(tree.RowOf(tree.currentIndex()), rows.RecNo());
}

TEST_F(DBTreeList, TheVisibleColumnCarriesTheBranchesAndFillsTheWidth)
{
    Fill();
    tree.SetDataSource(&source);
    tree.show();
    tree.FullExpand();
    tree.Column(u"NAME"_s)->SetVisible(false);
    tree.Column(u"OTHER"_s)->SetVisible(true);
    EXPECT_EQ(Shown().value(1), u" other 11"_s);
    EXPECT_EQ(tree.columnWidth(tree.treePosition()), tree.viewport()->width());
    EXPECT_EQ(tree.currentIndex().data().toString(), u"other 1"_s);
    EXPECT_EQ(tree.visualRect(tree.NodeOf(1)).height(), 23);

    tree.Column(u"OTHER"_s)->SetVisible(false); // a blank tree still has its nodes
    rows.MoveTo(3);
    EXPECT_EQ(tree.RowOf(tree.currentIndex()), 3);
    auto *named = tree.findChild<QObject *>(u"treeNAME"_s);
    ASSERT_TRUE(named);
    EXPECT_TRUE(named->setProperty("Visible", true));
    EXPECT_EQ(tree.currentIndex().data().toString(), u"name 2"_s);
}

TEST_F(DBTreeList, OnlyTheSelectedNodeIsBold)
{
    Fill();
    tree.SetDataSource(&source);
    // What the delegate makes of the font shows in the ink of the text that it paints.
    const auto inkOf = [this](QStyle::State state) {
        QStyleOptionViewItem option;
        option.initFrom(&tree);
        option.rect = QRect(0, 0, 200, 23);
        option.state = state;
        option.palette.setColor(QPalette::Highlight, Qt::transparent);
        option.palette.setColor(QPalette::HighlightedText, option.palette.color(QPalette::Text));
        QImage image(200, 23, QImage::Format_Alpha8);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        tree.itemDelegate()->paint(&painter, option, tree.NodeOf(1));
        painter.end();
        return std::accumulate(image.constBits(), image.constBits() + image.sizeInBytes(), 0);
    };
    EXPECT_GT(inkOf(QStyle::State_Enabled | QStyle::State_Selected), inkOf(QStyle::State_Enabled) * 1.1);
}

TEST_F(DBTreeList, OutlivesItsDataset)
{
    auto passing = std::make_unique<TdxMemData>();
    for (const QString &name : {u"ID"_s, u"PARENT"_s})
        passing->AddField(name, FieldType::WideString, 31);
    source.SetDataSet(passing.get());
    tree.SetDataSource(&source);
    passing->Open();
    passing->Append();
    passing->Post();
    EXPECT_EQ(Shown().size(), 1);
    passing.reset();
    EXPECT_EQ(Shown().join(QString()), QString());
    tree.grab();
}
