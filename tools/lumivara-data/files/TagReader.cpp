#include "lumivara-data/files/TagReader.h"

#include <QHash>
#include <QString>

#include <algorithm>
#include <cstring>

namespace {

constexpr qsizetype LongestEntity = 32;
/// A forgiving reader that looked further for the end of a quote could read the same bytes for each "<" among them.
constexpr ptrdiff_t LongestTag = 4096;

bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

QHash<QByteArray, char32_t> MakeEntities()
{
    QHash<QByteArray, char32_t> entities{
        {"quot", U'"'},     {"amp", U'&'},      {"lt", U'<'},       {"gt", U'>'},       {"apos", U'\''},
        {"OElig", 0x152},   {"oelig", 0x153},   {"Scaron", 0x160},  {"scaron", 0x161},  {"Yuml", 0x178},
        {"Amacr", 0x100},   {"amacr", 0x101},   {"Imacr", 0x12A},   {"imacr", 0x12B},   {"Umacr", 0x16A},
        {"umacr", 0x16B},   {"Emacr", 0x112},   {"emacr", 0x113},   {"Omacr", 0x14C},   {"omacr", 0x14D},
        {"ensp", 0x2002},   {"emsp", 0x2003},   {"thinsp", 0x2009}, {"zwnj", 0x200C},   {"zwj", 0x200D},
        {"ndash", 0x2013},  {"mdash", 0x2014},  {"lsquo", 0x2018},  {"rsquo", 0x2019},  {"sbquo", 0x201A},
        {"ldquo", 0x201C},  {"rdquo", 0x201D},  {"bdquo", 0x201E},  {"dagger", 0x2020}, {"Dagger", 0x2021},
        {"bull", 0x2022},   {"hellip", 0x2026}, {"prime", 0x2032},  {"Prime", 0x2033},  {"lsaquo", 0x2039},
        {"rsaquo", 0x203A}, {"euro", 0x20AC},   {"trade", 0x2122},  {"larr", 0x2190},   {"uarr", 0x2191},
        {"rarr", 0x2192},   {"darr", 0x2193},   {"harr", 0x2194},   {"rArr", 0x21D2},   {"hArr", 0x21D4},
        {"minus", 0x2212},  {"infin", 0x221E},  {"asymp", 0x2248},  {"ne", 0x2260},     {"le", 0x2264},
        {"ge", 0x2265},     {"loz", 0x25CA}};
    // The names of U+00A0 to U+00FF in their order.
    const QByteArrayList latin =
        QByteArray("nbsp iexcl cent pound curren yen brvbar sect uml copy ordf laquo not shy reg macr deg plusmn sup2 "
                   "sup3 acute micro para middot cedil sup1 ordm raquo frac14 frac12 frac34 iquest Agrave Aacute Acirc "
                   "Atilde Auml Aring AElig Ccedil Egrave Eacute Ecirc Euml Igrave Iacute Icirc Iuml ETH Ntilde Ograve "
                   "Oacute Ocirc Otilde Ouml times Oslash Ugrave Uacute Ucirc Uuml Yacute THORN szlig agrave aacute "
                   "acirc atilde auml aring aelig ccedil egrave eacute ecirc euml igrave iacute icirc iuml eth ntilde "
                   "ograve oacute ocirc otilde ouml divide oslash ugrave uacute ucirc uuml yacute thorn yuml")
            .split(' ');
    char32_t code = 0xA0;
    for (const QByteArray &name : latin)
        entities.insert(name, code++);
    return entities;
}

/// The bytes of an entity without "&" and ";"; empty for one that is not known.
QByteArray DecodedEntity(QByteArrayView name)
{
    static const QHash<QByteArray, char32_t> entities = MakeEntities();
    char32_t code = 0;
    if (name.startsWith('#')) {
        const bool isHex = name.size() > 1 && (name[1] == 'x' || name[1] == 'X');
        bool isNumber = false;
        code = name.sliced(isHex ? 2 : 1).toByteArray().toUInt(&isNumber, isHex ? 16 : 10);
        // Of 0x80 to 0x9F and of surrogates there is nothing to show.
        if (!isNumber || code < ' ' || (code >= 0x7F && code < 0xA0) || (code >= 0xD800 && code < 0xE000) ||
            code > 0x10FFFF)
            return {};
    } else {
        code = entities.value(name.toByteArray());
    }
    return code == 0 ? QByteArray() : QString::fromUcs4(&code, 1).toUtf8();
}

} // namespace

TagReader::Part TagReader::Next()
{
    m_start = m_at;
    if (m_at == m_end)
        return Part::End;
    if (*m_at == '<') {
        const char second = Peek(1);
        const bool isEndTag = second == '/' && IsLetter(Peek(2));
        if (Left() > 3 && std::memcmp(m_at, "<!--", 4) == 0) {
            const qsizetype end = QByteArrayView(m_at + 2, m_end).indexOf("-->");
            m_at = end < 0 ? m_end : m_at + 2 + end + 3;
            return Part::Aside;
        }
        if (second == '!' || second == '?' || (second == '/' && !isEndTag && Left() > 2 && !IsForgiving())) {
            m_at = std::min(Find('>', m_at, m_end) + 1, m_end);
            return Part::Aside;
        }
        if (isEndTag || IsLetter(second)) {
            if (const Part part = ReadTag(); part != Part::Text)
                return part;
        }
    }
    m_at = Find('<', m_start + 1, m_end);
    return Part::Text;
}

