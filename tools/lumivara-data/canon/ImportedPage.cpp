#include "lumivara-data/canon/ImportedPage.h"

#include <QList>

#include <cmark.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

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

QByteArray Code(Language language)
{
    constexpr const char *codes[] = {"pi", "vi", "en"};
    return codes[int(language)];
}

QByteArray Head(const QByteArray &title)
{
    return QByteArray("<head>\r\n") + Charset + "<title>" + ImportedPage::Escaped(title) + "</title>\r\n" + Style +
           "</head>\r\n";
}

} // namespace

QByteArray ImportedPage::Escaped(const QByteArray &text)
{
    const auto entityOf = [](char c) {
        return c == '&'    ? "&amp;"
               : c == '<'  ? "&lt;"
               : c == '>'  ? "&gt;"
               : c == '"'  ? "&quot;"
               : c == '\0' ? "\xEF\xBF\xBD"
                           : nullptr;
    };
    const auto isMark = [&](char c) { return uchar(c) <= '>' && c != ' ' && entityOf(c); };
    const char *copied = text.constData();
    const char *end = copied + text.size();
    const char *at = std::find_if(copied, end, isMark);
    if (at == end)
        return text;
    QByteArray escaped;
    escaped.reserve(text.size() + text.size() / 32);
    for (; at != end; at = std::find_if(copied, end, isMark)) {
        escaped.append(copied, at - copied).append(entityOf(*at));
        copied = at + 1;
    }
    return escaped.append(copied, end - copied);
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
    QByteArray lines = text;
    lines.replace("\r\n", "\n").replace('\r', '\n');
    QByteArray body = "<h1>" + Escaped(title) + "</h1>\r\n";
    bool isOpen = false;
    for (const QByteArray &line : lines.split('\n')) {
        const QByteArray words = line.trimmed();
        if (words.isEmpty()) {
            body += isOpen ? "</p>\r\n" : "";
            isOpen = false;
            continue;
        }
        body += isOpen ? "<br>\r\n" : "<p>";
        body += Escaped(words);
        isOpen = true;
    }
    return Frame(title, language, body + (isOpen ? "</p>" : ""));
}

QByteArray ImportedPage::FromMarkdown(const QByteArray &markdown, const QByteArray &title, Language language,
                                      CleaningCounts &counts)
{
    const std::unique_ptr<char, decltype(&std::free)> html(
        cmark_markdown_to_html(markdown.constData(), static_cast<size_t>(markdown.size()), CMARK_OPT_UNSAFE),
        &std::free);
    QByteArray body(html.get());
    if (!body.contains("<h1"))
        body.prepend("<h1>" + Escaped(title) + "</h1>\r\n");
    return FromHtml(body, title, language, counts);
}
