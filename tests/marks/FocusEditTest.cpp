#include "marks/FocusEdit.h"

#include "marks/Excerpt.h"
#include "marks/ExcerptFile.h"
#include "marks/MarksWindow.h"
#include "toolkit/controls/LayoutItem.h"

#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

class FocusEdit : public MarksWindow
{
protected:
    static void Press(TfrmFocusEdit &editor, const char *button) { In<QPushButton>(editor, button).click(); }
    static QLineEdit &Title(TfrmFocusEdit &editor) { return In<QLineEdit>(editor, "edNameFocus"); }
    /// The window is still open on its new row.
    bool IsOpen(TfrmFocusEdit &editor) { return editor.isVisible() && Marks().State() == DataSetState::Insert; }
};

} // namespace

TEST_F(FocusEdit, AKeyOfItsOwnMarksTheSelection)
{
    Open(1101, 1);
    EXPECT_FALSE(Action("acMarkSelection").isEnabled()) << "nothing is selected";
    EXPECT_EQ(Action("acMarkSelection").shortcut(), QKeySequence(Qt::CTRL | Qt::Key_D));
    Browser().SelectAll();
    EXPECT_TRUE(WaitFor([this] { return Action("acMarkSelection").isEnabled(); }));
    RunModal<TfrmFocusEdit>("acMarkSelection", [this](TfrmFocusEdit &editor) { EXPECT_TRUE(IsOpen(editor)); });
}

TEST_F(FocusEdit, ASelectionBecomesAMark)
{
    Open(1101, 1);
    EXPECT_FALSE(Action("acFocusHighlight").isEnabled()) << "nothing is selected";
    QByteArray shown;
    MarkAll([&](TfrmFocusEdit &editor) {
        EXPECT_EQ(editor.size(), QSize(734, 462));
        EXPECT_EQ(In<QWidget>(editor, "pnContent").palette().color(QPalette::Window), QColor(0xF2, 0xF3, 0xF4));
        EXPECT_TRUE(WaitFor([&] { return Title(editor).hasFocus(); }));
        EXPECT_EQ(In<QComboBox>(editor, "edPriority").currentText(), u"Cao"_s);
        EXPECT_EQ(In<TdxLayoutItem>(editor, "lcFocusItemPriority").Caption(), u"Priority"_s);
        EXPECT_TRUE(In<TBrowserControl>(editor, "ebContentFocus").WaitComplete());
        shown = In<TBrowserControl>(editor, "ebContentFocus").Source();
        QTest::keyClick(&Title(editor), Qt::Key_End);
        Type(Title(editor), u" ờ"_s);
        Type(In<QLineEdit>(editor, "edKeyWord"), u"giới, luật"_s);
        Type(In<QPlainTextEdit>(editor, "mmDesc"), u"ghi chú"_s);
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) // that would end other dialogs
            QTest::keyClick(&In<QLineEdit>(editor, "edKeyWord"), key);
        EXPECT_TRUE(editor.isVisible());
        Press(editor, "btnOK");
        EXPECT_FALSE(editor.isVisible());
    });
    EXPECT_EQ(shown, ExcerptFileBytes(ExcerptPage(u"<p style=\"font-size:200%\">viet 1101 "
                                                  "<a href=\"https://example.org/x\">ngoài</a></p>"_s)));
    EXPECT_EQ(Stored(), u"1 ^viet 1101ngoài ờ"_s);
    Marks().Close();
    Marks().Open();
    EXPECT_EQ(Marks().FieldByName(u"TEXT_FOC"_s).AsBytes(), shown);
    const QStringList row{Value("NAME_FOC"),     Value("KEYWORD_FOC"), Value("DESC_FOC"),
                          Value("PRIORITY_FOC"), Value("NIK_SUT"),     Value("NIC_SUT")};
    EXPECT_EQ(row.join(u'|'), u"\uFEFFviet 1101ngoài ờ|giới, luật|ghi chú|2|6|1101"_s);
}

TEST_F(FocusEdit, CancelDropsTheRowAndTheCloseBoxKeepsItPending)
{
    Open();
    MarkAll([&](TfrmFocusEdit &editor) { Press(editor, "btnCancel"); });
    EXPECT_EQ(Marks().State(), DataSetState::Browse);
    MarkAll([&](TfrmFocusEdit &editor) {
        Title(editor).setText(u"first"_s);
        editor.close();
    });
    EXPECT_EQ(Marks().State(), DataSetState::Insert);
    EXPECT_EQ(Stored(), u""_s);
    // The next marking posts it, by the rules of an ordinary dataset.
    MarkAll([&](TfrmFocusEdit &editor) {
        Title(editor).clear();
        Press(editor, "btnOK");
    });
    EXPECT_EQ(Stored(), u"1 first|2 "_s);
    MarkAll([&](TfrmFocusEdit &editor) { editor.close(); });
    OpenMarks();
    EXPECT_EQ(Marks().State(), DataSetState::Browse) << "opening the list drops the row";
    EXPECT_EQ(Marks().RecordCount(), 2) << "their texts have been listed";
}

