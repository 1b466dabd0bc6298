#include "lumivara-data/sample/PageWriter.h"

#include "common/Tool.h"

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

// The word processors that such pages come from end lines this way.
const QLatin1StringView LineEnd("\r\n");
const QLatin1StringView Font("font-family:\"Segoe UI\",sans-serif");

QString LanguageCode(Language language)
{
    constexpr const char *codes[] = {"pi", "vi", "en"};
    return QLatin1StringView(codes[int(language)]);
}

QString Paragraph(const QString &html, const QString &style, const QString &spanStyle = u"font-size:12.0pt"_s)
{
    return u"<p style='%1;line-height:150%'><span style='%2;%3'>%4</span></p>"_s.arg(style, spanStyle, Font, html) +
           LineEnd;
}

QString Heading(const QString &html)
{
    return u"<h3 style='margin:12.0pt 0cm 6.0pt;line-height:150%'><span style='font-size:13.0pt;%1'>%2</span></h3>"_s
               .arg(Font, html) +
           LineEnd;
}

QString Title(const QString &html)
{
    return u"<p align=\"center\" style='text-align:center;line-height:150%'><b><span style='font-size:150%;%1;"_s.arg(
               Font) +
           u"color:#800000'>%1</span></b></p>"_s.arg(html) + LineEnd;
}

QString TableRow(const QString &text, Language language)
{
    QString html = u"<tr>"_s;
    for (const QString &cell : text.split(u" ; "_s)) {
        html += u"<td valign=\"top\" style='border:solid #BFBFBF 1.0pt;padding:2.0pt 6.0pt'>"_s +
                u"<span style='font-size:11.0pt;%1'>%2</span></td>"_s.arg(Font, InlineHtml(cell, language));
    }
    return html + u"</tr>"_s + LineEnd;
}

QString Note(const Segment &segment, Language language)
{
    const QString code = LanguageCode(language);
    const QString back = u"<a name=\"%1-note-%2\" href=\"#%1-ref-%2\">[%2]</a> "_s.arg(code, segment.argument);
    return Paragraph(back + InlineHtml(segment.In(language), language), u"margin:0cm 0cm 3.0pt"_s,
                     u"font-size:10.0pt"_s);
}

bool AreOneBlock(Segment::Kind a, Segment::Kind b)
{
    return a == b && (a == Segment::Kind::Item || a == Segment::Kind::Row || a == Segment::Kind::Verse);
}

/// Runs of segments that make one list, table or stanza; every other segment alone.
QList<SamplePassage> Groups(const SamplePassage &passage)
{
    QList<SamplePassage> groups;
    for (const Segment &segment : passage) {
        if (groups.isEmpty() || !AreOneBlock(groups.last().last().kind, segment.kind))
            groups.append(SamplePassage());
        groups.last().append(segment);
    }
    return groups;
}

QByteArray Document(const QString &title, Language language, const QString &body)
{
    // The plain text keeps the blank behind the title, where the first word would follow at once.
    const QString head = QStringList{u"<HTML>"_s,
                                     u"<head>"_s,
                                     u"<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />"_s,
                                     u"<title>%1\u00A0</title>"_s,
                                     u"</head>"_s,
                                     u"<body lang=\"%2\" style='%3'>"_s,
                                     u"<div>"_s}
                             .join(LineEnd);
    const QString page = head.arg(InlineHtml(title, language), LanguageCode(language), Font) + LineEnd + body +
                         u"</div>"_s + LineEnd + u"</body>"_s + LineEnd + u"</HTML>"_s + LineEnd;
    return page.toUtf8();
}

void CheckFootnotes(const SamplePassage &passage, Language language, const QString &title)
{
    static const QRegularExpression reference(u"\\[\\^(\\w+)\\]"_s);
    QStringList notes;
    QStringList references;
    for (const Segment &segment : passage) {
        if (segment.kind == Segment::Kind::Note && !segment.In(language).isEmpty())
            notes.append(segment.argument);
        for (auto match = reference.globalMatch(segment.In(language)); match.hasNext();)
            references.append(match.next().captured(1));
    }
    for (const QString &mark : references) {
        if (!notes.contains(mark))
            throw ToolError(u"\"%1\": footnote %2 is missing"_s.arg(title, mark));
    }
}

} // namespace

QString InlineHtml(const QString &text, Language language)
{
    static const QRegularExpression bareAmpersand(u"&(?!#\\d+;|#x[0-9A-Fa-f]+;|\\w+;)"_s);
    static const QRegularExpression reference(u"\\[\\^(\\w+)\\]"_s);
    static const QRegularExpression link(u"\\[([^\\]^][^\\]]*)\\]\\(([^)\\s]+)\\)"_s);
    const QString code = LanguageCode(language);
    QString html = text;
    html.replace(bareAmpersand, u"&amp;"_s);
    html.replace(u'<', u"&lt;"_s);
    html.replace(u'>', u"&gt;"_s);
    html.replace(reference, u"<sup><a name=\"%1-ref-\\1\" href=\"#%1-note-\\1\">[\\1]</a></sup>"_s.arg(code));
    html.replace(link, u"<a href=\"\\2\">\\1</a>"_s);
    html.replace(u" // "_s, u"<br>"_s);
    return html;
}

