#pragma once

#include "dictionary/KnownWords.h"

/// A part of a form.
struct PaliPiece
{
    QString word; ///< as the dictionary writes it, or as the grammar does
    int kind = 0; ///< of the dictionary that has it; 0 if none does, as of a prefix
};

/// One way to understand a form: as a form of one word, or as pieces in their order.
struct PaliWay
{
    QList<PaliPiece> pieces;
    QStringView terms; ///< of a single word, for PaliTerms()
    int cost = 0;
    int order = 0; ///< among ways of one cost, that of the last reading
};

/// The ways to understand a form, cheapest first: as one word; where there is none, as words that have run together,
/// and at last as a compound, in the fewest pieces. Only dictionary words, prefixes and the grammar's own small words
/// are pieces. The form is as PaliFolded() gives it.
QList<PaliWay> PaliWays(const QString &form, KnownWords &words);
