#include "toolkit/browser/PrintedPages.h"

#include "toolkit/browser/WorkWatch.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QPainter>
#include <QPdfDocument>
#include <QPdfDocumentRenderOptions>
#include <QPdfWriter>
#include <QPrinter>

#define POINTERHOLDER_TRANSITION 4 // its old pointers are not used here
#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr qreal leastMargin = 18;     // millimetres: room for a line above and below the text
constexpr qreal leastSideMargin = 15; // millimetres: lines to the very edge are hard to read
constexpr qreal textDistance = 9;     // millimetres from the edge of the sheet to that line
constexpr qreal textPoints = 8;
constexpr int overlayDots = 600;
constexpr int leastPaperDots = 300;
constexpr int stripHeight = 256; // dots

QString PageNumber(int page, int pageCount)
{
    return QStringLiteral("Page %1 of %2").arg(page).arg(pageCount);
}

/// Draws the lines above and below the text.
class Overlay
{
public:
    Overlay(QPdfWriter &writer, const QPageLayout &sheet)
        : m_margins(EngineLayout(sheet).margins(QPageLayout::Millimeter))
    {
        writer.setPageLayout(QPageLayout(sheet.pageSize(), sheet.orientation(), QMarginsF()));
        writer.setResolution(overlayDots);
        m_sheet = writer.pageLayout().fullRectPixels(overlayDots);
        if (!m_painter.begin(&writer))
            throw std::runtime_error("no overlay");
        QFont font(QStringLiteral("Noto Sans"));
        font.setPointSizeF(textPoints);
        m_painter.setFont(font);
    }

    /// The first page has what all pages share, each further one its number. One font set serves them all.
    void Draw(QPdfWriter &writer, const PageTexts &texts, int pageCount, WorkWatch &watch)
    {
        DrawText(true, Qt::AlignLeft, Elided(texts.title, PageNumber(pageCount, pageCount)));
        DrawText(false, Qt::AlignLeft, Elided(texts.address, texts.date));
        DrawText(false, Qt::AlignRight, texts.date);
        for (int page = 1; page <= pageCount; ++page) {
            watch.Step(page, 3 * qint64(pageCount));
            writer.newPage();
            DrawText(true, Qt::AlignRight, PageNumber(page, pageCount));
        }
        m_painter.end();
    }

private:
    static constexpr qreal dotsPerMillimetre = overlayDots / 25.4;

    QString Elided(const QString &text, const QString &beside) const
    {
        const QFontMetricsF metrics = m_painter.fontMetrics();
        const qreal room = Line(true).width() - metrics.horizontalAdvance(beside) - 2 * metrics.height();
        return metrics.elidedText(text, Qt::ElideRight, std::max<qreal>(room, 0), Qt::TextSingleLine);
    }
    QRectF Line(bool isHeader) const
    {
        const qreal height = QFontMetricsF(m_painter.fontMetrics()).height(),
                    distance = textDistance * dotsPerMillimetre;
        return {m_margins.left() * dotsPerMillimetre, isHeader ? distance : m_sheet.height() - distance - height,
                m_sheet.width() - (m_margins.left() + m_margins.right()) * dotsPerMillimetre, height};
    }
    void DrawText(bool isHeader, Qt::Alignment side, const QString &text)
    {
        m_painter.drawText(Line(isHeader), int(side | Qt::AlignVCenter) | Qt::TextSingleLine, text);
    }

    QMarginsF m_margins;
    QRectF m_sheet;
    QPainter m_painter;
};

QByteArray OverlayPdf(const PageTexts &texts, const QPageLayout &sheet, int pageCount, WorkWatch &watch)
{
    QByteArray bytes;
    QBuffer device(&bytes);
    device.open(QIODevice::WriteOnly);
    QPdfWriter writer(&device);
    Overlay(writer, sheet).Draw(writer, texts, pageCount, watch);
    return bytes;
}

/// A PDF in memory; the bytes must outlive it.
std::unique_ptr<QPDF> Opened(const QByteArray &bytes)
{
    auto pdf = std::make_unique<QPDF>();
    pdf->setSuppressWarnings(true);
    pdf->processMemoryFile("page", bytes.constData(), size_t(bytes.size()));
    return pdf;
}

class WritingProgress : public QPDFWriter::ProgressReporter
{
public:
    explicit WritingProgress(WorkWatch &watch) : m_watch(watch) {}
    void reportProgress(int percent) override { m_watch.Step(200 + percent, 300); }

private:
    WorkWatch &m_watch;
};

QByteArray Written(QPDF &pdf, WorkWatch &watch)
{
    QPDFWriter writer(pdf);
    writer.setOutputMemory();
    writer.setObjectStreamMode(qpdf_o_generate);
    writer.registerProgressReporter(std::make_shared<WritingProgress>(watch));
    writer.write();
    const std::shared_ptr<Buffer> buffer = writer.getBufferSharedPointer();
    return {reinterpret_cast<const char *>(buffer->getBuffer()), qsizetype(buffer->getSize())};
}

