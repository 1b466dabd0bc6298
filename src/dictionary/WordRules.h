#pragma once

#include <QString>

#include <functional>
#include <optional>

/// The rules of the dictionary window that need no window. A kind is one of DictKind, 0 is none. Texts are UTF-16.

constexpr int WordPage = 24; ///< rows that Page Up and Page Down move, whatever the list's height

/// Caption of a kind in an interface language (0 Vietnamese, 1 English); empty for any other kind or language.
QString DictionaryCaption(int kind, int interfaceLanguage);
/// Caption of the button for several dictionaries; null if it keeps its old one.
QString MultiDictionaryCaption(int kind, bool isMulti, int interfaceLanguage);

/// The kind for a passage's language; `current` for a language without one.
int DictionaryKindOf(int contentLanguage, int current);

/// The two prefixes for filtering the list, made from the text as typed. The lower form is trimmed and folds only A to
/// Z; the mixed form is not trimmed and has its first character in upper case by Unicode.
QString LowerForm(const QString &text);
QString MixedForm(const QString &text);
/// The text as the existence test of a kind takes it: ASCII lower case for English-Vietnamese, full upper case, one
/// character for one, for the others.
QString TestedForm(int kind, const QString &text);

struct WordPlace
{
    int kind;
    QString text;
    bool operator==(const WordPlace &) const = default;
};

/// The dictionary of the current kind's pair that has a word; none if neither has it. An English plural that is in
/// neither is looked up without its "s".
std::optional<WordPlace> FindDictionary(int kind, const QString &text,
                                        const std::function<bool(int kind, const QString &form)> &contains);

/// True for the kinds whose words are Pāli.
bool IsOfPaliWords(int kind);
/// The letter in which a dictionary writes the niggahita, by the spelling of common words that `has` knows; ṃ if it has
/// none of them.
QChar NiggahitaOfWords(const std::function<bool(const QString &word)> &has);

enum class WordKey { Nothing, Typing, NextRow, PriorRow, NextPage, PriorPage };
/// The meaning of a key pressed in the search box, by its Qt::Key and its text, ignoring modifiers.
WordKey MeaningOfWordKey(int key, const QString &text);

constexpr int DebounceTick = 20; ///< milliseconds
/// One tick of the debounce timer; true on the tick at which the search is due.
bool TickDebounce(int &deltaT);
