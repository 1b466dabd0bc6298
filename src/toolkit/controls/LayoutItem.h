#pragma once

#include <QList>
#include <QWidget>

class QLabel;

/// A cell of a window's layout: a caption, and beside it what the cell's own layout holds. The caption's font is that
/// of the layout look in force.
class TdxLayoutItem : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString Caption READ Caption WRITE SetCaption)
    Q_PROPERTY(bool CaptionOnRight MEMBER m_isCaptionOnRight)
public:
    explicit TdxLayoutItem(QWidget *parent = nullptr);

    QString Caption() const;
    /// The caption also names the control to those who can't see it. A check box shows it itself, so that a click on it
    /// counts; else it stands before the control, or behind it with CaptionOnRight.
    void SetCaption(const QString &caption);

    void SetCaptionFont(const QFont &font);

    /// Gives the captions of items that stand under each other one width.
    static void AlignCaptions(const QList<TdxLayoutItem *> &items);

private:
    void FollowLook();

    QLabel *m_caption;
    bool m_isCaptionOnRight = false;
};
