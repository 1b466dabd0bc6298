#include "toolkit/browser/PreviewBar.h"

#include "base/InterfaceLanguage.h"

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

struct Button
{
    const char *picture;
    const char16_t *vietnamese;
    const char16_t *english;
};

/// In the order of Qt's bar, whose actions have no names.
constexpr std::array<Button, 15> buttons{{
    {"width", u"Vừa chiều rộng", u"Fit width"},
    {"page", u"Vừa trang", u"Fit page"},
    {"zoom-out", u"Thu nhỏ", u"Zoom out"},
    {"zoom-in", u"Phóng to", u"Zoom in"},
    {"portrait", u"Khổ dọc", u"Portrait"},
    {"landscape", u"Khổ ngang", u"Landscape"},
    {"first", u"Trang đầu", u"First page"},
    {"prior", u"Trang trước", u"Previous page"},
    {"next", u"Trang sau", u"Next page"},
    {"last", u"Trang cuối", u"Last page"},
    {"one", u"Một trang", u"Single page"},
    {"two", u"Hai trang đối nhau", u"Facing pages"},
    {"four", u"Mọi trang", u"All pages"},
    {"setup", u"Thiết lập trang", u"Page setup"},
    {"print", u"In", u"Print"},
}};

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
    // Another version of Qt may have other buttons.
    if (actions.size() != qsizetype(buttons.size()))
        return;
    for (size_t at = 0; at < buttons.size(); ++at) {
        const Button &button = buttons[at];
        QAction *action = actions[qsizetype(at)];
        const QString text = QString::fromUtf16(InterfaceLang == 0 ? button.vietnamese : button.english);
        action->setIcon(QIcon(QStringLiteral(":/preview/%1.picture").arg(QLatin1StringView(button.picture))));
        action->setText(text);
        action->setToolTip(text);
    }
}
