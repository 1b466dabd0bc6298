#include "marks/Functions.h"

#include "marks/PlainTextRules.h"

#include <QStringView>

#include <algorithm>
#include <bit>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

using namespace PlainTextRules;

namespace {

bool Goes(const char16_t *at, const char16_t *end)
{
    if (IsBlank(*at))
        return at + 1 < end && DropsBlankBefore(at[1]);
    return IsLineEnd(*at) || *at == u'<' || *at == u'>';
}

#ifdef __SSE2__

constexpr qsizetype StepLength = 16;

/// Sixteen units as bytes, those beyond ASCII as bytes without a meaning to us.
__m128i Narrowed(const char16_t *at)
{
    const auto *halves = reinterpret_cast<const __m128i *>(at);
    return _mm_packus_epi16(_mm_loadu_si128(halves), _mm_loadu_si128(halves + 1));
}

__m128i Equal(__m128i bytes, char byte)
{
    return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(byte));
}

/// A bit for each of the sixteen units that goes; reads one unit more.
unsigned GoingUnits(const char16_t *at)
{
    const __m128i here = Narrowed(at);
    const __m128i next = Narrowed(at + 1);
    const __m128i lineEnd = _mm_or_si128(Equal(here, '\n'), Equal(here, '\r'));
    // "<" and ">" differ in one bit.
    const __m128i bracket = Equal(_mm_and_si128(here, _mm_set1_epi8('\xFD')), '<');
    const __m128i blank = _mm_or_si128(Equal(here, ' '), Equal(here, '\t'));
    const __m128i blankNext = _mm_or_si128(Equal(next, ' '), Equal(next, '\t'));
    const __m128i lineEndNext = _mm_or_si128(Equal(next, '\n'), Equal(next, '\r'));
    const __m128i dropping = _mm_or_si128(_mm_or_si128(blankNext, lineEndNext), Equal(next, '<'));
    const __m128i going = _mm_or_si128(_mm_or_si128(lineEnd, bracket), _mm_and_si128(blank, dropping));
    return static_cast<unsigned>(_mm_movemask_epi8(going));
}

#endif

/// Copies what stays up to the first unit that goes, or to the end, and moves both places behind it.
void CopyRun(const char16_t *&from, const char16_t *end, char16_t *&to)
{
#ifdef __SSE2__
    while (end - from > StepLength) {
        // Stored whole: the copy is never ahead of its source, so there is room.
        const auto *source = reinterpret_cast<const __m128i *>(from);
        auto *target = reinterpret_cast<__m128i *>(to);
        _mm_storeu_si128(target, _mm_loadu_si128(source));
        _mm_storeu_si128(target + 1, _mm_loadu_si128(source + 1));
        const unsigned going = GoingUnits(from);
        const qsizetype length = going ? std::countr_zero(going) : StepLength;
        from += length;
        to += length;
        if (going)
            return;
    }
#endif
    while (from < end && !Goes(from, end))
        *to++ = *from++;
}

/// Units of the entity at an "&", and 0 if none stands there.
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

/// Decodes in place; returns the end of what is left.
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
        if (*from == u'<') {
            const qsizetype close = QStringView(from, end).indexOf(u'>');
            if (close < 0)
                break;
            from += close;
        }
        ++from;
    }
    plain.truncate(DecodeEntities(begin, to) - begin);
    return plain;
}
