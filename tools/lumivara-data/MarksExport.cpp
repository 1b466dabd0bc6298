#include "lumivara-data/MarksExport.h"

#include "lumivara-data/DataFile.h"
#include "marks/Functions.h"
#include "stores/FIBDataSet.h"

#include <QRegularExpression>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr QChar ByteOrderMark(0xFEFF);
/// Stand for a line end and a blank while the tags are taken out; no text holds them.
const QString LineMark(QChar(0xFFFF));
const QString BlankMark(QChar(0xFFFE));

QString PriorityName(int priority)
{
    static constexpr std::array names{u"Đặc biệt", u"Cao", u"Bình thường", u"Thấp"};
    const auto index = static_cast<size_t>(priority - 1);
    return index < names.size() ? QString::fromUtf16(names[index]) : QString::number(priority);
}

/// The name that a document puts above a text's marks.
QString TextName(const ExportedMark &mark)
{
    QStringList names{mark.nameVietnamese, mark.namePali, mark.nameEnglish};
    names.removeAll(QString());
    return names.isEmpty() ? u"%1-%2"_s.arg(mark.collection).arg(mark.text) : names.join(u" · "_s);
}

QString Title(const ExportedMark &mark)
{
    const QString title = QString(mark.title).remove(ByteOrderMark).simplified();
    return title.isEmpty() ? u"#%1"_s.arg(mark.key) : title;
}

bool IsSameText(const ExportedMark &left, const ExportedMark &right)
{
    return left.collection == right.collection && left.text == right.text;
}

/// "Cao · 2024-02-29 23:59 · keywords"
QString Facts(const ExportedMark &mark)
{
    QStringList facts{PriorityName(mark.priority), mark.time.toString(u"yyyy-MM-dd HH:mm"_s), mark.keywords};
    facts.removeAll(QString());
    return facts.join(u" · "_s);
}

QString WithUnixLineEnds(QString text)
{
    return text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
}

QString HtmlLines(const QString &text)
{
    return WithUnixLineEnds(text).toHtmlEscaped().replace(u'\n', u"<br>\n"_s);
}

/// Text that Markdown shows as it stands, each line as a line of its own behind `prefix`.
QString MarkdownLines(const QString &text, const QString &prefix)
{
    static const QRegularExpression special(uR"(([\\`*_{}\[\]<>()#+\-.!|~&]))"_s);
    QStringList lines = WithUnixLineEnds(text).replace(special, uR"(\\1)"_s).split(u'\n');
    for (QString &line : lines)
        line = prefix + line.trimmed();
    return lines.join(u"  \n"_s) + u'\n';
}

QString CsvCell(QString text)
{
    return u'"' + text.replace(u'"', u"\"\""_s) + u'"';
}

} // namespace

QList<ExportedMark> ReadMarks(DataFile &file)
{
    TpFIBDataSet rows;
    rows.SetDatabase(&file.Database());
    rows.SetTransaction(&file.Transaction());
    rows.SelectSQL() = QStringList{
        u"select F.ID_FOC, F.NIK_SUT, F.NIC_SUT, S.NAME_SUT_VIE, S.NAME_SUT_PAL, S.NAME_SUT_ENG, F.NAME_FOC,"_s,
        u"F.KEYWORD_FOC, F.DESC_FOC, F.PRIORITY_FOC, F.DATETIME_FOC, F.TEXT_FOC from SUTTA_TEXT_FOCUS F"_s,
        u"left join SUTTA_LIST S on S.NIK_SUT = F.NIK_SUT and S.NIC_SUT = F.NIC_SUT"_s,
        u"order by F.NIK_SUT, F.NIC_SUT, F.ID_FOC"_s};
    QList<ExportedMark> marks;
    for (rows.Open(); !rows.Eof(); rows.Next()) {
        const auto text = [&rows](const QString &name) { return rows.FieldByName(name).AsString(); };
        const auto number = [&rows](const QString &name) { return rows.FieldByName(name).AsInteger(); };
        QString html = QString::fromUtf8(rows.FieldByName(u"TEXT_FOC"_s).AsBytes());
        if (html.startsWith(ByteOrderMark))
            html.remove(0, 1);
        marks.append({number(u"ID_FOC"_s), number(u"NIK_SUT"_s), number(u"NIC_SUT"_s), text(u"NAME_SUT_VIE"_s),
                      text(u"NAME_SUT_PAL"_s), text(u"NAME_SUT_ENG"_s), text(u"NAME_FOC"_s), text(u"KEYWORD_FOC"_s),
                      text(u"DESC_FOC"_s), number(u"PRIORITY_FOC"_s), rows.FieldByName(u"DATETIME_FOC"_s).AsDateTime(),
                      html});
    }
    return marks;
}

