#pragma once

#include <QList>
#include <QWidget>

class QLabel;

/// A cell of a window's layout: a caption beside the contents of the cell's own layout. The caption's font is that of
/// the current layout look.
class TdxLayoutItem : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString Caption READ Caption WRITE SetCaption)
    Q_PROPERTY(bool CaptionOnRight MEMBER m_isCaptionOnRight)
public:
    explicit TdxLayoutItem(QWidget *parent = nullptr);

    QString Caption() const;
    /// The caption is also the control's accessible name. A check box shows it itself, so that it can be clicked;
    /// otherwise it is before the control, or after it with CaptionOnRight.
    void SetCaption(const QString &caption);

    void SetCaptionFont(const QFont &font);

    /// Gives the captions of items below each other the same width.
    static void AlignCaptions(const QList<TdxLayoutItem *> &items);

private:
    void FollowLook();

    QLabel *m_caption;
    bool m_isCaptionOnRight = false;
};
