#include "toolkit/bound/CxGridDBTableView.h"

#include "stores/data/DataSet.h"
#include "stores/data/DataSource.h"
#include "toolkit/bound/CellHint.h"
#include "toolkit/bound/CxGridModel.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/Guard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

constexpr int DefaultRowHeight = 22;
constexpr int LeastColumnWidth = 20;
constexpr int ScreensClaimed = 10; ///< screens that the scroll bar assumes to follow at least, until the end is known
const char emptyTextProperty[] = "OptionsView.NoDataToDisplayInfoText";

} // namespace

/// Cells with a line at their right. A cell whose text is cut off or replaced by a picture shows it as a hint.
class TcxGridDBTableView::Delegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::paint(painter, option, index);
        const QStyle *style = option.widget->style();
        const int colour = style->styleHint(QStyle::SH_Table_GridLineColor, &option, option.widget);
        painter->setPen(QColor::fromRgb(static_cast<QRgb>(colour)));
        painter->drawLine(option.rect.topRight(), option.rect.bottomRight());
    }

    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override
    {
        if (event->type() != QEvent::ToolTip)
            return QStyledItemDelegate::helpEvent(event, view, option, index);
        const bool isCut = index.isValid() && (sizeHint(option, index).width() > view->visualRect(index).width() ||
                                               !index.data(Qt::DisplayRole).isValid());
        ShowCellHint(*event, *view, index, isCut, index.data(Qt::AccessibleTextRole).toString());
        return true;
    }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->state &= ~QStyle::State_HasFocus; // rows are selected, not cells
    }
};

TcxGridDBTableView::TcxGridDBTableView(QWidget *parent) : QTableView(parent), m_model(std::make_unique<Model>(*this))
{
    setItemDelegate(new Delegate(this));
    setModel(m_model.get());
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerItem);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    SetDataRowHeight(DefaultRowHeight);
    horizontalHeader()->setMinimumSectionSize(LeastColumnWidth);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(false);
    // Dragging the thumb needs the true length.
    connect(verticalScrollBar(), &QScrollBar::sliderPressed, this, [this] {
        m_model->FetchAll();
        ClaimRows();
    });
    connect(horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int section, int, int width) { TakeWidth(section, width); });
}

TcxGridDBTableView::~TcxGridDBTableView()
{
    m_model->SetDataSource(nullptr);
}

QVariantList TcxGridDBTableView::SelectedKeys() const
{
    QVariantList keys;
    const TDataSet *dataSet = m_model->OpenDataSet();
    const TField *key = dataSet ? dataSet->FindField(m_keyField) : nullptr;
    if (!key)
        return keys;
    QModelIndexList rows = selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    for (const QModelIndex &row : rows)
        keys.append(dataSet->ValueAt(row.row(), key->Index()));
    return keys;
}

int TcxGridDBTableView::DataRowHeight() const
{
    return verticalHeader()->defaultSectionSize();
}

void TcxGridDBTableView::SetDataRowHeight(int height)
{
    verticalHeader()->setDefaultSectionSize(GrownPixels(height));
}

void TcxGridDBTableView::SetDataSource(TDataSource *dataSource)
{
    m_model->SetDataSource(dataSource);
    Rebuild();
}

TDataSource *TcxGridDBTableView::DataSource() const
{
    return m_model->DataSource();
}

QStringList TcxGridDBTableView::RowTexts(int row) const
{
    QStringList texts;
    for (const int column : VisibleColumns())
        texts.append(m_model->index(row, column).data().toString());
    return texts;
}

void TcxGridDBTableView::AddColumn(TcxGridDBColumn *column)
{
    m_columns.push_back(column);
    m_model->AppendColumn();
}

void TcxGridDBTableView::ShowCaptions()
{
    emit m_model->headerDataChanged(Qt::Horizontal, 0, m_model->columnCount() - 1);
}

void TcxGridDBTableView::Rebuild()
{
    m_model->Rebuild();
}

std::vector<int> TcxGridDBTableView::VisibleColumns() const
{
    std::vector<int> visible;
    for (size_t column = 0; column < m_columns.size(); ++column) {
        if (m_columns[column]->Visible())
            visible.push_back(static_cast<int>(column));
    }
    return visible;
}

