#pragma once

#include "base/Messages.h"

#include <QAction>
#include <QWidget>

#include <functional>

/// An action that code adds to a window for its key. Its text follows the interface's language; the window's own table
/// doesn't know it.
class NamedAction : public QAction
{
    Q_OBJECT
public:
    /// Adds itself to `place`, in whose window the key works, and runs the handler under the general guard.
    NamedAction(const QString &name, const Message &text, const QKeySequence &key, QWidget &place,
                std::function<void()> run);

protected:
    bool event(QEvent *event) override;

private:
    Message m_text;
};
