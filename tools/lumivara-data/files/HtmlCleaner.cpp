#include "lumivara-data/files/HtmlCleaner.h"

#include "common/Report.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <string_view>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::string_view_literals;

namespace {

template <size_t Size>
bool IsOneOf(const QByteArray &name, const std::array<std::string_view, Size> &names)
{
    const std::string_view wanted(name.constData(), static_cast<size_t>(name.size()));
    return std::find(names.begin(), names.end(), wanted) != names.end();
}

constexpr std::array DroppedTags{"script"sv, "base"sv, "link"sv, "plaintext"sv};
constexpr std::array FrameTags{"iframe"sv, "frame"sv,  "frameset"sv, "object"sv,
                               "embed"sv,  "applet"sv, "portal"sv,   "param"sv};
constexpr std::array FormTags{"form"sv,   "input"sv,    "button"sv,   "select"sv,   "option"sv, "optgroup"sv,
                              "output"sv, "textarea"sv, "fieldset"sv, "datalist"sv, "keygen"sv, "isindex"sv};
constexpr std::array RawTags{"title"sv, "textarea"sv, "xmp"sv, "noembed"sv, "noframes"sv};
constexpr std::array FetchingAttributes{"src"sv,      "srcset"sv,   "srcdoc"sv,  "poster"sv, "background"sv,
                                        "lowsrc"sv,   "dynsrc"sv,   "data"sv,    "code"sv,   "archive"sv,
                                        "codebase"sv, "classid"sv,  "action"sv,  "ping"sv,   "formaction"sv,
                                        "manifest"sv, "longdesc"sv, "profile"sv, "cite"sv,   "imagesrcset"sv};

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Without comments, with escapes undone, in lower case: what a browser reads, as far as names go.
QByteArray PlainCss(const QByteArray &css)
{
    QByteArray plain;
    plain.reserve(css.size());
    for (qsizetype i = 0; i < css.size(); ++i) {
        if (css[i] == '/' && i + 1 < css.size() && css[i + 1] == '*') {
            const qsizetype end = css.indexOf("*/", i + 2);
            if (end < 0)
                break;
            i = end + 1;
        } else if (css[i] == '\\' && i + 1 < css.size()) {
            qsizetype end = i + 1;
            while (end < css.size() && end < i + 7 && std::isxdigit(uchar(css[end])))
                ++end;
            if (end > i + 1) {
                const uint code = css.mid(i + 1, end - i - 1).toUInt(nullptr, 16);
                plain.append(code < 0x80 ? char(code) : '?');
                i = end < css.size() && IsBlank(css[end]) ? end : end - 1;
            } else {
                plain.append(css[++i]);
            }
        } else {
            plain.append(css[i]);
        }
    }
    return plain.toLower();
}

/// True if a value leads to a picture inside the page, or to a place in it.
bool StaysInside(QByteArrayView value)
{
    while (!value.isEmpty() && (IsBlank(value.front()) || value.front() == '"' || value.front() == '\''))
        value = value.sliced(1);
    return value.startsWith('#') ||
           value.first(qMin<qsizetype>(value.size(), 11)).toByteArray().toLower() == "data:image/";
}

bool CssStaysInside(const QByteArray &css)
{
    const QByteArray plain = PlainCss(css);
    for (const char *fetching : {"@import", "image-set", "expression(", "behavior", "-moz-binding", "image(", "src("}) {
        if (plain.contains(fetching))
            return false;
    }
    for (qsizetype at = plain.indexOf("url("); at >= 0; at = plain.indexOf("url(", at + 1)) {
        if (!StaysInside(QByteArrayView(plain).sliced(at + 4)))
            return false;
    }
    return true;
}

/// The same of an attribute's value. Other references to characters than those to quotes could hide an address, and
/// "<" is written as one.
bool StyleStaysInside(QByteArray style)
{
    style.replace("&quot;", "\"");
    return !style.contains('&') && !style.contains('<') && CssStaysInside(style);
}

/// A style sheet with its plain references taken out; empty where that is not enough.
QByteArray CleanCss(const QByteArray &css, CleaningCounts &counts)
{
    if (CssStaysInside(css))
        return css;
    ++counts.references;
    QByteArray cleaned;
    const QByteArray lower = css.toLower();
    qsizetype copied = 0;
    for (qsizetype at = 0; at < css.size();) {
        const QByteArrayView rest = QByteArrayView(lower).sliced(at);
        const bool isImport = rest.startsWith("@import");
        const bool isAddress = rest.startsWith("url(");
        if (!isImport && !(isAddress && !StaysInside(QByteArrayView(css).sliced(at + 4)))) {
            ++at;
            continue;
        }
        cleaned.append(css.constData() + copied, at - copied);
        const qsizetype end = css.indexOf(isImport ? ';' : ')', at);
        at = copied = end < 0 ? css.size() : end + 1;
        if (isAddress)
            cleaned.append("none");
    }
    cleaned.append(css.constData() + copied, css.size() - copied);
    return CssStaysInside(cleaned) ? cleaned : QByteArray();
}

/// True if a link may stay: a place in the page, a relative one, or one that the reader hands to the system.
bool IsLink(const QByteArray &value)
{
    QByteArray scheme;
    for (const char c : value) {
        if (uchar(c) <= ' ')
            continue;
        if (c == '/' || c == '?' || c == '#')
            return true;
        // A reference to a character could hide the colon, and "<" is written as one.
        if (c == '&' || c == '<')
            return false;
        if (c == ':')
            return scheme == "http" || scheme == "https" || scheme == "mailto" || scheme == "ftp";
        scheme.append(char(std::tolower(uchar(c))));
    }
    return true;
}

struct Attribute
{
    QByteArray name; ///< lower case
    QByteArray value;
    QByteArrayView source; ///< as it stands
};

class Cleaner
{
public:
    Cleaner(const QByteArray &html, CleaningCounts &counts)
        : m_at(html.constData()), m_end(m_at + html.size()), m_counts(counts)
    {
        m_out.html.reserve(html.size() + html.size() / 64);
    }

