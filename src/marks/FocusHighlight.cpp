#include "marks/FocusHighlight.h"

#include "base/FilterKey.h"
#include "base/Windows1252.h"
#include "marks/Excerpt.h"
#include "marks/HtmlToPlainText.h"
#include "marks/MarkCaptions.h"
#include "marks/MarksFilter.h"
#include "presentation/FontPolicy.h"
#include "presentation/languages/DKLang.h"
#include "stores/ClientsDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "stores/settings/Options.h"
#include "toolkit/bound/DataSetActions.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/FormLanguage.h"
#include "toolkit/program/Guard.h"
#include "toolkit/program/WindowPlace.h"
#include "ui_FocusHighlight.h"

#include <QAbstractEventDispatcher>
#include <QCloseEvent>
#include <QPointer>

#include <array>

using namespace Qt::StringLiterals;

// A static library's resources are linked only on request, and only from outside any namespace.
static void InitMarkImages()
{
    Q_INIT_RESOURCE(marks);
}

namespace {

constexpr int ListWidth = 281;
constexpr int ImageSize = 16;
constexpr MarkCaptions vietnameseCaptions{u"Tiêu đề", u"Mức", u"Từ khóa", u"Ghi chú"};
constexpr MarkCaptions designedCaptions{u"Tiêu đề:", u"Mức", u"Từ khóa", u"Ghi chú:"};

TpFIBDataSet &Marks()
{
    return frmClientsDM->qryFocus;
}

QIcon PriorityImage(int priority)
{
    if (priority != Priority::Normal)
        return QIcon(u":/marks/priority-%1.picture"_s.arg(priority));
    // Nothing marks a normal one, yet in a list its description stands under the others.
    QPixmap nothing(ImageSize, ImageSize);
    nothing.fill(Qt::transparent);
    return nothing;
}

} // namespace

TfrmFocusHighlight::TfrmFocusHighlight(Reading &reading, QWidget *parent)
    : QWidget(parent), m_reading(reading), ui(std::make_unique<Ui::frmFocusHighlight>())
{
    InitMarkImages();
    SetWindowFont(*this);
    ui->setupUi(this);
    GrowWithText(*this);
    AddFormTexts(*this)->Loaded(); // failures reach the caller, which ignores them on purpose
    ui->spltFocus->setStretchFactor(1, 1);
    ui->spltFocus->setSizes({GrownPixels(ListWidth), width() - GrownPixels(ListWidth)});
    CentreOnScreen(*this);
    SetUpControls();
    SetUpCommands();
    ui->edSearch->setFocus();
}

TfrmFocusHighlight::~TfrmFocusHighlight() = default;

void TfrmFocusHighlight::SetUpControls()
{
    ui->cbSuttaType->addItems({u"Tất cả"_s, u"Trường Bộ"_s, u"Trung Bộ"_s, u"Tăng Chi Bộ"_s, u"Tương Ưng Bộ"_s,
                               u"Tiểu Bộ"_s, u"Luật Tạng"_s});
    ui->lcLeftItemSuttaType->setVisible(CollectionMode != 1);
    ConnectGuarded(ui->cbSuttaType, &QComboBox::currentIndexChanged, this, [this] { cbSuttaTypePropertiesChange(); });
    for (const int priority : Priority::All) {
        ui->edPriority->AddItem(priority, PriorityImage(priority));
        ui->gtvFocusPRIORITY_FOC->SetImage(priority, PriorityImage(priority));
    }
    ui->gtvFocusPRIORITY_FOC->OnDescribe = [this](int priority) {
        return ui->edPriority->itemText(ui->edPriority->findData(priority));
    };
    TDataSource *dsFocus = &frmClientsDM->dsFocus;
    ui->gtvFocus->SetDataSource(dsFocus);
    ui->gtvFocusNavigator->SetDataSource(dsFocus);
    ui->gtvFocusNavigator->FollowInTabOrder(*ui->gtvFocus);
    ui->edTitleFocus->SetDataSource(dsFocus);
    ui->edPriority->SetDataSource(dsFocus);
    ui->edSuttaName->SetDataSource(dsFocus);
    ui->edKeyWord->SetDataSource(dsFocus);
    ui->mmDesc->SetDataSource(dsFocus);
    ui->gtvFocus->OnSelectionChanged = [this] { gtvFocusSelectionChanged(); };
    ui->ebFocusText->SetFollowsSkin(true);
    // The same mark again brings its excerpt back, whatever has emptied the view.
    const auto choose = [this] {
        if (ui->ebFocusText->IsPageGone() && HasRow())
            ui->ebFocusText->LoadFromString(ShownExcerpt(CurrentRow().excerpt));
    };
    ConnectGuarded(ui->gtvFocus, &QTableView::clicked, this, choose);
    ConnectGuarded(ui->gtvFocus, &QTableView::activated, this, choose);
    ui->edSearch->OnKeyUp = [this](int key) { edSearchKeyUp(key); };
    m_searching.setSingleShot(true);
    ConnectGuarded(&m_searching, &QTimer::timeout, this, [this] { GoOnSearching(); });
    Marks().OnPause = [window = QPointer(this)] {
        if (window)
            window->m_searching.start();
    };
}