TagReader::Part TagReader::ReadTag()
{
    m_tagLimit = IsForgiving() ? Find('<', m_at + 1, m_end) : m_end;
    const bool isEndTag = m_at[1] == '/';
    m_at += isEndTag ? 2 : 1;
    const char *name = m_at;
    while (m_at < m_tagLimit && !IsBlank(*m_at) && *m_at != '/' && *m_at != '>')
        ++m_at;
    const char *nameEnd = m_at;
    if (!ReadAttributes()) {
        if (!IsForgiving())
            return Part::Broken;
        m_at = Find('>', nameEnd, m_tagLimit);
        if (m_at == m_tagLimit)
            return Part::Text;
        ++m_at;
        m_attributes.clear();
    }
    m_name = QByteArray(name, nameEnd - name).toLower();
    return isEndTag ? Part::Close : Part::Open;
}

/// False if there is no end of the tag before its limit.
bool TagReader::ReadAttributes()
{
    m_attributes.clear();
    m_hasMoreAttributes = false;
    for (;;) {
        while (m_at < m_tagLimit && (IsBlank(*m_at) || *m_at == '/'))
            ++m_at;
        if (m_at == m_tagLimit)
            return false;
        if (*m_at == '>') {
            ++m_at;
            return true;
        }
        const Attribute attribute = ReadAttribute();
        if (m_attributes.size() < MostAttributes)
            m_attributes.push_back(attribute);
        else
            m_hasMoreAttributes = true;
    }
}

TagReader::Attribute TagReader::ReadAttribute()
{
    const char *start = m_at++; // a leading "=" is part of the name
    while (m_at < m_tagLimit && !IsBlank(*m_at) && *m_at != '/' && *m_at != '>' && *m_at != '=')
        ++m_at;
    const QByteArrayView name(start, m_at);
    QByteArrayView value;
    const char *last = m_at;
    while (m_at < m_tagLimit && IsBlank(*m_at))
        ++m_at;
    if (m_at < m_tagLimit && *m_at == '=') {
        ++m_at;
        while (m_at < m_tagLimit && IsBlank(*m_at))
            ++m_at;
        value = ReadValue();
        last = m_at;
    }
    return {name, value, {start, last}};
}

QByteArrayView TagReader::ReadValue()
{
    const char *start = m_at;
    if (m_at < m_tagLimit && (*m_at == '"' || *m_at == '\'')) {
        ++start;
        const char *furthest = IsForgiving() ? m_start + std::min(LongestTag, m_end - m_start) : m_end;
        const char *closing = start < furthest ? Find(*m_at, start, furthest) : furthest;
        if (closing < furthest) {
            // In quotes a "<" ends nothing.
            if (closing > m_tagLimit)
                m_tagLimit = Find('<', closing, furthest);
            m_at = closing + 1;
        } else {
            closing = m_at = m_tagLimit;
        }
        return {start, std::max(start, closing)};
    }
    while (m_at < m_tagLimit && !IsBlank(*m_at) && *m_at != '>')
        ++m_at;
    return {start, m_at};
}

QByteArrayView TagReader::TakeRawText()
{
    const char *start = m_at;
    for (; (m_at = Find('<', m_at, m_end)) < m_end; ++m_at) {
        const char after = Left() > m_name.size() + 2 ? m_at[m_name.size() + 2] : '>';
        if (Peek(1) == '/' && Left() >= m_name.size() + 2 &&
            qstrnicmp(m_at + 2, m_name.constData(), static_cast<size_t>(m_name.size())) == 0 &&
            (IsBlank(after) || after == '/' || after == '>'))
            break;
    }
    return {start, m_at};
}

const char *TagReader::Find(char wanted, const char *from, const char *end) const
{
    const void *found = std::memchr(from, wanted, static_cast<size_t>(end - from));
    return found ? static_cast<const char *>(found) : end;
}

QByteArray WithoutEntities(QByteArrayView text)
{
    QByteArray decoded;
    decoded.reserve(text.size());
    for (qsizetype at = 0; at < text.size();) {
        qsizetype next = text.indexOf('&', at);
        if (next < 0)
            next = text.size();
        decoded.append(text.data() + at, next - at);
        if (next == text.size())
            break;
        const QByteArrayView rest = text.sliced(next + 1).first(std::min(LongestEntity, text.size() - next - 1));
        const qsizetype end = rest.indexOf(';');
        const QByteArray character = end > 0 ? DecodedEntity(rest.first(end)) : QByteArray();
        if (character.isEmpty())
            decoded += '&';
        else
            decoded += character;
        at = next + 1 + (character.isEmpty() ? 0 : end + 1);
    }
    return decoded;
}
