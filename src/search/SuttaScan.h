#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

/// Searches many pages for one word. The result is that of decoding a page, StripHtml(), lowering A to Z on both sides
/// and a substring search, but without making the plain text. Keeps no page.
class SuttaScan
{
public:
    /// Longest sample in UTF-16 units; it may end inside a surrogate pair.
    static constexpr qsizetype SampleLength = 127;

    /// The word as the reader typed it, trimmed. Any text is allowed: markup, lone surrogates, longer than any page. An
    /// empty word is found at the start of every page that is not empty.
    explicit SuttaScan(const QString &word);

    /// Plain text from the first hit, at most SampleLength units, not lowered. None if the page does not contain the
    /// word or decodes to nothing. `page` is HTML in UTF-8; invalid bytes count as U+FFFD, and a byte order mark at the
    /// start is ignored.
    std::optional<QString> FirstHit(const QByteArray &page) const;

private:
    /// Two neighbouring bytes of the word, by which possible hits are found before they are compared.
    struct Filter
    {
        /// Their position in the word.
        qsizetype offset = 0;
        /// The first byte, lowered, and its alternative ("&" if an entity can encode it).
        char first = 0;
        char firstOther = 0;
        char second = 0;
        /// The bit that lowers an ASCII letter; 0 for any other byte.
        char firstCase = 0;
        char secondCase = 0;
        /// Both bytes belong to one character, inside which nothing is dropped.
        bool isOneCharacter = false;
        /// Only the first byte counts.
        bool isFirstOnly = false;
    };

    static Filter FilterFor(const QByteArray &word);
    bool MayBegin(char first, char second) const;
    const char *NextCandidate(const char *from, const char *end) const;
    bool MatchesAt(const char *at, const char *end, qsizetype &effort) const;
    std::optional<QString> FirstHitByCharacters(const QByteArray &page) const;

    QString m_word; // A to Z lowered
    std::vector<qsizetype>
        m_borders;      // for each prefix of the word, the length of its longest suffix that is also a prefix
    QByteArray m_bytes; // the word in UTF-8
    Filter m_filter;
    bool m_needsCharacters = false;
};
