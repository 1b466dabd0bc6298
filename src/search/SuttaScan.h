#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

/// One word to be sought in many pages: exactly what decoding a page, StripHtml(), lowering A to Z on both sides and a
/// plain substring search give, but without making the plain text. Keeps no page.
class SuttaScan
{
public:
    /// Longest sample in UTF-16 units; it may end inside a surrogate pair.
    static constexpr qsizetype SampleLength = 127;

    /// The word as the reader typed it, trimmed. It may be anything: markup, lone surrogates, longer than any page. An
    /// empty word is found at the start of every page that is not empty.
    explicit SuttaScan(const QString &word);

    /// Plain text from the first hit on, at most SampleLength units, not lowered. None if the page does not hold the
    /// word or decodes to nothing. `page` is HTML in UTF-8; bytes that are not valid count as U+FFFD, and a byte order
    /// mark at its start does not count.
    std::optional<QString> FirstHit(const QByteArray &page) const;

private:
    /// Two neighbouring bytes by which a place where the word may begin is known before it is looked at closely.
    struct Filter
    {
        /// Where they stand in the word.
        qsizetype offset = 0;
        /// The first byte, lowered, and what else may stand for it ("&" where an entity may).
        char first = 0;
        char firstOther = 0;
        char second = 0;
        /// The bit that lowers an ASCII letter; 0 for any other byte.
        char firstCase = 0;
        char secondCase = 0;
        /// Both bytes belong to one character, between whose bytes nothing is dropped.
        bool isOneCharacter = false;
        /// Only the first byte counts.
        bool isFirstOnly = false;
    };

    static Filter FilterFor(const QByteArray &word);
    bool MayBegin(char first, char second) const;
    const char *NextCandidate(const char *from, const char *end) const;
    bool MatchesAt(const char *at, const char *end, qsizetype &effort) const;
    std::optional<QString> FirstHitByCharacters(const QByteArray &page) const;

    QString m_word;                   // A to Z lowered
    std::vector<qsizetype> m_borders; // for each start of the word, the length of its longest end that is a start too
    QByteArray m_bytes;               // the word in UTF-8
    Filter m_filter;
    bool m_needsCharacters = false;
};