void TcxGridDBTableView::FillWidth()
{
    const QScopedValueRollback filling(m_filling, true);
    for (size_t column = 0; column < m_columns.size(); ++column)
        setColumnHidden(static_cast<int>(column), !m_columns[column]->Visible());
    ShareWidth(0, viewport()->width());
    // Keys do nothing while a hidden column has the focus.
    const QModelIndex current = currentIndex();
    const std::vector<int> columns = VisibleColumns();
    if (!current.isValid() || columns.empty() || !isColumnHidden(current.column()))
        return;
    const QScopedValueRollback following(m_following, true);
    selectionModel()->setCurrentIndex(current.siblingAtColumn(columns.front()), QItemSelectionModel::NoUpdate);
}

void TcxGridDBTableView::ShareWidth(int firstColumn, int width)
{
    const QScopedValueRollback filling(m_filling, true);
    std::vector<int> columns = VisibleColumns();
    columns.erase(columns.begin(), std::lower_bound(columns.begin(), columns.end(), firstColumn));
    std::erase_if(columns, [&](int column) {
        const TcxGridDBColumn &kept = *m_columns[static_cast<size_t>(column)];
        if (kept.Fixed()) {
            setColumnWidth(column, kept.Width());
            width -= kept.Width();
        }
        return kept.Fixed();
    });
    int shares = 0;
    for (const int column : columns)
        shares += m_columns[static_cast<size_t>(column)]->Width();
    // Each takes its share of what is left, so that the last column ends exactly where the grid does.
    int others = static_cast<int>(columns.size());
    for (const int column : columns) {
        const int share = m_columns[static_cast<size_t>(column)]->Width();
        const int most = width - --others * LeastColumnWidth;
        const int fair = static_cast<int>(static_cast<qint64>(width) * share / shares);
        const int part = std::max(LeastColumnWidth, std::min(fair, most));
        setColumnWidth(column, part);
        width -= part;
        shares -= share;
    }
}

void TcxGridDBTableView::TakeWidth(int section, int width)
{
    if (m_filling)
        return;
    // The reader dragged a border: columns left of it keep their width, those on its right share the rest.
    const QScopedValueRollback filling(m_filling, true);
    const std::vector<int> columns = VisibleColumns();
    const auto next = std::upper_bound(columns.begin(), columns.end(), section);
    const int room = std::accumulate(columns.begin(), next, viewport()->width() + width,
                                     [this](int rest, int column) { return rest - columnWidth(column); });
    const int most = room - static_cast<int>(columns.end() - next) * LeastColumnWidth;
    const int taken = next == columns.end() ? most : std::min(width, most);
    setColumnWidth(section, taken);
    ShareWidth(section + 1, room - columnWidth(section));
    for (const int column : columns)
        m_columns[static_cast<size_t>(column)]->m_width = columnWidth(column);
}

void TcxGridDBTableView::FollowCursor()
{
    const QScopedValueRollback following(m_following, true);
    const int row = m_model->CursorRow();
    if (row == currentIndex().row())
        return; // the other rows stay selected
    const std::vector<int> columns = VisibleColumns();
    const QModelIndex index = m_model->index(row, columns.empty() ? 0 : columns.front());
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void TcxGridDBTableView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTableView::currentChanged(current, previous);
    m_isFocusMoved = true;
    if (m_following || !current.isValid())
        return;
    m_isMoved = true;
    if (m_handling == 0)
        MoveCursor();
}

void TcxGridDBTableView::MoveCursor()
{
    TDataSet *dataSet = m_model->OpenDataSet();
    if (!std::exchange(m_isMoved, false) || !dataSet || m_model->IsPending(currentIndex().row()))
        return;
    const QPointer<TcxGridDBTableView> self = this;
    const bool isDone = RunGuarded([dataSet, row = currentIndex().row()] { dataSet->MoveTo(row); });
    if (self && !isDone)
        FollowCursor();
}

// Moving the cursor may process events, so it waits until Qt has finished with the key or click.

void TcxGridDBTableView::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy)) {
        CopyRows();
        return;
    }
    ++m_handling;
    QTableView::keyPressEvent(event);
    --m_handling;
    MoveCursor();
}

void TcxGridDBTableView::mousePressEvent(QMouseEvent *event)
{
    ++m_handling;
    QTableView::mousePressEvent(event);
    --m_handling;
    MoveCursor();
}

