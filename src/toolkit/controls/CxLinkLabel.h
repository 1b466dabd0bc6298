#pragma once

#include "toolkit/controls/CxLabel.h"

/// A label that acts as a link: by a click, and by Enter or the space bar while it has the focus, which a frame shows.
class TcxLinkLabel : public TcxLabel
{
    Q_OBJECT
public:
    explicit TcxLinkLabel(QWidget *parent = nullptr);

signals:
    void Click();

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};
