#include "base/InterfaceLanguage.h"
#include "toolkit/browser/BrowserTest.h"
#include "toolkit/program/QtWords.h"

#include "toolkit/browser/PreviewView.h"
#include "toolkit/browser/PrintJob.h"
#include "toolkit/browser/PrintedPages.h"
#include "toolkit/browser/WorkWatch.h"

#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QLineEdit>
#include <QPainter>
#include <QPdfDocument>
#include <QPdfDocumentRenderOptions>
#include <QPdfSelection>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressDialog>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTemporaryDir>
#include <QTimer>

#define POINTERHOLDER_TRANSITION 4
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

const QString threePages = u"<title>Phẩm một</title><a href='#end'>on</a> <a href='https://a.example/'>web</a> "
                           "<a href='next.html'>dead</a><p>ṭhāna bhikkhū điều<p style='break-before: page'>second"
                           "<p id=end style='break-before: page'>third"_s;
const PageTexts texts{u"Phẩm một"_s, u"lumivara://text/7"_s, u"1/2/26"_s, u"vi"_s};

QPageLayout A4()
{
    return QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, {});
}

QStringList TextOfPages(const QByteArray &bytes)
{
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    QPdfDocument pdf;
    pdf.load(&device);
    QStringList pages;
    for (int page = 0; page < pdf.pageCount(); ++page)
        pages << pdf.getAllText(page).text().simplified();
    return pages;
}

QByteArray ReadAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray ManyPages(int count)
{
    QByteArray bytes;
    QBuffer device(&bytes);
    device.open(QIODevice::WriteOnly);
    QPdfWriter writer(&device);
    QPainter painter(&writer);
    for (int page = 1; page <= count; ++page) {
        painter.fillRect(0, 0, 2000, 4000, Qt::blue);
        painter.drawText(500, 500, QString::number(page));
        if (page < count)
            writer.newPage();
    }
    painter.end();
    return bytes;
}

} // namespace

class Printing : public BrowserTest
{
protected:
    /// Chromium's own PDF of the page, with room for header and footer.
    QByteArray LaidOut()
    {
        QByteArray laidOut;
        Control().page()->printToPdf([&](const QByteArray &pdf) { laidOut = pdf; }, EngineLayout(A4()));
        EXPECT_TRUE(WaitFor([&] { return !laidOut.isEmpty(); }));
        return laidOut;
    }
    /// A job that prints the page to the file, and a guard that tells whether it still exists.
    QPointer<PrintJob> Start(TBrowserControl &control, const QString &path, const QPageRanges &ranges = {})
    {
        const auto printer = std::make_shared<QPrinter>();
        printer->setOutputFormat(QPrinter::PdfFormat);
        printer->setOutputFileName(path);
        if (!ranges.isEmpty()) {
            printer->setPrintRange(QPrinter::PageRange);
            printer->setPageRanges(ranges);
        }
        auto *job = new PrintJob(&control, &control, texts);
        job->LayOut(PrintedPage(control), A4(), [job, printer](const QByteArray &pdf) { job->Print(pdf, printer); });
        return job;
    }
    /// Files in the folder once the job is over.
    static QStringList Left(const QPointer<PrintJob> &job, const QTemporaryDir &folder)
    {
        EXPECT_TRUE(WaitFor([&] { return !job; }));
        return QDir(folder.path()).entryList(QDir::Files);
    }

    WorkWatch watch;
};

