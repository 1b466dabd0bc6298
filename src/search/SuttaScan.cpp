#include "search/SuttaScan.h"

#include "base/PlainText.h"
#include "base/PlainTextRules.h"
#include "base/Texts.h"
#include "base/Vectors.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

using namespace PlainTextRules;

// A page is searched as stored, because making its plain text costs many times the search. All characters that the
// plain text drops or decodes are ASCII, and ASCII bytes are never part of another character. So plain text can be read
// from any position outside tags and entities. Invalid bytes need no special treatment: the decoder turns each into a
// U+FFFD and goes on at the next byte, so that valid characters after them are decoded correctly.

namespace {

constexpr QByteArrayView ByteOrderMark("\xEF\xBB\xBF");
constexpr qsizetype StepLength = 16;
constexpr char CaseBit = 0x20;

char Lowered(char byte)
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte | CaseBit) : byte;
}

bool IsLetter(char lowered)
{
    return lowered >= 'a' && lowered <= 'z';
}

bool IsContinuation(int byte)
{
    return (byte & 0xC0) == 0x80;
}

const char *Find(const char *from, const char *end, char byte)
{
    const void *found = std::memchr(from, byte, static_cast<std::size_t>(end - from));
    return found ? static_cast<const char *>(found) : end;
}

/// The position after the tag that the "<" before `from` opens; an unclosed tag extends to the end.
const char *AfterTag(const char *from, const char *end)
{
    const char *const close = Find(from, end, '>');
    return close == end ? end : close + 1;
}

/// Reads plain text byte by byte from a position outside tags and entities.
class PlainReader
{
public:
    PlainReader(const char *at, const char *end) : m_at(at), m_end(end) {}

    /// The next byte, or -1 at the end.
    int Next()
    {
        const char *const before = m_at;
        const int byte = NextStripped();
        if (byte == '&')
            return DecodedEntity();
        // A tag interrupts these bytes; the decoder sees it, so they are not a character.
        m_isBroken |= IsContinuation(byte) && byte >= 0 && m_at != before + 1;
        return byte;
    }
    const char *At() const { return m_at; }
    /// True if something dropped has interrupted the bytes of a character.
    bool IsBroken() const { return m_isBroken; }

private:
    int NextStripped()
    {
        while (m_at < m_end) {
            const char byte = *m_at++;
            if (byte == '<')
                m_at = AfterTag(m_at, m_end);
            else if (byte != '>' && !IsLineEnd(byte) && !(IsBlank(byte) && m_at < m_end && DropsBlankBefore(*m_at)))
                return static_cast<unsigned char>(byte);
        }
        return -1;
    }

    int DecodedEntity()
    {
        for (const Entity &entity : Entities) {
            PlainReader ahead = *this;
            if (std::all_of(entity.name.begin(), entity.name.end(),
                            [&](char c) { return ahead.NextStripped() == c; })) {
                m_at = ahead.m_at;
                return entity.character;
            }
        }
        return '&';
    }

    const char *m_at;
    const char *m_end;
    bool m_isBroken = false;
};

/// The next "<" or "&", or the end.
const char *FindMark(const char *from, const char *end)
{
#ifdef LUMIVARA_SSE2
    for (; end - from >= StepLength; from += StepLength) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(from));
        const int marks = _mm_movemask_epi8(
            _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('<')), _mm_cmpeq_epi8(bytes, _mm_set1_epi8('&'))));
        if (marks)
            return from + std::countr_zero(static_cast<unsigned>(marks));
    }
#endif
    return std::find_if(from, end, [](char byte) { return byte == '<' || byte == '&'; });
}

/// Starting outside tags and entities at `known`: `target`, or the end of the tag or entity around it.
const char *Outside(const char *known, const char *target, const char *end)
{
    while (known < target) {
        known = FindMark(known, target);
        if (known == target)
            break;
        if (*known == '<') {
            known = AfterTag(known, end);
        } else {
            PlainReader reader(known, end);
            reader.Next();
            known = reader.At();
        }
    }
    return known;
}

