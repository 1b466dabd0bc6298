#include "support/FullDisk.h"
#include "toolkit/browser/BrowserTest.h"

#include "toolkit/browser/PageSaving.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
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
{};

TEST_F(Finding, StepsForthAndBackHeedsItsBoxesAndTellsAMiss)
{
    Load(u"<p>Kinh một, kinh hai, kinhs ba, phạm kinh"_s);
    Control().ShowFindDialog();
    auto &dialog = *Control().findChild<QDialog *>(u"dlgFind"_s);
    auto &edit = *dialog.findChild<QLineEdit *>(u"edFindText"_s);
    auto &next = *dialog.findChild<QPushButton *>(u"btnFindNext"_s);
    const auto &hint = *dialog.findChild<QLabel *>(u"lbNotFound"_s);
    const auto check = [&](bool on) {
        for (const QString &name : {u"cbMatchCase"_s, u"cbWholeWord"_s})
            dialog.findChild<QCheckBox *>(name)->setChecked(on);
    };
    const auto expectSelected = [&](int offset) {
        const QString selected = u"getSelection().rangeCount && getSelection().getRangeAt(0).startOffset"_s;
        EXPECT_TRUE(WaitFor([&] { return Value(selected).toInt() == offset; })) << offset;
    };
    const auto press = [&](QWidget &where, Qt::Key key, int offset, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&where, key, modifiers);
        expectSelected(offset);
    };
    EXPECT_FALSE(dialog.isModal());
    check(false);
    edit.setText(u"KINH"_s);
    press(edit, Qt::Key_Return, 0);
    press(edit, Qt::Key_F3, 10);
    press(*Input(), Qt::Key_F3, 20);
    press(edit, Qt::Key_Return, 35);
    press(edit, Qt::Key_Return, 0);
    press(edit, Qt::Key_F3, 35, Qt::ShiftModifier);
    press(*Input(), Qt::Key_F3, 20, Qt::ShiftModifier);
    check(true);
    edit.setText(u"kinh"_s);
    next.click();
    expectSelected(35);
    dialog.findChild<QPushButton *>(u"btnFindPrior"_s)->click();
    expectSelected(10);
    edit.setText(u"pham"_s);
    EXPECT_EQ(hint.text(), u""_s);
    next.click();
    EXPECT_NE(hint.text(), u""_s) << "diacritics count";
    edit.setText(u""_s);
    EXPECT_FALSE(next.isEnabled());
    QTest::keyClick(&edit, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
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
