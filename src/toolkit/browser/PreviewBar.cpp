#include "toolkit/browser/PreviewBar.h"

#include <QAction>
#include <QGraphicsView>
#include <QIcon>
#include <QPrintPreviewDialog>
#include <QToolBar>
#include <QWidgetAction>

#include <array>

// A static library's resources are linked only on request, and only from outside any namespace.
static void InitPreviewImages()
{
    Q_INIT_RESOURCE(preview);
}

namespace {

/// In the order of the toolkit's bar, whose actions have no names.
constexpr std::array pictures{"width", "page", "zoom-out", "zoom-in", "portrait", "landscape", "first", "prior",
                              "next",  "last", "one",      "two",     "four",     "setup",     "print"};

} // namespace

void DressPreview(QPrintPreviewDialog &window)
{
    InitPreviewImages();
    auto *view = window.findChild<QGraphicsView *>();
    if (view)
        view->setFrameShape(QFrame::NoFrame);
    auto *bar = window.findChild<QToolBar *>();
    if (!bar)
        return;
    bar->setMovable(false);
    QList<QAction *> actions = bar->actions();
    actions.removeIf(
        [](const QAction *action) { return action->isSeparator() || qobject_cast<const QWidgetAction *>(action); });
    // Another release of the toolkit may have other buttons.
    if (actions.size() != qsizetype(pictures.size()))
        return;
    for (size_t at = 0; at < pictures.size(); ++at)
        actions[qsizetype(at)]->setIcon(
            QIcon(QStringLiteral(":/preview/%1.picture").arg(QLatin1StringView(pictures[at]))));
}
