#include "toolkit/LayoutItem.h"

#include "toolkit/LookAndFeel.h"

#include <QBoxLayout>
#include <QLabel>

#include <algorithm>

TdxLayoutItem::TdxLayoutItem(QWidget *parent) : QWidget(parent), m_caption(new QLabel(this))
{
    m_caption->setTextFormat(Qt::PlainText);
    if (TdxLayoutSkinLookAndFeel *look = TdxLayoutSkinLookAndFeel::InForce()) {
        connect(&look->ItemOptions(), &TdxLayoutCaptionOptions::Changed, this, &TdxLayoutItem::FollowLook);
        FollowLook();
    }
}

void TdxLayoutItem::FollowLook()
{
    if (TdxLayoutSkinLookAndFeel *look = TdxLayoutSkinLookAndFeel::InForce())
        m_caption->setFont(look->ItemOptions().Font());
}

QString TdxLayoutItem::Caption() const
{
    return m_caption->text();
}

void TdxLayoutItem::SetCaption(const QString &caption)
{
    m_caption->setText(caption);
    auto *cell = qobject_cast<QBoxLayout *>(layout());
    if (!cell)
        return;
    if (cell->indexOf(m_caption) < 0)
        cell->insertWidget(0, m_caption, 0, Qt::AlignTop);
    QWidget *control = cell->count() > 1 ? cell->itemAt(1)->widget() : nullptr;
    if (!control)
        return;
    // Beside the first line of the control, however high it is.
    const int line = std::min(control->sizeHint().height(), 2 * fontMetrics().height());
    m_caption->setContentsMargins(0, std::max(0, (line - m_caption->fontMetrics().height()) / 2), 0, 0);
    control->setAccessibleName(caption);
}

void TdxLayoutItem::AlignCaptions(const QList<TdxLayoutItem *> &items)
{
    int width = 0;
    for (const TdxLayoutItem *item : items)
        width = std::max(width, item->m_caption->sizeHint().width());
    for (const TdxLayoutItem *item : items)
        item->m_caption->setMinimumWidth(width);
}
