#include "lumivara-data/canon/ImportedPage.h"

#include "base/Messages.h"

#include <QString>

#include <cmark.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// In a comment, because the plain text of a page is what stands outside of "<" and ">": else the words of the style
/// would be found as text. Browsers skip these two marks. The percentages of the columns hold on a narrow window too.
constexpr char Style[] =
    "<style><!--\r\n"
    "body{font-family:\"Segoe UI\",sans-serif}\r\n"
    "p,li,dd,dt{line-height:150%}\r\n"
    "h1{font-size:150%;color:#800000;text-align:center}\r\n"
    "h2,h3,h4,h5,h6{font-size:115%}\r\n"
    "header ul{list-style:none;padding:0;text-align:center}\r\n"
    "table.parallel{width:100%;table-layout:fixed;border-collapse:collapse}\r\n"
    "table.parallel td{width:50%;vertical-align:top;padding:2pt 2%;border:1px solid #BFBFBF;overflow-wrap:break-word;"
    "word-break:break-word}\r\n"
    "table.parallel p{margin:0}\r\n"
    "--></style>\r\n";

constexpr char Charset[] = "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />\r\n";

/// A blank that the plain text keeps: else the title and the first word of the page would be one in samples of hits.
constexpr char TitleEnd[] = "\xC2\xA0";

QByteArray Code(Language language)
{
    constexpr const char *codes[] = {"pi", "vi", "en"};
    return codes[int(language)];
}

const char *EntityOf(char c)
{
    return c == '&'    ? "&amp;"
           : c == '<'  ? "&lt;"
           : c == '>'  ? "&gt;"
           : c == '"'  ? "&quot;"
           : c == '\0' ? "\xEF\xBF\xBD"
                       : nullptr;
}

bool IsEscaped(char c)
{
    return uchar(c) <= '>' && c != ' ' && EntityOf(c);
}

/// Depth of what a line of Markdown begins; a line of nothing but marks may be a rule.
qsizetype DepthOf(QByteArrayView line)
{
    qsizetype depth = 0;
    for (qsizetype at = 0; at < line.size(); ++at) {
        const char c = line[at];
        const bool endsMark = at + 1 == line.size() || line[at + 1] == ' ' || line[at + 1] == '\t';
        if (c == '>' || ((c == '-' || c == '+' || c == '*' || c == '.' || c == ')') && endsMark))
            ++depth;
        else if (c != ' ' && c != '\t' && (c < '0' || c > '9'))
            break;
    }
    return depth;
}

/// The parser of Markdown holds a tree of all that may be a mark.
void RefuseTangledMarkdown(const QByteArray &markdown)
{
    constexpr QByteArrayView signs("\n\r!#&()*+-.:<=>[\\]_`~\"'");
    bool mayBeMark[256] = {};
    for (const char sign : signs)
        mayBeMark[uchar(sign)] = true;
    if (ImportedPage::EscapedSize(markdown) > LargestPage)
        throw PageFault::TooLarge();
    qsizetype marks = 0, line = 1;
    const char *const end = markdown.constData() + markdown.size();
    for (const char *at = markdown.constData(); at < end; ++line) {
        const char *lineEnd = std::find(at, end, '\n');
        marks += 1 + std::count_if(at, lineEnd, [&](char c) { return mayBeMark[uchar(c)]; });
        if (marks > ImportedPage::MostMarks)
            throw PageFault(line, Sentence({u"Markdown có hơn %1 ký hiệu có thể là dấu định dạng",
                                            u"the Markdown has more than %1 signs that may be marks"})
                                      .arg(ImportedPage::MostMarks));
        if (DepthOf(QByteArrayView(at, lineEnd)) > ImportedPage::DeepestMarks)
            throw PageFault(line, Sentence({u"dòng mở đầu hơn %1 trích dẫn hay danh sách",
                                            u"the line begins more than %1 quotations or lists"})
                                      .arg(ImportedPage::DeepestMarks));
        at = lineEnd + 1;
    }
}

QByteArray Head(const QByteArray &title)
{
    return QByteArray("<head>\r\n") + Charset + "<title>" + ImportedPage::Escaped(title) + TitleEnd + "</title>\r\n" +
           Style + "</head>\r\n";
}

} // namespace