TEST_F(Printing, KeepsTextAndLinksAndPutsTheLinesOverEachPage)
{
    Load(threePages);
    const QByteArray laidOut = LaidOut(), finished = FinishedPdf(laidOut, texts, A4(), watch);
    EXPECT_LE(finished.size(), laidOut.size() * 1.3 + 40'000);
    const QStringList pages = TextOfPages(finished), own{u"on web dead ṭhāna bhikkhū điều"_s, u"second"_s, u"third"_s};
    ASSERT_EQ(pages.size(), 3);
    for (int page = 0; page < 3; ++page) {
        const QString lines = u" Phẩm một lumivara://text/7 1/2/26 Page %1 of 3"_s.arg(page + 1);
        EXPECT_EQ(pages[page].toStdString(), (own[page] + lines).toStdString());
    }

    QPDF pdf;
    pdf.processMemoryFile("finished", finished.constData(), size_t(finished.size()));
    EXPECT_EQ(pdf.getRoot().getKey("/Lang").getUTF8Value(), "vi");
    EXPECT_EQ(pdf.getTrailer().getKey("/Info").getKey("/Title").getUTF8Value(), "Phẩm một");
    EXPECT_TRUE(pdf.getRoot().getKey("/Dests").hasKey("/end"));
    std::vector<std::string> addresses;
    for (auto &page : QPDFPageDocumentHelper(pdf).getAllPages()) {
        EXPECT_TRUE(page.getImages().empty());
        for (auto &link : page.getAnnotations("/Link")) {
            auto action = link.getObjectHandle().getKey("/A");
            addresses.push_back(action.isDictionary() ? action.getKey("/URI").getUTF8Value() : "#");
        }
    }
    EXPECT_EQ(addresses, (std::vector<std::string>{"#", "https://a.example/"})) << "and no dead link";

    EXPECT_EQ(TextOfPages(PagesOf(finished, QPageRanges::fromString(u"1,3"_s), watch)),
              QStringList({pages[0], pages[2]}));
    EXPECT_TRUE(PagesOf(finished, QPageRanges::fromString(u"4"_s), watch).isEmpty());
    EXPECT_THROW(FinishedPdf("no document", texts, A4(), watch), std::exception);
    watch.Cancel();
    EXPECT_THROW(FinishedPdf(laidOut, texts, A4(), watch), WorkCancelled);
}

TEST_F(Printing, DrawsOnPaperWhatThePdfShowsWhateverTheScreensColour)
{
    Control().SetDarkGround(true);
    Control().SetHostCSS(u"@media screen { body { background: black } }"_s);
    Load(u"<body>"_s + u"<p>kinh luật "_s.repeated(60));
    const QByteArray finished = FinishedPdf(LaidOut(), texts, A4(), watch);
    const QTemporaryDir folder;
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setResolution(720); // no multiple of 300
    printer.setPageLayout(A4());
    printer.setOutputFileName(folder.filePath(u"paper.pdf"_s));
    PaintPages(printer, finished, watch);

    QBuffer device;
    device.setData(finished);
    device.open(QIODevice::ReadOnly);
    QPdfDocument expected, paper;
    expected.load(&device);
    paper.load(printer.outputFileName());
    ASSERT_EQ(paper.pageCount(), expected.pageCount());
    ASSERT_GT(paper.pageCount(), 1);
    // Pieces are cut from one and the same page.
    const QSize size(427, 603);
    const auto piece = [&](const QRect &place) {
        return expected.render(0, place.size(), PieceOptions(expected.pagePointSize(0), size, place));
    };
    const QRect low(100, 512, 300, 40);
    const QImage cut = piece(low), wanted = piece(QRect(QPoint(), size)).copy(low);
    qint64 apart = 0;
    for (int at = 0; at < low.width() * low.height(); ++at)
        apart += std::abs(qAlpha(cut.pixel(at % low.width(), at / low.width())) -
                          qAlpha(wanted.pixel(at % low.width(), at / low.width())));
    EXPECT_LT(apart, 1000);

    const auto picture = [](QPdfDocument &pdf, int page) {
        QImage image(2975, 4210, QImage::Format_RGB32); // 360 dots per inch, at which the strips meet
        image.fill(Qt::white);
        QPainter(&image).drawImage(0, 0, pdf.render(page, image.size()));
        return image.scaled(60, 85, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    };
    const QImage one = picture(expected, 1), other = picture(paper, 1);
    qint64 difference = 0, ink = 0;
    for (int at = 0; at < 60 * 85; ++at) {
        const int here = qGray(one.pixel(at % 60, at / 60)), there = qGray(other.pixel(at % 60, at / 60));
        difference += std::abs(here - there);
        ink += 255 - here;
    }
    EXPECT_GT(ink, 4'000);
    EXPECT_LT(ink, 60 * 85 * 255 / 4) << "the paper is white";
    EXPECT_LT(difference, ink / 3);
}

TEST_F(Printing, WritesTheFileWholeOrNotAtAllWhateverComesBetween)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"printed.pdf"_s);
    const struct
    {
        const char *what;
        std::function<void(TBrowserControl &, PrintJob &)> between;
        bool isWritten;
    } rows[]{
        {"nothing", [](auto &, auto &) {}, true},
        {"another row", [](auto &control, auto &) { control.LoadFromString("<p>other"); }, true},
        {"a second job", [&](auto &control, auto &) { Start(control, folder.filePath(u"printed.pdf"_s)); }, true},
        {"cancel",
         [](auto &control, auto &) {
             control.template findChild<QProgressDialog *>(u"dlgPrinting"_s)
                 ->template findChild<QPushButton *>()
                 ->click();
         },
         false},
        {"a dead process",
         [](auto &control, auto &) {
             control.Evaluate(u"0"_s); // Chromium itself crashes in the first moments
             ::kill(static_cast<pid_t>(control.page()->renderProcessPid()), SIGKILL);
         },
         true},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.what);
        QFile::remove(path);
        Load(threePages);
        const QPointer<PrintJob> job = Start(Control(), path);
        row.between(Control(), *job);
        EXPECT_EQ(Left(job, folder), row.isWritten ? QStringList{u"printed.pdf"_s} : QStringList());
        EXPECT_TRUE(WaitFor([&] { return !Control().findChild<PrintJob *>(); }));
        EXPECT_TRUE(boxes.isEmpty());
        EXPECT_EQ(TextOfPages(ReadAll(path)).size(), row.isWritten ? 3 : 0);
    }
}

