#include "toolkit/controls/LayoutItem.h"

#include "toolkit/skin/LookAndFeel.h"

#include <QBoxLayout>
#include <QCheckBox>
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
    const bool isPlaced = cell->indexOf(m_caption) >= 0;
    const int place = isPlaced && !m_isCaptionOnRight ? 1 : 0;
    QWidget *control = cell->count() > place ? cell->itemAt(place)->widget() : nullptr;
    if (auto *box = qobject_cast<QCheckBox *>(control)) {
        m_caption->hide();
        box->setText(caption);
        return;
    }
    if (!isPlaced)
        cell->insertWidget(m_isCaptionOnRight ? -1 : 0, m_caption, 0, Qt::AlignTop);
    if (!control)
        return;
    // Beside the first line of the control, however high it is.
    const int line = std::min(control->sizeHint().height(), 2 * fontMetrics().height());
    m_caption->setContentsMargins(0, std::max(0, (line - m_caption->fontMetrics().height()) / 2), 0, 0);
    control->setAccessibleName(caption);
    m_caption->setBuddy(control); // a screen reader gets a combo's name only from its label
}

void TdxLayoutItem::SetCaptionFont(const QFont &font)
{
    m_caption->setFont(font);
    SetCaption(Caption()); // its place beside the control's first line depends on the height
}

void TdxLayoutItem::AlignCaptions(const QList<TdxLayoutItem *> &items)
{
    int width = 0;
    for (const TdxLayoutItem *item : items)
        width = std::max(width, item->m_caption->sizeHint().width());
    for (const TdxLayoutItem *item : items)
        item->m_caption->setMinimumWidth(width);
}