QString ExcerptText(const QString &html)
{
    static const QRegularExpression blockEnd(
        uR"((<\s*(?:br|hr)\b|<\s*/\s*(?:p|div|h[1-6]|li|tr|blockquote|pre|dt|dd|table|ul|ol)\s*>))"_s,
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression cellEnd(uR"(<\s*/\s*t[dh]\s*>)"_s, QRegularExpression::CaseInsensitiveOption);
    // The stripper drops line ends and the blanks before a tag, and words would join there.
    static const QRegularExpression blank(uR"([\r\n]+|[ \t]+(?=[<\r\n]))"_s);
    static const QRegularExpression blanks(u"[ \\t%1]+"_s.arg(BlankMark));
    static const QRegularExpression lineEnds(u" ?%1[ %1]*"_s.arg(LineMark));
    QString text = html;
    text.replace(blank, BlankMark).replace(cellEnd, BlankMark).replace(blockEnd, LineMark + u"\\1"_s);
    text.replace(u"&nbsp;"_s, QString(QChar::Nbsp));
    return StripHtml(text).replace(blanks, u" "_s).replace(lineEnds, u"\n"_s).trimmed();
}

QString MarksAsHtml(const QList<ExportedMark> &marks)
{
    QString page =
        u"<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>Lumivara</title>\n</head>\n<body>\n"_s;
    for (qsizetype i = 0; i < marks.size(); ++i) {
        const ExportedMark &mark = marks[i];
        if (i == 0 || !IsSameText(mark, marks[i - 1]))
            page += u"<h1>%1</h1>\n"_s.arg(TextName(mark).toHtmlEscaped());
        page += u"<h2>%1</h2>\n<p><small>%2</small></p>\n<blockquote>%3</blockquote>\n"_s.arg(
            Title(mark).toHtmlEscaped(), Facts(mark).toHtmlEscaped(), HtmlLines(ExcerptText(mark.excerptHtml)));
        if (!mark.note.isEmpty())
            page += u"<p>%1</p>\n"_s.arg(HtmlLines(mark.note));
    }
    return page + u"</body>\n</html>\n"_s;
}

QString MarksAsMarkdown(const QList<ExportedMark> &marks)
{
    QString text;
    for (qsizetype i = 0; i < marks.size(); ++i) {
        const ExportedMark &mark = marks[i];
        if (i == 0 || !IsSameText(mark, marks[i - 1]))
            text += MarkdownLines(TextName(mark).simplified(), u"# "_s) + u'\n';
        text += MarkdownLines(Title(mark), u"## "_s) + u'\n';
        text += MarkdownLines(Facts(mark), {}) + u'\n';
        text += MarkdownLines(ExcerptText(mark.excerptHtml), u"> "_s) + u'\n';
        if (!mark.note.isEmpty())
            text += MarkdownLines(mark.note, {}) + u'\n';
    }
    return text;
}

QString MarksAsCsv(const QList<ExportedMark> &marks)
{
    QString table = u"ID_FOC,NIK_SUT,NIC_SUT,NAME_SUT_VIE,NAME_SUT_PAL,NAME_SUT_ENG,NAME_FOC,KEYWORD_FOC,PRIORITY_FOC,"
                    "DATETIME_FOC,DESC_FOC,TEXT,TEXT_FOC\r\n"_s;
    for (const ExportedMark &mark : marks) {
        const QStringList cells{QString::number(mark.key),
                                QString::number(mark.collection),
                                QString::number(mark.text),
                                CsvCell(mark.nameVietnamese),
                                CsvCell(mark.namePali),
                                CsvCell(mark.nameEnglish),
                                CsvCell(QString(mark.title).remove(ByteOrderMark)),
                                CsvCell(mark.keywords),
                                QString::number(mark.priority),
                                mark.time.toString(Qt::ISODate),
                                CsvCell(mark.note),
                                CsvCell(ExcerptText(mark.excerptHtml)),
                                CsvCell(mark.excerptHtml)};
        table += cells.join(u',') + u"\r\n"_s;
    }
    return table;
}
