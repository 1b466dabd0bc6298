#pragma once

#include <QByteArray>
#include <QString>

/// Key by which the words of a kind stand in dictionary order when compared byte for byte. Printable ASCII, at most 190
/// bytes. Pāli follows its own alphabet (aspirates are letters), Vietnamese the order of its letters, then of its
/// tones; other languages the Latin alphabet. Case decides last.
QByteArray DictionarySortKey(int kind, const QString &word);

/// The form in which the existence test asks for a word of a kind: lower case for kind 1, upper case for the others,
/// letter by letter.
QString DictionaryWordForm(int kind, const QString &word);
