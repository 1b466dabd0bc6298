#include "reader/Main.h"

#include "base/Colour.h"
#include "base/InterfaceLanguage.h"
#include "reader/MarksInText.h"
#include "reader/PageComposer.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "stores/settings/Options.h"
#include "stores/settings/Registry.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Guard.h"
#include "ui_Main.h"

#include <QScopedValueRollback>
#include <QUrl>

#include <utility>

void TfrmMain::SetUpContent()
{
    ui->ebContent->OnBeforeNavigate2 = [this](const QUrl &url) { return ebContentBeforeNavigate2(url); };
    ui->ebContent->OnDocumentComplete = [this] { ebContentDocumentComplete(); };
    ui->ebContent->OnShowContextMenu = [this](const QPoint &screenPoint) { ui->ppContent->popup(screenPoint); };
    ui->ebContent->OnClick = [this](Qt::MouseButton button, Qt::KeyboardModifiers modifiers, int x, int y) {
        ebContentClick(button, modifiers, x, y);
    };
    ui->ebContent->OnZoomWheel = [this](int steps) {
        QAction *zoom = steps > 0 ? ui->acZoomIn : ui->acZoomOut;
        for (int step = 0; step < std::abs(steps); ++step)
            zoom->trigger();
    };
    SetUpReturn();
    SetUpMarks();
}

void TfrmMain::SetUpReturn()
{
    // The cursor does not move when the row on show is chosen again, so nothing would bring back a page that is gone.
    const auto choose = [this] {
        if (ui->ebContent->IsPageGone())
            dsKeloraContentDataChange();
    };
    ConnectGuarded(ui->dbtSutas, &QTreeView::clicked, this, choose);
    ConnectGuarded(ui->dbtSutas, &QTreeView::activated, this, choose);
}

void TfrmMain::dsKeloraContentDataChange()
{
    ShowWaitCursor(true);
    LeaveHitOfOtherText();
    TextComes();
    ViewSutta(ShownLanguage());
    m_marks->OpenText(m_isTextShown ? m_shown.text : 0);
    ShowWaitCursor(false);
}

void TfrmMain::ViewSutta(int mode)
{
    ui->ebContent->SetHostCSS(HostStyle(frmKeloraDM->vBgColor));
    ui->ebContent->SetDarkGround(IsDarkColour(frmKeloraDM->vBgColor));
    const QByteArray page = ComposePage(mode);
    m_shown = {TextOnShow(), mode, {}};
    m_isTextShown = qryKeloraContent.Active() && qryKeloraContent.RecordCount() > 0;
    ui->ebContent->SetPrintedIdentity(
        {PassageAddress(qryTreeSutas.FieldByName(Field::IdVic).AsInteger()), PassageLanguage(mode)});
    const QScopedValueRollback startPage(FIsStartPage, true);
    ui->ebContent->LoadFromString(page, PageTitle());
    m_marks->PageLeft();
    MarkPlaces();
}

QByteArray TfrmMain::ComposePage(int mode)
{
    const QString column = ContentColumn(mode);
    const QByteArray content = column.isEmpty() ? QByteArray() : qryKeloraContent.FieldByName(column).AsBytes();
    // Tests for a text after the replacements: with an empty font name the content can end up empty.
    QByteArray page = ComposePassage(content, {mode, frmKeloraDM->vMarginWidth, FontName});
    if (!page.isEmpty())
        return page;
    const auto nameOf = [this](const QString &field) { return qryTreeSutas.FieldByName(field).AsString(); };
    return ComposeFallbackPage(FallbackText(qryTreeSutas.FieldByName(Field::IdVic).AsInteger(), InterfaceLang,
                                            nameOf(Field::NameVicVie), nameOf(Field::NameVicEng)));
}

QString TfrmMain::PageTitle()
{
    const TDBTreeListColumn *column = ShownNameColumn();
    return qryTreeSutas.FieldByName(column ? column->FieldName() : Field::NameVicVie).AsString();
}

void TfrmMain::SetContentLanguage(int mode)
{
    if (vIsInit)
        return;
    LeaveHit();
    frmKeloraDM->vLanguageSutta = mode;
    ViewAgain(mode);
    StoreSilently(Option::LanguageSutta, mode);
}

void TfrmMain::LanguageButtonClick(int mode)
{
    SetContentLanguage(mode);
    EnableMargins(mode != PageMode::Parallel);
}

void TfrmMain::StoreSilently(Option option, const OptionValue &value)
{
    try {
        frmKeloraDM->WriteOption(option, value);
    } catch (const RegistryError &) {
    }
}

void TfrmMain::EnableMargins(bool enabled)
{
    ui->btnMarginWidth->setEnabled(enabled);
    ui->bsiMarginWidth->setEnabled(enabled);
}

void TfrmMain::SetMarginWidth(int level)
{
    StoreSilently(Option::MarginWidth, level);
    frmKeloraDM->vMarginWidth = level;
    ViewAgain(ShownLanguage());
    ui->btnMarginWidth->setText(QString::number(level));
}

TBrowserControl &TfrmMain::Content()
{
    return *ui->ebContent;
}

void TfrmMain::ColourWords(const QString &words)
{
    ui->ebContent->SearchAndHighlight(words, {}, ScrollMode::None, {}, QStringLiteral("Yellow"));
}

void TfrmMain::StepToPlace(bool isBackward)
{
    ui->ebContent->FindStep(isBackward);
}

void TfrmMain::SetSoughtWords(const QString &words)
{
    vFindSuttaStr = words;
    if (!words.isEmpty())
        EndSearch();
    ui->ebContent->PreferColoured(!words.isEmpty());
}

void TfrmMain::ApplyOptions()
{
    const QScopedValueRollback reloading(m_isReloading, true);
    qryKeloraContent.FullRefresh();
}

bool TfrmMain::ebContentBeforeNavigate2(const QUrl &url)
{
    const QString address = url.toString(QUrl::FullyEncoded);
    if (FIsStartPage || !address.contains(QStringLiteral("http")))
        return false;
    OpenDocumentLater(address);
    return true;
}

void TfrmMain::ebContentDocumentComplete()
{
    // Chromium makes the widget that has the focus for the page, and puts it behind everything else.
    QWidget *page = ui->ebContent->focusProxy();
    if (page && m_pageWidget != page) {
        m_pageWidget = page;
        QWidget *last = page;
        for (QWidget *next : std::initializer_list<QWidget *>{ui->btnBack, ui->btnForward, ui->edReference,
                                                              ui->btnFootAction, ui->btnFootNames, ui->btnMore})
            setTabOrder(std::exchange(last, next), next);
    }
    const int text = m_textNumber;
    const bool isAtHit = GoToSoughtWords();
    if (text != m_textNumber)
        return; // the search has processed events
    m_marks->PageCame();
    // Where a search leads the reader wins.
    if (isAtHit)
        m_wanted.reset();
    else
        GoToWantedPlace();
}

bool TfrmMain::GoToSoughtWords()
{
    if (vFindSuttaStr.isEmpty())
        return false;
    // A failed search leaves the page as it is.
    try {
        ui->ebContent->SearchAndHighlight(vFindSuttaStr, {}, ScrollMode::None, {},
                                          ColorToHtml(frmKeloraDM->vHighlightColor));
        return ui->ebContent->ScrollToFirst(vFindSuttaStr);
    } catch (const std::exception &) {
        return false;
    }
}
