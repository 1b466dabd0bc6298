#include "presentation/DMInterface.h"
#include "presentation/FontPolicy.h"
#include "reader/Main.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/settings/Options.h"
#include "toolkit/controls/BarCombo.h"
#include "toolkit/skin/LookAndFeel.h"
#include "toolkit/skin/SkinController.h"

#include <QAbstractItemView>
#include <QStyle>

#include <algorithm>

namespace {

QString SkinFilePath()
{
    return AppPath + QStringLiteral("AllSkins.skinres");
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
}
