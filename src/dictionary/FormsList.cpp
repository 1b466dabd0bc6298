#include "dictionary/FormsList.h"

#include "dictionary/WordRules.h"
#include "toolkit/program/Guard.h"

#include <QKeyEvent>
#include <QResizeEvent>
#include <QStyledItemDelegate>

using namespace Qt::StringLiterals;

namespace {

/// Rows as high as their text in the width of the list, which Qt's own delegate does not look at.
class WrappedRows : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const auto *list = qobject_cast<const QListWidget *>(option.widget);
        const int width = list ? list->viewport()->width() : option.rect.width();
        QStyleOptionViewItem wrapped = option;
        wrapped.rect = QRect(0, 0, width, 1);
        const QSize size = QStyledItemDelegate::sizeHint(wrapped, index);
        return {std::min(size.width(), width), size.height()};
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
    setItemDelegate(new WrappedRows(this));
    setWordWrap(true);
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
    if (event->oldSize().width() != event->size().width())
        updateGeometry();
}
