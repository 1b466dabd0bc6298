#include "toolkit/program/Forms.h"

#include <QList>
#include <QPointer>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace {

QList<QPointer<QWidget>> &Forms()
{
    static QList<QPointer<QWidget>> forms;
    return forms;
}

void RestoreWithoutFocus(QWidget &form, Qt::WindowStates states)
{
    // Desktops give the focus to a window that they restore, but not to a new one that does not want it. Qt passes the
    // attribute WA_ShowWithoutActivating on only when it makes the window, so this sets what it passes.
    const char wantsNoFocus[] = "_q_showWithoutActivating";
    const QRect normal = form.normalGeometry();
    const bool wasMaximised = form.isMaximized();
    form.hide();
    form.setWindowState(Qt::WindowNoState);
    if (wasMaximised && normal.isValid())
        form.setGeometry(normal);
    form.windowHandle()->setProperty(wantsNoFocus, true);
    form.show();
    form.windowHandle()->setProperty(wantsNoFocus, false);
    // Only now: while it forgets the hidden window, the desktop also forgets what that was.
    form.setWindowState(states);
}

} // namespace

QWidget *FindForm(const QString &name)
{
    // A closed window exists until its deferred deletion, but must not be found.
    const auto found = std::find_if(Forms().begin(), Forms().end(), [&](const QPointer<QWidget> &form) {
        return form && form->isVisible() && form->objectName() == name;
    });
    return found == Forms().end() ? nullptr : found->data();
}

QWidget *OpenForm(const QString &name, const std::function<QWidget *()> &create, Restored restored)
{
    if (QWidget *form = FindForm(name)) {
        if (form->isMinimized())
            RestoreWithoutFocus(*form, restored == Restored::AsBefore ? form->windowState() & ~Qt::WindowMinimized
                                                                      : Qt::WindowStates());
        return form;
    }
    QWidget *form = create();
    form->setObjectName(name);
    form->setAttribute(Qt::WA_DeleteOnClose);
    Forms().removeIf([](const QPointer<QWidget> &known) { return !known; });
    Forms().append(form);
    form->show();
    return form;
}

void DeleteForms()
{
    const QList<QPointer<QWidget>> forms = std::exchange(Forms(), {});
    for (const QPointer<QWidget> &form : forms)
        delete form;
}
