#include "reader/Main.h"

#include "base/InterfaceLanguage.h"
#include "dictionary/Dictionary.h"
#include "everywhere/EverywhereWindow.h"
#include "presentation/languages/DKLang.h"
#include "reader/MarksInText.h"
#include "reader/ReaderRules.h"
#include "stores/ClientsDM.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "stores/settings/Options.h"
#include "toolkit/controls/BarCombo.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/FormLanguage.h"
#include "toolkit/program/Forms.h"
#include "toolkit/program/Guard.h"
#include "toolkit/program/QtWords.h"
#include "ui_Main.h"

#include <QApplication>
#include <QCloseEvent>
#include <QScopeGuard>
#include <QSignalBlocker>
#include <QSystemTrayIcon>

#include <utility>

// The resources of a static library come along only when asked for, and only outside of namespaces.
static void InitImages()
{
    Q_INIT_RESOURCE(reader);
}

namespace {

constexpr int TreeWidth = 320;
constexpr quint16 DesignLanguage = 1066; // Vietnamese

} // namespace

TfrmMain::TfrmMain(QWidget *parent)
    : QWidget(parent), qryTreeSutas(this), qryKeloraContent(this), dsTreeSutas(this), dsKeloraContent(this),
      scInsKelora(this), ui(std::make_unique<Ui::frmMain>())
{
    InitImages();
    SetWindowFont(*this);
    ui->setupUi(this);
    GrowWithText(*this);
    QApplication::setWindowIcon(windowIcon()); // also for windows without a parent
    ui->spltMain->setStretchFactor(1, 1);
    ui->spltMain->setSizes({GrownPixels(TreeWidth), width() - GrownPixels(TreeWidth)});

    DeclareTreeData();
    DeclareContentData();
    DeclareSuttaListScript();
    SetUpTree();
    SetUpContent();
    SetUpCommands();
    SetUpButtons();
    SetUpSystemMenu();
    SetUpFoot();
    SetUpEverywhere();
    SetUpWay();
    SetUpReference();
    SetUpImports();
    SetUpTray();
    dkLang = TranslateForm(*this);

    RunGuarded([this] { FormCreate(); });
    ui->dbtSutas->setFocus();
    showMaximized();
}

TfrmMain::~TfrmMain()
{
    DeleteForms();
    if (frmClientsDM)
        frmClientsDM->OnMarksChange = nullptr;
    ui->ebContent->OnPlacesChange = nullptr;
    m_marks.reset();
    // The widgets are destroyed after their data.
    ui->dbtSutas->SetDataSource(nullptr);
    dsKeloraContent.OnDataChange = nullptr;
}

void TfrmMain::DeclareTreeData()
{
    qryTreeSutas.setObjectName(QStringLiteral("qryTreeSutas"));
    qryTreeSutas.SetAutoCommit(true);
    qryTreeSutas.SelectSQL() = QStringList{
        QStringLiteral("select cast((1000 + T.ID_VIT) as integer) ID_VIC, cast(T.ID_VIT as varchar(31)) TREE_ID,"),
        QStringLiteral("       cast(T.P_ID_VIT as varchar(31)) P_TREE_ID, T.NAME_VIT_VIE NAME_VIC_VIE, T.NAME_VIT_PAL "
                       "NAME_VIC_PAL,"),
        QStringLiteral("       T.NAME_VIT_ENG NAME_VIC_ENG, 0 NUMBER_VIC"),
        QStringLiteral("from KELORA_TREE T"),
        QStringLiteral("union"),
        QStringLiteral("select N.ID_VIC, N.ID_VIC || N.ID_VIT TREE_ID, N.ID_VIT P_TREE_ID, N.NAME_VIC_VIE, "
                       "N.NAME_VIC_PAL,"),
        QStringLiteral("       case"),
        QStringLiteral("         when N.NAME_VIC_ENG is null then N.NAME_VIC_PAL"),
        QStringLiteral("         else N.NAME_VIC_ENG"),
        QStringLiteral("       end NAME_VIC_ENG,"),
        QStringLiteral("       N.NUMBER_VIC"),
        QStringLiteral("from KELORA_CONTENT N  "),
    };
    qryTreeSutas.RefreshSQL() = qryTreeSutas.SelectSQL();
    qryTreeSutas.AddField(Field::IdVic, FieldType::Integer);
    qryTreeSutas.AddField(Field::TreeId, FieldType::WideString, Length::TreeId);
    qryTreeSutas.AddField(Field::ParentTreeId, FieldType::WideString, Length::TreeId);
    qryTreeSutas.AddField(Field::NameVicVie, FieldType::WideString, Length::Name);
    qryTreeSutas.AddField(Field::NameVicPal, FieldType::WideString, Length::Name);
    qryTreeSutas.AddField(Field::NameVicEng, FieldType::WideString, Length::Name);
    qryTreeSutas.AddField(Field::NumberVic, FieldType::Integer);
    dsTreeSutas.setObjectName(QStringLiteral("dsTreeSutas"));
    dsTreeSutas.SetDataSet(&qryTreeSutas);
    if (frmKeloraDM) {
        qryTreeSutas.SetDatabase(&frmKeloraDM->dbKelora);
        qryTreeSutas.SetTransaction(&frmKeloraDM->trKelora);
    }
}

