#include "everywhere/EverywhereWindow.h"

#include "base/Messages.h"
#include "everywhere/EverywhereModel.h"
#include "everywhere/EverywhereQuery.h"
#include "everywhere/EverywhereRanges.h"
#include "everywhere/EverywhereScan.h"
#include "everywhere/HitDelegate.h"
#include "stores/ClientsDM.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "stores/Schema.h"
#include "toolkit/browser/PageFinding.h"
#include "toolkit/browser/PageSaving.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/FormLanguage.h"
#include "toolkit/program/Guard.h"
#include "toolkit/program/WindowPlace.h"
#include "ui_EverywhereWindow.h"

#include <QAccessible>
#include <QClipboard>
#include <QCloseEvent>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMimeData>
#include <QPointer>
#include <QScopeGuard>
#include <QScopedValueRollback>

#include <utility>

using namespace Qt::StringLiterals;

// A static library's resources are linked only on request, and only from outside any namespace.
static void InitEverywhereTexts()
{
    Q_INIT_RESOURCE(everywhere);
}

namespace {

constexpr Message otherCollection{u"Ghi chép này thuộc về một bài không có trong kho đang mở.",
                                  u"This mark belongs to a text that is not in the open canon."};
constexpr Message textFiles{u"Văn bản (*.txt)", u"Plain text (*.txt)"};
constexpr Message tableFiles{u"Bảng (*.tsv)", u"Table (*.tsv)"};
constexpr Message pageFiles{u"Trang HTML (*.html *.htm)", u"HTML page (*.html *.htm)"};

/// Places of the query in a page, by the code that has found them there.
PlacesIn PlacesOf(const EverywhereQuery &query)
{
    return [query](const QString &text) {
        QList<TextRange> places;
        for (const EverywhereRange &range : EverywhereRanges(query, text))
            places += TextRange{range.begin, range.end};
        return places;
    };
}

} // namespace

TfrmFindEverywhere::TfrmFindEverywhere(Reading &reading, QWidget *parent)
    : QWidget(parent), m_reading(reading), ui(std::make_unique<Ui::frmFindEverywhere>())
{
    InitEverywhereTexts();
    SetWindowFont(*this);
    ui->setupUi(this);
    GrowWithText(*this);
    TranslateForm(*this);
    TpFIBDatabase *marks = frmClientsDM && frmClientsDM->vIsOKClients ? &frmClientsDM->dbClientTarune : nullptr;
    m_scan = std::make_unique<EverywhereScan>(frmKeloraDM->dbKelora, marks);
    m_model = new EverywhereModel(*m_scan, this);
    m_scan->AfterText = [this](int text) { m_model->TextCame(text); };
    ui->lstHits->setModel(m_model);
    ui->lstHits->setItemDelegate(new HitDelegate(ui->lstHits));
    m_working.setSingleShot(true);
    ConnectGuarded(&m_working, &QTimer::timeout, this, [this] { GoOn(); });
    ConnectGuarded(ui->edEverywhere, &QLineEdit::textChanged, this, [this] { Seek(); });
    for (const QCheckBox *box : {ui->cbPaliPages, ui->cbVietPages, ui->cbEnglishPages, ui->cbNames, ui->cbMarks,
                                 ui->cbExactCase, ui->cbExactMarks, ui->cbWholeWords})
        ConnectGuarded(box, &QCheckBox::toggled, this, [this] { Seek(); });
    // What is current without being selected has only got the focus.
    ConnectGuarded(ui->lstHits->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!m_isFilling)
            Open(ChosenRow());
    });
    // The same line again, after the reader has gone elsewhere.
    ConnectGuarded(ui->lstHits, &QListView::clicked, this, [this](const QModelIndex &line) { Open(line.row()); });
    ConnectGuarded(ui->lstHits, &QListView::doubleClicked, this, [this] { GoToPage(); });
    ConnectGuarded(ui->btnGoToPage, &QPushButton::clicked, this, [this] { GoToPage(); });
    ConnectGuarded(ui->btnCopyList, &QPushButton::clicked, this, [this] { CopyList(); });
    ConnectGuarded(ui->btnSaveList, &QPushButton::clicked, this, [this] { SaveList(); });
    ConnectGuarded(ui->btnCloseEverywhere, &QPushButton::clicked, this, [this] { close(); });
    SetUpKeys();
    KeepOnScreen(*this);
    ShowTexts();
    ui->edEverywhere->setFocus();
}