void TcxGridDBTableView::mouseMoveEvent(QMouseEvent *event)
{
    ++m_handling;
    QTableView::mouseMoveEvent(event);
    --m_handling;
    MoveCursor();
}

QModelIndex TcxGridDBTableView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const QModelIndex current = currentIndex();
    switch (action) {
    case MoveLeft:
    case MoveRight:
        return current;
    case MoveHome:
        return m_model->index(0, current.column());
    case MoveEnd:
        m_model->FetchAll();
        return m_model->index(m_model->rowCount() - 1, current.column());
    case MoveDown:
    case MovePageDown:
        m_model->FetchUpTo(current.row() + RowsOnScreen());
        break;
    default:
        break;
    }
    return QTableView::moveCursor(action, modifiers);
}

void TcxGridDBTableView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTableView::selectionChanged(selected, deselected);
    if (!OnSelectionChanged || std::exchange(m_isSelectionDue, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isSelectionDue = false;
            if (OnSelectionChanged)
                RunGuarded(OnSelectionChanged);
        },
        Qt::QueuedConnection);
}

bool TcxGridDBTableView::FitVisibleRows()
{
    bool hasChanged = false;
    const int bottom = viewport()->height();
    for (int row = std::max(0, rowAt(0)); row < m_model->rowCount() && rowViewportPosition(row) < bottom; ++row) {
        const int height = std::max(DataRowHeight(), sizeHintForRow(row));
        if (height == rowHeight(row))
            continue;
        setRowHeight(row, height);
        hasChanged = true;
    }
    return hasChanged;
}

void TcxGridDBTableView::CopyRows()
{
    QModelIndexList rows = selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    QStringList lines;
    for (const QModelIndex &row : rows)
        lines.append(RowTexts(row.row()).join(QLatin1Char('\t')));
    if (!lines.isEmpty())
        QGuiApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

bool TcxGridDBTableView::event(QEvent *event)
{
    if (event->type() == QEvent::DynamicPropertyChange)
        viewport()->update(); // the text on an empty table
    return QTableView::event(event);
}

void TcxGridDBTableView::paintEvent(QPaintEvent *event)
{
    if (CellAutoHeight()) {
        // Growing rows push the focused one down, out of the view again.
        m_isFocusMoved &= FitVisibleRows();
        if (m_isFocusMoved)
            QMetaObject::invokeMethod(this, [this] { scrollTo(currentIndex()); }, Qt::QueuedConnection);
    }
    QTableView::paintEvent(event);
    if (m_model->rowCount() > 0 || !m_model->HasAll())
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, property(emptyTextProperty).toString());
}

void TcxGridDBTableView::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    ShareWidth(0, viewport()->width());
    m_model->FetchUpTo(verticalScrollBar()->value() + RowsOnScreen());
}

int TcxGridDBTableView::RowsOnScreen() const
{
    return viewport()->height() / DataRowHeight() + 1;
}

void TcxGridDBTableView::updateGeometries()
{
    QTableView::updateGeometries();
    ClaimRows();
}

void TcxGridDBTableView::ClaimRows()
{
    const int fetched = m_model->rowCount();
    QScrollBar *bar = verticalScrollBar();
    const int whole = std::max(1, bar->pageStep());
    // Until the end is known, assume that as many rows follow as are known: the thumb then moves steadily, and its
    // error shrinks towards the end.
    const int claimed = m_model->HasAll() ? 0 : std::max(fetched, ScreensClaimed * whole);
    bar->setMaximum(std::max(0, fetched - whole) + claimed);
}

void TcxGridDBTableView::scrollContentsBy(int dx, int dy)
{
    QScrollBar *bar = verticalScrollBar();
    const int value = bar->value();
    if (dy != 0 && !m_model->HasAll()) {
        // The bottom of the bar means the end of the list, known or not.
        const bool isEnd = value == bar->maximum();
        if (isEnd)
            m_model->FetchAll();
        else
            m_model->FetchUpTo(value + RowsOnScreen());
        ClaimRows();
        if (isEnd)
            bar->setValue(bar->maximum());
        if (bar->value() != value)
            return; // going to the end has scrolled already
    }
    QTableView::scrollContentsBy(dx, dy);
}
