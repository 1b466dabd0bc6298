#include "toolkit/skin/SkinController.h"

#include "presentation/looks/SkinFile.h"
#include "toolkit/program/Doors.h"
#include "toolkit/skin/SkinStyle.h"

#include <QApplication>
#include <QPalette>
#include <QPointer>
#include <QStyle>
#include <QToolTip>
#include <QWidget>

#include <optional>

namespace {

std::optional<Skin> slot;

/// The look that the desktop gave, kept while a skin covers it.
struct PlatformLook
{
    QStyle *style;
    QPalette palette;
    QPalette toolTips;
};

std::optional<PlatformLook> covered;
/// The application owns it and drops it for another style.
QPointer<SkinStyle> skinStyle;

void SetPalettes(const QPalette &palette, const QPalette &toolTips)
{
    QToolTip::setPalette(toolTips);
    QApplication::setPalette(palette);
    // The toolkit tells the windows later; a window must not be painted half in the old look until then.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::ApplicationPaletteChange);
}

/// A skin may change sizes, and what the style gave a control when it first saw it.
void Restyle()
{
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget *widget : widgets) {
        if (widget->testAttribute(Qt::WA_WState_Polished))
            skinStyle->polish(widget);
        QEvent change(QEvent::StyleChange);
        QCoreApplication::sendEvent(widget, &change);
        widget->update();
    }
}

void ApplySkin(const Skin &skin)
{
    const QPalette palette = SkinPalette(skin);
    if (skinStyle) {
        skinStyle->SetSkin(skin);
        SetPalettes(palette, palette);
        Restyle();
        return;
    }
    KeepSystemColours();
    covered = PlatformLook{QApplication::style(), QApplication::palette(), QToolTip::palette()};
    covered->style->setParent(nullptr); // what the application owns it deletes, also under the control that asked
    skinStyle = new SkinStyle(skin);
    QApplication::setStyle(skinStyle);
    SetPalettes(palette, palette);
}

void UncoverPlatform()
{
    if (!covered)
        return;
    QApplication::setStyle(covered->style);
    SetPalettes(covered->palette, covered->toolTips);
    covered.reset();
}

} // namespace

bool ListSkins(const QString &path, QStringList &names)
{
    const QStringList found = SkinNames(path);
    names += found;
    return !found.isEmpty();
}

bool LoadUserSkin(const QString &path, const QString &name)
{
    std::optional<Skin> skin = LoadSkin(path, name);
    if (!skin)
        return false;
    slot = std::move(skin);
    return true;
}

void TdxSkinController::Refresh()
{
    const bool isSkinned = UseSkins && !NativeStyle && SkinName == QStringView(UserSkin) && slot;
    if (isSkinned)
        ApplySkin(*slot);
    else
        UncoverPlatform();
}
