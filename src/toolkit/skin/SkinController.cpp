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

/// The desktop's look, kept while a skin replaces it.
struct PlatformLook
{
    QStyle *style;
    QPalette palette;
    QPalette toolTips;
};

std::optional<PlatformLook> covered;
/// Owned by the application, which deletes it when another style is set.
QPointer<SkinStyle> skinStyle;

void SetPalettes(const QPalette &palette, const QPalette &toolTips)
{
    QToolTip::setPalette(toolTips);
    QApplication::setPalette(palette);
    // Qt would notify the windows later; until then a window could be painted half in the old look.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::ApplicationPaletteChange);
}

/// A skin may change sizes, and properties that the style set when it polished a control.
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
    covered->style->setParent(nullptr); // the application deletes a style that it owns, even while a control uses it
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
