#include "presentation/DMInterface.h"
#include "presentation/FontPolicy.h"
#include "presentation/looks/SkinFile.h"
#include "reader/Main.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/settings/Options.h"
#include "toolkit/controls/BarCombo.h"
#include "toolkit/program/Doors.h"
#include "toolkit/skin/LookAndFeel.h"
#include "toolkit/skin/SkinController.h"
#include "ui_Main.h"

#include <QAbstractItemView>
#include <QScopedValueRollback>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace {

QString SkinFilePath()
{
    return AppPath + QStringLiteral("AllSkins.skinres");
}

/// Where the look is kept that the reader chose for a dark or a light desktop.
Option LookOption(bool isDark)
{
    return isDark ? Option::DarkLook : Option::LightLook;
}

} // namespace

void TfrmMain::FillSkins()
{
    QStringList names;
    ListSkins(SkinFilePath(), names);
    for (const QString &name : std::as_const(names))
        bcbInterface->AddItem(name);
    // The combo keeps its width; its list shows the full names.
    QAbstractItemView *list = bcbInterface->view();
    list->setMinimumWidth(list->sizeHintForColumn(0) + 2 * list->frameWidth() +
                          list->style()->pixelMetric(QStyle::PM_ScrollBarExtent));
}

void TfrmMain::ApplyStoredSkin()
{
    frmKeloraDM->ReadActiveStyle();
    if (InterfaceDM) {
        constexpr int captionSize = 10;
        const QFont font(QStringLiteral("Segoe UI"), captionSize);
        InterfaceDM->SkinLookAndFeel->GroupOptions().SetFont(font);
        InterfaceDM->SkinLookAndFeel->ItemOptions().SetFont(font);
    }
    bcbInterface->SetItemIndex(std::max(GlobalActiveStyle, -1) - 1);
}

void TfrmMain::bcbInterfaceChange()
{
    if (LoadUserSkin(SkinFilePath(), bcbInterface->currentText())) {
        scMain->NativeStyle = false;
        scMain->SkinName = QString::fromUtf16(UserSkin);
        scMain->UseSkins = true;
        scMain->Refresh();
    }
    const QList<QObject *> components = ComponentsOf(*this);
    for (QObject *component : components)
        ApplyFontPolicy(*component);
    GlobalActiveStyle = bcbInterface->ItemIndex() + 1;
    GlobalActiveName = bcbInterface->currentText();
    frmKeloraDM->WirteActiveStyle();
    if (m_isDesktopDark && !m_isFollowing && !GlobalActiveName.isEmpty())
        KeepChoice(LookOption(*m_isDesktopDark), GlobalActiveName);
}

void TfrmMain::FollowDesktop()
{
    m_desktopWatch.reset();
    m_isDesktopDark.reset();
    if (!ui->acFollowDesktop->isChecked())
        return;
    m_desktopWatch = std::make_unique<QObject>();
    Doors().watchDesktopLook(m_desktopWatch.get(), [this](bool isDark) { TakeDesktopLook(isDark); });
}

void TfrmMain::TakeDesktopLook(bool isDark)
{
    if (m_isDesktopDark == isDark)
        return;
    m_isDesktopDark = isDark;
    const auto chosen = [](bool dark) { return Get<QString>(frmKeloraDM->vOurOptions, LookOption(dark)); };
    // What the reader chose before the desktop was followed comes back with a desktop of its kind.
    const QString current = bcbInterface->currentText();
    const std::optional<Skin> shown = current.isEmpty() ? std::nullopt : LoadSkin(SkinFilePath(), current);
    if (shown && chosen(shown->isDark).isEmpty())
        KeepChoice(LookOption(shown->isDark), current);
    int index = bcbInterface->findText(chosen(isDark), Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index < 0)
        index = bcbInterface->findText(FirstLook(isDark), Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index < 0)
        return;
    const QScopedValueRollback following(m_isFollowing, true);
    bcbInterface->SetItemIndex(index);
}

QString TfrmMain::FirstLook(bool isDark) const
{
    for (int index = 0; index < bcbInterface->count(); ++index) {
        const std::optional<Skin> skin = LoadSkin(SkinFilePath(), bcbInterface->itemText(index));
        if (skin && skin->isDark == isDark && !skin->isHighContrast)
            return skin->name;
    }
    return {};
}
