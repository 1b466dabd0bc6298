#include "reader/Main.h"

#include "base/Messages.h"
#include "base/Texts.h"
#include "everywhere/EverywhereWindow.h"
#include "reader/ReaderRules.h"
#include "reader/Reference.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/controls/CxButton.h"
#include "toolkit/controls/Kinds.h"
#include "toolkit/program/Forms.h"
#include "toolkit/program/Guard.h"
#include "ui_Main.h"

#include <QButtonGroup>
#include <QToolButton>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr Message noSuchText{u"Kho kinh sách không có bài này.", u"The canon has no such text."};
constexpr Message noName{u"Không có tên nào chứa “%1”.", u"No name contains “%1”."};
constexpr int mostNames = 20; ///< offered; a longer menu is no help

} // namespace

void TfrmMain::SetUpEverywhere()
{
    ui->btnFootNames->setMenu(ui->ppFootNames);
    ui->ebContent->OnFindBegin = [this] { EndSearch(); };
    ui->ebContent->OnFindStep = [this](bool isBackward) {
        if (!m_search)
            return false;
        const auto step = m_search->step; // a step may begin the search anew
        step(isBackward);
        return true;
    };
}

void TfrmMain::acFindEverywhereExecute()
{
    QWidget *form = OpenForm(u"frmFindEverywhere"_s, [this] { return new TfrmFindEverywhere(*this); });
    static_cast<TfrmFindEverywhere &>(*form).Ready();
}

void TfrmMain::BeginSearch(const Search &search)
{
    m_search = search;
}

void TfrmMain::EndSearch()
{
    if (!std::exchange(m_search, std::nullopt))
        return;
    if (m_hit)
        m_hit->number = -1;
    ui->ebContent->ClearPlaces();
}

bool TfrmMain::OpenPlace(int idVic, std::optional<int> language, qsizetype place)
{
    const bool isThere = !IsTreeFiltered() && qryTreeSutas.FieldByName(Field::IdVic).AsInteger() == idVic;
    const int shown = ShownLanguage();
    m_hit = Hit{idVic, language, place};
    if (!OpenInWholeTree(idVic)) {
        LeaveHit();
        TellInFoot(TextOrEnglish(noSuchText));
        return false;
    }
    // The cursor does not move to the row on which it is.
    if (isThere && (ShownLanguage() != shown || ui->ebContent->IsPageGone()))
        ViewSutta(ShownLanguage());
    else if (isThere)
        MarkPlaces();
    ShowLanguageButton(ShownLanguage());
    return true;
}

void TfrmMain::GoToPage()
{
    if (isMinimized())
        setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
    ui->ebContent->setFocus();
}

int TfrmMain::ShownLanguage() const
{
    return m_hit && m_hit->language ? *m_hit->language : frmKeloraDM->vLanguageSutta;
}

void TfrmMain::ShowLanguageButton(int mode)
{
    // An exclusive group keeps one pressed, and a page in English has none.
    ui->bgContentLanguage->setExclusive(false);
    for (const auto &[button, own] :
         {std::pair(ui->btnPali, PageMode::Pali), std::pair(ui->btnViet, PageMode::Vietnamese),
          std::pair(ui->btnVietPali, PageMode::Parallel)})
        button->setChecked(own == mode);
    ui->bgContentLanguage->setExclusive(true);
}

void TfrmMain::LeaveHitOfOtherText()
{
    if (m_hit && qryTreeSutas.FieldByName(Field::IdVic).AsInteger() != m_hit->idVic)
        LeaveHit();
}

void TfrmMain::LeaveHit()
{
    const std::optional<Hit> left = std::exchange(m_hit, std::nullopt);
    if (left && left->language)
        ShowLanguageButton(frmKeloraDM->vLanguageSutta);
}

void TfrmMain::MarkPlaces()
{
    if (m_search)
        ui->ebContent->ShowPlaces(m_search->placesIn, m_hit ? m_hit->number : -1);
}

bool TfrmMain::IsTreeFiltered()
{
    return !TrimControls(ui->edFilterSutta->text()).isEmpty() ||
           qryTreeSutas.SelectSQL() != vDefTreeKeloraSQL.split(u'\n');
}

bool TfrmMain::OpenInWholeTree(int idVic)
{
    if (!IsTreeFiltered())
        return qryTreeSutas.Locate(Field::IdVic, idVic);
    ui->edFilterSutta->clear();
    qryKeloraContent.Close();
    LoadKeloraTree();
    const bool isFound = qryTreeSutas.Locate(Field::IdVic, idVic);
    qryKeloraContent.Open();
    OfferNames(); // none any more
    return isFound;
}

void TfrmMain::OfferNames()
{
    const QString text = TrimControls(ui->edFilterSutta->text());
    const int number = qryTreeSutas.FieldByName(Field::IdVic).Index();
    const int key = qryTreeSutas.FieldByName(Field::TreeId).Index();
    bool hasText = text.isEmpty();
    for (int row = 0; !hasText && row < qryTreeSutas.RecordCount(); ++row)
        hasText = !IsGroupRow(qryTreeSutas.ValueAt(row, number).toLongLong(), qryTreeSutas.TextAt(row, key));
    if (hasText) {
        if (const auto before = std::exchange(m_footBeforeNames, std::nullopt))
            TellInFoot(before->text, before->action, before->act);
        return;
    }
    const FootMessage before = m_footBeforeNames.value_or(m_foot);
    TellInFoot(TextOrEnglish(noName).arg(text));
    m_footBeforeNames = before;
    ui->ppFootNames->clear();
    const QList<Candidate> names = CandidatesFor(text, Texts(), mostNames);
    for (const Candidate &candidate : names) {
        const QString name = candidate.name.isEmpty() ? NameOfText(candidate.number) : candidate.name;
        QAction *choose = ui->ppFootNames->addAction(QString(name).replace(u'&', u"&&"_s));
        ConnectGuarded(choose, &QAction::triggered, this, [this, idVic = candidate.number] {
            if (OpenInWholeTree(idVic))
                ui->dbtSutas->setFocus();
        });
    }
    ui->btnFootNames->setVisible(!names.isEmpty());
}
