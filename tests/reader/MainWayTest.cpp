#include "reader/LongCanon.h"
#include "reader/ReaderWindow.h"

#include "toolkit/controls/CxTextEdit.h"
#include "toolkit/program/Doors.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

class WayBack : public ReaderWindow
{
protected:
    WayBack()
    {
        program = LongCanon().Path(u"Lumivara"_s);
        skinFile = LongCanon().Path(u"AllSkins.skinres"_s);
        SetSkins({});
        Doors().clock = [this] { return now; };
    }
    void SetUp() override
    {
        StartOn(1101);
        Activate();
        ASSERT_TRUE(WaitPage());
    }
    PagePlace Top()
    {
        EXPECT_TRUE(WaitPage());
        std::optional<PagePlace> top;
        EXPECT_TRUE(Browser().AskPlace([&](const PagePlace &place) { top = place; }));
        EXPECT_TRUE(WaitFor([&] { return top.has_value(); }));
        return top.value_or(PagePlace());
    }
    /// Scrolls to a block as a reader would.
    void Read(int block)
    {
        EXPECT_TRUE(WaitPage());
        Browser().GoToPlace({block, 0, 0.5, {}});
        EXPECT_EQ(Top().block, block);
    }
    void Open(int idVic)
    {
        GoTo(idVic);
        EXPECT_TRUE(WaitPage());
    }
    /// Where the reader stands now, as "1101 v 17"; the line within the block has to be the one that was read.
    std::string Where()
    {
        const PagePlace top = Top();
        if (top.block > 0) {
            EXPECT_LT(std::abs(top.share - 0.5) * LongParagraph, 140) << "another line";
        }
        return std::to_string(CurrentId()) + (Browser().Source().contains("viet") ? " v " : " p ") +
               std::to_string(top.block);
    }
    std::string Go(const char *command)
    {
        Trigger(command);
        return Where();
    }

    qint64 now = 0;
};

} // namespace

TEST_F(WayBack, LeadsToTextLanguageAndLineAndForwardAgain)
{
    EXPECT_FALSE(Action("acBack").isEnabled());
    Read(31);
    Open(1102);
    Read(12);
    Click("btnPali");
    EXPECT_EQ(Top().block, 12);
    Open(1103);
    Read(44);
    EXPECT_EQ(Go("acBack"), "1102 p 12");
    EXPECT_EQ(Go("acBack"), "1101 v 31");
    EXPECT_TRUE(Find<TcxButton>("btnViet").isChecked());
    EXPECT_FALSE(Action("acBack").isEnabled());
    EXPECT_EQ(Go("acForward"), "1102 p 12");
    EXPECT_EQ(Go("acForward"), "1103 p 44");
    EXPECT_FALSE(Action("acForward").isEnabled());
    for (int move = 0; move < 10; ++move) {
        EXPECT_EQ(Go("acBack"), "1102 p 12");
        EXPECT_EQ(Go("acForward"), "1103 p 44");
    }
}

TEST_F(WayBack, ThePlaceStaysInAnotherDressAndComesBackWithItsText)
{
    Read(25);
    Trigger("acMarginWidth3");
    EXPECT_EQ(Where(), "1101 v 25");
    Click("btnPali");
    EXPECT_EQ(Where(), "1101 p 25");
    // Twice before a page is there.
    Click("btnViet");
    Trigger("acMarginWidth0");
    EXPECT_EQ(Where(), "1101 v 25");
    Open(1103);
    EXPECT_EQ(Where(), "1103 v 0");
    Open(1101);
    EXPECT_EQ(Where(), "1101 v 25");
    window->ApplyOptions();
    EXPECT_EQ(Where(), "1101 v 0") << "not after options";
    window->SetSoughtWords(u"7 viet"_s);
    Open(1103);
    Open(1101);
    Read(50);
    Open(1103);
    Open(1101);
    EXPECT_EQ(Top().block, 7) << "a search has its own place";
    window->SetSoughtWords({});
}

TEST_F(WayBack, TheNextStartBeginsAtTheLastLine)
{
    Open(1102);
    Read(46);
    answers = {true};
    EXPECT_TRUE(window->close());
    EXPECT_EQ(RunApplication(), 0);
    TakeBox();
    End();
    Start();
    EXPECT_EQ(Where(), "1102 v 46");
}

TEST_F(WayBack, ArrowKeysMakeAStepWhereTheyRest)
{
    Open(1102);
    const auto walk = [this](int key) {
        QTest::keyClick(&Tree(), Qt::Key(key));
        EXPECT_TRUE(WaitPage());
    };
    walk(Qt::Key_Down);
    EXPECT_EQ(CurrentId(), 1103);
    Trigger("acBack");
    EXPECT_EQ(CurrentId(), 1102) << "1103 was only passed";
    walk(Qt::Key_Down);
    now += 2000;
    walk(Qt::Key_Up);
    walk(Qt::Key_Up);
    EXPECT_EQ(CurrentId(), 1101);
    Trigger("acBack");
    EXPECT_EQ(CurrentId(), 1103);
    Trigger("acBack");
    EXPECT_EQ(CurrentId(), 1102);
}

TEST_F(WayBack, AKeyInTheFilterBoxGoesBackAndIsNotUndoneByItsRelease)
{
    Open(1102);
    Open(1103);
    auto &filter = Find<TcxTextEdit>("edFilterSutta");
    filter.setFocus();
    Type(filter, u"1101"_s);
    EXPECT_EQ(CurrentId(), 1001) << "the first row of a filtered tree";
    QTest::keyClick(window->windowHandle(), Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(CurrentId(), 1103) << "the text before the filter, which hid it";
    EXPECT_EQ(filter.text(), QString());
    EXPECT_TRUE(Browser().isAncestorOf(QApplication::focusWidget()) || Browser().hasFocus());
    QTest::keyClick(window->windowHandle(), Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(CurrentId(), 1102) << "filter keys are no steps";
}

TEST_F(WayBack, TheMousesButtonsLeadBackAndForwardAllOverTheWindow)
{
    Open(1102);
    QTest::mouseClick(Tree().viewport(), Qt::BackButton);
    EXPECT_TRUE(WaitFor([this] { return CurrentId() == 1101; }));
    EXPECT_TRUE(WaitPage());
    QTest::mouseClick(Browser().focusProxy(), Qt::ForwardButton);
    EXPECT_TRUE(WaitFor([this] { return CurrentId() == 1102; }));
}

TEST_F(WayBack, ListsTheTextsThatWereReadTheLastInFront)
{
    auto &menu = Find<QMenu>("bsiRecent");
    const auto listed = [&menu] {
        emit menu.aboutToShow();
        QStringList texts;
        for (const QAction *action : menu.actions())
            texts.append(action->text());
        return texts.join(u'|').toStdString();
    };
    Open(1103);
    Open(1102);
    EXPECT_EQ(listed(), "Bai 1102  ·  1102|Bai 1103  ·  1103|Bai 1101  ·  1101");
    menu.actions().last()->trigger();
    EXPECT_TRUE(WaitPage());
    EXPECT_EQ(CurrentId(), 1101);
    EXPECT_EQ(listed(), "Bai 1101  ·  1101|Bai 1102  ·  1102|Bai 1103  ·  1103");
}
