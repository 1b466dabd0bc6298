#include "lumivara-data/files/TaggedText.h"

#include <QHash>
#include <QString>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype LongestName = 32;

bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsNameSign(char c)
{
    return IsLetter(c) || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == ':';
}

/// Elements whose content is nothing to read.
bool HoldsNoText(const QByteArray &name)
{
    static const char *const names[] = {"script", "style", "head",  "title", "iframe",   "object",
                                        "svg",    "audio", "video", "rref",  "template", "noscript"};
    return std::any_of(std::begin(names), std::end(names), [&](const char *known) { return name == known; });
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

} // namespace

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

TaggedText::Part TaggedText::Next()
{
    while (m_at < m_text.size()) {
        if (m_text[m_at] == '<' && ReadTag()) {
            if (m_value.isEmpty())
                continue;
            return m_part;
        }
        // A "<" that begins no tag belongs to the text.
        qsizetype end = m_text.indexOf('<', m_at + 1);
        if (end < 0)
            end = m_text.size();
        m_value = Decoded(m_text.sliced(m_at, end - m_at));
        m_at = end;
        return m_part = Part::Text;
    }
    m_value.clear();
    return m_part = Part::End;
}

/// False if there is no tag at the place; an empty name for what is passed over.
bool TaggedText::ReadTag()
{
    const QByteArrayView rest = m_text.sliced(m_at);
    m_value.clear();
    if (rest.startsWith("<!--")) {
        SkipPast("-->");
        return true;
    }
    if (rest.startsWith("<!") || rest.startsWith("<?")) {
        SkipPast(">");
        return true;
    }
    const bool isClosing = rest.startsWith("</");
    qsizetype at = isClosing ? 2 : 1;
    if (at >= rest.size() || !IsLetter(rest[at]))
        return false;
    const qsizetype nameStart = at;
    while (at < rest.size() && at - nameStart < LongestName && IsNameSign(rest[at]))
        ++at;
    const qsizetype end = EndOfTag(m_at + at);
    if (end < 0)
        return false;
    m_value = rest.sliced(nameStart, at - nameStart).toByteArray().toLower();
    const bool isEmptyElement = m_text[end - 1] == '/';
    m_at = end + 1;
    m_part = isClosing ? Part::Close : Part::Open;
    if (!isClosing && !isEmptyElement && HoldsNoText(m_value)) {
        SkipContentOf(m_value);
        m_value.clear();
    }
    return true;
}

/// The place of the ">" that ends a tag; -1 if another tag begins before it. A quote that is never closed is none.
qsizetype TaggedText::EndOfTag(qsizetype at)
{
    for (; at < m_text.size(); ++at) {
        const char c = m_text[at];
        if (c == '>')
            return at;
        if (c == '<')
            return -1;
        if (c != '"' && c != '\'')
            continue;
        bool &hasQuote = m_hasQuote[c == '"' ? 0 : 1];
        const qsizetype closing = hasQuote ? m_text.indexOf(c, at + 1) : -1;
        hasQuote = closing >= 0;
        if (hasQuote)
            at = closing;
    }
    return -1;
}

void TaggedText::SkipPast(QByteArrayView end)
{
    const qsizetype found = m_text.indexOf(end, m_at);
    m_at = found < 0 ? m_text.size() : found + end.size();
}

void TaggedText::SkipContentOf(const QByteArray &name)
{
    while (m_at < m_text.size()) {
        SkipPast("</");
        const QByteArrayView found = m_text.sliced(m_at).first(std::min(name.size(), m_text.size() - m_at));
        if (found.toByteArray().toLower() == name) {
            SkipPast(">");
            return;
        }
    }
}

QByteArray TaggedText::Decoded(QByteArrayView text) const
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
        const QByteArrayView rest = text.sliced(next + 1).first(std::min(LongestName, text.size() - next - 1));
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
