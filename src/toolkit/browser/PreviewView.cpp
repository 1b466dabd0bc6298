#include "toolkit/browser/PreviewView.h"

#include "toolkit/browser/PrintedPages.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/Guard.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPdfPageRenderer>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <malloc.h>

namespace {

constexpr int mostKept = 48 * 1024; // KB
constexpr int pieceWidth = 1024;    // dots
constexpr int pieceHeight = 512;
constexpr int gap = 12;        // pixels at 96 dpi
constexpr int smallPage = 150; // its width in the overview, likewise
constexpr qreal leastZoom = 0.1;
constexpr qreal greatestZoom = 5;
constexpr qreal wheelStep = 1.1;
constexpr qreal pointsPerInch = 72;

} // namespace

PreviewView::PreviewView(QWidget *parent) : QAbstractScrollArea(parent), m_pieces(mostKept)
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    // Always there, else fitting the width could go to and fro.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setBackgroundRole(QPalette::Mid);
    viewport()->setAutoFillBackground(true);
}

PreviewView::~PreviewView()
{
    m_renderer.reset(); // before what it reads from
    m_document.reset();
    m_pieces.clear();
    m_bytes.reset();
#ifdef __GLIBC__
    malloc_trim(0); // freed pieces would stay with the process
#endif
}

bool PreviewView::SetPdf(const QByteArray &pdf)
{
    auto bytes = std::make_unique<QBuffer>();
    bytes->setData(pdf);
    bytes->open(QIODevice::ReadOnly);
    auto document = std::make_unique<QPdfDocument>();
    document->load(bytes.get());
    if (document->status() != QPdfDocument::Status::Ready || document->pageCount() == 0)
        return false;
    m_renderer.reset();
    m_document = std::move(document);
    m_bytes = std::move(bytes);
    // Asked for once: a question to the document waits while a page is being drawn.
    m_points = m_document->pagePointSize(0);
    m_pageCount = m_document->pageCount();
    m_renderer = std::make_unique<QPdfPageRenderer>();
    m_renderer->setDocument(m_document.get());
    m_renderer->setRenderMode(QPdfPageRenderer::RenderMode::MultiThreaded);
    ConnectGuarded(
        m_renderer.get(), &QPdfPageRenderer::pageRendered, this,
        [this](int, QSize, const QImage &image, QPdfDocumentRenderOptions, quint64 request) { Take(image, request); });
    Arrange();
    return true;
}

int PreviewView::ColumnCount() const
{
    const int cell = Cell().width(), room = viewport()->width() - GrownPixels(gap);
    switch (m_columns) {
    case Columns::One:
        return 1;
    case Columns::Two:
        return 2;
    case Columns::Many:
        return std::clamp(room / std::max(cell, 1), 1, std::max(m_pageCount, 1));
    }
    return 1;
}

QSizeF PreviewView::PageAt(qreal zoom) const
{
    return m_points * (logicalDpiX() / pointsPerInch * zoom);
}

QSize PreviewView::Cell() const
{
    return PageAt(m_zoom).toSize() + QSize(GrownPixels(gap), GrownPixels(gap));
}

QSize PreviewView::DrawnPage() const
{
    return (QSizeF(PageAt(m_zoom).toSize()) * devicePixelRatioF()).toSize();
}

QRect PreviewView::PlaceOf(int page) const
{
    const int columns = ColumnCount(), space = GrownPixels(gap);
    // Two pages lie open as in a book: the first alone on the right.
    const int at = m_columns == Columns::Two ? page : page - 1;
    const int width = columns * Cell().width() + space;
    const int left = width <= viewport()->width() ? (viewport()->width() - width) / 2 : -horizontalScrollBar()->value();
    return {QPoint(left + space + at % columns * Cell().width(),
                   space + at / columns * Cell().height() - verticalScrollBar()->value()),
            PageAt(m_zoom).toSize()};
}

QRect PreviewView::PlaceOf(const Piece &piece) const
{
    return QRect(piece.column * pieceWidth, piece.row * pieceHeight, pieceWidth, pieceHeight) &
           QRect(QPoint(), DrawnPage());
}

int PreviewView::PageInSight() const
{
    const int row = (verticalScrollBar()->value() + viewport()->height() / 3) / std::max(Cell().height(), 1);
    const int first = row * ColumnCount() + (m_columns == Columns::Two ? 0 : 1);
    return std::clamp(first, 1, std::max(m_pageCount, 1));
}

void PreviewView::GoTo(int page)
{
    m_page = std::clamp(page, 1, std::max(m_pageCount, 1));
    const QScopedValueRollback moving(m_isMoving, true);
    verticalScrollBar()->setValue(verticalScrollBar()->value() + PlaceOf(m_page).top() - GrownPixels(gap));
    viewport()->update();
    emit Changed();
}

void PreviewView::SetZoom(qreal zoom)
{
    m_fit = Fit::None;
    m_zoom = std::clamp(zoom, leastZoom, greatestZoom);
    Arrange();
}

void PreviewView::SetFitting(Fit fit)
{
    m_fit = fit;
    if (m_columns == Columns::Many)
        m_columns = Columns::One;
    Arrange();
}

void PreviewView::SetArrangement(Columns columns)
{
    m_columns = columns;
    m_fit = columns == Columns::Many ? Fit::None : Fit::Page;
    if (columns == Columns::Many && !m_points.isEmpty())
        m_zoom = GrownPixels(smallPage) / PageAt(1).width();
    Arrange();
}