TEST_F(Printing, EndsWithItsControlAtAnyMoment)
{
    const QTemporaryDir folder;
    for (const bool isLaidOut : {false, true}) {
        auto control = std::make_unique<TBrowserControl>();
        control->LoadFromString(threePages.toUtf8());
        EXPECT_TRUE(control->WaitComplete());
        const QPointer<PrintJob> job = new PrintJob(control.get(), control.get(), texts);
        bool isGoingOn = false;
        const auto printer = std::make_shared<QPrinter>();
        printer->setOutputFileName(folder.filePath(u"printed.pdf"_s));
        job->LayOut(PrintedPage(*control), A4(), [&, printer](const QByteArray &pdf) {
            job->Print(pdf, printer);
            isGoingOn = true;
        });
        EXPECT_TRUE(!isLaidOut || WaitFor([&] { return isGoingOn; }));
        control.reset();
        EXPECT_FALSE(job);
        for (const QByteArray &bytes : {ReadAll(folder.filePath(u"printed.pdf"_s))})
            EXPECT_TRUE(bytes.isEmpty() || TextOfPages(bytes).size() == 3);
    }
    EXPECT_LE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST_F(Printing, OnAFailureTellsItAndLeavesWhatStood)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"printed.pdf"_s);
    QFile old(path);
    EXPECT_TRUE(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
    old.close();
    Load(threePages);
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner);
    EXPECT_EQ(Left(Start(Control(), path), folder), QStringList{u"printed.pdf"_s});
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(boxes.size(), 1);
    EXPECT_TRUE(boxes.value(0).contains(path));
    EXPECT_EQ(ReadAll(path), "old");
}

TEST_F(Printing, GoesThroughTheDialogToTheChosenPages)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"printed.pdf"_s);
    Control().SetPrintedIdentity({u"lumivara://text/1101"_s, u"pi"_s});
    Load(threePages);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        auto *dialog = qobject_cast<QPrintDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        poll.stop();
        dialog->findChild<QLineEdit *>(u"filename"_s)->setText(path);
        dialog->printer()->setOutputFileName(path);
        dialog->accept();
    });
    poll.start(5);
    Control().Print();
    EXPECT_TRUE(WaitFor([&] { return !Control().findChild<PrintJob *>(); }));
    const QStringList pages = TextOfPages(ReadAll(path));
    EXPECT_EQ(pages.size(), 3);
    EXPECT_TRUE(pages.value(0).contains(u"lumivara://text/1101"_s)) << qUtf8Printable(pages.value(0));
    EXPECT_EQ(Left(Start(Control(), path, QPageRanges::fromString(u"2-3"_s)), folder).size(), 1);
    const QStringList chosen = TextOfPages(ReadAll(path));
    EXPECT_EQ(chosen.size(), 2);
    EXPECT_TRUE(chosen.value(0).startsWith(u"second"_s) && chosen.value(0).endsWith(u"Page 2 of 3"_s));
}

