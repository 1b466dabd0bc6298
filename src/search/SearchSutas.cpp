#include "search/SearchSutas.h"

#include "base/Messages.h"
#include "base/Texts.h"
#include "search/SuttaScan.h"
#include "search/SuttaSearch.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "toolkit/browser/PageFinding.h"
#include "toolkit/controls/VelthuisTyping.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/FormLanguage.h"
#include "toolkit/program/Guard.h"
#include "toolkit/program/WindowPlace.h"
#include "ui_SearchSutas.h"

#include <QCloseEvent>
#include <QScopeGuard>
#include <QScreen>
#include <QTimer>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

// A static library's resources are linked only on request, and only from outside any namespace.
static void InitSearchImages()
{
    Q_INIT_RESOURCE(search);
}

namespace {

constexpr Message resultText{u"Kết quả tìm kiếm: ", u"Result: "};

constexpr SchemaName SampleText = u"SAMPLE_TEXT"; ///< of the results alone
constexpr int WindowTop = 95;
constexpr int RightGap = 25;
constexpr int DesktopRest = 300;      ///< milliseconds until the desktop has placed a new window
constexpr int PassagesExpected = 400; ///< a fuller canon leaves the bar full, a smaller one never fills it

} // namespace

TfrmSearchSutas::TfrmSearchSutas(Reading &reading, QWidget *parent)
    : QWidget(parent), qryListSutas(this), mdSearchResult(this), dsSearchResult(this), m_reading(reading),
      ui(std::make_unique<Ui::frmSearchSutas>())
{
    InitSearchImages();
    SetWindowFont(*this);
    ui->setupUi(this);
    GrowWithText(*this);
    TranslateForm(*this);
    DeclareListData();
    DeclareResultData();
    ui->gtvSutas->SetDataSource(&dsSearchResult);

    ui->btnSearch->SetAction(ui->acSearch);
    ui->btnClear->SetAction(ui->acClear);
    ConnectGuarded(ui->acSearch, &QAction::triggered, this, [this] { acSearchExecute(); });
    ConnectGuarded(ui->acClear, &QAction::triggered, this, [this] { acClearExecute(); });
    ConnectGuarded(ui->edSearchText, &QLineEdit::textChanged, this, [this] { edSearchTextChange(); });
    // The keys of the page, so that a reader need not leave the list.
    AddPlaceKeys(*this, [this](bool isBackward) { m_reading.StepToPlace(isBackward); });
    // The columns that are searched then, by the reader's language.
    const auto isMeant = [] {
        const int language = frmKeloraDM->vLanguageSutta;
        return frmKeloraDM->TypesPali() && (language == PageMode::Pali || language == PageMode::Parallel);
    };
    new VelthuisTyping(*ui->edSearchText, isMeant,
                       [] { return frmKeloraDM->Niggahita(ContentColumn(frmKeloraDM->vLanguageSutta)); });
    ui->edSearchText->OnKeyPress = [this](int key) { edSearchTextKeyPress(key); };
    ui->edSearchText->setFocus();
}

TfrmSearchSutas::~TfrmSearchSutas()
{
    // The view is destroyed after its data.
    ui->gtvSutas->SetDataSource(nullptr);
    dsSearchResult.OnDataChange = nullptr;
}