TfrmFindEverywhere::~TfrmFindEverywhere()
{
    // The model asks the scan, which is destroyed first.
    ui->lstHits->setModel(nullptr);
}

void TfrmFindEverywhere::ShowTexts()
{
    ui->lbSought->setText(SoughtText(m_scan->Query()));
    TellCounts();
    ui->lstHits->viewport()->update();
}

void TfrmFindEverywhere::SetUpKeys()
{
    AddPlaceKeys(*this, [this](bool isBackward) { m_reading.StepToPlace(isBackward); });
    ui->edEverywhere->installEventFilter(this);
    ui->lstHits->installEventFilter(this);
}

void TfrmFindEverywhere::Ready()
{
    raise();
    activateWindow();
    ui->edEverywhere->setFocus();
    ui->edEverywhere->selectAll();
}

EverywhereQuery TfrmFindEverywhere::Query() const
{
    return {ui->edEverywhere->text(),
            {.pali = ui->cbPaliPages->isChecked(),
             .vietnamese = ui->cbVietPages->isChecked(),
             .english = ui->cbEnglishPages->isChecked(),
             .names = ui->cbNames->isChecked(),
             .marks = ui->cbMarks->isChecked(),
             .exactCase = ui->cbExactCase->isChecked(),
             .exactMarks = ui->cbExactMarks->isChecked(),
             .wholeWords = ui->cbWholeWords->isChecked()}};
}

void TfrmFindEverywhere::Seek()
{
    const EverywhereQuery query = Query();
    const bool isNew = query != m_scan->Query();
    if (isNew) {
        EndGathering();
        const QScopedValueRollback filling(m_isFilling, true);
        m_model->Clear();
        m_scan->Begin(query);
    }
    ui->lbSought->setText(SoughtText(query));
    m_reading.EndSearch();
    m_search = {PlacesOf(query), [self = QPointer(this)](bool isBackward) {
                    if (self)
                        self->Walk(isBackward);
                }};
    if (!query.IsEmpty())
        m_reading.BeginSearch(m_search);
    TellCounts();
    if (m_scan->IsRunning())
        m_working.start();
}

void TfrmFindEverywhere::GoOn()
{
    const QScopedValueRollback filling(m_isFilling, true);
    // A search that can't go on has ended.
    const auto tell = qScopeGuard([this] { TellCounts(); });
    if (m_scan->IsRunning() && m_scan->Step())
        m_working.start();
    if (!m_scan->IsRunning() && m_takeLines)
        GatherMore();
}

void TfrmFindEverywhere::TellCounts()
{
    const bool isRunning = m_scan->IsRunning();
    ui->lbHitCount->setText(m_scan->Query().IsEmpty() ? QString()
                                                      : CountsText({.hits = m_scan->HitCount(),
                                                                    .texts = m_scan->TextCount(),
                                                                    .isRunning = isRunning,
                                                                    .textsDone = m_scan->TextsDone(),
                                                                    .textsInAll = m_scan->TextsInAll(),
                                                                    .failures = m_scan->Failures(),
                                                                    .isListCut = m_model->IsCut()}));
    for (QPushButton *button : {ui->btnGoToPage, ui->btnCopyList, ui->btnSaveList})
        button->setEnabled(m_scan->TextCount() > 0);
    // The focus stays in the edit, so a screen reader tells what belongs to that; the end alone, not each step.
    if (isRunning || ui->edEverywhere->accessibleDescription() == ui->lbHitCount->text())
        return;
    ui->edEverywhere->setAccessibleDescription(ui->lbHitCount->text());
    QAccessibleEvent told(ui->lbHitCount, QAccessible::Alert);
    QAccessible::updateAccessibility(&told);
}

int TfrmFindEverywhere::ChosenRow() const
{
    return ui->lstHits->selectionModel()->selectedIndexes().value(0).row();
}

void TfrmFindEverywhere::Walk(bool isBackward)
{
    const int row = ChosenRow();
    int next = row < 0 && isBackward ? -1 : m_model->NextHit(row, isBackward);
    // Round the ends, once these are known.
    if (next < 0 && !m_scan->IsRunning())
        next = m_model->NextHit(isBackward ? m_model->rowCount() : -1, isBackward);
    if (next < 0)
        return;
    if (next == row)
        Open(next);
    else
        ui->lstHits->setCurrentIndex(m_model->index(next));
}

