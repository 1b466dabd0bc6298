#pragma once

#include <QStyledItemDelegate>

/// Draws the rows of an EverywhereModel on one line each: a text bold with its group and its number of hits, a hit with
/// its place and words, the hit itself bold and in one column with those above.
class HitDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;
};