    CleanedHtml Run()
    {
        while (m_at < m_end) {
            const void *found = std::memchr(m_at, '<', static_cast<size_t>(m_end - m_at));
            const char *open = found ? static_cast<const char *>(found) : m_end;
            m_out.html.append(m_at, open - m_at);
            m_at = open;
            if (m_at < m_end)
                ReadMarkup();
        }
        return std::move(m_out);
    }

private:
    char Peek(qsizetype ahead) const { return m_end - m_at > ahead ? m_at[ahead] : '\0'; }
    QByteArrayView Rest() const { return {m_at, m_end - m_at}; }

    void ReadMarkup()
    {
        if (Rest().startsWith("<!--")) {
            const qsizetype end = Rest().sliced(2).indexOf("-->");
            m_at = end < 0 ? m_end : m_at + 2 + end + 3;
        } else if (Peek(1) == '!' || Peek(1) == '?' || (Peek(1) == '/' && !IsLetter(Peek(2)) && m_end - m_at > 2)) {
            const QByteArrayView declaration = UpTo('>');
            if (declaration.first(qMin<qsizetype>(declaration.size(), 9)).toByteArray().toLower() == "<!doctype")
                AppendTag(declaration);
        } else if (Peek(1) == '/' && IsLetter(Peek(2))) {
            ReadEndTag();
        } else if (IsLetter(Peek(1))) {
            ReadStartTag();
        } else {
            m_out.html.append("&lt;");
            ++m_at;
        }
    }

    QByteArrayView UpTo(char last)
    {
        const char *start = m_at;
        const void *found = std::memchr(m_at, last, static_cast<size_t>(m_end - m_at));
        m_at = found ? static_cast<const char *>(found) + 1 : m_end;
        return {start, m_at - start};
    }

    QByteArray Name()
    {
        const char *start = m_at;
        while (m_at < m_end && !IsBlank(*m_at) && *m_at != '/' && *m_at != '>')
            ++m_at;
        return QByteArray(start, m_at - start).toLower();
    }

