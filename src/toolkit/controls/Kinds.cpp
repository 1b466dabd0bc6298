#include "toolkit/controls/Kinds.h"

#include "toolkit/controls/LayoutItem.h"

#include <QWidgetAction>

void TdxLayoutControl::SetCaptionFont(const QFont &font)
{
    for (TdxLayoutItem *item : findChildren<TdxLayoutItem *>())
        item->SetCaptionFont(font);
}

TdxBarSubItem::TdxBarSubItem(QWidget *parent) : QMenu(parent)
{
    connect(this, &QMenu::hovered, this, &TdxBarSubItem::FocusCurrentEntry);
}

void TdxBarSubItem::showEvent(QShowEvent *event)
{
    QMenu::showEvent(event);
    // A key that opens the menu chooses its first entry before it is on the screen.
    QMetaObject::invokeMethod(this, &TdxBarSubItem::FocusCurrentEntry, Qt::QueuedConnection);
}

bool TdxBarSubItem::focusNextPrevChild(bool next)
{
    const bool isMoved = QMenu::focusNextPrevChild(next);
    FocusCurrentEntry();
    return isMoved;
}

void TdxBarSubItem::FocusCurrentEntry()
{
    const auto *entry = qobject_cast<QWidgetAction *>(activeAction());
    QWidget *control = entry ? entry->defaultWidget() : nullptr;
    if (control && isVisible() && control->focusPolicy() != Qt::NoFocus)
        control->setFocus(Qt::TabFocusReason);
}
