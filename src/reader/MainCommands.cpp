#include "reader/Main.h"

#include "dictionary/DictionaryDM.h"
#include "presentation/About.h"
#include "presentation/Options.h"
#include "presentation/ProductAddresses.h"
#include "search/SearchSutas.h"
#include "stores/ClientsDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "stores/settings/Options.h"
#include "toolkit/controls/BarButton.h"
#include "toolkit/controls/BarCombo.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/Forms.h"
#include "toolkit/program/Guard.h"
#include "toolkit/skin/SkinController.h"
#include "ui_Main.h"

#include <QAbstractEventDispatcher>
#include <QHBoxLayout>
#include <QPointer>
#include <QWidgetAction>

namespace {

constexpr int ZoomStep = 10;
constexpr int InterfaceDropDownCount = 28;
constexpr int ComboWidth = 120;

} // namespace

void TfrmMain::SetUpCommands()
{
    Wire(ui->acExit, [this] { acExitExecute(); });
    Wire(ui->acAbout, [this] { acAboutExecute(); });
    Wire(ui->acHelp, [this] { acHelpExecute(); });
    Wire(ui->acFernwhistle, [this] { acFernwhistleExecute(); });

    Wire(ui->acOption, [this] { acOptionExecute(); });
    Wire(ui->acOptionFormat, [this] { acOptionExecute(); });

    Wire(ui->acCopy, [this] { ui->ebContent->Copy(); }, MayCopy);
    Wire(ui->acFindDialog, [this] { ui->ebContent->ShowFindDialog(); });
    Wire(ui->acSelectAll, [this] { ui->ebContent->SelectAll(); });
    Wire(ui->acPrint, [this] { ui->ebContent->Print(); });
    Wire(ui->acPrintPreview, [this] { ui->ebContent->PrintPreview(); });
    Wire(ui->acSave, [this] { ui->ebContent->SaveDialog(); });
    const auto zoomBy = [this](int percent) { ui->ebContent->SetZoomPercent(ui->ebContent->ZoomPercent() + percent); };
    Wire(ui->acZoomIn, [zoomBy] { zoomBy(ZoomStep); });
    Wire(ui->acZoomOut, [zoomBy] { zoomBy(-ZoomStep); });
    Wire(ui->acMarginWidth0, [this] { SetMarginWidth(0); });
    Wire(ui->acMarginWidth1, [this] { SetMarginWidth(1); });
    Wire(ui->acMarginWidth2, [this] { SetMarginWidth(2); });
    Wire(ui->acMarginWidth3, [this] { SetMarginWidth(3); });

    Wire(ui->acFocusHighlight, [this] { acFocusHighlightExecute(); }, MayMarkSelection);
    Wire(ui->acOrganization, [this] { acOrganizationExecute(); }, MayBrowseMarks);
    Wire(ui->acSearchSutas,
         [this] { OpenForm(QStringLiteral("frmSearchSutas"), [this] { return new TfrmSearchSutas(*this); }); });

    Wire(ui->acDictionary, [this] { OpenDictionary(); }, MayOpenDictionary);
    Wire(ui->acGetWord, [this] { acGetWordExecute(); }, MayLookUp);
    Wire(ui->acNotes, [] {}); // an empty command, kept enabled

    Wire(ui->acExpandTree, [this] { ui->dbtSutas->FullExpand(); });
    Wire(ui->acCollapseTree, [this] { ui->dbtSutas->FullCollapse(); });
    Wire(ui->acNamePAL, [this] { ViewSuttaName(PageMode::Pali); });
    Wire(ui->acNameVIE, [this] { ViewSuttaName(PageMode::Vietnamese); });
    Wire(ui->acNameENG, [this] { ViewSuttaName(PageMode::English); });
    Wire(ui->acNameVietPali, [this] { ViewSuttaName(PageMode::Parallel); });
    Wire(ui->acFindEverywhere, [this] { acFindEverywhereExecute(); });
    Wire(ui->acImport, [this] { OpenImports(); });
    Wire(ui->acWelcome, [this] { OpenWelcome(true); });
    Wire(ui->acVelthuis, [this] { KeepChoice(Option::PaliTyping, ui->acVelthuis->isChecked()); });
    Wire(ui->acFollowDesktop, [this] {
        KeepChoice(Option::FollowDesktop, ui->acFollowDesktop->isChecked());
        FollowDesktop();
    });
    Wire(ui->acFoot, [this] { ShowFoot(ui->acFoot->isChecked()); });
    Wire(ui->acBack, [this] { Go(false); }, MayGoBack);
    Wire(ui->acForward, [this] { Go(true); }, MayGoForward);
    Wire(ui->acMarkSelection, [this] { acFocusHighlightExecute(); }, MayMarkSelection);
    Wire(ui->acReference, [this] { acReferenceExecute(); });
    Wire(ui->acCopyReference, [this] { acCopyReferenceExecute(); }, MayCopy);
    Wire(ui->acNextArea, [this] { GoToArea(1); });
    Wire(ui->acPriorArea, [this] { GoToArea(-1); });
    SetUpKeys();
    // The toggles follow the shown names; clicking a checked one keeps it checked.
    ConnectGuarded(ui->bTreeNamePAL, &QAction::triggered, this, [this] { ViewSuttaName(PageMode::Pali); });
    ConnectGuarded(ui->bTreeNameVIE, &QAction::triggered, this, [this] { ViewSuttaName(PageMode::Vietnamese); });

    ui->acSearchSutas->setShortcuts(ui->acSearchSutas->shortcuts() +
                                    QList<QKeySequence>{Qt::CTRL | Qt::SHIFT | Qt::Key_F});

    // Shortcuts act in the whole window; a command without a handler is disabled.
    for (QAction *action : findChildren<QAction *>()) {
        if (!action->objectName().startsWith(QStringLiteral("ac")))
            continue;
        addAction(action);
        const bool isWired = std::any_of(m_commands.begin(), m_commands.end(),
                                         [action](const Command &command) { return command.action == action; });
        action->setEnabled(isWired);
    }
    UpdateCommands();
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &TfrmMain::UpdateCommands);
}

