#pragma once

#include <QColor>
#include <QList>
#include <QString>
#include <QWidget>

#include <functional>

/// What a line of a strip stands for; each has a colour of its own.
enum class StripKind { Special, High, Normal, Low, Hit };

/// The colour of a kind on a ground, which may be dark.
QColor StripColour(StripKind kind, const QColor &ground);

/// A narrow strip beside a page, which stands for the whole of it: a line across it for each place of interest. The
/// pointer over a line shows its hint. It takes no focus, as what it leads to has commands with keys.
class TMarkStrip : public QWidget
{
    Q_OBJECT
public:
    struct Line
    {
        double height = 0; ///< of the page, from 0 to 1
        StripKind kind = StripKind::Normal;
        QString hint; ///< plain text; its first line is a title
    };

    explicit TMarkStrip(QWidget *parent = nullptr);

    /// Later ones are drawn over earlier ones.
    void SetLines(const QList<Line> &lines);
    const QList<Line> &Lines() const { return m_lines; }
    /// The rows that a line takes.
    QRect RectOf(qsizetype line) const;

    /// By the number of the line.
    std::function<void(qsizetype line)> OnClick, OnDoubleClick;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    qsizetype LineAt(const QPoint &point) const;
    QString HintAt(const QPoint &point) const;

    QList<Line> m_lines;
    QList<double> m_heights;
    qsizetype m_pressed = -1;
};