void TfrmMain::DeclareContentData()
{
    const QString name = QStringLiteral("qryKeloraContent");
    qryKeloraContent.setObjectName(name);
    const QStringList columns{
        QStringLiteral("select N.ID_VIT, N.ID_VIC, N.NAME_VIC_PAL, N.NAME_VIC_ENG, N.NAME_VIC_VIE, N.CONTENT_VIC_PAL, "
                       "N.CONTENT_VIC_ENG,"),
        QStringLiteral("       N.CONTENT_VIC_VIE, N.CONTENT_VIC_PAL_VIE"),
        QStringLiteral("from KELORA_CONTENT N"),
    };
    qryKeloraContent.SelectSQL() = columns + QStringList{QStringLiteral("where N.ID_VIC = :ID_VIC")};
    qryKeloraContent.RefreshSQL() = columns + QStringList{
                                                  QStringLiteral("where(  N.ID_VIC = :ID_VIC"),
                                                  QStringLiteral("     ) and (     N.ID_VIT = :OLD_ID_VIT"),
                                                  QStringLiteral("    and N.ID_VIC = :OLD_ID_VIC"),
                                                  QStringLiteral("     )"),
                                              };
    qryKeloraContent.AddField(Field::IdVit, FieldType::Integer);
    qryKeloraContent.AddField(Field::IdVic, FieldType::Integer);
    qryKeloraContent.AddField(Field::NameVicPal, FieldType::WideString, Length::Name);
    qryKeloraContent.AddField(Field::NameVicEng, FieldType::WideString, Length::Name);
    qryKeloraContent.AddField(Field::NameVicVie, FieldType::WideString, Length::Name);
    const auto addContent = [&](const QString &column, const QString &component) {
        qryKeloraContent.AddField(column, FieldType::Blob, 0, name + component);
    };
    addContent(Field::ContentVicPal, QStringLiteral("CONTENT_PAL"));
    addContent(Field::ContentVicEng, QStringLiteral("CONTENT_ENG"));
    addContent(Field::ContentVicVie, QStringLiteral("CONTENT_VIE"));
    addContent(Field::ContentVicPalVie, QStringLiteral("CONTENT_VIE_PAL"));
    dsKeloraContent.setObjectName(QStringLiteral("dsKeloraContent"));
    dsKeloraContent.SetDataSet(&qryKeloraContent);
    dsKeloraContent.OnDataChange = [this] { dsKeloraContentDataChange(); };
    if (frmKeloraDM) {
        qryKeloraContent.SetDatabase(&frmKeloraDM->dbKelora);
        qryKeloraContent.SetTransaction(&frmKeloraDM->trKelora);
    }
    qryKeloraContent.SetDataSource(&dsTreeSutas);
}

void TfrmMain::FindLanguages()
{
    LangManager().SetDefaultLanguage(DesignLanguage);
    LangManager().ScanLanguageFiles(AppPath, QStringLiteral("*.lng"), false);
    for (int index = 0; index < LangManager().GetLanguageCount(); ++index)
        bcbLanguage->AddItem(LangManager().GetLanguageName(index));
    // A failing language or settings store is reported, and must not prevent reading.
    RunGuarded([this] { bcbLanguage->SetItemIndex(InterfaceLang == 0 || InterfaceLang == 1 ? InterfaceLang : -1); });
}

void TfrmMain::FormCreate()
{
    FillSkins();
    ApplyStoredSkin();
    FindLanguages();
    vIsInit = true;
    vDefTreeKeloraSQL = qryTreeSutas.SelectSQL().join(QLatin1Char('\n'));
    CollectionMode = 1;
    switch (frmKeloraDM->vLanguageSutta) {
    case PageMode::Pali:
        ui->btnPali->setChecked(true);
        ViewSuttaName(PageMode::Pali);
        break;
    case PageMode::Vietnamese:
        ui->btnViet->setChecked(true);
        ViewSuttaName(PageMode::Vietnamese);
        break;
    case PageMode::Parallel:
        ui->btnVietPali->setChecked(true);
        ViewSuttaName(PageMode::Parallel);
        break;
    default:
        break;
    }
    ui->btnMarginWidth->setText(QString::number(frmKeloraDM->vMarginWidth));
    LoadContentData();
    frmKeloraDM->LoadFavouriteSuttas();
    FollowDesktop();
}

