#include "toolkit/program/Forms.h"

#include "base/Messages.h"
#include "toolkit/program/NamedAction.h"

#include <QList>
#include <QPointer>
#include <QWidget>

#include <algorithm>

namespace {

constexpr Message closeWindow{u"Đóng cửa sổ này", u"Close this window"};

QList<QPointer<QWidget>> &Forms()
{
    static QList<QPointer<QWidget>> forms;
    return forms;
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

QWidget *OpenForm(const QString &name, const std::function<QWidget *()> &create)
{
    if (QWidget *form = FindForm(name)) {
        if (form->isMinimized())
            form->setWindowState(Qt::WindowNoState);
        return form;
    }
    QWidget *form = create();
    form->setObjectName(name);
    form->setAttribute(Qt::WA_DeleteOnClose);
    new NamedAction(QStringLiteral("keyCloseWindow"), closeWindow, Qt::CTRL | Qt::Key_W, *form,
                    [form] { form->close(); });
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