    /// False if the page ends inside the tag.
    bool ReadAttributes(std::vector<Attribute> &attributes)
    {
        for (;;) {
            while (m_at < m_end && (IsBlank(*m_at) || *m_at == '/'))
                ++m_at;
            if (m_at == m_end)
                return false;
            if (*m_at == '>') {
                ++m_at;
                return true;
            }
            attributes.push_back(ReadAttribute());
        }
    }

    Attribute ReadAttribute()
    {
        const char *start = m_at++; // a leading "=" is part of the name
        while (m_at < m_end && !IsBlank(*m_at) && *m_at != '/' && *m_at != '>' && *m_at != '=')
            ++m_at;
        Attribute attribute{QByteArray(start, m_at - start).toLower(), {}, {}};
        const char *end = m_at;
        while (m_at < m_end && IsBlank(*m_at))
            ++m_at;
        if (m_at < m_end && *m_at == '=') {
            ++m_at;
            while (m_at < m_end && IsBlank(*m_at))
                ++m_at;
            attribute.value = ReadValue();
            end = m_at;
        }
        attribute.source = {start, end - start};
        return attribute;
    }

    QByteArray ReadValue()
    {
        if (m_at == m_end)
            return {};
        if (*m_at == '"' || *m_at == '\'') {
            const char quote = *m_at++;
            const QByteArrayView value = UpTo(quote);
            return value.endsWith(quote) ? value.chopped(1).toByteArray() : value.toByteArray();
        }
        const char *start = m_at;
        while (m_at < m_end && !IsBlank(*m_at) && *m_at != '>')
            ++m_at;
        return QByteArray(start, m_at - start);
    }

    void ReadEndTag()
    {
        const char *start = m_at;
        m_at += 2;
        const QByteArray name = Name();
        std::vector<Attribute> attributes;
        const bool isWhole = ReadAttributes(attributes);
        if (!isWhole || IsDropped(name))
            return;
        if (attributes.empty())
            AppendTag({start, m_at - start});
        else
            AppendTag("</" + name + '>');
    }

    static bool IsDropped(const QByteArray &name)
    {
        return IsOneOf(name, DroppedTags) || IsOneOf(name, FrameTags) || IsOneOf(name, FormTags) ||
               (IsOneOf(name, RawTags) && name != "title");
    }

    void ReadStartTag()
    {
        const char *start = m_at++;
        const QByteArray name = Name();
        std::vector<Attribute> attributes;
        if (!ReadAttributes(attributes))
            return;
        if (IsDropped(name)) {
            CountDropped(name);
        } else if (name != "meta" || KeepsMeta(attributes)) {
            if (name == "body" && m_out.bodyTag < 0)
                m_out.bodyTag = m_out.html.size();
            WriteTag(name, attributes, {start, m_at - start});
            if (name == "head")
                m_out.headStart = m_out.headStart < 0 ? m_out.html.size() : m_out.headStart;
            else if (name == "html")
                m_out.htmlStart = m_out.htmlStart < 0 ? m_out.html.size() : m_out.htmlStart;
        }
        if (name == "script" || name == "iframe")
            RawTextOf(name);
        else if (name == "style")
            WriteStyle(RawTextOf(name));
        else if (IsOneOf(name, RawTags))
            m_out.html.append(RawTextOf(name).toByteArray().replace('<', "&lt;"));
    }

    void CountDropped(const QByteArray &name)
    {
        if (name == "script")
            ++m_counts.scripts;
        else if (IsOneOf(name, FrameTags))
            ++m_counts.frames;
        else if (IsOneOf(name, FormTags))
            ++m_counts.forms;
        else if (name == "base" || name == "link")
            ++m_counts.references;
    }

    /// The charset is said once, by the page's own frame; other orders to the browser have no business in a page.
    bool KeepsMeta(const std::vector<Attribute> &attributes)
    {
        for (const Attribute &attribute : attributes) {
            if (attribute.name == "http-equiv" && attribute.value.trimmed().toLower() == "refresh")
                ++m_counts.refreshes;
            // Readers of few words look for a charset anywhere in the tag.
            if (attribute.name == "http-equiv" || attribute.source.toByteArray().toLower().contains("charset"))
                return false;
        }
        return true;
    }