void TfrmMain::Wire(QAction *action, std::function<void()> execute, std::function<bool(const ReaderFacts &)> rule)
{
    ConnectGuarded(action, &QAction::triggered, this, std::move(execute));
    m_commands.push_back({action, std::move(rule)});
}

void TfrmMain::acOptionExecute()
{
    // The tray's menu works beside a modal window.
    if (findChild<TfrmOptions *>())
        return;
    TfrmOptions options(this);
    if (options.exec() == QDialog::Accepted)
        ApplyOptions();
}

bool TfrmMain::HasSelection() const
{
    return ui->ebContent->HasSelectedText();
}

void TfrmMain::UpdateCommands()
{
    // Runs whenever the event loop is about to go idle, so it uses cached facts only and never asks the page.
    const ReaderFacts facts{
        HasSelection(),
        frmClientsDM && frmClientsDM->vIsOKClients,
        frmDictionaryDM && frmDictionaryDM->vIsOKDictionary,
        m_history.CanGoBack(Doors().clock()),
        m_history.CanGoForward(Doors().clock()),
    };
    for (const Command &command : m_commands) {
        if (command.rule)
            command.action->setEnabled(command.rule(facts));
    }
    // Escape is the find bar's while that is open.
    ui->acLeaveFullScreen->setEnabled(isFullScreen() && !ui->ebContent->IsFindBarOpen() && ui->edReference->isHidden());
}