void PreviewView::Arrange()
{
    if (m_pageCount == 0)
        return;
    const QScopedValueRollback moving(m_isMoving, true);
    const int space = GrownPixels(gap);
    if (m_fit != Fit::None) {
        const int columns = m_columns == Columns::Two ? 2 : 1;
        const qreal width = (viewport()->width() - (columns + 1) * space) / PageAt(1).width() / columns;
        const qreal height = (viewport()->height() - 2 * space) / PageAt(1).height();
        m_zoom = std::clamp(m_fit == Fit::Width ? width : std::min(width, height), leastZoom, greatestZoom);
    }
    const int columns = ColumnCount(), cells = m_pageCount + (m_columns == Columns::Two ? 1 : 0);
    const int rows = (cells + columns - 1) / columns;
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(fontMetrics().height() * 3);
    verticalScrollBar()->setRange(0, std::max(rows * Cell().height() + space - viewport()->height(), 0));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setSingleStep(fontMetrics().height() * 3);
    horizontalScrollBar()->setRange(0, std::max(columns * Cell().width() + space - viewport()->width(), 0));
    DropPieces();
    GoTo(m_page);
}

void PreviewView::DropPieces()
{
    m_pieces.clear();
    m_tried.clear();
    m_request = 0; // an answer under way is for another size
    m_requested.reset();
}

QList<PreviewView::Piece> PreviewView::PiecesInSight() const
{
    QList<Piece> pieces;
    if (m_pageCount == 0)
        return pieces;
    const int columns = ColumnCount(), row = verticalScrollBar()->value() / std::max(Cell().height(), 1);
    const qreal ratio = devicePixelRatioF();
    const QRect sight = viewport()->rect();
    for (int page = std::max(row * columns - 1, 1); page <= m_pageCount; ++page) {
        const QRect place = PlaceOf(page), part = place & sight;
        if (place.top() > sight.bottom())
            break;
        if (part.isEmpty())
            continue;
        const QRect dots(((part.topLeft() - place.topLeft()).toPointF() * ratio).toPoint(),
                         (QSizeF(part.size()) * ratio).toSize());
        for (int at = dots.top() / pieceHeight; at <= dots.bottom() / pieceHeight; ++at) {
            for (int column = dots.left() / pieceWidth; column <= dots.right() / pieceWidth; ++column)
                pieces.append({page, at, column});
        }
    }
    return pieces;
}

bool PreviewView::IsDrawn() const
{
    return m_pageCount > 0 &&
           std::ranges::all_of(PiecesInSight(), [this](const Piece &piece) { return m_pieces.contains(piece); });
}

qint64 PreviewView::KeptBytes() const
{
    return m_pieces.totalCost() * qint64(1024);
}

void PreviewView::RequestNext()
{
    // One at a time, so that what went out of sight meanwhile is never drawn.
    if (m_requested || !m_renderer)
        return;
    for (const Piece &piece : PiecesInSight()) {
        const QRect place = PlaceOf(piece);
        if (place.isEmpty() || m_pieces.contains(piece) || m_tried.contains(piece))
            continue;
        m_tried.insert(piece);
        m_requested = piece;
        m_request = m_renderer->requestPage(piece.page - 1, place.size(), PieceOptions(m_points, DrawnPage(), place));
        return;
    }
}

void PreviewView::Take(const QImage &image, quint64 request)
{
    if (!m_requested || request != m_request)
        return;
    const Piece piece = *m_requested;
    m_requested.reset();
    auto paper = std::make_unique<QImage>(image.size(), QImage::Format_RGB32);
    paper->fill(Qt::white); // Chromium leaves the margins transparent
    QPainter(paper.get()).drawImage(0, 0, image);
    const auto cost = std::max<qsizetype>(paper->sizeInBytes() / 1024, 1);
    m_pieces.insert(piece, paper.release(), cost);
    viewport()->update();
    RequestNext();
}

void PreviewView::paintEvent(QPaintEvent *)
{
    QPainter painter(viewport());
    const qreal ratio = devicePixelRatioF();
    int page = 0;
    for (const Piece &piece : PiecesInSight()) {
        const QRect place = PlaceOf(piece.page);
        if (piece.page != page) {
            page = piece.page;
            painter.fillRect(place, Qt::white);
            painter.setPen(palette().color(QPalette::Dark));
            painter.drawRect(place.adjusted(-1, -1, 0, 0));
        }
        if (const QImage *image = m_pieces.object(piece)) {
            const QRect dots = PlaceOf(piece);
            painter.drawImage(QRectF(place.topLeft() + dots.topLeft().toPointF() / ratio, QSizeF(dots.size()) / ratio),
                              *image);
        }
    }
    RequestNext();
}

void PreviewView::resizeEvent(QResizeEvent *)
{
    Arrange();
}

void PreviewView::scrollContentsBy(int, int)
{
    m_tried.clear();
    viewport()->update();
    if (m_isMoving)
        return;
    m_page = PageInSight();
    emit Changed();
}

void PreviewView::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Home:
        GoTo(1);
        break;
    case Qt::Key_End:
        GoTo(m_pageCount);
        break;
    default:
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void PreviewView::wheelEvent(QWheelEvent *event)
{
    if (!event->modifiers().testFlag(Qt::ControlModifier)) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    SetZoom(m_zoom * std::pow(wheelStep, event->angleDelta().y() / 120.0));
}
