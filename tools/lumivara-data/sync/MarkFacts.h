#pragma once

#include "lumivara-data/sync/SyncId.h"

#include <QString>

#include <array>

struct Mark;

/// What a mark holds, as far as comparing needs it.
struct MarkFacts
{
    SyncId content; ///< everything but the key and the names of the text
    SyncId face;    ///< the same without the time
    SyncId excerpt;
    std::array<quint32, 5> traits{}; ///< one for text, title, keywords, note and priority each
    QString time;                    ///< as in Mark

    bool operator==(const MarkFacts &) const = default;
};

/// Null and empty texts are one.
MarkFacts FactsOf(const Mark &mark);
/// The content of a mark with that face and time.
SyncId ContentOf(const SyncId &face, const QString &time);
