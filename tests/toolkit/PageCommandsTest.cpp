#include "support/FullDisk.h"
#include "support/WaitFor.h"
#include "toolkit/BrowserTest.h"

#include "toolkit/PagePrinting.h"
#include "toolkit/PageSaving.h"

#include <QApplication>
#include <QBuffer>
#include <QCheckBox>
#include <QDialog>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPdfDocument>
#include <QPdfSelection>
#include <QPrintPreviewWidget>
#include <QPrinter>
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

template <typename Widget>
Widget *TopLevel(const QString &name)
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == name)
            return qobject_cast<Widget *>(widget);
    }
    return nullptr;
}

} // namespace

class Finding : public BrowserTest
{
protected:
    Finding()
    {
        Load(u"<p>Kinh một, kinh hai, kinhs ba, phạm kinh"_s);
        Control().ShowFindDialog();
        m_dialog = Control().findChild<QDialog *>(u"dlgFind"_s);
        m_text = m_dialog->findChild<QLineEdit *>(u"edFindText"_s);
        for (const char *name : {"cbMatchCase", "cbWholeWord"})
            Check(name, false);
    }
    ~Finding() override { m_dialog->close(); }

    void Check(const char *name, bool on)
    {
        m_dialog->findChild<QCheckBox *>(QString::fromLatin1(name))->setChecked(on);
    }
    /// Offset of the selected hit in the paragraph; -1 without one.
    int Selected()
    {
        return Value(u"getSelection().rangeCount ? getSelection().getRangeAt(0).startOffset : -1"_s).toInt();
    }
    QString Hint() { return m_dialog->findChild<QLabel *>(u"lbNotFound"_s)->text(); }

    QDialog *m_dialog = nullptr;
    QLineEdit *m_text = nullptr;
};

