#include "toolkit/DBTreeList.h"

#include "stores/DataSource.h"
#include "stores/MemData.h"
#include "toolkit/Doors.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QPainter>
#include <QTest>

#include <gmock/gmock.h>

namespace {

class DBTreeList : public testing::Test
{
protected:
    DBTreeList()
    {
        rows.setObjectName(QStringLiteral("rows"));
        rows.AddField(QStringLiteral("ID"), FieldType::WideString, 31);
        rows.AddField(QStringLiteral("PARENT"), FieldType::WideString, 31);
        rows.AddField(QStringLiteral("NAME"), FieldType::WideString, 127);
        rows.AddField(QStringLiteral("OTHER"), FieldType::WideString, 127);
        source.SetDataSet(&rows);
        tree.SetKeyField(QStringLiteral("ID"));
        tree.SetParentField(QStringLiteral("PARENT"));
        tree.SetRootValue(QStringLiteral("-1"));
        tree.AddColumn(QStringLiteral("ID"), QStringLiteral("treeID"), false);
        tree.AddColumn(QStringLiteral("NAME"), QStringLiteral("treeNAME"), true);
        tree.AddColumn(QStringLiteral("OTHER"), QStringLiteral("treeOTHER"), false);
        tree.resize(300, 400);
    }

    void Add(const QString &id, const QString &parent)
    {
        rows.Append();
        rows.FieldByName(QStringLiteral("ID")).SetAsString(id);
        rows.FieldByName(QStringLiteral("PARENT")).SetAsString(parent);
        rows.FieldByName(QStringLiteral("NAME")).SetAsString(QStringLiteral("name ") + id);
        rows.FieldByName(QStringLiteral("OTHER")).SetAsString(QStringLiteral("other ") + id);
        rows.Post();
    }

    /// Two groups with two passages each, the second group before its passages.
    void Fill()
    {
        rows.Open();
        Add(QStringLiteral("1"), QStringLiteral("-1"));
        Add(QStringLiteral("11"), QStringLiteral("1"));
        Add(QStringLiteral("12"), QStringLiteral("1"));
        Add(QStringLiteral("2"), QStringLiteral("-1"));
        Add(QStringLiteral("21"), QStringLiteral("2"));
        Add(QStringLiteral("22"), QStringLiteral("2"));
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
            texts.append(QString(level, QLatin1Char(' ')) +
                         node.siblingAtColumn(tree.treePosition()).data().toString());
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
    const QStringList whole{
        QStringLiteral("name 1"), QStringLiteral(" name 11"), QStringLiteral(" name 12"),
        QStringLiteral("name 2"), QStringLiteral(" name 21"), QStringLiteral(" name 22"),
    };
    EXPECT_EQ(Shown(), whole);
    tree.FullCollapse();
    EXPECT_EQ(Shown(), (QStringList{QStringLiteral("name 1"), QStringLiteral("name 2")}));
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
    ASSERT_TRUE(rows.Locate(QStringLiteral("ID"), QStringLiteral("22")));
    EXPECT_EQ(tree.currentIndex().data().toString(), QStringLiteral("name 22"));
}

TEST_F(DBTreeList, ALocatedNodeIsBroughtIntoView)
{
    Fill();
    for (int number = 100; number < 400; ++number)
        Add(QString::number(number), QStringLiteral("2"));
    rows.First();
    tree.SetDataSource(&source);
    tree.show();
    tree.FullExpand();
    ASSERT_TRUE(rows.Locate(QStringLiteral("ID"), QStringLiteral("399")));
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
    EXPECT_EQ(reported, QStringList{QStringLiteral("no detail")});
    EXPECT_EQ(tree.RowOf(tree.currentIndex()), rows.RecNo());
}

TEST_F(DBTreeList, TheVisibleColumnCarriesTheBranchesAndFillsTheWidth)
{
    Fill();
    tree.SetDataSource(&source);
    tree.show();
    tree.FullExpand();
    tree.Column(QStringLiteral("NAME"))->SetVisible(false);
    tree.Column(QStringLiteral("OTHER"))->SetVisible(true);
    EXPECT_EQ(Shown().value(1), QStringLiteral(" other 11"));
    EXPECT_EQ(tree.columnWidth(tree.treePosition()), tree.viewport()->width());
    EXPECT_EQ(tree.currentIndex().data().toString(), QStringLiteral("other 1"));
    EXPECT_EQ(tree.visualRect(tree.NodeOf(1)).height(), 23);

    tree.Column(QStringLiteral("OTHER"))->SetVisible(false); // a blank tree still has its nodes
    rows.MoveTo(3);
    EXPECT_EQ(tree.RowOf(tree.currentIndex()), 3);
    auto *named = tree.findChild<QObject *>(QStringLiteral("treeNAME"));
    ASSERT_TRUE(named);
    EXPECT_TRUE(named->setProperty("Visible", true));
    EXPECT_EQ(tree.currentIndex().data().toString(), QStringLiteral("name 2"));
}

TEST_F(DBTreeList, OnlyTheSelectedNodeIsBold)
{
    Fill();
    tree.SetDataSource(&source);
    const auto paintedWith = [this](QStyle::State state) {
        // What the delegate makes of the font shows in the width of the text it paints.
        QStyleOptionViewItem option;
        option.initFrom(&tree);
        option.font = tree.font();
        option.rect = QRect(0, 0, 200, 23);
        option.state = state;
        QImage image(200, 23, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        option.palette.setColor(QPalette::Highlight, Qt::transparent);
        option.palette.setColor(QPalette::HighlightedText, option.palette.color(QPalette::Text));
        tree.itemDelegate()->paint(&painter, option, tree.NodeOf(1));
        painter.end();
        int ink = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                ink += qAlpha(image.pixel(x, y));
        }
        return ink;
    };
    EXPECT_GT(paintedWith(QStyle::State_Enabled | QStyle::State_Selected), paintedWith(QStyle::State_Enabled) * 1.1);
}

TEST_F(DBTreeList, OddKeysShowEveryRow)
{
    const QAbstractItemModelTester tester(tree.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    tree.SetDataSource(&source);
    rows.Open();
    Add(QStringLiteral("orphan"), QStringLiteral("nobody"));
    Add(QStringLiteral("a"), QStringLiteral("b"));
    Add(QStringLiteral("b"), QStringLiteral("a"));
    Add(QStringLiteral("twin"), QStringLiteral("-1"));
    Add(QStringLiteral("twin"), QStringLiteral("-1"));
    Add(QStringLiteral("child"), QStringLiteral("twin"));
    tree.FullExpand();
    EXPECT_EQ(Shown(),
              (QStringList{QStringLiteral("name orphan"), QStringLiteral("name a"), QStringLiteral(" name b"),
                           QStringLiteral("name twin"), QStringLiteral(" name child"), QStringLiteral("name twin")}));
}

TEST_F(DBTreeList, OutlivesItsDataset)
{
    auto passing = std::make_unique<TdxMemData>();
    passing->AddField(QStringLiteral("ID"), FieldType::WideString, 31);
    passing->AddField(QStringLiteral("PARENT"), FieldType::WideString, 31);
    source.SetDataSet(passing.get());
    tree.SetDataSource(&source);
    passing->Open();
    passing->Append();
    passing->FieldByName(QStringLiteral("ID")).SetAsString(QStringLiteral("1"));
    passing->Post();
    EXPECT_EQ(Shown().size(), 1);
    passing.reset();
    EXPECT_EQ(Shown().join(QString()), QString());
    tree.FullExpand();
    tree.grab();
}