void TfrmSearchSutas::DeclareListData()
{
    qryListSutas.setObjectName(u"qryListSutas"_s);
    qryListSutas.SelectSQL() = QStringList{
        u"select N.ID_VIT, N.ID_VIC, N.NAME_VIC_PAL, N.NAME_VIC_ENG, N.NAME_VIC_VIE, N.CONTENT_VIC_PAL,"_s,
        u"       N.CONTENT_VIC_ENG, N.CONTENT_VIC_VIE, N.CONTENT_VIC_PAL_VIE"_s,
        u"from KELORA_CONTENT N"_s,
        u"order by N.ID_VIC"_s,
    };
    qryListSutas.AddField(Field::IdVit, FieldType::Integer);
    qryListSutas.AddField(Field::IdVic, FieldType::Integer);
    for (const SchemaName &name : {Field::NameVicPal, Field::NameVicEng, Field::NameVicVie})
        qryListSutas.AddField(name, FieldType::WideString, Length::Name);
    for (const SchemaName &content : {Field::ContentVicPal, Field::ContentVicVie, Field::ContentVicPalVie})
        qryListSutas.AddField(content, FieldType::Blob);
    if (frmKeloraDM) {
        qryListSutas.SetDatabase(&frmKeloraDM->dbKelora);
        qryListSutas.SetTransaction(&frmKeloraDM->trKelora);
    }
}

void TfrmSearchSutas::DeclareResultData()
{
    mdSearchResult.setObjectName(u"mdSearchResult"_s);
    mdSearchResult.AddField(Field::IdVit, FieldType::Integer);
    mdSearchResult.AddField(Field::IdVic, FieldType::Integer).SetDisplayLabel(u"STT"_s);
    for (const SchemaName &name : {Field::NameVicVie, Field::NameVicPal})
        mdSearchResult.AddField(name, FieldType::WideString, Length::Name).SetDisplayLabel(u"Tên tụng phẩm"_s);
    mdSearchResult.AddField(SampleText, FieldType::WideString, SuttaScan::SampleLength);
    mdSearchResult.AfterClose = [this] { ui->lcSearchSuttaItemResult->hide(); };
    dsSearchResult.setObjectName(u"dsSearchResult"_s);
    dsSearchResult.SetDataSet(&mdSearchResult);
    dsSearchResult.OnDataChange = [this] { dsSearchResultDataChange(); };
}

void TfrmSearchSutas::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous() && !std::exchange(m_hasShown, true)) // else restored
        RunGuarded([this] { FormShow(); });
}

void TfrmSearchSutas::FormShow()
{
    PlaceAtTheRight();
    // A busy desktop may move the window later.
    QTimer::singleShot(DesktopRest, this, [this] {
        if (!isMinimized() && !isMaximized())
            PlaceAtTheRight();
    });
    ui->lcSearchSuttaItemProgress->hide();
    ui->lcSearchSuttaItemResult->hide();
}

bool TfrmSearchSutas::event(QEvent *event)
{
    // The edges meant are the frame's, which the desktop draws late.
    const QMargins frame = FrameOf(*this);
    if (frame != m_frame && !frame.isNull()) {
        m_frame = frame;
        QMetaObject::invokeMethod(this, &TfrmSearchSutas::PlaceAtTheRight, Qt::QueuedConnection);
    }
    return QWidget::event(event);
}

void TfrmSearchSutas::PlaceAtTheRight()
{
    const QRect desk = screen()->geometry();
    const int frameWidth = m_frame.left() + width() + m_frame.right();
    move(desk.right() + 1 - RightGap - frameWidth, desk.top() + WindowTop);
}

void TfrmSearchSutas::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    RunGuarded([this] { FormClose(); });
    m_colouring.WindowClosed();
}

void TfrmSearchSutas::FormClose()
{
    mdSearchResult.Close();
    qryListSutas.Close();
    m_reading.SetSoughtWords({});
}

void TfrmSearchSutas::acSearchExecute()
{
    if (!TrimControls(ui->edSearchText->text()).isEmpty()) {
        LoadSutas();
        return;
    }
    qryListSutas.Close();
    mdSearchResult.Close();
}

void TfrmSearchSutas::acClearExecute()
{
    ui->edSearchText->clear();
    mdSearchResult.Close();
    qryListSutas.Close();
}

void TfrmSearchSutas::edSearchTextKeyPress(int key)
{
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return;
    // A search started by the key fails silently; one started by the button reports.
    try {
        acSearchExecute();
    } catch (const std::exception &) {
    }
}

void TfrmSearchSutas::edSearchTextChange()
{
    if (TrimControls(ui->edSearchText->text()).isEmpty())
        m_reading.SetSoughtWords({});
}

