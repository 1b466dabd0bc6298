#pragma once

#include <QLabel>

/// A label of one line of plain text that takes the room it is given: a text that does not fit ends in "…" and is
/// its own hint.
class TElidedLabel : public QLabel
{
    Q_OBJECT
public:
    explicit TElidedLabel(QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

private:
    QString ShownText() const;
};
