#pragma once

#include <QList>
#include <QString>

/// A headword under which a dictionary may have a form. Forms are NFC in lower case, the niggahita is "ṃ".
struct PaliReading
{
    QString head;
    QStringView terms; ///< what the form is of the headword, for PaliTerms(); empty if it is the headword itself
    int cost = 0;      ///< the rarer the higher; 0 for the headword itself
    int order = 0;     ///< among readings of one cost: the most usual headwords first, then the shortest endings
};

/// Readings dearer than this are worth a question only where no cheaper one has an answer.
constexpr int CommonReading = 5;

/// All headwords that a form may stand under, each once, as one word: declension, conjugation, participles, words made
/// of words. Most of them do not exist. At most some hundred for any text.
QList<PaliReading> PaliReadings(const QString &form);

/// The headwords of a stem that stands before another word in a compound.
QList<PaliReading> PaliStemReadings(const QString &stem);

/// True for a form of a small word, of which a grammar has all (pronouns, particles and the like), also for one that
/// has lost its first vowel: "pi", "ti", "haṃ".
bool IsPaliFunctionWord(const QString &form);
/// The headwords of such a form, itself first; at the end of another word the one that has lost its vowel comes first.
QStringList PaliFunctionHeads(const QString &form, bool atEnd);
/// True for one that clings to the end of any word before it.
bool IsPaliEnclitic(const QString &form);
/// True for one that clings to the end of another small word.
bool IsPaliFollower(const QString &form);
/// True for one of those that may cling to a longer word, too.
bool IsPaliTail(const QString &form);
/// True for a headword of pronouns or numerals, all of whose forms are known as small words.
bool IsPaliPronoun(const QString &head);
/// True for one that never stands first.
bool IsNeverFirst(const QString &form);
/// True for one that may run together with the word behind it.
bool IsPaliLeader(const QString &form);
/// True for one that stands unchanged before a word with a consonant: "yathā", "na".
bool IsPaliFirstPart(const QString &form);
/// True for one that does so alone: it never loses its vowel.
bool StandsApart(const QString &form);
/// True for a headword without inflection.
bool IsPaliParticle(const QString &word);