    bool KeepsAttribute(const QByteArray &tag, const Attribute &attribute)
    {
        // Behind another attribute it would be that one's value.
        if (attribute.name.startsWith('='))
            return false;
        if (attribute.name.startsWith("on")) {
            ++m_counts.handlers;
            return false;
        }
        bool keeps = true;
        const QByteArray name = attribute.name.mid(attribute.name.lastIndexOf(':') + 1);
        if (name == "href")
            keeps = tag == "a" || tag == "area" ? IsLink(attribute.value) : attribute.value.trimmed().startsWith('#');
        else if (name == "src" && tag == "img")
            keeps = StaysInside(attribute.value);
        else if (name == "style")
            keeps = StyleStaysInside(attribute.value);
        else
            keeps = !IsOneOf(name, FetchingAttributes);
        if (!keeps)
            ++m_counts.references;
        return keeps;
    }

    void WriteTag(const QByteArray &name, const std::vector<Attribute> &attributes, QByteArrayView source)
    {
        std::vector<const Attribute *> kept;
        for (const Attribute &attribute : attributes) {
            if (KeepsAttribute(name, attribute))
                kept.push_back(&attribute);
        }
        if (kept.size() == attributes.size()) {
            AppendTag(source);
            return;
        }
        QByteArray tag = '<' + name;
        for (const Attribute *attribute : kept)
            tag.append(' ').append(attribute->source);
        // Behind a bare value the slash would belong to that.
        AppendTag(tag.append(source.endsWith("/>") && tag.endsWith('"') ? "/>" : ">"));
    }

    /// A reader of few words, such as one that looks for the charset, takes each "<" for a tag's begin: inside of one
    /// it is written as a reference.
    void AppendTag(QByteArrayView tag)
    {
        if (tag.lastIndexOf('<') > 0)
            m_out.html.append('<').append(tag.sliced(1).toByteArray().replace('<', "&lt;"));
        else
            m_out.html.append(tag);
    }

    /// What stands between a tag and its end tag, which stays to be read.
    QByteArrayView RawTextOf(const QByteArray &name)
    {
        const char *start = m_at;
        while (m_at < m_end) {
            UpTo('<');
            const QByteArrayView rest = Rest();
            if (m_at == m_end && (start == m_end || m_end[-1] != '<'))
                break;
            const char after = rest.size() > name.size() + 1 ? rest[name.size() + 1] : '>';
            if (rest.startsWith('/') && rest.size() > name.size() &&
                qstrnicmp(rest.data() + 1, name.constData(), static_cast<size_t>(name.size())) == 0 &&
                (IsBlank(after) || after == '/' || after == '>')) {
                --m_at;
                break;
            }
        }
        return {start, m_at - start};
    }

    void WriteStyle(QByteArrayView source)
    {
        // Blanks in their place, so that nothing new is made of what stands on both sides.
        QByteArray css = source.toByteArray().replace("<!--", " ").replace("-->", " ").replace('<', ' ');
        css = CleanCss(css, m_counts).trimmed();
        // The plain text of a page is what stands outside of "<" and ">": so no word of a style is found as text.
        const bool canHide = !css.contains('>');
        m_out.html.append(canHide ? "<!--" + css + "-->" : css);
    }

    const char *m_at;
    const char *m_end;
    CleaningCounts &m_counts;
    CleanedHtml m_out;
};

} // namespace

CleaningCounts &CleaningCounts::operator+=(const CleaningCounts &other)
{
    scripts += other.scripts;
    handlers += other.handlers;
    references += other.references;
    frames += other.frames;
    forms += other.forms;
    refreshes += other.refreshes;
    return *this;
}

void CleaningCounts::Tell(Report &report) const
{
    const std::pair<QString, qsizetype> counts[] = {
        {u"scripts left out"_s, scripts}, {u"handlers left out"_s, handlers}, {u"references left out"_s, references},
        {u"frames left out"_s, frames},   {u"form parts left out"_s, forms},  {u"refreshes left out"_s, refreshes}};
    for (const auto &[what, number] : counts) {
        if (number > 0)
            report.Count(what, number);
    }
}

CleanedHtml CleanHtml(const QByteArray &html, CleaningCounts &counts)
{
    return Cleaner(html, counts).Run();
}