TEST_F(FocusEdit, WhatCannotBeWrittenIsToldBeforeAnyRowIsMade)
{
    Open(1101, 1);
    ExcerptFile other(QFileInfo(program).path() + u'/');
    other.Save("other");
    MarkAll(nullptr);
    EXPECT_FALSE(Marks().Active());
    EXPECT_EQ(other.Load(), "other");
    EXPECT_THAT(TakeBox(), testing::HasSubstr("another copy of the program"));
}

TEST_F(FocusEdit, AFailingOKLeavesTheWindowAndASecondOneSucceeds)
{
    Open(1101, 1);
    const ScratchFolder elsewhere;
    MarkAll([&](TfrmFocusEdit &editor) {
        const QString moved = elsewhere.Path(u"excerpt"_s);
        EXPECT_TRUE(QFile::rename(WorkFile(), moved) && QFile::link(moved, WorkFile()));
        Press(editor, "btnOK");
        TakeBox();
        EXPECT_TRUE(IsOpen(editor));
        EXPECT_TRUE(QFile::remove(WorkFile()) && QFile::rename(moved, WorkFile()));

        clients->dbClientTarune.SetConnected(false);
        Press(editor, "btnOK");
        TakeBox();
        EXPECT_TRUE(IsOpen(editor));
        clients->dbClientTarune.SetConnected(true);
        clients->trClientTarune.SetActive(true);
        Press(editor, "btnOK");
        EXPECT_FALSE(editor.isVisible());
    });
    EXPECT_EQ(Stored(), u"1 ^viet 1101ngoài"_s);
}

TEST_F(FocusEdit, TextsStopAtTheirSizeTypedOrPasted)
{
    Open();
    const QString pair = u"\U0001F600"_s;
    MarkAll([&](TfrmFocusEdit &editor) {
        Title(editor).setText(QString(125, u'a'));
        Title(editor).insert(u"b"_s + pair); // one unit has room, and half a pair is none
        Type(Title(editor), u"cd"_s);
        EXPECT_EQ(Title(editor).text(), QString(125, u'a') + u"bc"_s);
        QPlainTextEdit &note = In<QPlainTextEdit>(editor, "mmDesc");
        QTest::keyClick(&note, Qt::Key_Return);
        QInputMethodEvent commit;
        commit.setCommitString(QString(2044, u'é') + pair);
        QApplication::sendEvent(&note, &commit);
        QTest::keyClick(&note, Qt::Key_Return); // two units: one too many
        Type(note, u"\u00A0xy"_s);
        EXPECT_EQ(Value("DESC_FOC"), u"\r\n"_s + QString(2044, u'é') + u"\u00A0"_s);
        const auto paste = [&note](const QString &html, const QString &plain) {
            auto *copied = new QMimeData;
            copied->setHtml(html);
            if (!plain.isNull())
                copied->setText(plain);
            QApplication::clipboard()->setMimeData(copied);
            // With the control characters that the desktop sends along.
            QTest::sendKeyEvent(QTest::Click, &note, Qt::Key_A, u"\u0001"_s, Qt::ControlModifier);
            QTest::sendKeyEvent(QTest::Click, &note, Qt::Key_V, u"\u0016"_s, Qt::ControlModifier);
        };
        const QString lines = u"một\r\nhai\r\n"_s;
        paste(u"<h1>khác</h1>"_s, u"một\nhai\r\n"_s + QString(2036, u'x') + pair + u"y"_s);
        EXPECT_EQ(Value("DESC_FOC"), lines + QString(2036, u'x')) << "half a pair is none";
        paste(u"<h1>khác</h1>"_s, {});
        EXPECT_EQ(Value("DESC_FOC"), lines + QString(2036, u'x')) << "without a plain text";
        paste(u"<h1>khác</h1>"_s, u"<b>thường</b>"_s);
        EXPECT_EQ(Value("DESC_FOC"), u"<b>thường</b>"_s);
        EXPECT_NE(note.textCursor().charFormat().fontWeight(), QFont::Bold);
    });
}