/// Plain text from a position outside tags and entities; none if a character is interrupted there.
std::optional<QString> SampleAt(const char *at, const char *end)
{
    // No unit takes more than three bytes, so these suffice even if they end inside a character.
    std::array<char, 3 * (SuttaScan::SampleLength + 1)> bytes;
    PlainReader reader(at, end);
    qsizetype size = 0;
    while (size < static_cast<qsizetype>(bytes.size())) {
        const int byte = reader.Next();
        if (byte < 0)
            break;
        bytes[static_cast<std::size_t>(size++)] = static_cast<char>(byte);
    }
    if (reader.IsBroken())
        return {};
    return QString::fromUtf8(bytes.data(), size).left(SuttaScan::SampleLength);
}

/// For each prefix of the word, the length of its longest proper suffix that is also a prefix.
std::vector<qsizetype> BordersOf(QStringView word)
{
    std::vector<qsizetype> borders(static_cast<std::size_t>(word.size()) + 1, 0);
    qsizetype border = 0;
    for (qsizetype i = 1; i < word.size(); ++i) {
        while (border > 0 && word[i] != word[border])
            border = borders[static_cast<std::size_t>(border)];
        if (word[i] == word[border])
            ++border;
        borders[static_cast<std::size_t>(i) + 1] = border;
    }
    return borders;
}

} // namespace

SuttaScan::SuttaScan(const QString &word)
    : m_word(LowerAscii(word)), m_borders(BordersOf(m_word)), m_bytes(m_word.toUtf8())
{
    // U+FFFD stands for bytes of any kind, half a pair for the half of a character; a byte order mark would be taken
    // for one at the start of the sample; blanks and control characters are dropped here and kept there.
    m_needsCharacters = m_word.isEmpty() || m_word.front() <= u' ' || m_word.front() == QChar::ByteOrderMark ||
                        m_word.contains(QChar::ReplacementCharacter) || !m_word.isValidUtf16();
    if (!m_needsCharacters)
        m_filter = FilterFor(m_bytes);
}

SuttaScan::Filter SuttaScan::FilterFor(const QByteArray &word)
{
    Filter filter;
    const auto lead = static_cast<unsigned char>(word.front());
    const qsizetype length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    filter.isOneCharacter = length > 1;
    // The last two bytes of a character are the most distinctive.
    filter.offset = std::max<qsizetype>(length - 2, 0);
    filter.first = word[filter.offset];
    filter.firstOther = filter.first;
    if (IsLetter(filter.first))
        filter.firstCase = CaseBit;
    const bool isEntity = std::any_of(Entities.begin(), Entities.end(),
                                      [&](const Entity &entity) { return entity.character == filter.first; });
    if (isEntity)
        filter.firstOther = '&';
    if (filter.first == '<' || filter.first == '>')
        filter.first = '&';
    filter.isFirstOnly = isEntity || filter.offset + 1 == word.size();
    if (!filter.isFirstOnly) {
        filter.second = word[filter.offset + 1];
        if (IsLetter(filter.second))
            filter.secondCase = CaseBit;
    }
    return filter;
}

bool SuttaScan::MayBegin(char first, char second) const
{
    if (static_cast<char>(first | m_filter.firstCase) != m_filter.first && first != m_filter.firstOther)
        return false;
    if (m_filter.isFirstOnly || static_cast<char>(second | m_filter.secondCase) == m_filter.second)
        return true;
    return !m_filter.isOneCharacter &&
           (static_cast<unsigned char>(second) <= ' ' || second == '<' || second == '>' || second == '&');
}

