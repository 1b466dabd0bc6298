#pragma once

#include <QAbstractScrollArea>
#include <QBuffer>
#include <QCache>
#include <QImage>
#include <QPdfDocument>
#include <QSet>

#include <memory>
#include <optional>

class QPdfPageRenderer;

/// Shows the pages of a PDF as sheets of white paper one below the other. It draws what is in sight, piece by piece in
/// a thread of Qt's, and keeps at most 48 MB of drawn pieces. Main thread only.
class PreviewView : public QAbstractScrollArea
{
    Q_OBJECT
public:
    enum class Columns { One, Two, Many };
    enum class Fit { None, Width, Page };

    explicit PreviewView(QWidget *parent = nullptr);
    ~PreviewView() override;

    /// Shows another PDF, from the same page on if it has that many. False, and the old one stays, if the bytes are
    /// none.
    bool SetPdf(const QByteArray &pdf);
    int PageCount() const { return m_pageCount; }
    /// The page gone to, or scrolled to, counted from 1.
    int CurrentPage() const { return m_page; }
    void GoTo(int page);
    /// 1 is the paper's own size. A set zoom is clamped and ends the fitting.
    qreal Zoom() const { return m_zoom; }
    void SetZoom(qreal zoom);
    Fit Fitting() const { return m_fit; }
    void SetFitting(Fit fit);
    Columns Arrangement() const { return m_columns; }
    void SetArrangement(Columns columns);
    /// Whether all that is in sight is drawn.
    bool IsDrawn() const;
    /// Bytes of the drawn pieces that are kept.
    qint64 KeptBytes() const;

signals:
    /// Page, number of pages, zoom or arrangement changed.
    void Changed();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    /// A piece of a page, of at most `PieceSize`, at the present zoom.
    struct Piece
    {
        int page, row, column;
        friend bool operator==(const Piece &, const Piece &) = default;
        friend size_t qHash(const Piece &piece, size_t seed)
        {
            return qHashMulti(seed, piece.page, piece.row, piece.column);
        }
    };
    int ColumnCount() const;
    QSize Cell() const;
    QSize DrawnPage() const;
    QSizeF PageAt(qreal zoom) const;
    QRect PlaceOf(int page) const;
    QRect PlaceOf(const Piece &piece) const;
    QList<Piece> PiecesInSight() const;
    int PageInSight() const;
    void Arrange();
    void DropPieces();
    void RequestNext();
    void Take(const QImage &image, quint64 request);

    std::unique_ptr<QBuffer> m_bytes;
    std::unique_ptr<QPdfDocument> m_document;
    std::unique_ptr<QPdfPageRenderer> m_renderer;
    QSizeF m_points; ///< a page's size in 1/72 inch; Chromium's pages are all alike
    int m_pageCount = 0;
    int m_page = 1;
    bool m_isMoving = false; ///< by ourselves
    qreal m_zoom = 1;
    Fit m_fit = Fit::Width;
    Columns m_columns = Columns::One;
    QCache<Piece, QImage> m_pieces;
    QSet<Piece> m_tried; ///< since the view last moved: what does not fit into the cache is drawn once, not for ever
    std::optional<Piece> m_requested;
    quint64 m_request = 0;
};
