#pragma once

#include <QString>

/// The letters of Pali as its grammar groups them. Texts are NFC in lower case, the niggahita is "ṃ".

/// A text so written: composed, lower case, the niggahita's other signs (a dot above, "ŋ") replaced, one sign for every
/// apostrophe, and none of them at the ends.
QString PaliFolded(const QString &text);

/// One text behind the other.
QString Joined(QStringView left, QStringView right);

bool IsPaliVowel(QChar letter);
/// "ā" of "a" and the like; the letter itself if it has no other length.
QChar WithLength(QChar vowel);
QChar WithoutLength(QChar vowel);
/// True if two consonants of one kind begin the text, such as "pp" or "kkh".
bool StartsDoubled(QStringView text);
/// True if the niggahita becomes this nasal before the consonant.
bool IsNasalBefore(QChar nasal, QChar consonant);
