#include "toolkit/browser/PagePrinting.h"

#include "base/Messages.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/browser/BrowserScripts.h"
#include "toolkit/browser/EngineWait.h"
#include "toolkit/browser/PreviewBar.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Guard.h"

#include <QBuffer>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QFontMetrics>
#include <QLocale>
#include <QPainter>
#include <QPdfDocument>
#include <QPointer>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QWebEnginePage>

#include <algorithm>
#include <limits>
#include <memory>

namespace {

constexpr Message notLaidOut{u"Không dàn được trang để in.", u"The page could not be laid out for printing."};
constexpr Message fileCut{u"Không ghi được trọn tập tin:\r%1", u"The file could not be written whole:\r%1"};

constexpr qreal leastMargin = 18;     // millimetres: room for a line above and below the text
constexpr qreal leastSideMargin = 15; // millimetres: lines to the very edge are hard to read
constexpr qreal textDistance = 9;     // millimetres from the edge of the sheet to that line
constexpr qreal textPoints = 8;
constexpr int printDots = 300;
/// Dots per inch of the preview, which keeps every page as a picture.
constexpr int previewDots = 110;

/// Whether a printed file has its end. The printer itself takes no notice of a full disk.
bool IsWholeFile(const QString &path)
{
    constexpr qint64 endBytes = 1024;
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.seek(std::max<qint64>(file.size() - endBytes, 0)) &&
           file.readAll().contains("%%EOF");
}

/// Chromium's PDF for a sheet; empty if the page was destroyed meanwhile.
QByteArray LaidOut(TBrowserControl &control, const QPageLayout &sheet)
{
    EngineWait wait;
    const QPointer<TBrowserControl> self = &control;
    const auto drop = [&wait] { wait.Renew(); };
    const auto gone = QObject::connect(&control, &QObject::destroyed, drop);
    const auto replaced = QObject::connect(control.page(), &QWebEnginePage::loadStarted, drop);
    ShowWaitCursor(true);
    QByteArray pdf =
        wait.For<QByteArray>([&](auto answer) { control.page()->printToPdf(answer, EngineLayout(sheet)); });
    ShowWaitCursor(false);
    QObject::disconnect(gone);
    QObject::disconnect(replaced);
    return self ? pdf : QByteArray();
}

/// The pages of a preview, and the sheet that they are laid out for.
struct LaidOutPages
{
    QByteArray pdf;
    QPageLayout layout;
};

PageTexts TextsOf(TBrowserControl &control, const QString &fallbackTitle)
{
    const QString title = control.Evaluate(QStringLiteral("document.title")).toString().trimmed();
    return {title.isEmpty() ? fallbackTitle : title, control.url().toString(),
            QLocale().toString(QDate::currentDate(), QLocale::ShortFormat)};
}

void PaintTexts(QPainter &painter, const QPrinter &printer, const PageTexts &texts, int page, int pageCount)
{
    const qreal dotsPerMillimetre = printer.resolution() / 25.4;
    const QRectF sheet(printer.pageLayout().fullRectPixels(printer.resolution()));
    const QMarginsF margins = EngineLayout(printer.pageLayout()).margins(QPageLayout::Millimeter);
    const qreal lineHeight = painter.fontMetrics().height();
    const QRectF line(margins.left() * dotsPerMillimetre, 0,
                      sheet.width() - (margins.left() + margins.right()) * dotsPerMillimetre, lineHeight);
    const auto paintLine = [&](qreal top, const QString &left, const QString &right) {
        const QRectF place = line.translated(0, top);
        const qreal room = place.width() - painter.fontMetrics().horizontalAdvance(right) - 2 * lineHeight;
        const QString shown =
            painter.fontMetrics().elidedText(left, Qt::ElideRight, static_cast<int>(std::max<qreal>(room, 0)));
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
        painter.drawText(place, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, right);
    };
    const qreal distance = textDistance * dotsPerMillimetre;
    paintLine(distance, texts.title, QStringLiteral("Page %1 of %2").arg(page).arg(pageCount));
    paintLine(sheet.height() - distance - lineHeight, texts.address, texts.date);
}

void PrintAs(QPrinter &printer, const QByteArray &pdf, const PageTexts &texts)
{
    const bool isRange = printer.printRange() == QPrinter::PageRange && printer.fromPage() > 0;
    const int first = isRange ? printer.fromPage() : 1;
    const int last = isRange && printer.toPage() > 0 ? printer.toPage() : std::numeric_limits<int>::max();
    QString failure;
    if (!PaintPages(printer, pdf, texts, first, last, printDots))
        failure = TextOrEnglish(notLaidOut);
    else if (!printer.outputFileName().isEmpty() && !IsWholeFile(printer.outputFileName()))
        failure = TextOrEnglish(fileCut).arg(QDir::toNativeSeparators(printer.outputFileName()));
    if (!failure.isEmpty())
        Doors().messageBox(QStringLiteral("Lumivara 1.0"), failure, BoxButtons::Ok, BoxIcon::Error);
}

} // namespace