QByteArray ImportedPage::Escaped(const QByteArray &text)
{
    const char *copied = text.constData();
    const char *end = copied + text.size();
    const char *at = std::find_if(copied, end, IsEscaped);
    if (at == end)
        return text;
    QByteArray escaped;
    escaped.reserve(text.size() + text.size() / 32);
    for (; at != end; at = std::find_if(copied, end, IsEscaped)) {
        escaped.append(copied, at - copied).append(EntityOf(*at));
        copied = at + 1;
    }
    return escaped.append(copied, end - copied);
}

qsizetype ImportedPage::EscapedSize(QByteArrayView text)
{
    qsizetype size = text.size();
    for (const char c : text)
        size += IsEscaped(c) ? qsizetype(std::strlen(EntityOf(c))) - 1 : 0;
    return size;
}

QByteArray ImportedPage::Frame(const QByteArray &title, Language language, const QByteArray &body)
{
    const QByteArray start = "<HTML>\r\n" + Head(title) + "<body lang=\"" + Code(language) + "\">\r\n";
    constexpr QByteArrayView end = "\r\n</body>\r\n</HTML>\r\n";
    QByteArray page;
    page.reserve(start.size() + body.size() + end.size());
    return page.append(start).append(body).append(end);
}

QByteArray ImportedPage::FromHtml(const QByteArray &html, const QByteArray &title, Language language,
                                  CleaningCounts &counts)
{
    CleanedHtml page = CleanHtml(html, counts);
    if (page.titleEnd >= 0) {
        page.html.insert(page.titleEnd, TitleEnd);
        for (qsizetype *place : {&page.headStart, &page.htmlStart, &page.bodyTag})
            *place += *place > page.titleEnd ? qsizetype(sizeof TitleEnd) - 1 : 0;
    }
    // What the page says of its own looks comes later and wins.
    const bool hasManner = page.html.contains("Segoe UI") && page.html.contains("150%");
    if (page.headStart >= 0)
        return page.html.insert(page.headStart, QByteArray("\r\n") + Charset + (hasManner ? "" : Style));
    if (page.htmlStart >= 0)
        return page.html.insert(page.htmlStart, "\r\n" + Head(title));
    if (page.bodyTag >= 0)
        return "<HTML>\r\n" + Head(title) + page.html.mid(page.bodyTag);
    return Frame(title, language, page.html);
}

QByteArray ImportedPage::FromText(const QByteArray &text, const QByteArray &title, Language language)
{
    QByteArray body = "<h1>" + Escaped(title) + "</h1>\r\n";
    bool isOpen = false;
    qsizetype number = 0;
    for (qsizetype at = 0; at <= text.size();) {
        const auto *const end =
            std::find_if(text.cbegin() + at, text.cend(), [](char c) { return c == '\n' || c == '\r'; });
        const QByteArrayView words = QByteArrayView(text.cbegin() + at, end).trimmed();
        at = end - text.cbegin() + (QByteArrayView(end, text.cend()).startsWith("\r\n") ? 2 : 1);
        ++number;
        if (body.size() + EscapedSize(words) > LargestPage)
            throw PageFault::TooLarge(number);
        if (words.isEmpty()) {
            body += isOpen ? "</p>\r\n" : "";
            isOpen = false;
            continue;
        }
        body += isOpen ? "<br>\r\n" : "<p>";
        body += Escaped(words.toByteArray());
        isOpen = true;
    }
    return Frame(title, language, body + (isOpen ? "</p>" : ""));
}

QByteArray ImportedPage::FromMarkdown(const QByteArray &markdown, const QByteArray &title, Language language,
                                      CleaningCounts &counts)
{
    RefuseTangledMarkdown(markdown);
    const std::unique_ptr<char, decltype(&std::free)> html(
        cmark_markdown_to_html(markdown.constData(), static_cast<size_t>(markdown.size()), CMARK_OPT_UNSAFE),
        &std::free);
    QByteArray body(html.get());
    if (!body.contains("<h1"))
        body.prepend("<h1>" + Escaped(title) + "</h1>\r\n");
    return FromHtml(body, title, language, counts);
}
