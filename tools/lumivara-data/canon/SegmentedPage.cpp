#include "lumivara-data/canon/SegmentedPage.h"

#include "lumivara-data/canon/ImportedPage.h"
#include "lumivara-data/canon/SegmentedHead.h"

#include <algorithm>

namespace {

/// What stands behind the colon of an id, without its last number: segments that have it in common are one part.
QByteArrayView PartOf(const QByteArray &id)
{
    const QByteArrayView place = QByteArrayView(id).sliced(id.indexOf(':') + 1);
    const qsizetype dot = place.lastIndexOf('.');
    return dot < 0 ? place : place.first(dot);
}

bool IsBlank(QByteArrayView text)
{
    return text.trimmed().isEmpty();
}

bool HasText(const std::vector<AlignedSegment> &segments, Language language)
{
    return std::any_of(segments.cbegin(), segments.cend(),
                       [&](const AlignedSegment &segment) { return !IsBlank(segment.text[int(language)]); });
}

/// The segments in their mark-up; what has none stands where it stands.
QByteArray MarkedUp(const std::vector<AlignedSegment> &segments, Language language)
{
    qsizetype size = 0;
    for (const AlignedSegment &segment : segments)
        size += segment.markup.size() + segment.text[int(language)].size();
    QByteArray body;
    body.reserve(size);
    for (const AlignedSegment &segment : segments) {
        const QByteArray &text = segment.text[int(language)];
        const qsizetype place = segment.markup.indexOf("{}");
        if (place < 0)
            body.append(segment.markup).append(text);
        else
            body.append(segment.markup.constData(), place)
                .append(text)
                .append(segment.markup.constData() + place + 2, segment.markup.size() - place - 2);
    }
    return body;
}

QByteArray Unmarked(const std::vector<AlignedSegment> &segments, Language language, int title)
{
    QByteArray body;
    QByteArrayView part;
    bool isOpen = false;
    const auto close = [&] {
        body += isOpen ? "</p>\r\n" : "";
        isOpen = false;
    };
    for (size_t at = 0; at < segments.size(); ++at) {
        const AlignedSegment &segment = segments[at];
        const QByteArray &text = segment.text[int(language)];
        if (text.isEmpty())
            continue;
        if (IsOfHead(segment.id)) {
            close();
            const char *tag = static_cast<int>(at) == title ? "h1" : "h2";
            body.append('<').append(tag).append('>').append(text);
            body.append("</").append(tag).append(">\r\n");
            continue;
        }
        if (const QByteArrayView own = PartOf(segment.id); !isOpen || own != part) {
            close();
            body += "<p>";
            isOpen = true;
            part = own;
        } else if (!body.endsWith(' ')) {
            body += ' ';
        }
        body += text;
    }
    close();
    return body;
}

} // namespace

QByteArray SegmentedPage::Single(const std::vector<AlignedSegment> &segments, Language language, bool hasMarkup,
                                 int titleAt, const QByteArray &title, CleaningCounts &counts)
{
    if (!HasText(segments, language))
        return {};
    return ImportedPage::Frame(title, language,
                               hasMarkup ? CleanHtml(MarkedUp(segments, language), counts).html
                                         : Unmarked(segments, language, titleAt));
}

QByteArray SegmentedPage::Parallel(const std::vector<AlignedSegment> &segments, Language other, const QByteArray &title)
{
    if (!HasText(segments, Language::Pali) || !HasText(segments, other))
        return {};
    const bool isMarkedUp = std::any_of(segments.cbegin(), segments.cend(), IsHeading);
    // Several tables, because an engine lays out a table as a whole, and long texts have thousands of rows.
    constexpr int rowsOfTable = 200;
    const QByteArray open = "<table class=\"parallel\">\r\n", close = "</table>\r\n";
    const char *code = other == Language::English ? "en" : "vi";
    QByteArray body = open;
    int rows = 0;
    for (const AlignedSegment &segment : segments) {
        const QByteArray &left = segment.text[int(Language::Pali)], &right = segment.text[int(other)];
        if (IsBlank(left) && IsBlank(right))
            continue;
        const bool isHeading = isMarkedUp ? IsHeading(segment) : IsOfHead(segment.id);
        if (rows > 0 && (isHeading || rows == rowsOfTable)) {
            body += close + open;
            rows = 0;
        }
        ++rows;
        const char *start = isHeading ? "<h3>" : "<p>", *end = isHeading ? "</h3></td>" : "</p></td>";
        body.append("<tr><td lang=\"pi\">").append(start).append(left).append(end);
        body.append("<td lang=\"")
            .append(code)
            .append("\">")
            .append(start)
            .append(right)
            .append(end)
            .append("</tr>\r\n");
    }
    return ImportedPage::Frame(title, Language::Pali, body + close);
}
