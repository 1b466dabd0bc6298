#pragma once

#include <QList>

/// Lines across a strip that stands for a page from its top to its bottom; lengths are in pixels.

/// The first of the rows that a line takes, for a place at a share of the page's height. The line stays in the strip.
int StripRow(double height, int size, int thickness);

/// The line that a row is on or next to, within its thickness; -1 for none. The nearest, and of several the last, which
/// is drawn over the others.
qsizetype StripLineAt(const QList<double> &heights, int size, int thickness, int row);
