#include "everywhere/PageLetters.h"

#include "base/VisibleText.h"
#include "everywhere/HtmlEntities.h"

#include <QChar>

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr std::size_t LongestName = 10; // of the elements that matter

constexpr qsizetype LongestEntity = 32;
constexpr qsizetype LongestNumber = 16;

bool IsLetter(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

bool IsDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

char Lowered(char byte)
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte | 0x20) : byte;
}

bool IsBlankByte(char byte)
{
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

bool EndsName(char byte)
{
    return IsBlankByte(byte) || byte == '/' || byte == '>';
}

bool IsBlank(char32_t code)
{
    return (code >= 0x09 && code <= 0x0D) || code == 0x85 || code == 0xA0 || code == 0x1680 ||
           (code >= 0x2000 && code <= 0x200A) || code == 0x2028 || code == 0x2029 || code == 0x202F || code == 0x205F ||
           code == 0x3000;
}

/// Joins, hints for hyphens and directions, and byte order marks: nobody sees them, and nobody types them.
bool HasNoWidth(char32_t code)
{
    return code == 0xAD || code == 0x34F || code == 0x61C || code == 0x180E || (code >= 0x200B && code <= 0x200F) ||
           (code >= 0x202A && code <= 0x202E) || (code >= 0x2060 && code <= 0x2069) || code == 0xFEFF;
}

} // namespace

bool PageLetters::NextOfAny(PageLetter &letter)
{
    while (m_at < m_bytes.size()) {
        letter.begin = m_at;
        if (m_isHtml && m_bytes[m_at] == '<' && BeginsMarkup()) {
            if (!PassMarkup())
                continue;
            letter.code = U' ';
        } else {
            letter.code = TakeCharacter();
        }
        if (letter.code == 0 || HasNoWidth(letter.code))
            continue;
        if (IsBlank(letter.code))
            letter.code = U' ';
        letter.end = m_at;
        return true;
    }
    return false;
}

char32_t PageLetters::TakeCharacter()
{
    const char byte = m_bytes[m_at];
    if (m_isHtml && byte == '&')
        return TakeEntity();
    if (IsBlankByte(byte)) {
        ++m_at;
        return U' ';
    }
    const Utf8::Character character = Utf8::At(m_bytes, m_at);
    m_at += character.size;
    return character.code;
}

/// The character of the entity at an "&", or the "&" itself.
char32_t PageLetters::TakeEntity()
{
    const qsizetype begin = ++m_at;
    if (Byte(begin) == '#') {
        const bool isHex = Lowered(Byte(begin + 1)) == 'x';
        qsizetype at = begin + (isHex ? 2 : 1);
        const qsizetype digits = at;
        char32_t number = 0;
        for (; at < digits + LongestNumber; ++at) {
            const char byte = Lowered(Byte(at));
            if (!IsDigit(byte) && !(isHex && byte >= 'a' && byte <= 'f'))
                break;
            const int digit = IsDigit(byte) ? byte - '0' : byte - 'a' + 10;
            // What is too large stays too large.
            number = std::min<char32_t>(number * (isHex ? 16 : 10) + static_cast<char32_t>(digit), 0x110000);
        }
        if (at == digits)
            return U'&';
        m_at = Byte(at) == ';' ? at + 1 : at;
        return NumberedCharacter(number);
    }
    qsizetype end = begin;
    while (end < begin + LongestEntity && (IsLetter(Byte(end)) || IsDigit(Byte(end))))
        ++end;
    if (Byte(end) == ';') {
        if (const char32_t character = EntityOf(m_bytes.sliced(begin, end - begin))) {
            m_at = end + 1;
            return character;
        }
    }
    constexpr qsizetype longestWithoutEnd = 6;
    for (qsizetype size = std::min(end - begin, longestWithoutEnd); size > 1; --size) {
        const QByteArrayView name = m_bytes.sliced(begin, size);
        if (IsEntityWithoutEnd(name)) {
            m_at = begin + size;
            return EntityOf(name);
        }
    }
    return U'&';
}

bool PageLetters::BeginsMarkup() const
{
    const char next = Byte(m_at + 1);
    return IsLetter(next) || next == '!' || next == '?' || (next == '/' && m_at + 2 < m_bytes.size());
}

bool PageLetters::PassMarkup()
{
    const char next = Byte(m_at + 1);
    if (IsLetter(next) || (next == '/' && IsLetter(Byte(m_at + 2))))
        return PassTag();
    if (m_bytes.sliced(m_at).startsWith("<!--")) {
        m_at += 2; // "<!-->" is a whole comment
        PassTo("-->");
    } else {
        PassTo(">");
    }
    return false;
}

bool PageLetters::PassTag()
{
    const bool isEnd = Byte(m_at + 1) == '/';
    m_at += isEnd ? 2 : 1;
    std::array<char, LongestName + 1> letters;
    std::size_t size = 0;
    for (; m_at < m_bytes.size() && !EndsName(m_bytes[m_at]); ++m_at) {
        if (size < letters.size())
            letters[size++] = Lowered(m_bytes[m_at]);
    }
    const std::string_view name(letters.data(), size);
    PassAttributes();
    if (!isEnd && IsUnreadElement(name))
        PassElement({name.data(), static_cast<qsizetype>(name.size())});
    return IsBlockElement(name);
}

/// To the end of the tag; a ">" in quotes is not that.
void PageLetters::PassAttributes()
{
    while (m_at < m_bytes.size()) {
        const char byte = m_bytes[m_at++];
        if (byte == '>')
            return;
        if (byte != '=')
            continue;
        while (IsBlankByte(Byte(m_at)))
            ++m_at;
        if (const char quote = Byte(m_at); quote == '"' || quote == '\'') {
            ++m_at;
            PassTo({&quote, 1});
        }
    }
}

void PageLetters::PassTo(QByteArrayView end)
{
    const qsizetype found = m_bytes.indexOf(end, m_at);
    m_at = found < 0 ? m_bytes.size() : found + end.size();
}

/// Over what stands in an element and its end tag.
void PageLetters::PassElement(QByteArrayView name)
{
    while (m_at < m_bytes.size()) {
        PassTo("</");
        const auto isSame = [](char byte, char wanted) { return Lowered(byte) == wanted; };
        const QByteArrayView rest = m_bytes.sliced(m_at);
        if (rest.size() > name.size() && EndsName(rest[name.size()]) &&
            std::equal(name.begin(), name.end(), rest.begin(),
                       [&](char wanted, char byte) { return isSame(byte, wanted); })) {
            m_at += name.size();
            PassAttributes();
            return;
        }
    }
}
