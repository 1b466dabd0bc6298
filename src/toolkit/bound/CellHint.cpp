#include "toolkit/bound/CellHint.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

using namespace Qt::StringLiterals;

void ShowCellHint(const QHelpEvent &event, const QAbstractItemView &view, const QModelIndex &cell, bool isCut,
                  const QString &text)
{
    // As escaped HTML, so that long texts wrap.
    const QString hint = isCut ? u"<qt>"_s + text.toHtmlEscaped() + u"</qt>"_s : QString();
    QToolTip::showText(event.globalPos(), hint, view.viewport(), view.visualRect(cell));
}