/// The next position where the word may begin, or the end; no hit begins before it.
const char *SuttaScan::NextCandidate(const char *from, const char *end) const
{
    if (end - from <= m_filter.offset)
        return end;
    const char *at = from + m_filter.offset;
#ifdef LUMIVARA_SSE2
    const __m128i first = _mm_set1_epi8(m_filter.first);
    const __m128i firstOther = _mm_set1_epi8(m_filter.firstOther);
    const __m128i firstCase = _mm_set1_epi8(m_filter.firstCase);
    const __m128i second = _mm_set1_epi8(m_filter.second);
    const __m128i secondCase = _mm_set1_epi8(m_filter.secondCase);
    const __m128i anySecond = _mm_set1_epi8(m_filter.isFirstOnly ? '\xFF' : '\0');
    const __m128i marksCount = _mm_set1_epi8(m_filter.isOneCharacter ? '\0' : '\xFF');
    const __m128i blank = _mm_set1_epi8(' ');
    const __m128i bracket = _mm_set1_epi8('<');
    const __m128i bracketBits = _mm_set1_epi8('\xFD'); // "<" and ">" differ in one bit
    const __m128i ampersand = _mm_set1_epi8('&');
    for (; end - at > StepLength; at += StepLength) {
        const __m128i here = _mm_loadu_si128(reinterpret_cast<const __m128i *>(at));
        const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i *>(at + 1));
        const __m128i isFirst =
            _mm_or_si128(_mm_cmpeq_epi8(_mm_or_si128(here, firstCase), first), _mm_cmpeq_epi8(here, firstOther));
        const __m128i isMark = _mm_or_si128(
            _mm_cmpeq_epi8(_mm_min_epu8(next, blank), next),
            _mm_or_si128(_mm_cmpeq_epi8(_mm_and_si128(next, bracketBits), bracket), _mm_cmpeq_epi8(next, ampersand)));
        const __m128i isSecond = _mm_cmpeq_epi8(_mm_or_si128(next, secondCase), second);
        const __m128i fits = _mm_or_si128(_mm_or_si128(isSecond, anySecond), _mm_and_si128(isMark, marksCount));
        const int candidates = _mm_movemask_epi8(_mm_and_si128(isFirst, fits));
        if (candidates)
            return at + std::countr_zero(static_cast<unsigned>(candidates)) - m_filter.offset;
    }
#endif
    for (; at < end; ++at) {
        if (MayBegin(*at, at + 1 < end ? at[1] : '\0'))
            return at - m_filter.offset;
    }
    return end;
}

/// Whether the plain text at `at` begins with the word. Subtracts the bytes read from `effort`.
bool SuttaScan::MatchesAt(const char *at, const char *end, qsizetype &effort) const
{
    PlainReader reader(at, end);
    const bool isMatch = std::all_of(m_bytes.begin(), m_bytes.end(), [&](char wanted) {
        const int byte = reader.Next();
        return byte >= 0 && Lowered(static_cast<char>(byte)) == wanted && !reader.IsBroken();
    });
    effort -= reader.At() - at;
    return isMatch;
}

std::optional<QString> SuttaScan::FirstHit(const QByteArray &page) const
{
    if (m_needsCharacters)
        return FirstHitByCharacters(page);
    const char *known = page.constData();
    const char *const end = known + page.size();
    if (page.startsWith(ByteOrderMark))
        known += ByteOrderMark.size();
    if (end - known < m_bytes.size())
        return {};
    // With a page and a word of few different letters, comparing could take minutes.
    qsizetype effort = 8 * page.size();
    const char *from = known;
    while (true) {
        const char *const at = NextCandidate(from, end);
        if (at == end)
            return {};
        from = at + 1;
        if (MatchesAt(at, end, effort)) {
            known = Outside(known, at, end);
            if (known == at) {
                const std::optional<QString> sample = SampleAt(at, end);
                return sample ? sample : FirstHitByCharacters(page);
            }
            from = known;
        }
        if (effort < 0)
            return FirstHitByCharacters(page);
    }
}

std::optional<QString> SuttaScan::FirstHitByCharacters(const QByteArray &page) const
{
    const QString text = QString::fromUtf8(page);
    if (text.isEmpty())
        return {};
    const QString plain = StripHtml(text);
    if (m_word.isEmpty())
        return plain.left(SampleLength);
    // Knuth-Morris-Pratt takes linear time for any page.
    qsizetype matched = 0;
    for (qsizetype i = 0; i < plain.size(); ++i) {
        QChar character = plain[i];
        if (character >= u'A' && character <= u'Z')
            character = QChar(character.unicode() | CaseBit);
        while (matched > 0 && character != m_word[matched])
            matched = m_borders[static_cast<std::size_t>(matched)];
        if (character == m_word[matched])
            ++matched;
        if (matched == m_word.size())
            return plain.mid(i + 1 - matched, SampleLength);
    }
    return {};
}
