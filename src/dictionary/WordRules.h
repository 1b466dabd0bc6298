#pragma once

#include <QString>

#include <functional>
#include <optional>

/// The rules of the dictionary window that need no window. A kind is one of DictKind, 0 is none. Texts are UTF-16.

constexpr int WordPage = 24; ///< rows that Page Up and Page Down move, whatever the list's height

/// Caption of a kind in an interface language (0 Vietnamese, 1 English); empty for any other kind or language.
QString DictionaryCaption(int kind, int interfaceLanguage);
/// What the button for several dictionaries says; null where it keeps what it said.
QString MultiDictionaryCaption(int kind, bool isMulti, int interfaceLanguage);

/// The kind that a passage's language asks for; `current` for a language without one.
int DictionaryKindOf(int contentLanguage, int current);

/// The two prefixes that the list is filtered by, of the text as typed. The lower form is trimmed and folds A to Z
/// alone; the mixed form is not trimmed and has its first character in upper case by the full Unicode rule.
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

/// Which dictionary of the current kind's pair to turn to for a text; none if no dictionary of it has the word. An
/// English plural that is in no dictionary under its own form is taken to be there without its "s".
std::optional<WordPlace> FindDictionary(int kind, const QString &text,
                                        const std::function<bool(int kind, const QString &form)> &contains);

enum class WordKey { Nothing, Typing, NextRow, PriorRow, NextPage, PriorPage };
/// What a key pressed in the search box means, by its Qt::Key and the text that it makes, whatever the modifiers.
WordKey MeaningOfWordKey(int key, const QString &text);

constexpr int DebounceTick = 20; ///< milliseconds
/// One tick of the clock that waits for the typing to rest; true on the tick at which the search is due.
bool TickDebounce(int &deltaT);
