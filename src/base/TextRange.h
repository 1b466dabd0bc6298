#pragma once

#include <QList>
#include <QString>

#include <functional>

/// A part of a text, in UTF-16 units.
struct TextRange
{
    qsizetype begin = 0;
    qsizetype end = 0;
    bool operator==(const TextRange &) const = default;
};

/// Finds places in a text: ascending, without overlaps, and each begins and ends with a character that is no blank.
using PlacesIn = std::function<QList<TextRange>(const QString &text)>;