void TfrmFindEverywhere::Open(int row)
{
    if (!m_model->IsHit(row))
        return;
    const EverywhereText text = m_model->TextAt(row);
    if (text.collection != Collection::Kelora) {
        ui->lbHitCount->setText(TextOrEnglish(otherCollection));
        return;
    }
    const EverywhereHit hit = m_model->HitAt(row);
    // A walk leaves the focus in the edit.
    ui->edEverywhere->setAccessibleDescription(SpokenLine(m_model->LineAt(row)));
    const bool isPage = hit.kind == EverywhereKind::Page;
    // An excerpt does not tell where in its text it stood.
    const int place = isPage ? hit.number : hit.field == EverywhereField::Excerpt ? 0 : -1;
    m_reading.BeginSearch(m_search);
    m_reading.OpenPlace(text.idVic, isPage ? std::optional(hit.language) : std::nullopt, place);
}

void TfrmFindEverywhere::GoToPage()
{
    if (ChosenRow() >= 0)
        Open(ChosenRow());
    else
        Walk(false);
    if (ChosenRow() >= 0)
        m_reading.GoToPage();
}

bool TfrmFindEverywhere::TakesKey(int key)
{
    switch (key) {
    case Qt::Key_Down:
    case Qt::Key_Up:
        Walk(key == Qt::Key_Up);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        GoToPage();
        return true;
    default:
        return false;
    }
}

bool TfrmFindEverywhere::eventFilter(QObject *watched, QEvent *event)
{
    bool isTaken = false;
    if (event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->modifiers() == Qt::NoModifier || key->modifiers() == Qt::KeypadModifier)
            RunGuarded([&] { isTaken = TakesKey(key->key()); });
    }
    return isTaken || QWidget::eventFilter(watched, event);
}

void TfrmFindEverywhere::keyPressEvent(QKeyEvent *event)
{
    auto *button = qobject_cast<QPushButton *>(focusWidget());
    if (event->key() == Qt::Key_Escape)
        close();
    else if (button && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        button->click();
    else
        QWidget::keyPressEvent(event);
}

void TfrmFindEverywhere::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    m_working.stop();
    EndGathering();
    m_isFilling = true;
    m_model->Clear();
    m_scan->ForgetPages(); // before one of the databases may close
    RunGuarded([this] { m_reading.EndSearch(); });
}

void TfrmFindEverywhere::CopyList()
{
    Gather([title = SoughtText(m_scan->Query())](const QList<EverywhereLine> &lines) {
        auto *data = new QMimeData;
        data->setText(ListAsText(lines, title));
        data->setHtml(ListAsPage(lines, title));
        QGuiApplication::clipboard()->setMimeData(data);
    });
}

void TfrmFindEverywhere::SaveList()
{
    const QString title = SoughtText(m_scan->Query());
    QString words;
    for (const EverywherePart &part : m_scan->Query().Parts())
        words += part.typed + u' ';
    const QPointer<TfrmFindEverywhere> self = this;
    const auto place = AskWhereToSave(this, words,
                                      {{TextOrEnglish(textFiles), {u"txt"_s}},
                                       {TextOrEnglish(tableFiles), {u"tsv"_s}},
                                       {TextOrEnglish(pageFiles), {u"html"_s, u"htm"_s}}});
    if (!self || !place)
        return;
    Gather([title, place = *place](const QList<EverywhereLine> &lines) {
        const QString texts[]{ListAsText(lines, title), ListAsTable(lines), ListAsPage(lines, title)};
        SaveBytes(place.path, texts[place.form].toUtf8());
    });
}

void TfrmFindEverywhere::Gather(TakeLines take)
{
    m_lines.clear();
    m_takeLines = std::move(take);
    m_working.start();
}

void TfrmFindEverywhere::GatherMore()
{
    QElapsedTimer clock;
    clock.start();
    while (m_lines.size() < m_model->rowCount() && clock.elapsed() < EverywhereScan::StepTime.count())
        m_lines += m_model->LineAt(static_cast<int>(m_lines.size()));
    if (m_lines.size() < m_model->rowCount()) {
        m_working.start();
        return;
    }
    const QList<EverywhereLine> lines = std::exchange(m_lines, {});
    const TakeLines take = std::exchange(m_takeLines, {});
    take(lines);
}

void TfrmFindEverywhere::EndGathering()
{
    m_lines.clear();
    m_takeLines = {};
}