class Preview : public BrowserTest
{
protected:
    QDialog *Open()
    {
        Control().PrintPreview();
        Control().PrintPreview(); // a held key
        EXPECT_TRUE(WaitFor([&] { return Window() && View().IsDrawn(); }));
        if (!Window())
            throw std::runtime_error("no preview");
        EXPECT_EQ(Control().window()->findChildren<QDialog *>(u"frmPrintPreview"_s).size(), 1);
        return Window();
    }
    QDialog *Window() { return Control().window()->findChild<QDialog *>(u"frmPrintPreview"_s); }
    PreviewView &View() { return *Window()->findChild<PreviewView *>(); }
    QAction &Action(const QString &name) { return *Window()->findChild<QAction *>(name); }
    void Close()
    {
        QTimer::singleShot(0, Window(), &QWidget::close);
        EXPECT_TRUE(WaitFor([&] { return !Window(); }));
    }
};

TEST_F(Preview, ShowsEveryPageTurnsThePaperAndFollowsTheLanguage)
{
    Load(threePages);
    QDialog *window = Open();
    EXPECT_EQ(window->windowTitle(), u"Phẩm một"_s);
    EXPECT_EQ(View().PageCount(), 3);
    auto &page = *window->findChild<QLineEdit *>(u"edPage"_s);
    EXPECT_FALSE(Action(u"acPriorPage"_s).isEnabled());
    QTest::keyClick(&View(), Qt::Key_End);
    EXPECT_EQ(page.text(), u"3"_s);
    EXPECT_FALSE(Action(u"acNextPage"_s).isEnabled());
    page.selectAll();
    QTest::keyClicks(&page, u"2"_s);
    QTest::keyClick(&page, Qt::Key_Return);
    EXPECT_EQ(View().CurrentPage(), 2);
    EXPECT_TRUE(window->isVisible()) << "Return is the edit's, not the dialog's";

    for (const auto &[name, columns] : {std::pair(u"acFacingPages"_s, PreviewView::Columns::Two),
                                        {u"acAllPages"_s, PreviewView::Columns::Many},
                                        {u"acSinglePage"_s, PreviewView::Columns::One}}) {
        Action(name).trigger();
        EXPECT_EQ(View().Arrangement(), columns);
        EXPECT_TRUE(WaitFor([&] { return View().IsDrawn(); })) << qUtf8Printable(name);
    }

    const QScopedValueRollback language(InterfaceLang, 1);
    for (const auto &[number, words] : {std::pair(1, u"Page setup"_s), {0, u"Thiết lập trang"_s}}) {
        InterfaceLang = number;
        ShowQtWords();
        EXPECT_TRUE(WaitFor([&, words = words] { return Action(u"acPageSetup"_s).text() == words; })) << number;
    }

    const auto sheet = [&] { return View().grab().toImage().convertToFormat(QImage::Format_RGB32); };
    View().SetFitting(PreviewView::Fit::Page);
    const auto widthOfPaper = [&] {
        const QImage image = sheet();
        int white = 0;
        for (int x = 0; x < image.width(); ++x)
            white += image.pixel(x, image.height() / 2) == qRgb(255, 255, 255);
        return white;
    };
    const int upright = widthOfPaper();
    for (const QString &there : {u"acLandscape"_s, u"acPortrait"_s, u"acLandscape"_s})
        Action(there).trigger();
    EXPECT_TRUE(WaitFor([&] { return widthOfPaper() > upright * 5 / 4; }));
    // The page is gone from the control, but not from its preview.
    Load(u"<p>another"_s);
    Action(u"acPortrait"_s).trigger();
    EXPECT_TRUE(WaitFor([&] { return widthOfPaper() < upright * 5 / 4; }));
    EXPECT_EQ(View().PageCount(), 3);
    Close();
}

TEST_F(Preview, KeepsWithinItsCacheAndEndsWhileItDraws)
{
    auto view = std::make_unique<PreviewView>();
    EXPECT_FALSE(view->SetPdf("no document"));
    EXPECT_TRUE(view->SetPdf(ManyPages(12)));
    view->resize(800, 600);
    view->show();
    view->SetZoom(2);
    for (int page = 1; page <= view->PageCount(); ++page) {
        view->GoTo(page);
        EXPECT_TRUE(WaitFor([&] { return view->IsDrawn(); })) << page;
        EXPECT_GT(view->KeptBytes(), 0);
        EXPECT_LE(view->KeptBytes(), 48 * 1024 * 1024);
    }
    const auto middle = [&] { return view->grab().toImage().pixelColor(300, 300); };
    EXPECT_EQ(middle(), QColor(Qt::blue)) << "pieces lie where they belong";
    view->GoTo(1);
    view->viewport()->repaint();
    view.reset();
}
