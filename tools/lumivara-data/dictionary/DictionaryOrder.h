#pragma once

#include <QByteArray>
#include <QString>

/// The sort key of a word for the dictionary order of a kind; keys are compared byte for byte. Printable ASCII, at most
/// 190 bytes. Case decides only between words of the same key; blanks and hyphens come first, then digits, then
/// letters.
///
/// Pāli follows the alphabet of the grammars: aspirates are letters of their own after the plain ones, the niggahīta is
/// the last letter. Vietnamese goes syllable by syllable, in each by letter, then by tone (level, grave, hook, tilde,
/// acute, dot). English and French go by base letter; accents decide between words that are alike without them, in
/// French from the end of the word backwards.
QByteArray DictionarySortKey(int kind, const QString &word);
