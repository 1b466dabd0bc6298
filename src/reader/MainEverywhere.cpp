#include "reader/Main.h"

#include "base/Messages.h"
#include "base/Texts.h"
#include "everywhere/EverywhereQuery.h"
#include "everywhere/EverywhereRanges.h"
#include "everywhere/EverywhereWindow.h"
#include "reader/ReaderRules.h"
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

struct OfferedName
{
    int idVic = 0;
    QString name;
};

/// Names that hold the text if neither case nor marks count, in whichever language; one of each text.
QList<OfferedName> NamesLike(const QString &text)
{
    QString phrase = text;
    const EverywhereQuery query(u'"' + phrase.remove(u'"') + u'"',
                                {.pali = false, .vietnamese = false, .english = false, .marks = false});
    TpFIBDataSet texts;
    texts.SetDatabase(&frmKeloraDM->dbKelora);
    texts.SetTransaction(&frmKeloraDM->trKelora);
    texts.SelectSQL() = QStringList{u"select N.ID_VIC, N.NAME_VIC_VIE, N.NAME_VIC_PAL, N.NAME_VIC_ENG"_s,
                                    u"from KELORA_CONTENT N"_s, u"order by N.ID_VIC"_s};
    QList<OfferedName> names;
    for (texts.Open(); !query.IsEmpty() && !texts.Eof() && names.size() < mostNames; texts.Next()) {
        for (const SchemaName &field : {Field::NameVicVie, Field::NameVicPal, Field::NameVicEng}) {
            const QString name = texts.FieldByName(field).AsString();
            if (EverywhereRanges(query, name).empty())
                continue;
            names += OfferedName{texts.FieldByName(Field::IdVic).AsInteger(), name};
            break;
        }
    }
    return names;
}

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
    if (m_place)
        m_place->number = -1;
    ui->ebContent->ClearPlaces();
}

bool TfrmMain::OpenPlace(int idVic, std::optional<int> language, qsizetype place)
{
    const bool isThere = !IsTreeFiltered() && qryTreeSutas.FieldByName(Field::IdVic).AsInteger() == idVic;
    const int shown = ShownLanguage();
    m_place = Place{idVic, language, place};
    if (!OpenInWholeTree(idVic)) {
        LeavePlace();
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
    return m_place && m_place->language ? *m_place->language : frmKeloraDM->vLanguageSutta;
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

void TfrmMain::LeavePlaceOfOtherText()
{
    if (m_place && qryTreeSutas.FieldByName(Field::IdVic).AsInteger() != m_place->idVic)
        LeavePlace();
}

void TfrmMain::LeavePlace()
{
    const std::optional<Place> left = std::exchange(m_place, std::nullopt);
    if (left && left->language)
        ShowLanguageButton(frmKeloraDM->vLanguageSutta);
}

void TfrmMain::MarkPlaces()
{
    if (m_search)
        ui->ebContent->ShowPlaces(m_search->placesIn, m_place ? m_place->number : -1);
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
    const QList<OfferedName> names = NamesLike(text);
    for (const OfferedName &name : names) {
        QAction *choose = ui->ppFootNames->addAction(QString(name.name).replace(u'&', u"&&"_s));
        ConnectGuarded(choose, &QAction::triggered, this, [this, idVic = name.idVic] {
            if (OpenInWholeTree(idVic))
                ui->dbtSutas->setFocus();
        });
    }
    ui->btnFootNames->setVisible(!names.isEmpty());
}