void TfrmMain::SetUpButtons()
{
    SetBarAction(*ui->lbOrganization, *ui->acOrganization);
    SetBarAction(*ui->lbDictionary, *ui->acDictionary);
    SetBarAction(*ui->lbSearchSutas, *ui->acSearchSutas);
    SetBarAction(*ui->lbOptions, *ui->acOption);
    SetBarAction(*ui->lbHelp, *ui->acHelp);
    SetBarMenu(*ui->btnSystem, *ui->bsiSystem);

    ui->btnExpandTree->SetAction(ui->acExpandTree);
    ui->btnCollapseTree->SetAction(ui->acCollapseTree);
    ui->btnFindDialog->SetAction(ui->acFindDialog);
    ui->btnCopy->SetAction(ui->acCopy);
    ui->btnSelectAll->SetAction(ui->acSelectAll);
    ui->btnPrint->SetAction(ui->acPrint);
    ui->btnPrintPreview->SetAction(ui->acPrintPreview);
    ui->btnSave->SetAction(ui->acSave);
    ui->btnZoomIn->SetAction(ui->acZoomIn);
    ui->btnZoomOut->SetAction(ui->acZoomOut);
    ui->btnFocusHighlight->SetAction(ui->acFocusHighlight);

    // The button itself removes the margin; it does not restore the last width.
    ui->btnMarginWidth->SetDropDownMenu(ui->ppMarginWidth);
    ConnectGuarded(ui->btnMarginWidth, &QToolButton::clicked, this, [this] { SetMarginWidth(0); });
    ConnectGuarded(ui->btnPali, &QToolButton::clicked, this, [this] { LanguageButtonClick(PageMode::Pali); });
    ConnectGuarded(ui->btnViet, &QToolButton::clicked, this, [this] { LanguageButtonClick(PageMode::Vietnamese); });
    ConnectGuarded(ui->btnVietPali, &QToolButton::clicked, this, [this] { LanguageButtonClick(PageMode::Parallel); });
}

void TfrmMain::SetUpSystemMenu()
{
    bcbInterface = AddCombo(ui->bsiSkins, QStringLiteral("bcbInterface"));
    bcbInterface->setFixedWidth(GrownPixels(ComboWidth));
    bcbInterface->setMaxVisibleItems(InterfaceDropDownCount);
    bcbInterface->OnChange = [this] { bcbInterfaceChange(); };
    scMain = new TdxSkinController(this);
    scMain->setObjectName(QStringLiteral("scMain"));
    scMain->SkinName = QString::fromUtf16(UserSkin);
    bcbLanguage = AddCombo(ui->bsiLanguage, QStringLiteral("bcbLanguage"));
    bcbLanguage->OnChange = [this] { bcbLanguageChange(); };
}

TBarCombo *TfrmMain::AddCombo(QMenu *menu, const QString &name)
{
    auto *combo = new TBarCombo;
    combo->setObjectName(name);
    // Named after its menu, in the current language.
    const auto followTitle = [combo, menu] { combo->setAccessibleName(menu->title()); };
    followTitle();
    ConnectGuarded(menu->menuAction(), &QAction::changed, combo, followTitle);
    combo->setMinimumWidth(GrownPixels(ComboWidth));
    auto *frame = new QWidget(this);
    auto *layout = new QHBoxLayout(frame);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->addWidget(combo);
    frame->setFocusPolicy(Qt::StrongFocus);
    frame->setFocusProxy(combo);
    auto *item = new QWidgetAction(this);
    item->setDefaultWidget(frame);
    menu->addAction(item);
    return combo;
}

void TfrmMain::acAboutExecute()
{
    // The tray's menu works beside a modal window.
    if (auto *open = findChild<TfrmGioithieu *>()) {
        open->activateWindow();
        return;
    }
    // The program may end while the box is open.
    const QPointer<TfrmGioithieu> box = new TfrmGioithieu(this);
    box->exec();
    delete box;
}

void TfrmMain::acHelpExecute()
{
    Doors().openDocument(AppPath + QString::fromUtf16(UserGuideFile));
}

void TfrmMain::acFernwhistleExecute()
{
    Doors().openDocument(QString::fromUtf16(InformationPage));
}
