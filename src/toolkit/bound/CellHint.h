#pragma once

class QAbstractItemView;
class QHelpEvent;
class QModelIndex;
class QString;

/// Shows the text of a cell as a hint if the cell cuts it off, and none otherwise. `isCut` says so; the hint goes away
/// when the mouse leaves the cell.
void ShowCellHint(const QHelpEvent &event, const QAbstractItemView &view, const QModelIndex &cell, bool isCut,
                  const QString &text);
