#pragma once

#include <QList>
#include <QString>

/// Two words as they may have been before they ran together.
struct PaliSeam
{
    QString left, right;
    int cost = 0; ///< the rarer the change at the seam, the higher; 0 for none
};

/// The words that a form may have been made of, cut before the letter at `at`, which lies inside of it: plain, with a
/// vowel that was dropped, lengthened or became "y" or "v", an inserted or doubled consonant, or a niggahita that
/// became another nasal. Some ten at most.
QList<PaliSeam> PaliSeamsAt(const QString &form, qsizetype at);