PageWriter::PageWriter(QHash<QString, QByteArray> pictures) : m_pictures(std::move(pictures)) {}

QString PageWriter::Picture(const Segment &segment, Language language) const
{
    if (!m_pictures.contains(segment.argument))
        throw ToolError(u"there is no picture \"%1\""_s.arg(segment.argument));
    const QString caption = InlineHtml(segment.In(language), language);
    const QString type = segment.argument.endsWith(u".svg"_s) ? u"svg+xml"_s : u"png"_s;
    const QString bytes = QString::fromLatin1(m_pictures[segment.argument].toBase64());
    return u"<p align=\"center\" style='text-align:center'><img alt=\"%1\" src=\"data:image/%2;base64,%3\"></p>"_s.arg(
               caption, type, bytes) +
           LineEnd + Paragraph(u"<i>%1</i>"_s.arg(caption), u"text-align:center"_s, u"font-size:10.0pt"_s);
}

QString PageWriter::Blocks(const SamplePassage &group, Language language) const
{
    QString html;
    for (const Segment &segment : group) {
        if (segment.In(language).isEmpty())
            continue;
        const QString text = InlineHtml(segment.In(language), language);
        switch (segment.kind) {
        case Segment::Kind::Heading:
            html += Heading(text);
            break;
        case Segment::Kind::Paragraph:
            html += Paragraph(text, u"margin:6.0pt 0cm;text-align:justify;text-indent:24.0pt"_s);
            break;
        case Segment::Kind::Verse:
            html += Paragraph(u"<i>%1</i>"_s.arg(text), u"margin:0cm 0cm 6.0pt 48.0pt"_s);
            break;
        case Segment::Kind::Item:
            html += u"<li style='line-height:150%'><span style='font-size:12.0pt;%1'>%2</span></li>"_s.arg(Font, text) +
                    LineEnd;
            break;
        case Segment::Kind::Row:
            html += TableRow(segment.In(language), language);
            break;
        case Segment::Kind::Picture:
            html += Picture(segment, language);
            break;
        case Segment::Kind::Note:
            html += Note(segment, language);
            break;
        }
    }
    if (html.isEmpty())
        return html;
    if (group.first().kind == Segment::Kind::Item)
        return u"<ul>"_s + LineEnd + html + u"</ul>"_s + LineEnd;
    if (group.first().kind == Segment::Kind::Row)
        return u"<table cellspacing=\"0\" style='border-collapse:collapse'>"_s + LineEnd + html + u"</table>"_s +
               LineEnd;
    return html;
}

QByteArray PageWriter::Page(const QString &title, const SamplePassage &passage, Language language) const
{
    CheckFootnotes(passage, language, title);
    QString body;
    for (const SamplePassage &group : Groups(passage))
        body += Blocks(group, language);
    if (body.isEmpty())
        return {};
    return Document(title, language, Title(InlineHtml(title, language)) + body);
}

QByteArray PageWriter::ParallelPage(const QString &paliTitle, const QString &vietnameseTitle,
                                    const SamplePassage &passage) const
{
    // One table for each heading: an engine lays out a table as a whole, and long passages have thousands of rows.
    const QString open = u"<table width=\"100%\" cellspacing=\"0\" style='border-collapse:collapse'>"_s + LineEnd;
    const QString close = u"</table>"_s + LineEnd;
    const auto row = [](const QString &left, const QString &right) {
        const QString cell =
            u"<td width=\"50%\" valign=\"top\" style='width:50%;border:solid #BFBFBF 1.0pt;padding:4.0pt 8.0pt'>"_s;
        return u"<tr>"_s + LineEnd + cell + LineEnd + left + u"</td>"_s + LineEnd + cell + LineEnd + right +
               u"</td>"_s + LineEnd + u"</tr>"_s + LineEnd;
    };
    QString body = open + row(Title(InlineHtml(paliTitle, Language::Pali)),
                              Title(InlineHtml(vietnameseTitle, Language::Vietnamese)));
    for (const SamplePassage &group : Groups(passage)) {
        if (group.first().kind == Segment::Kind::Heading)
            body += close + open;
        body += row(Blocks(group, Language::Pali), Blocks(group, Language::Vietnamese));
    }
    return Document(paliTitle + u" – "_s + vietnameseTitle, Language::Vietnamese, body + close);
}