void TfrmFocusHighlight::SetUpCommands()
{
    ui->bCopy->setDefaultAction(ui->acCopy);
    ui->bSelectAll->setDefaultAction(ui->acSelectAll);
    ui->bPost->setDefaultAction(ui->DataSetPost1);
    ui->bCancel->setDefaultAction(ui->DataSetCancel1);
    ui->bDelete->setDefaultAction(ui->DataSetDelete1);
    ConnectGuarded(ui->acCopy, &QAction::triggered, this, [this] { ui->ebFocusText->Copy(); });
    ConnectGuarded(ui->acSelectAll, &QAction::triggered, this, [this] { ui->ebFocusText->SelectAll(); });
    ConnectGuarded(ui->bIsViewSutta, &QToolButton::clicked, this, [this] { bIsViewSuttaClick(); });
    new DataSetActions(*this, *ui->DataSetPost1, *ui->DataSetCancel1, *ui->DataSetDelete1);
    UpdateCommands();
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &TfrmFocusHighlight::UpdateCommands);
}

void TfrmFocusHighlight::UpdateCommands()
{
    ui->acCopy->setEnabled(ui->ebFocusText->HasSelectedText());
}

void TfrmFocusHighlight::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (event->spontaneous() || !vIsInitFocus)
        return; // restored
    // Failures while opening are deliberately not reported.
    try {
        FormShow();
    } catch (const std::exception &) {
    }
}

void TfrmFocusHighlight::FormShow()
{
    for (QObject *component : ComponentsOf(*this))
        ApplyFontPolicy(*component);
    LoadFocusHighLight();
    if (!HasRow())
        ui->ebFocusText->LoadFromString({});
    ShowMarkCaptions(
        {ui->lcFocusItemTitle, ui->lcFocusItemPriority, ui->lcFocusItemKeyword, ui->lcFocusItemDescription},
        designedCaptions, vietnameseCaptions);
    vIsInitFocus = false;
}

void TfrmFocusHighlight::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    RunGuarded([] { Marks().Close(); });
    Marks().OnPause = {};
    m_following.WindowClosed();
}

void TfrmFocusHighlight::LoadFocusHighLight()
{
    const MarksFilter filter{CollectionMode, ui->cbSuttaType->currentIndex(), ui->edSearch->text()};
    TpFIBDataSet &qryFocus = Marks();
    qryFocus.Close();
    qryFocus.SelectSQL() = QStringList{filter.Statement(frmClientsDM->vDefFocusSQL)};
    qryFocus.SearchInPieces(filter.StatementInPieces(frmClientsDM->vDefFocusSQL));
    if (filter.ChoosesCollection())
        qryFocus.ParamByName(u"A_NIK"_s).SetAsInteger(filter.suttaType);
    if (filter.Searches())
        qryFocus.ParamByName(u"SEARCH_TEXT"_s).SetAsString(filter.SearchPattern());
    m_stepsDue = 0;
    qryFocus.Open();
    ++m_openings;
    if (qryFocus.RecNo() >= 0)
        ViewHighLight();
}

