#pragma once

#include "toolkit/controls/CxLabel.h"

/// A label that acts as a link, by a click or by Enter or Space. A frame shows its focus.
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
