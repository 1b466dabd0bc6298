#include "support/FullDisk.h"
#include "toolkit/browser/BrowserTest.h"

#include "toolkit/browser/FindBar.h"
#include "toolkit/browser/PageSaving.h"

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

QByteArray ReadFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class Finding : public BrowserTest
{
protected:
    Finding()
    {
        Control().activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(Control().window()));
    }
    ~Finding() override
    {
        if (!Control().window()->findChild<FindBar *>(u"dlgFind"_s))
            return;
        Edit().clear();
        Check(false, false);
        Bar().OnClose();
    }
    template <typename T>
    T &Part(const QString &name)
    {
        T *found = Control().window()->findChild<T *>(name);
        EXPECT_TRUE(found) << qPrintable(name);
        return *found;
    }
    FindBar &Bar() { return Part<FindBar>(u"dlgFind"_s); }
    QLineEdit &Edit() { return Part<QLineEdit>(u"edFindText"_s); }
    void Check(bool matchesCase, bool wholeWord)
    {
        Part<QCheckBox>(u"cbMatchCase"_s).setChecked(matchesCase);
        Part<QCheckBox>(u"cbWholeWord"_s).setChecked(wholeWord);
    }
    /// Waits for the count, and for the text that is selected and marked as the reader's place.
    void Expect(const QString &count, int offset)
    {
        const auto &shown = Part<QLabel>(u"lbFindCount"_s);
        EXPECT_TRUE(WaitFor([&] { return shown.text() == count; })) << qPrintable(count + u" but "_s + shown.text());
        EXPECT_EQ(Value(selectionBegin).toInt(), offset) << qPrintable(count);
    }
    /// The marked texts, in the order of the page.
    QString Marked()
    {
        return Text(u"[...document.querySelectorAll('lumivara-find')].map((e) => e.textContent).join('|')"_s);
    }

    const QString page = u"<p>Kinh một, kinh hai, ki<b>nhs</b> ba, phạm kinh"_s;
    /// Characters before the selection; -1 for none.
    const QString selectionBegin =
        u"(() => { const s = getSelection(); if (s.isCollapsed) return -1; const r = document.createRange();"
        "r.setStart(document.body, 0); r.setEnd(s.getRangeAt(0).startContainer, s.getRangeAt(0).startOffset);"
        "return r.toString().length; })()"_s;
};

TEST_F(Finding, MarksAllPlacesCountsThemAndStepsForthAndBack)
{
    Load(page);
    const QString before = Text(u"document.body.innerHTML"_s);
    Control().ShowFindDialog();
    Edit().setText(u"KINH"_s);
    Expect(u"1/4"_s, 0);
    EXPECT_GT(Bar().y(), Control().geometry().bottom()) << "not over the page";
    EXPECT_EQ(Marked(), u"Kinh|kinh|ki|nh|kinh"_s);
    const auto press = [&](QWidget &where, Qt::Key key, const QString &count, int offset, bool isBackward = false) {
        QTest::keyClick(&where, key, isBackward ? Qt::ShiftModifier : Qt::NoModifier);
        Expect(count, offset);
    };
    press(Edit(), Qt::Key_Return, u"2/4"_s, 10);
    press(*Input(), Qt::Key_F3, u"3/4"_s, 20);
    press(Edit(), Qt::Key_F3, u"4/4"_s, 35);
    press(Edit(), Qt::Key_Return, u"1/4"_s, 0);
    press(Edit(), Qt::Key_Return, u"4/4"_s, 35, true);
    press(*Input(), Qt::Key_F3, u"3/4"_s, 20, true);
    EXPECT_EQ(Control().GetSelectedText(), u"kinh"_s);
    EXPECT_FALSE(Control().GetSelectedHtml().contains(u"lumivara"_s)) << "what is taken has no marks";
    Check(false, true);
    Expect(u"3/3"_s, 35);
    Check(true, true);
    Edit().setText(u"kinh"_s);
    Part<QPushButton>(u"btnFindPrior"_s).click();
    Expect(u"1/2"_s, 10);
    EXPECT_EQ(Marked(), u"kinh|kinh"_s);
    Edit().setText(u"kinx"_s);
    Expect(u"0/0"_s, 10);
    EXPECT_NE(Part<QLabel>(u"lbNotFound"_s).text(), u""_s);
    Edit().setText(u"pham"_s);
    Expect(u"0/0"_s, 10);
    Check(false, false);
    Edit().setText(u"ba"_s);
    Expect(u"1/1"_s, 26);
    QTest::keyClick(&Edit(), Qt::Key_Escape);
    EXPECT_FALSE(Bar().isVisible());
    EXPECT_TRUE(Becomes(u"!document.querySelector('lumivara-find')"_s));
    EXPECT_EQ(Value(selectionBegin).toInt(), 26) << "the place stays";
    EXPECT_EQ(Text(u"document.body.innerHTML"_s), before);
    EXPECT_EQ(Control().GetSelectedText(), u"ba"_s);
}

