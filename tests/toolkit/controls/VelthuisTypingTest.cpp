#include "toolkit/controls/VelthuisTyping.h"

#include "toolkit/controls/CxTextEdit.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QTest>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

class Typing : public testing::Test
{
protected:
    Typing()
    {
        new VelthuisTyping(box, [this] { return isMeant; }, [] { return QChar(u'ṁ'); });
    }

    void Type(const QString &text)
    {
        for (const QChar letter : text)
            QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_unknown, letter, Qt::NoModifier);
    }
    void Press(Qt::Key key) { QTest::keyClick(&box, key); }
    /// The text with the cursor as "|".
    std::string Stand() { return box.text().insert(box.cursorPosition(), u'|').toStdString(); }

    TcxTextEdit box;
    bool isMeant = true;
};

TEST_F(Typing, TurnsLettersWhereTheCursorStands)
{
    Type(u"sa\"nghaana.m"_s);
    EXPECT_EQ(Stand(), "saṅghānaṁ|");
    box.setText(u"dhman"_s);
    box.setCursorPosition(2);
    Type(u"aa"_s);
    EXPECT_EQ(Stand(), "dhā|man");
    box.setText(u"axyn"_s);
    box.setSelection(1, 2);
    Type(u"a"_s);
    EXPECT_EQ(Stand(), "ā|n") << "a letter over a selection";
    isMeant = false;
    Type(u"aa"_s);
    EXPECT_EQ(Stand(), "āaa|n");
}

TEST_F(Typing, BackspaceRightAfterTakesOneStepBack)
{
    Type(u"kaa"_s);
    Press(Qt::Key_Backspace);
    EXPECT_EQ(Stand(), "kaa|");
    Type(u"t"_s);
    EXPECT_EQ(Stand(), "kaat|") << "what was taken back stays";
    Press(Qt::Key_Backspace);
    Press(Qt::Key_Backspace);
    EXPECT_EQ(Stand(), "ka|");
    for (const auto &between : {std::pair(Qt::Key_Left, Qt::Key_Right), {Qt::Key_Home, Qt::Key_End}}) {
        box.clear();
        Type(u"kaa"_s);
        Press(between.first);
        Press(between.second);
        Press(Qt::Key_Backspace);
        EXPECT_EQ(Stand(), "k|") << "not right after";
    }
    box.setText(u"dhmn"_s);
    box.setCursorPosition(2);
    Type(u".t"_s);
    Press(Qt::Key_Backspace);
    EXPECT_EQ(Stand(), "dh.t|mn");
}

TEST_F(Typing, UndoGoesThroughTheStepsAndLeavesNothingSelected)
{
    Type(u"kaabb"_s);
    for (const char *stand : {"kaa|", "|"}) {
        box.undo();
        EXPECT_EQ(Stand(), stand);
        EXPECT_FALSE(box.hasSelectedText());
    }
    box.redo();
    box.redo();
    EXPECT_EQ(Stand(), "kābb|");
}

TEST_F(Typing, LeavesWhatIsNotTyped)
{
    QGuiApplication::clipboard()->setText(u"aa.m"_s);
    box.paste();
    QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Stand(), "aa.maa.m|");
    box.clear();
    for (int letter = 0; letter < 2; ++letter) {
        QInputMethodEvent composing(u"a"_s, {}), commit;
        commit.setCommitString(u"a"_s);
        QCoreApplication::sendEvent(&box, &composing);
        QCoreApplication::sendEvent(&box, &commit);
    }
    EXPECT_EQ(Stand(), "aa|");
    box.setText(u"a"_s);
    QTest::sendKeyEvent(QTest::Click, &box, Qt::Key_A, u"a"_s, Qt::AltModifier);
    EXPECT_EQ(box.text().count(u'ā'), 0);
}

TEST_F(Typing, EveryKeyIsHeardAndFindsTheNewLettersOnceItIsReleased)
{
    QStringList pressed, released;
    box.OnKeyDown = [&](int, const QString &text) { pressed.append(text); };
    box.OnKeyUp = [&](int) { released.append(box.text()); };
    Type(u".tha"_s);
    Press(Qt::Key_Backspace);
    EXPECT_EQ(pressed.size(), 5);
    EXPECT_EQ(released, (QStringList{u"."_s, u"ṭ"_s, u"ṭh"_s, u"ṭha"_s, u"ṭh"_s}));
}

} // namespace
