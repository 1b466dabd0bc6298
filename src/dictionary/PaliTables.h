#pragma once

#include <QString>

#include <span>

/// What a grammar of Pali knows of endings, as tables. Letters are NFC in lower case, the niggahita is "ṃ".

/// Endings that are cut off a form, and what stands in their place in a dictionary.
struct PaliEndings
{
    /// What follows the stem in a headword, by blanks, the most usual first; "-" for nothing.
    const char16_t *heads;
    /// Groups parted by "|": letters of PaliTerms(), then the endings that mean it. "*" behind an ending stands for all
    /// persons of an aorist in "si" or "i", or of a future in "ati".
    const char16_t *endings;
    int cost;         ///< the rarer the higher
    int shortest = 2; ///< letters that must remain of the form
};

/// Nouns, adjectives and participles: their cases.
std::span<const PaliEndings> PaliCases();
/// Those of stems in "vant" and "mant", which follow a vowel or "s".
std::span<const PaliEndings> PaliPossessorCases();
/// Verbs: heads are the third person of the present.
std::span<const PaliEndings> PaliVerbForms();
/// Tenses that may have an augment.
std::span<const PaliEndings> PaliPastForms();
/// Stems that are made of verbs (participles, nouns of agent and action), cases taken off.
std::span<const PaliEndings> PaliVerbStems();
/// Stems that are made of nouns.
std::span<const PaliEndings> PaliNounStems();
/// Verbs that are made of verbs: causatives and passives, all in "ti".
std::span<const PaliEndings> PaliDerivedVerbs();
/// Whole words with forms of their own, of which nothing remains: small words, which run together with others
/// (pronouns, numerals, a few verbs), and a few nouns.
std::span<const PaliEndings> PaliSmallWords();
std::span<const PaliEndings> PaliClosedWords();
/// Words without inflection, parted by blanks.
QStringView PaliParticles();

/// The grammar's terms for a row of letters, in a language of the interface: "g2" is "genitive plural".
QString PaliTerms(QStringView letters, int language);