TEST_F(Finding, ColoursThePlaceAndNotWhatTheReaderSelects)
{
    const QString colour = u"getComputedStyle(document.body, '::selection').backgroundColor"_s;
    Load(page);
    const QString own = Text(colour);
    Control().ShowFindDialog();
    Edit().setText(u"kinh"_s);
    Expect(u"1/4"_s, 0);
    EXPECT_NE(Text(colour), own);
    Value(u"getSelection().selectAllChildren(document.body)"_s);
    EXPECT_TRUE(Becomes(colour + u" === '"_s + own + u'\''));
    QTest::keyClick(&Edit(), Qt::Key_Return);
    Expect(u"2/4"_s, 10);
    EXPECT_NE(Text(colour), own) << "a place again";
}

TEST_F(Finding, GoesOnInTheNextPageAndClosesFromThere)
{
    Load(page);
    Control().ShowFindDialog();
    Edit().setText(u"kinh"_s);
    Expect(u"1/4"_s, 0);
    Load(u"<p>x kinh y"_s);
    Expect(u"0/1"_s, -1);
    EXPECT_EQ(Marked(), u"kinh"_s);
    QTest::keyClick(Input(), Qt::Key_Escape);
    EXPECT_FALSE(Bar().isVisible());
    EXPECT_TRUE(Becomes(u"!document.querySelector('lumivara-find')"_s));
    Load(page);
    QTest::keyClick(Input(), Qt::Key_F3);
    EXPECT_TRUE(Becomes(u"getSelection().toString() === 'Kinh'"_s)) << "by the text of the closed bar";
    EXPECT_EQ(Marked(), u""_s);
}

TEST_F(Finding, WalksTheColouredHitsWhenTheBoxIsEmpty)
{
    Load(page);
    QTest::keyClick(Input(), Qt::Key_F3);
    const auto isOpen = [this] {
        const auto *bar = Control().window()->findChild<FindBar *>(u"dlgFind"_s);
        return bar && bar->isVisible();
    };
    EXPECT_TRUE(WaitFor(isOpen)) << "nothing to walk";
    QTest::keyClick(&Edit(), Qt::Key_Escape);
    EXPECT_EQ(Control().SearchAndHighlight(u"kinh"_s, {}, ScrollMode::None, {}, u"Yellow"_s), 4);
    const auto expect = [this](int offset) {
        EXPECT_TRUE(WaitFor([&] { return Value(selectionBegin).toInt() == offset; })) << offset;
    };
    for (const int offset : {0, 10, 20}) {
        QTest::keyClick(Input(), Qt::Key_F3);
        expect(offset);
    }
    QTest::keyClick(Input(), Qt::Key_F3, Qt::ShiftModifier);
    expect(10);
    EXPECT_FALSE(isOpen());
    Control().ShowFindDialog();
    Edit().setText(u"hai"_s);
    Expect(u"1/1"_s, 15);
    EXPECT_EQ(Control().SearchAndHighlight(u"hai"_s, {}, ScrollMode::None, {}, u"Red"_s), 1);
    EXPECT_EQ(Marked(), u"hai"_s) << "the mark is over the colour";
}