TEST_F(Finding, StepsForthAndBackAroundTheEnds)
{
    EXPECT_FALSE(m_dialog->isModal());
    m_text->setText(u"KINH"_s);
    QList<int> steps;
    const auto press = [&](QWidget *where, int key, Qt::KeyboardModifiers modifiers) {
        QTest::keyClick(where, Qt::Key(key), modifiers);
        Pause(30);
        steps.append(Selected());
    };
    press(m_text, Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ(Control().GetSelectedText(), u"Kinh"_s);
    press(m_text, Qt::Key_F3, Qt::NoModifier);
    press(Input(), Qt::Key_F3, Qt::NoModifier);
    press(m_text, Qt::Key_Return, Qt::NoModifier);
    press(m_text, Qt::Key_Return, Qt::NoModifier);
    press(m_text, Qt::Key_F3, Qt::ShiftModifier);
    press(Input(), Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(steps, (QList<int>{0, 10, 20, 35, 0, 35, 20}));
    EXPECT_EQ(Hint(), u""_s);
    QTest::keyClick(m_text, Qt::Key_Escape);
    EXPECT_FALSE(m_dialog->isVisible());
}

TEST_F(Finding, HeedsItsBoxesAndTellsAMiss)
{
    Check("cbMatchCase", true);
    Check("cbWholeWord", true);
    m_text->setText(u"kinh"_s);
    auto *next = m_dialog->findChild<QPushButton *>(u"btnFindNext"_s);
    auto *prior = m_dialog->findChild<QPushButton *>(u"btnFindPrior"_s);
    next->click();
    EXPECT_EQ(Selected(), 10);
    next->click();
    EXPECT_EQ(Selected(), 35);
    prior->click();
    EXPECT_EQ(Selected(), 10);
    m_text->setText(u"pham"_s);
    EXPECT_EQ(Hint(), u""_s);
    next->click();
    EXPECT_NE(Hint(), u""_s) << "diacritics count";
    m_text->setText(u""_s);
    EXPECT_FALSE(next->isEnabled());
}

class Printing : public BrowserTest
{};

TEST_F(Printing, PutsHeaderAndFooterOnEachSheet)
{
    Load(u"<p style='break-after: page'>first</p><p>second</p>"_s);
    QByteArray laidOut;
    QTemporaryDir folder;
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(folder.filePath(u"printed.pdf"_s));
    Control().page()->printToPdf([&](const QByteArray &pdf) { laidOut = pdf; }, EngineLayout(printer.pageLayout()));
    EXPECT_TRUE(WaitFor([&] { return !laidOut.isEmpty(); }));
    EXPECT_TRUE(PaintPages(printer, laidOut, {u"Phẩm một"_s, u"lumivara://page/1"_s, u"1/2/26"_s}, 1, 99, 72));

    QPdfDocument printed;
    printed.load(printer.outputFileName());
    EXPECT_EQ(printed.pageCount(), 2);
    for (int page = 0; page < printed.pageCount(); ++page) {
        const QString text = printed.getAllText(page).text();
        for (const QString &part :
             {u"Phẩm một"_s, u"Page %1 of 2"_s.arg(page + 1), u"lumivara://page/1"_s, u"1/2/26"_s})
            EXPECT_TRUE(text.contains(part)) << qUtf8Printable(part) << " on " << qUtf8Printable(text);
        // The page itself is a picture between them.
        const QImage sheet = printed.render(page, {420, 594});
        bool hasInk = false;
        for (int y = 34; y < 120; ++y) {
            for (int x = 0; x < sheet.width(); ++x)
                hasInk = hasInk || (qAlpha(sheet.pixel(x, y)) > 0 && qGray(sheet.pixel(x, y)) < 200);
        }
        EXPECT_TRUE(hasInk) << page;
    }
}

TEST_F(Printing, RefusesWhatIsNoDocument)
{
    QTemporaryDir folder;
    QPrinter printer;
    printer.setOutputFileName(folder.filePath(u"none.pdf"_s));
    EXPECT_FALSE(PaintPages(printer, "no document", {}, 1, 1, 72));
}

TEST_F(Printing, OpensThePreviewOnEveryPage)
{
    Load(u"<title>Phẩm</title><p style='break-after: page'>first</p><p>second</p>"_s);
    Control().PrintPreview();
    auto *window = Control().findChild<QDialog *>(u"frmPrintPreview"_s);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle(), u"Phẩm"_s);
    EXPECT_TRUE(WaitFor([&] { return window->findChild<QPrintPreviewWidget *>()->pageCount() == 2; }));
    window->close();
}

class Saving : public BrowserTest
{
protected:
    /// Answers the dialog with the name, once it stands.
    void AnswerWith(const QString &path)
    {
        QTimer::singleShot(0, &Control(), [this, path] {
            if (auto *dialog = TopLevel<QFileDialog>(u"dlgSave"_s)) {
                offered = dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->text();
                dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path);
                dialog->metaObject()->invokeMethod(dialog, "accept");
            } else {
                AnswerWith(path);
            }
        });
    }

    QTemporaryDir folder;
    QString offered;
};

TEST_F(Saving, KeepsTheBytesOrThePlainText)
{
    const QByteArray page = u"<title>Phẩm: một/hai?</title>\r\n<p>Kinh\r\nmột<p>ṭhāna"_s.toUtf8() + '\xFF';
    LoadBytes(page);
    AnswerWith(folder.filePath(u"page"_s));
    Control().SaveDialog();
    EXPECT_EQ(ReadFile(folder.filePath(u"page.html"_s)), page);
    EXPECT_EQ(offered, u"Phẩm một hai"_s);
    AnswerWith(folder.filePath(u"text.txt"_s));
    Control().SaveDialog();
    EXPECT_EQ(QString::fromUtf8(ReadFile(folder.filePath(u"text.txt"_s))), u"Kinh một\nṭhāna\uFFFD"_s);
    EXPECT_TRUE(boxes.isEmpty());
}

TEST_F(Saving, TellsAFailureAndLeavesWhatStood)
{
    Load(u"<p>text"_s);
    AnswerWith(u"/proc/nowhere.html"_s);
    Control().SaveDialog();
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
    const std::pair<QString, QString> rows[]{{u"Phẩm ṭ"_s, u"Phẩm ṭ"_s}, {u""_s, u"Lumivara"_s},
                                             {u"?*//"_s, u"Lumivara"_s}, {u"a/b\\c:d\n|e"_s, u"a b c d e"_s},
                                             {u"..a.b. ."_s, u"a.b"_s},  {QString(300, u'ậ'), QString(80, u'ậ')}};
    for (const auto &[title, name] : rows)
        EXPECT_EQ(FileNameFor(title), name);
}