QPageLayout EngineLayout(const QPageLayout &sheet)
{
    QMarginsF margins = sheet.margins(QPageLayout::Millimeter);
    margins.setLeft(std::max(margins.left(), leastSideMargin));
    margins.setRight(std::max(margins.right(), leastSideMargin));
    margins.setTop(std::max(margins.top(), leastMargin));
    margins.setBottom(std::max(margins.bottom(), leastMargin));
    return QPageLayout(sheet.pageSize(), sheet.orientation(), margins, QPageLayout::Millimeter);
}

bool PaintPages(QPrinter &printer, const QByteArray &pdf, const PageTexts &texts, int first, int last, int dotsPerInch)
{
    QBuffer device;
    device.setData(pdf);
    device.open(QIODevice::ReadOnly);
    QPdfDocument document;
    document.load(&device);
    if (document.status() != QPdfDocument::Status::Ready || document.pageCount() == 0)
        return false;

    printer.setFullPage(true);
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    QFont font(QStringLiteral("Noto Sans"));
    font.setPointSizeF(textPoints);
    painter.setFont(font);
    const QRect sheet = printer.pageLayout().fullRectPixels(printer.resolution());
    const qreal scale = std::min(1.0, static_cast<qreal>(dotsPerInch) / printer.resolution());
    const int pageCount = document.pageCount();
    for (int page = std::max(first, 1); page <= std::min(last, pageCount); ++page) {
        if (page > std::max(first, 1))
            printer.newPage();
        // Chromium leaves the margins transparent.
        QImage image((QSizeF(sheet.size()) * scale).toSize(), QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter imagePainter(&image);
        imagePainter.drawImage(0, 0, document.render(page - 1, image.size()));
        imagePainter.end();
        painter.drawImage(sheet, image);
        PaintTexts(painter, printer, texts, page, pageCount);
    }
    return painter.end();
}

void PrintPage(TBrowserControl &control, const QString &fallbackTitle)
{
    const QPointer<TBrowserControl> self = &control;
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(QPageLayout::Portrait);
    const PageTexts texts = TextsOf(control, fallbackTitle);
    if (!self)
        return;
    printer.setDocName(texts.title);
    // The window may be destroyed while the dialog is open, and the dialog with it.
    const QPointer<QPrintDialog> dialog = new QPrintDialog(&printer, control.window());
    dialog->setObjectName(QStringLiteral("dlgPrint"));
    dialog->setOption(QAbstractPrintDialog::PrintPageRange);
    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    delete dialog;
    if (!isAccepted || !self)
        return;
    const QByteArray pdf = LaidOut(control, printer.pageLayout());
    if (!self)
        return;
    ShowWaitCursor(true);
    PrintAs(printer, pdf, texts);
    ShowWaitCursor(false);
}

void PreviewPage(TBrowserControl &control, const QString &fallbackTitle)
{
    const QPointer<TBrowserControl> self = &control;
    const PageTexts texts = TextsOf(control, fallbackTitle);
    if (!self)
        return;
    const QPageLayout start = QPrinter().pageLayout();
    const QByteArray pdf = LaidOut(control, start);
    if (!self || pdf.isEmpty())
        return;

    auto *window = new QPrintPreviewDialog(control.window());
    window->setObjectName(QStringLiteral("frmPrintPreview"));
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowTitle(texts.title);
    DressPreview(*window);
    window->resize(900, 700);
    window->printer()->setPageOrientation(QPageLayout::Portrait);
    window->printer()->setDocName(texts.title);
    const auto pages = std::make_shared<LaidOutPages>(LaidOutPages{pdf, EngineLayout(start)});
    ConnectGuarded(window, &QPrintPreviewDialog::paintRequested, window,
                   [self, texts, pages, source = control.Source()](QPrinter *printer) {
                       // Another sheet needs another layout, which only Chromium can make.
                       const QPageLayout wanted = EngineLayout(printer->pageLayout());
                       if (wanted != pages->layout && self && self->Source() == source) {
                           const QByteArray laidOut = LaidOut(*self, printer->pageLayout());
                           if (!laidOut.isEmpty())
                               *pages = {laidOut, wanted};
                       }
                       const bool isForPaper = printer->outputFormat() == QPrinter::PdfFormat;
                       ShowWaitCursor(true);
                       PaintPages(*printer, pages->pdf, texts, 1, std::numeric_limits<int>::max(),
                                  isForPaper ? printDots : previewDots);
                       ShowWaitCursor(false);
                   });
    window->show();
}
