#include "toolkit/controls/StripLines.h"

#include <algorithm>
#include <cmath>

int StripRow(double height, int size, int thickness)
{
    const int row = static_cast<int>(std::lround(height * size)) - thickness / 2;
    return std::clamp(row, 0, std::max(size - thickness, 0));
}

qsizetype StripLineAt(const QList<double> &heights, int size, int thickness, int row)
{
    qsizetype found = -1;
    int least = thickness;
    for (qsizetype line = 0; line < heights.size(); ++line) {
        const int first = StripRow(heights[line], size, thickness);
        const int distance = row < first ? first - row : std::max(row - (first + thickness - 1), 0);
        if (distance > least)
            continue;
        least = distance;
        found = line;
    }
    return found;
}