/// Addresses of the closed page itself mean nothing outside of the program, and others nobody was asked for.
bool MayLead(const std::string &address)
{
    return std::ranges::any_of(std::vector<std::string>{"http:", "https:", "mailto:"},
                               [&](const std::string &scheme) { return address.starts_with(scheme); });
}

void DropDeadLinks(QPDFObjectHandle page)
{
    QPDFObjectHandle links = page.getKey("/Annots");
    if (!links.isArray())
        return;
    for (int at = links.getArrayNItems() - 1; at >= 0; --at) {
        QPDFObjectHandle link = links.getArrayItem(at);
        QPDFObjectHandle action = link.isDictionary() ? link.getKey("/A") : QPDFObjectHandle::newNull();
        QPDFObjectHandle address = action.isDictionary() ? action.getKey("/URI") : action;
        if (address.isString() && !MayLead(address.getStringValue()))
            links.eraseItem(at);
    }
}

/// Puts drawings over a page; `before` and `after` are contents that all pages share.
void PutOver(QPDFPageObjectHelper page, const QPDFObjectHandle &before, const QPDFObjectHandle &after,
             const QPDFObjectHandle &frame, const QPDFObjectHandle &number)
{
    QPDFObjectHandle resources = page.getAttribute("/Resources", true);
    if (!resources.isDictionary()) {
        resources = QPDFObjectHandle::newDictionary();
        page.getObjectHandle().replaceKey("/Resources", resources);
    }
    QPDFObjectHandle drawings = resources.getKey("/XObject");
    drawings = drawings.isDictionary() ? drawings.shallowCopy() : QPDFObjectHandle::newDictionary();
    drawings.replaceKey("/LumivaraFrame", frame);
    drawings.replaceKey("/LumivaraNumber", number);
    resources.replaceKey("/XObject", drawings);
    page.addPageContents(before, true);
    page.addPageContents(after, false);
}

void Describe(QPDF &pdf, const PageTexts &texts)
{
    const auto text = [](const QString &value) { return QPDFObjectHandle::newUnicodeString(value.toStdString()); };
    QPDFObjectHandle info = pdf.getTrailer().getKey("/Info");
    if (!info.isDictionary()) {
        info = pdf.makeIndirectObject(QPDFObjectHandle::newDictionary());
        pdf.getTrailer().replaceKey("/Info", info);
    }
    info.replaceKey("/Title", text(texts.title));
    info.replaceKey("/Creator", text(QStringLiteral("Lumivara")));
    QPDFObjectHandle catalog = pdf.getRoot();
    if (!texts.language.isEmpty())
        catalog.replaceKey("/Lang", text(texts.language));
    catalog.replaceKey("/ViewerPreferences", QPDFObjectHandle::parse("<< /DisplayDocTitle true >>"));
}

/// Names of places on pages that are gone would keep those pages in the file.
void DropPlacesElsewhere(QPDF &pdf, const std::vector<QPDFPageObjectHelper> &kept)
{
    QPDFObjectHandle places = pdf.getRoot().getKey("/Dests");
    if (!places.isDictionary())
        return;
    const auto isKept = [&](QPDFObjectHandle place) {
        return place.isArray() && place.getArrayNItems() > 0 &&
               std::ranges::any_of(kept, [&](const QPDFPageObjectHelper &page) {
                   return page.getObjectHandle().getObjGen() == place.getArrayItem(0).getObjGen();
               });
    };
    for (const std::string &name : places.getKeys()) {
        if (!isKept(places.getKey(name)))
            places.removeKey(name);
    }
}

/// How many dots per inch a printer's picture gets: its own resolution divided or multiplied by a whole number, so that
/// the edges of strips fall between its dots.
int PaperDots(int resolution)
{
    return resolution >= leastPaperDots ? resolution / (resolution / leastPaperDots)
                                        : resolution * ((leastPaperDots + resolution - 1) / std::max(resolution, 1));
}

bool IsBlank(const QImage &strip)
{
    for (int row = 0; row < strip.height(); ++row) {
        const auto *pixels = reinterpret_cast<const QRgb *>(strip.constScanLine(row));
        if (!std::all_of(pixels, pixels + strip.width(), [](QRgb pixel) { return (pixel & RGB_MASK) == RGB_MASK; }))
            return false;
    }
    return true;
}