void TfrmSearchSutas::LoadSutas()
{
    const int search = ++m_searches;
    ShowWaitCursor(true);
    ui->lcSearchSuttaItemProgress->show();
    vIsLoadData = true;
    ui->pbSearch->setMaximum(PassagesExpected);
    ui->pbSearch->setValue(0);
    const QString word = TrimControls(ui->edSearchText->text());
    m_reading.SetSoughtWords(word);
    // A failed search has left the controls disabled.
    while (mdSearchResult.ControlsDisabled())
        mdSearchResult.EnableControls();
    mdSearchResult.Close();
    mdSearchResult.Open();
    mdSearchResult.DisableControls();
    qryListSutas.Close();
    qryListSutas.Open();
    qryListSutas.First();
    ui->lcSearchSutta->repaint();
    const int count = Scan(word);
    mdSearchResult.EnableControls();
    vIsLoadData = false;
    GoToFirstResult();
    if (search != m_searches)
        return; // the reader searched again while the first page was loading
    ShowWaitCursor(false);
    ui->lcSearchSuttaItemProgress->hide();
    if (!mdSearchResult.Active())
        return; // the reader cleared the list
    ui->lcSearchSuttaItemResult->show();
    ShowNameColumn(frmKeloraDM->vLanguageSutta);
    ShowResultCount(count);
}

int TfrmSearchSutas::Scan(const QString &word)
{
    SuttaSearchEvents events;
    events.onHit = [this](const QString &sample) { AppendResult(sample); };
    events.onFailure = [this] {
        ShowWaitCursor(false);
        ui->lcSearchSutta->hide();
    };
    // The bar counts each row, but repaints at once only if that changes a pixel.
    events.onRow = [this] { ui->pbSearch->setValue(std::min(ui->pbSearch->value() + 1, PassagesExpected)); };
    return ScanSuttas(qryListSutas, word, frmKeloraDM->vLanguageSutta, events);
}

void TfrmSearchSutas::AppendResult(const QString &sample)
{
    mdSearchResult.Append();
    // A row that can't be stored is cancelled; otherwise the next one would post it again.
    auto giveUp = qScopeGuard([this] { mdSearchResult.Cancel(); });
    for (const SchemaName &field : {Field::IdVit, Field::IdVic, Field::NameVicVie, Field::NameVicPal})
        mdSearchResult.FieldByName(field).SetValue(qryListSutas.FieldByName(field).Value());
    mdSearchResult.FieldByName(SampleText).SetAsString(sample);
    mdSearchResult.Post();
    giveUp.dismiss();
}

void TfrmSearchSutas::GoToFirstResult()
{
    // If the cursor is there already no event follows, but the first result must still be opened.
    const bool isThere = mdSearchResult.RecNo() <= 0;
    mdSearchResult.First();
    if (isThere)
        dsSearchResultDataChange();
}

void TfrmSearchSutas::dsSearchResultDataChange()
{
    if (vIsLoadData)
        return;
    // A list without a row has no key, and a tree may have rows without one.
    if (mdSearchResult.RecordCount() > 0)
        m_reading.OpenText(mdSearchResult.FieldByName(Field::IdVic).Value());
    ColourPage();
}

void TfrmSearchSutas::ColourPage()
{
    m_colouring.Run([this] { m_reading.ColourWords(ui->edSearchText->text()); });
}

void TfrmSearchSutas::ShowNameColumn(int language)
{
    ui->gtvSutasNAME_VIC_VIE->SetVisible(language == PageMode::Vietnamese || language == PageMode::Parallel);
    ui->gtvSutasNAME_VIC_PAL->SetVisible(language == PageMode::Pali);
}

void TfrmSearchSutas::ShowResultCount(int count)
{
    const QString text = TextOrNone(resultText);
    if (!text.isNull())
        ui->lbResult->setText(text + QString::number(count));
}