TEST_F(Finding, MarksPlacesThatTheHostFindsUntilTheBarSeeks)
{
    Load(page);
    const QString before = Text(u"document.body.innerHTML"_s);
    QString visible;
    const PlacesIn kinh = [&](const QString &text) {
        visible = text;
        QList<TextRange> places;
        for (auto at = text.indexOf(u"kinh"_s, 0, Qt::CaseInsensitive); at >= 0;
             at = text.indexOf(u"kinh"_s, at + 1, Qt::CaseInsensitive))
            places += TextRange{at, at + 4};
        return places;
    };
    const auto expectAt = [this](int offset) {
        EXPECT_TRUE(WaitFor([&] { return Value(selectionBegin).toInt() == offset; })) << offset;
    };
    Control().ShowPlaces(kinh, 2);
    expectAt(20);
    EXPECT_EQ(visible, u"Kinh một, kinh hai, kinhs ba, phạm kinh"_s);
    EXPECT_EQ(Marked(), u"Kinh|kinh|ki|nh|kinh"_s);
    EXPECT_FALSE(Control().GetSelectedHtml().contains(u"lumivara"_s)) << "what is taken has no marks";
    Control().ShowPlaces(kinh, 0);
    expectAt(0);
    Load(u"<h1>x</h1><p>kinh y"_s);
    expectAt(1);
    EXPECT_EQ(visible, u"x\nkinh y"_s);
    Control().ShowFindDialog();
    Edit().setText(u"y"_s);
    Expect(u"1/1"_s, 6);
    EXPECT_EQ(Marked(), u"y"_s);
    Control().ShowPlaces(kinh, -1);
    EXPECT_TRUE(WaitFor([this] { return Marked() == u"kinh"_s; }));
    EXPECT_FALSE(Bar().isVisible());
    EXPECT_EQ(Value(selectionBegin).toInt(), 6) << "the reader stays";
    Load(page);
    EXPECT_TRUE(WaitFor([this] { return Marked() == u"Kinh|kinh|ki|nh|kinh"_s; }));
    Control().ClearPlaces();
    EXPECT_TRUE(Becomes(u"!document.querySelector('lumivara-find')"_s));
    EXPECT_EQ(Text(u"document.body.innerHTML"_s), before);
}

TEST_F(Finding, StepsOverColouredHitsBesideTheBarsTextOnDemand)
{
    Load(page);
    Control().ShowFindDialog();
    Edit().setText(u"ba"_s);
    Expect(u"1/1"_s, 26);
    EXPECT_EQ(Control().SearchAndHighlight(u"kinh"_s, {}, ScrollMode::None, {}, u"Yellow"_s), 4);
    Control().PreferColoured(true);
    QTest::keyClick(Input(), Qt::Key_F3);
    Expect(u"1/1"_s, 35);
    EXPECT_EQ(Marked(), u"ba"_s);
    QTest::keyClick(&Edit(), Qt::Key_Return);
    Expect(u"1/1"_s, 26);
}

class Saving : public BrowserTest
{
protected:
    /// Saves by the dialog under another name, and gives what the dialog offered.
    QString SaveAs(const QString &path)
    {
        QString offered;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!dialog || dialog->objectName() != u"dlgSave"_s)
                return;
            poll.stop();
            auto *edit = dialog->findChild<QLineEdit *>(u"fileNameEdit"_s);
            offered = edit->text();
            edit->setText(path);
            dialog->metaObject()->invokeMethod(dialog, "accept");
        });
        poll.start(5);
        Control().SaveDialog();
        return offered;
    }
};

TEST_F(Saving, KeepsTheBytesOrThePlainTextOrTellsAFailure)
{
    const QByteArray page = u"<title>Phẩm: một/hai?</title>\r\n<p>Kinh\r\nmột<p>ṭhāna"_s.toUtf8() + '\xFF';
    const QTemporaryDir folder;
    LoadBytes(page);
    EXPECT_EQ(SaveAs(folder.filePath(u"page"_s)), u"Phẩm một hai"_s);
    EXPECT_EQ(ReadFile(folder.filePath(u"page.html"_s)), page);
    SaveAs(folder.filePath(u"text.txt"_s));
    EXPECT_EQ(QString::fromUtf8(ReadFile(folder.filePath(u"text.txt"_s))), u"Kinh một\nṭhāna\uFFFD"_s);
    SaveAs(u"/proc/nowhere.html"_s);
    EXPECT_EQ(boxes.size(), 1);
    EXPECT_TRUE(boxes.value(0).contains(u"/proc/nowhere.html"_s));
}

TEST(WriteWhole, OnAFullDiskTellsTheReasonAndLeavesWhatStood)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"page.html"_s);
    EXPECT_EQ(WriteWhole(path, "old"), QString());
    for (const int size : {700, 100'000}) {
        const FullDisk full(10);
        EXPECT_FALSE(WriteWhole(path, QByteArray(size, 'x')).isEmpty()) << size;
    }
    EXPECT_EQ(ReadFile(path), "old");
}

TEST(FileName, IsGoodEverywhere)
{
    for (const auto &[title, name] : {std::pair(u"?*//"_s, u"Lumivara"_s),
                                      {u"a/b\\c:d\n|ẹ"_s, u"a b c d ẹ"_s},
                                      {u"..a.b. ."_s, u"a.b"_s},
                                      {QString(300, u'ậ'), QString(80, u'ậ')}})
        EXPECT_EQ(FileNameFor(title), name);
}
