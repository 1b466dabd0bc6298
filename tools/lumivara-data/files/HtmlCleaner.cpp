#include "lumivara-data/files/HtmlCleaner.h"

#include "base/Messages.h"
#include "common/Report.h"
#include "lumivara-data/files/TagReader.h"

#include <algorithm>
#include <array>
#include <cctype>
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
bool IsLink(QByteArrayView value)
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

class Cleaner
{
public:
    Cleaner(const QByteArray &html, CleaningCounts &counts)
        : m_html(html), m_reader(html, TagReader::Manner::Browser), m_counts(counts)
    {
        if (html.size() > LargestPage)
            throw PageFault::TooLarge();
        m_out.html.reserve(html.size() + html.size() / 64);
    }

    CleanedHtml Run()
    {
        using Part = TagReader::Part;
        for (Part part = m_reader.Next(); part != Part::End; part = m_reader.Next()) {
            if (m_reader.HasMoreAttributes())
                throw PageFault(Line(),
                                Sentence({u"một thẻ có hơn %1 thuộc tính", u"a tag has more than %1 attributes"})
                                    .arg(TagReader::MostAttributes));
            if (part == Part::Text)
                WriteText(m_reader.Source());
            else if (part == Part::Open)
                WriteStartTag();
            else if (part == Part::Close)
                WriteEndTag();
            else if (part == Part::Aside &&
                     m_reader.Source().first(qMin<qsizetype>(m_reader.Source().size(), 9)).toByteArray().toLower() ==
                         "<!doctype")
                AppendTag(m_reader.Source());
            if (m_out.html.size() > LargestPage)
                throw PageFault::TooLarge(Line());
        }
        return std::move(m_out);
    }

private:
    using Attribute = TagReader::Attribute;

    /// Of the part that was read last.
    qsizetype Line() const { return std::count(m_html.constData(), m_reader.Source().data(), '\n') + 1; }

    void WriteText(QByteArrayView text)
    {
        const bool hasTagSign = text.startsWith('<');
        if (hasTagSign)
            m_out.html.append("&lt;");
        m_out.html.append(text.sliced(hasTagSign ? 1 : 0));
    }

    void WriteEndTag()
    {
        if (IsDropped(m_reader.Name()))
            return;
        if (m_reader.Attributes().empty())
            AppendTag(m_reader.Source());
        else
            AppendTag("</" + m_reader.Name() + '>');
    }

    static bool IsDropped(const QByteArray &name)
    {
        return IsOneOf(name, DroppedTags) || IsOneOf(name, FrameTags) || IsOneOf(name, FormTags) ||
               (IsOneOf(name, RawTags) && name != "title");
    }

    void WriteStartTag()
    {
        const QByteArray name = m_reader.Name();
        if (IsDropped(name)) {
            CountDropped(name);
        } else if (name != "meta" || KeepsMeta(m_reader.Attributes())) {
            if (name == "body" && m_out.bodyTag < 0)
                m_out.bodyTag = m_out.html.size();
            WriteTag(name, m_reader.Attributes(), m_reader.Source());
            if (name == "head")
                m_out.headStart = m_out.headStart < 0 ? m_out.html.size() : m_out.headStart;
            else if (name == "html")
                m_out.htmlStart = m_out.htmlStart < 0 ? m_out.html.size() : m_out.htmlStart;
        }
        if (name == "script" || name == "iframe")
            m_reader.TakeRawText();
        else if (name == "style")
            WriteStyle(m_reader.TakeRawText());
        else if (IsOneOf(name, RawTags))
            WriteRawText(name, m_reader.TakeRawText().toByteArray().replace('<', "&lt;"));
    }

    void WriteRawText(const QByteArray &name, const QByteArray &text)
    {
        m_out.html.append(text);
        if (name == "title" && m_out.titleEnd < 0 && !text.trimmed().isEmpty())
            m_out.titleEnd = m_out.html.size();
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
            const bool isOrder = attribute.name.compare("http-equiv", Qt::CaseInsensitive) == 0;
            if (isOrder && attribute.value.trimmed().compare("refresh", Qt::CaseInsensitive) == 0)
                ++m_counts.refreshes;
            // Readers of few words look for a charset anywhere in the tag.
            if (isOrder || attribute.source.toByteArray().toLower().contains("charset"))
                return false;
        }
        return true;
    }

    bool KeepsAttribute(const QByteArray &tag, const Attribute &attribute)
    {
        // Behind another attribute it would be that one's value.
        if (attribute.name.startsWith('='))
            return false;
        const QByteArray lower = attribute.name.toByteArray().toLower();
        if (lower.startsWith("on")) {
            ++m_counts.handlers;
            return false;
        }
        bool keeps = true;
        const QByteArray name = lower.mid(lower.lastIndexOf(':') + 1);
        if (name == "href")
            keeps = tag == "a" || tag == "area" ? IsLink(attribute.value) : attribute.value.trimmed().startsWith('#');
        else if (name == "src" && tag == "img")
            keeps = StaysInside(attribute.value);
        else if (name == "style")
            keeps = StyleStaysInside(attribute.value.toByteArray());
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

    void WriteStyle(QByteArrayView source)
    {
        // Blanks in their place, so that nothing new is made of what stands on both sides.
        QByteArray css = source.toByteArray().replace("<!--", " ").replace("-->", " ").replace('<', ' ');
        css = CleanCss(css, m_counts).trimmed();
        // The plain text of a page is what stands outside of "<" and ">": so no word of a style is found as text.
        const bool canHide = !css.contains('>');
        m_out.html.append(canHide ? "<!--" + css + "-->" : css);
    }

    const QByteArray &m_html;
    TagReader m_reader;
    CleaningCounts &m_counts;
    CleanedHtml m_out;
};

} // namespace

PageFault PageFault::TooLarge(qsizetype line)
{
    return {line, Sentence({u"trang lớn hơn %1 MiB", u"the page has more than %1 MiB"}).arg(LargestPage >> 20)};
}

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
        {Sentence({u"đoạn mã bị bỏ", u"scripts left out"}), scripts},
        {Sentence({u"lệnh gắn trong thẻ bị bỏ", u"handlers left out"}), handlers},
        {Sentence({u"liên kết ra ngoài bị bỏ", u"references left out"}), references},
        {Sentence({u"khung bị bỏ", u"frames left out"}), frames},
        {Sentence({u"phần biểu mẫu bị bỏ", u"form parts left out"}), forms},
        {Sentence({u"lệnh tải lại bị bỏ", u"refreshes left out"}), refreshes}};
    for (const auto &[what, number] : counts) {
        if (number > 0)
            report.Count(what, number);
    }
}

CleanedHtml CleanHtml(const QByteArray &html, CleaningCounts &counts)
{
    return Cleaner(html, counts).Run();
}