void PaintPage(QPainter &painter, QPdfDocument &pdf, int page, const QRectF &sheet, QSize dots, WorkWatch &watch)
{
    for (int top = 0; top < dots.height(); top += stripHeight) {
        watch.Step(qint64(page) * dots.height() + top, qint64(pdf.pageCount()) * dots.height());
        const QRect place(0, top, dots.width(), std::min(stripHeight, dots.height() - top));
        QImage strip(place.size(), QImage::Format_RGB32);
        strip.fill(Qt::white); // Chromium leaves the margins transparent
        QPainter(&strip).drawImage(0, 0,
                                   pdf.render(page, place.size(), PieceOptions(pdf.pagePointSize(page), dots, place)));
        if (IsBlank(strip))
            continue;
        const qreal scale = sheet.width() / dots.width();
        painter.drawImage(QRectF(0, place.top() * scale, sheet.width(), place.height() * scale), strip);
    }
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

QByteArray FinishedPdf(const QByteArray &laidOut, const PageTexts &texts, const QPageLayout &sheet, WorkWatch &watch)
{
    const std::unique_ptr<QPDF> pdf = Opened(laidOut);
    const std::vector<QPDFPageObjectHelper> pages = QPDFPageDocumentHelper(*pdf).getAllPages();
    const QByteArray overlayBytes = OverlayPdf(texts, sheet, int(pages.size()), watch);
    const std::unique_ptr<QPDF> overlay = Opened(overlayBytes);
    std::vector<QPDFPageObjectHelper> drawings = QPDFPageDocumentHelper(*overlay).getAllPages();
    const auto drawing = [&](size_t at) { return pdf->copyForeignObject(drawings.at(at).getFormXObjectForPage()); };

    const QPDFObjectHandle before = QPDFObjectHandle::newStream(pdf.get(), "q\n");
    const QPDFObjectHandle after =
        QPDFObjectHandle::newStream(pdf.get(), "\nQ\n/Artifact BMC q /LumivaraFrame Do Q q /LumivaraNumber Do Q EMC\n");
    const QPDFObjectHandle frame = drawing(0);
    for (size_t at = 0; at < pages.size(); ++at) {
        watch.Step(qint64(pages.size() + at), 3 * qint64(pages.size()));
        DropDeadLinks(pages[at].getObjectHandle());
        PutOver(pages[at], before, after, frame, drawing(at + 1));
    }
    Describe(*pdf, texts);
    return Written(*pdf, watch);
}

QByteArray PagesOf(const QByteArray &bytes, const QPageRanges &ranges, WorkWatch &watch)
{
    const std::unique_ptr<QPDF> pdf = Opened(bytes);
    QPDFPageDocumentHelper document(*pdf);
    int number = 0;
    for (const QPDFPageObjectHelper &page : document.getAllPages()) {
        watch.Step(0, 1);
        if (!ranges.contains(++number))
            document.removePage(page);
    }
    const std::vector<QPDFPageObjectHelper> kept = document.getAllPages();
    if (kept.empty())
        return {};
    DropPlacesElsewhere(*pdf, kept);
    return Written(*pdf, watch);
}

QPdfDocumentRenderOptions PieceOptions(QSizeF points, QSize drawn, const QRect &piece)
{
    // What Qt 6.4 makes of it: pieces are scaled by the page's whole points, pages by all of them; and by the distance
    // of a rectangle's last dot from its first over the number of dots in the picture.
    const auto scaled = [](int length, qreal point) {
        return qRound(length * point / std::max(std::floor(point), 1.0));
    };
    QPdfDocumentRenderOptions options;
    options.setScaledSize({scaled(drawn.width(), points.width()), scaled(drawn.height(), points.height())});
    options.setScaledClipRect(piece.adjusted(0, 0, 1, 1));
    return options;
}

void PaintPages(QPrinter &printer, const QByteArray &pdf, WorkWatch &watch)
{
    QBuffer device;
    device.setData(pdf);
    device.open(QIODevice::ReadOnly);
    QPdfDocument document;
    document.load(&device);
    if (document.status() != QPdfDocument::Status::Ready || document.pageCount() == 0)
        throw std::runtime_error("no pages");

    printer.setFullPage(true);
    QPainter painter;
    if (!painter.begin(&printer))
        throw std::runtime_error("no printer");
    const QRectF sheet = printer.pageLayout().fullRectPixels(printer.resolution());
    const int count = document.pageCount(), copies = printer.supportsMultipleCopies() ? 1 : printer.copyCount();
    const QSize dots = (sheet.size() * PaperDots(printer.resolution()) / printer.resolution()).toSize();
    const bool isReversed = printer.pageOrder() == QPrinter::LastPageFirst;
    for (int sheetNumber = 0; sheetNumber < count * copies; ++sheetNumber) {
        if (sheetNumber > 0)
            printer.newPage();
        const int page = sheetNumber % count;
        PaintPage(painter, document, isReversed ? count - 1 - page : page, sheet, dots, watch);
    }
    if (!painter.end())
        throw std::runtime_error("the printer failed");
}