void TfrmMain::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous())
        RunGuarded([this] { FormShow(); });
}

void TfrmMain::FormShow()
{
    // Ends the start-up even if the settings could not be written; otherwise no language button would work.
    const auto endStartUp = qScopeGuard([this] { vIsInit = false; });
    ui->dbtSutas->FullExpand();
    bcbLanguageChange();
    // Captures the current captions as those of the design language, so after a start in another language they stay in
    // it until the next start.
    dkLang->Loaded();
    if (frmKeloraDM->vIsFirstStart)
        QMetaObject::invokeMethod(this, [this] { RunGuarded([this] { OpenWelcome(false); }); }, Qt::QueuedConnection);
}

void TfrmMain::bcbLanguageChange()
{
    const int index = std::max(bcbLanguage->ItemIndex(), 0);
    try {
        LangManager().SetCurrentLanguage(LangManager().GetLanguageId(index));
    } catch (const EDKLangError &) {
        ChooseLanguageInForce();
        throw;
    }
    InterfaceLang = index;
    ShowQtWords();
    if (auto *dictionary = qobject_cast<TfrmDictionary *>(FindForm(QStringLiteral("frmDictionary"))))
        dictionary->ShowCaptions();
    if (auto *everywhere = qobject_cast<TfrmFindEverywhere *>(FindForm(QStringLiteral("frmFindEverywhere"))))
        everywhere->ShowTexts();
    // The English interface reads the names in Pāli; a further language leaves the columns as they are.
    if (InterfaceLang == 0 || InterfaceLang == 1) {
        ui->dbtSutas->Column(Field::NameVicVie)->SetVisible(InterfaceLang == 0);
        ui->dbtSutas->Column(Field::NameVicPal)->SetVisible(InterfaceLang == 1);
    }
    UpdateFootText();
    m_marks->PlacesChanged(); // its hints are texts, too
    frmKeloraDM->WriteOption(Option::InterfaceLang, InterfaceLang);
}

void TfrmMain::ChooseLanguageInForce()
{
    const QSignalBlocker quiet(bcbLanguage);
    for (int index = 0; index < LangManager().GetLanguageCount(); ++index) {
        if (LangManager().GetLanguageId(index) == LangManager().CurrentLanguage())
            bcbLanguage->setCurrentIndex(index);
    }
}

bool TfrmMain::ConfirmQuit()
{
    // The tray or the end of the session may close the window while the question is open; don't ask twice.
    if (std::exchange(m_isAskingToQuit, true))
        return false;
    const auto endAsking = qScopeGuard([this] { m_isAskingToQuit = false; });
    const BoxText prompt = QuitPrompt(InterfaceLang);
    return Doors().messageBox(prompt.title, prompt.text, BoxButtons::YesNo, BoxIcon::Question);
}

void TfrmMain::closeEvent(QCloseEvent *event)
{
    bool isLeaving = false;
    RunGuarded([&] { isLeaving = ConfirmQuit(); });
    event->setAccepted(isLeaving);
    if (!isLeaving)
        return;
    // A failure to store is reported, but must not prevent quitting.
    RunGuarded([this] { StoreLastKelora(); });
    RunGuarded([this] { StorePlacesAtEnd(); });
    TerminateApplication();
}

void TfrmMain::StoreLastKelora()
{
    const int idVic = qryKeloraContent.Active() ? qryKeloraContent.FieldByName(Field::IdVic).AsInteger() : 0;
    frmKeloraDM->WriteOption(Option::LastKelora, idVic);
}

void TfrmMain::acExitExecute()
{
    if (!ConfirmQuit())
        return;
    RunGuarded([this] { StorePlacesAtEnd(); });
    TerminateApplication();
}

void TfrmMain::SetUpTray()
{
    tiMainTray = new QSystemTrayIcon(windowIcon(), this);
    tiMainTray->setObjectName(QStringLiteral("tiMainTray"));
    tiMainTray->setToolTip(QStringLiteral("Lumivara"));
    // A desktop that shows tray icons in another process also shows the menu there; otherwise the press does.
    tiMainTray->setContextMenu(ui->ppMainTray);
    ConnectGuarded(tiMainTray, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger)
            tiMainTrayClick();
        else if (reason == QSystemTrayIcon::Context && !ui->ppMainTray->isVisible())
            ui->ppMainTray->popup(QCursor::pos());
    });
    tiMainTray->show();
}

void TfrmMain::tiMainTrayClick()
{
    if (!isVisible()) {
        show();
    } else if (isMinimized()) {
        setWindowState((windowState() & ~Qt::WindowMinimized) | Qt::WindowMaximized);
        raise();
        activateWindow();
    }
}