void TfrmFocusHighlight::ShowMark(int key)
{
    if (!Marks().Active() || !Marks().Locate(Field::IdFoc, key)) {
        ui->edSearch->clear();
        ui->cbSuttaType->setCurrentIndex(0);
        LoadFocusHighLight();
        Marks().Locate(Field::IdFoc, key);
    }
    ui->gtvFocus->setFocus();
}

void TfrmFocusHighlight::GoOnSearching()
{
    TpFIBDataSet &qryFocus = Marks();
    qryFocus.Resume(); // a first row that it finds is shown because the list then selects it
    for (; m_stepsDue > 0 && qryFocus.FetchAhead(qryFocus.RecNo() + 1); --m_stepsDue)
        qryFocus.Next();
    if (!qryFocus.IsPaused())
        m_stepsDue = 0;
}

bool TfrmFocusHighlight::HasRow() const
{
    return Marks().Active() && (Marks().RecNo() >= 0 || Marks().State() == DataSetState::Insert);
}

TfrmFocusHighlight::Shown TfrmFocusHighlight::CurrentRow() const
{
    const bool isPending = Marks().State() == DataSetState::Insert;
    return {m_openings, isPending ? Marks().RecordCount() : Marks().RecNo(),
            Marks().FieldByName(Field::NicSut).AsInteger(), Marks().FieldByName(Field::TextFoc).AsBytes()};
}

void TfrmFocusHighlight::gtvFocusSelectionChanged()
{
    if (!HasRow())
        return;
    if (const Shown row = CurrentRow(); row != m_shown)
        Show(row);
}

void TfrmFocusHighlight::ViewHighLight()
{
    Show(CurrentRow());
}

void TfrmFocusHighlight::Show(const Shown &row)
{
    m_shown = row;
    ui->ebFocusText->LoadFromString(ShownExcerpt(m_shown.excerpt));
    if (!vIsInitFocus && vIsViewSutta)
        FollowMark();
}

void TfrmFocusHighlight::FollowMark()
{
    m_following.Run([this] {
        if (!HasRow())
            return;
        const int collection = Marks().FieldByName(Field::NikSut).AsInteger();
        const int number = Marks().FieldByName(Field::NicSut).AsInteger();
        // One character for each byte, the mark at the beginning included: only an excerpt without that mark and in
        // plain ASCII is found again.
        const QByteArray excerpt = Marks().FieldByName(Field::TextFoc).AsBytes();
        const QString words =
            IsShownWhole(excerpt) ? HtmlToPlainText(FromWindows1252(excerpt)) : QString(); // else it takes minutes
        if (m_following.IsOver())
            return;
        m_reading.OpenMarkedText(collection, number);
        m_reading.ColourWords(words);
    });
}

void TfrmFocusHighlight::bIsViewSuttaClick()
{
    vIsViewSutta = ui->bIsViewSutta->isChecked();
    if (vIsViewSutta && Marks().Active())
        ViewHighLight();
}

void TfrmFocusHighlight::cbSuttaTypePropertiesChange()
{
    if (!vIsInitFocus)
        LoadFocusHighLight();
}

void TfrmFocusHighlight::edSearchKeyUp(int key)
{
    switch (MeaningOfFilterKey(key)) {
    case FilterKey::Nothing:
        break;
    case FilterKey::NextRow: {
        const int row = Marks().RecNo();
        if (!Marks().Eof())
            Marks().Next();
        if (Marks().RecNo() == row && Marks().IsPaused())
            ++m_stepsDue;
        break;
    }
    case FilterKey::PriorRow:
        m_stepsDue = 0;
        if (!Marks().Bof())
            Marks().Prior();
        break;
    case FilterKey::Reload:
        LoadFocusHighLight();
        break;
    }
}
