#include "dictionary/FormsList.h"

#include "dictionary/WordRules.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/Guard.h"

#include <QKeyEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QStyledItemDelegate>
#include <QTextLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int LeastHeight = 22; ///< of a row, as in the list of words
constexpr int RowMargin = 3;    ///< above and below its text
constexpr int WordLength = Qt::UserRole;

/// Rows with the word in bold, as high as their text in the width of the list.
class FormRows : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyleOptionViewItem row = option;
        initStyleOption(&row, index);
        QTextLayout text(row.text, row.font);
        Lay(text, row, index, row.rect.width());
        row.text.clear();
        row.widget->style()->drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);
        const bool isSelected = row.state & QStyle::State_Selected;
        const QPalette::ColorGroup group = row.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
        painter->save();
        painter->setPen(row.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text));
        painter->setClipRect(row.rect);
        text.draw(painter, row.rect.topLeft() + QPoint(SideMargin(row), RowMargin));
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyleOptionViewItem row = option;
        initStyleOption(&row, index);
        const int width = static_cast<const QListWidget *>(row.widget)->viewport()->width();
        QTextLayout text(row.text, row.font);
        Lay(text, row, index, width);
        const int height = qCeil(text.boundingRect().height()) + 2 * RowMargin;
        return {width, std::max(height, GrownPixels(LeastHeight))};
    }

private:
    static int SideMargin(const QStyleOptionViewItem &row)
    {
        return row.widget->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, &row, row.widget) + 2;
    }

    /// Breaks the text of a row into lines for a width.
    static void Lay(QTextLayout &text, const QStyleOptionViewItem &row, const QModelIndex &index, int width)
    {
        QTextOption wrapping;
        wrapping.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        text.setTextOption(wrapping);
        QTextLayout::FormatRange word;
        word.start = 0;
        word.length = index.data(WordLength).toInt();
        word.format.setFontWeight(QFont::Bold);
        text.setFormats({word});
        text.beginLayout();
        qreal height = 0;
        for (QTextLine line = text.createLine(); line.isValid(); line = text.createLine()) {
            line.setLineWidth(width - 2 * SideMargin(row));
            line.setPosition({0, height});
            height += line.height();
        }
        text.endLayout();
    }
};

/// "x → x" tells nothing.
bool TellsSomething(const QString &derivation)
{
    const QStringList sides = derivation.split(u" → "_s);
    return sides.size() != 2 || sides.first() != sides.last();
}

} // namespace

TFormsList::TFormsList(QWidget *parent) : QListWidget(parent)
{
    setItemDelegate(new FormRows(this));
    setResizeMode(Adjust);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    ConnectGuarded(this, &QListWidget::clicked, this, [this](const QModelIndex &index) { Open(index.row()); });
    hide();
}

void TFormsList::ShowWords(const QList<FoundWord> &words, int language)
{
    if (words.isEmpty() && m_words.isEmpty())
        return;
    m_words = words;
    clear();
    for (const FoundWord &word : words) {
        const QString kind = DictionaryCaption(word.kind, language == 0 ? 0 : 1);
        const QString how = TellsSomething(word.derivation) ? word.derivation : QString();
        auto *item = new QListWidgetItem(word.word + u" · "_s + kind + (how.isEmpty() ? how : u'\n' + how), this);
        item->setData(WordLength, int(word.word.size()));
        item->setToolTip(item->text());
        item->setData(Qt::AccessibleTextRole, word.word + u", "_s + kind + (how.isEmpty() ? how : u", "_s + how));
    }
    setVisible(!words.isEmpty());
    updateGeometry();
}

void TFormsList::Open(int row)
{
    if (row < 0 || row >= m_words.size() || !OnOpen)
        return;
    const FoundWord word = m_words[row];
    OnOpen(word);
}

int TFormsList::RowHeight(int row) const
{
    return sizeHintForRow(row) + 2 * spacing();
}

QSize TFormsList::sizeHint() const
{
    int height = 2 * frameWidth();
    for (int row = 0; row < count(); ++row)
        height += RowHeight(row);
    return {QListWidget::sizeHint().width(), height};
}

QSize TFormsList::minimumSizeHint() const
{
    // Where there is no room for all words, one of them is seen and the others are scrolled to.
    const int height = count() > 0 ? 2 * frameWidth() + RowHeight(0) : 0;
    return {QListWidget::minimumSizeHint().width(), height};
}

void TFormsList::focusInEvent(QFocusEvent *event)
{
    QListWidget::focusInEvent(event);
    if (currentRow() < 0)
        setCurrentRow(0);
}

void TFormsList::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter || (event->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) {
        QListWidget::keyPressEvent(event);
        return;
    }
    RunGuarded([this] { Open(currentRow()); });
}

void TFormsList::resizeEvent(QResizeEvent *event)
{
    QListWidget::resizeEvent(event);
    // Other widths break the texts in other places.
    if (event->oldSize().width() != event->size().width()) {
        scheduleDelayedItemsLayout();
        updateGeometry();
    }
}
