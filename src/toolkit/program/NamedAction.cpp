#include "toolkit/program/NamedAction.h"

#include "toolkit/program/Guard.h"

#include <QEvent>

#include <utility>

NamedAction::NamedAction(const QString &name, const Message &text, const QKeySequence &key, QWidget &place,
                         std::function<void()> run)
    : QAction(TextOrEnglish(text), &place), m_text(text)
{
    setObjectName(name);
    setShortcut(key);
    place.addAction(this);
    ConnectGuarded(this, &QAction::triggered, this, std::move(run));
}

bool NamedAction::event(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        setText(TextOrEnglish(m_text));
    return QAction::event(event);
}
