#pragma once

#include <QByteArrayView>
#include <QChar>

/// Characters of bytes in UTF-8, without copying them.
namespace Utf8 {

struct Character
{
    char32_t code = 0;
    qsizetype size = 0; ///< in bytes
};

inline bool IsContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// The character at a place before the end. A byte that begins none there is a U+FFFD by itself.
inline Character At(QByteArrayView bytes, qsizetype at)
{
    const auto byte = [&](qsizetype i) { return static_cast<char32_t>(static_cast<unsigned char>(bytes[at + i])); };
    const char32_t first = byte(0);
    if (first < 0x80)
        return {first, 1};
    const Character invalid{QChar::ReplacementCharacter, 1};
    const qsizetype size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || bytes.size() - at < size)
        return invalid;
    char32_t code = first & (0x7F >> size);
    for (qsizetype i = 1; i < size; ++i) {
        if (!IsContinuation(bytes[at + i]))
            return invalid;
        code = code << 6 | (byte(i) & 0x3F);
    }
    // Longer than it need be, half of a pair, or beyond the last.
    const bool isTooLong = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
    if (isTooLong || QChar::isSurrogate(code) || code > 0x10FFFF)
        return invalid;
    return {code, size};
}

/// The character before a place that is not the start, in valid UTF-8.
inline Character Before(QByteArrayView bytes, qsizetype at)
{
    qsizetype begin = at - 1;
    while (begin > 0 && IsContinuation(bytes[begin]))
        --begin;
    return At(bytes, begin);
}

} // namespace Utf8
