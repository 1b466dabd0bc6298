#include "toolkit/controls/CxButtonEdit.h"

#include "toolkit/program/Guard.h"

#include <QEvent>
#include <QKeyEvent>
#include <QPointer>
#include <QToolButton>

namespace {

constexpr int Margin = 2;

} // namespace

bool TcxButtonEdit::event(QEvent *event)
{
    const bool isTaken = QLineEdit::event(event);
    if (event->type() == QEvent::Polish || event->type() == QEvent::LayoutDirectionChange)
        PlaceButtons();
    return isTaken;
}

void TcxButtonEdit::keyPressEvent(QKeyEvent *event)
{
    const QPointer<TcxButtonEdit> self = this;
    if (OnKeyPress)
        RunGuarded([&] { OnKeyPress(event->key()); });
    if (self)
        QLineEdit::keyPressEvent(event);
}

void TcxButtonEdit::resizeEvent(QResizeEvent *event)
{
    QLineEdit::resizeEvent(event);
    PlaceButtons();
}

void TcxButtonEdit::PlaceButtons()
{
    const QList<QToolButton *> buttons = findChildren<QToolButton *>(Qt::FindDirectChildrenOnly);
    const int side = height() - 2 * Margin;
    int right = width() - Margin;
    for (auto button = buttons.crbegin(); button != buttons.crend(); ++button) {
        right -= side;
        (*button)->setGeometry(right, Margin, side, side);
        (*button)->setCursor(Qt::ArrowCursor);
    }
    setTextMargins(0, 0, width() - Margin - right, 0);
}
