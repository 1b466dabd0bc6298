#include "base/PlainText.h"

#include "base/PlainTextRules.h"
#include "base/Vectors.h"

#include <QStringView>

#include <algorithm>
#include <bit>

using namespace PlainTextRules;

namespace {

bool Goes(const char16_t *at, const char16_t *end)
{
    if (IsBlank(*at))
        return at + 1 < end && DropsBlankBefore(at[1]);
    return IsLineEnd(*at) || *at == u'<' || *at == u'>';
}

#ifdef LUMIVARA_SSE2

constexpr qsizetype LoadLength = 16;

/// Sixteen units as bytes; units beyond ASCII become bytes that match nothing.
__m128i Narrowed(const char16_t *at)
{
    const auto *halves = reinterpret_cast<const __m128i *>(at);
    return _mm_packus_epi16(_mm_loadu_si128(halves), _mm_loadu_si128(halves + 1));
}

__m128i Equal(__m128i bytes, char byte)
{
    return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(byte));
}

unsigned Bits(__m128i bytes)
{
    return static_cast<unsigned>(_mm_movemask_epi8(bytes));
}

/// A bit for each unit to remove, of the first fifteen of sixteen; the last only decides about a blank before it.
unsigned GoingUnits(const char16_t *at)
{
    const __m128i units = Narrowed(at);
    const __m128i blank = _mm_or_si128(Equal(units, ' '), Equal(units, '\t'));
    const __m128i lineEnd = _mm_or_si128(Equal(units, '\n'), Equal(units, '\r'));
    // "<" and ">" differ in one bit.
    const __m128i bracket = Equal(_mm_and_si128(units, _mm_set1_epi8('\xFD')), '<');
    const unsigned going = Bits(_mm_or_si128(lineEnd, bracket));
    const unsigned dropping = Bits(_mm_or_si128(_mm_or_si128(blank, lineEnd), Equal(units, '<')));
    return (going | (Bits(blank) & dropping >> 1)) & 0x7FFF;
}

#endif

/// Copies units up to the first one to remove, or to the end, and advances both pointers.
void CopyRun(const char16_t *&from, const char16_t *end, char16_t *&to)
{
#ifdef LUMIVARA_SSE2
    while (end - from >= LoadLength) {
        // Stores all sixteen; there is room, because the copy is never ahead of its source.
        const auto *source = reinterpret_cast<const __m128i *>(from);
        auto *target = reinterpret_cast<__m128i *>(to);
        _mm_storeu_si128(target, _mm_loadu_si128(source));
        _mm_storeu_si128(target + 1, _mm_loadu_si128(source + 1));
        const unsigned going = GoingUnits(from);
        const qsizetype length = going ? std::countr_zero(going) : LoadLength - 1;
        from += length;
        to += length;
        if (going)
            return;
    }
#endif
    while (from < end && !Goes(from, end))
        *to++ = *from++;
}

/// The position after the tag at `from`; an unclosed tag extends to the end.
const char16_t *AfterTag(const char16_t *from, const char16_t *end)
{
#ifdef LUMIVARA_SSE2
    for (; end - from >= LoadLength; from += LoadLength) {
        if (const unsigned close = Bits(Equal(Narrowed(from), '>')))
            return from + std::countr_zero(close) + 1;
    }
#endif
    const char16_t *const close = std::find(from, end, u'>');
    return close == end ? end : close + 1;
}

/// Length of the entity at an "&"; 0 if there is none.
qsizetype EntityAt(QStringView text, char16_t &character)
{
    for (const Entity &entity : Entities) {
        const QLatin1StringView name(entity.name.data(), static_cast<qsizetype>(entity.name.size()));
        if (text.sliced(1).startsWith(name)) {
            character = static_cast<char16_t>(entity.character);
            return 1 + name.size();
        }
    }
    return 0;
}

/// Decodes in place; returns the new end.
char16_t *DecodeEntities(char16_t *begin, char16_t *end)
{
    const auto nextMark = [end](char16_t *from) {
        const qsizetype at = QStringView(from, end).indexOf(u'&');
        return at < 0 ? end : from + at;
    };
    char16_t *from = nextMark(begin);
    char16_t *to = from;
    while (from < end) {
        char16_t character = u'&';
        const qsizetype length = EntityAt(QStringView(from, end), character);
        *to++ = character;
        from += std::max<qsizetype>(length, 1);
        char16_t *const next = nextMark(from);
        to = std::copy(from, next, to);
        from = next;
    }
    return to;
}

} // namespace

QString StripHtml(const QString &html)
{
    QString plain(html.size(), Qt::Uninitialized);
    auto *const begin = reinterpret_cast<char16_t *>(plain.data());
    char16_t *to = begin;
    const auto *from = reinterpret_cast<const char16_t *>(html.constData());
    const char16_t *const end = from + html.size();
    while (true) {
        CopyRun(from, end, to);
        if (from == end)
            break;
        // Tags and line ends mostly follow each other, with nothing to copy in between.
        do
            from = *from == u'<' ? AfterTag(from, end) : from + 1;
        while (from < end && (*from == u'<' || IsLineEnd(*from)));
    }
    plain.truncate(DecodeEntities(begin, to) - begin);
    return plain;
}
