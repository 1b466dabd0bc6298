#include "lumivara-data/marks/MarksForms.h"

#include "common/Tool.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/HtmlText.h"
#include "lumivara-data/files/TextLines.h"
#include "stores/Schema.h"
#include "stores/data/FIBDataSet.h"

#include <QRegularExpression>

#include <array>

using namespace Qt::StringLiterals;

namespace {

/// Stand for a line end and a blank while the tags are taken out; no text holds them.

/// The name that a document puts above a text's marks.
QString TextName(const Mark &mark)
{
    QStringList names{mark.nameVietnamese, mark.namePali, mark.nameEnglish};
    names.removeAll(QString());
    return names.isEmpty() ? u"%1-%2"_s.arg(mark.collection).arg(mark.text) : names.join(u" · "_s);
}

bool BeginsText(const Mark &mark, const Mark *previous)
{
    return !previous || mark.collection != previous->collection || mark.text != previous->text;
}

/// "Cao · 2024-02-29 23:59 · keywords"
QString Facts(const Mark &mark)
{
    QStringList facts{PriorityName(mark.priority), mark.time.toString(u"yyyy-MM-dd HH:mm"_s), mark.keywords};
    facts.removeAll(QString());
    return facts.join(u" · "_s);
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

QString HtmlMark(const Mark &mark, const Mark *previous)
{
    QString page;
    if (BeginsText(mark, previous))
        page += u"<h1>%1</h1>\n"_s.arg(TextName(mark).toHtmlEscaped());
    page += u"<h2>%1</h2>\n<p><small>%2</small></p>\n<blockquote>%3</blockquote>\n"_s.arg(
        ShownTitle(mark).toHtmlEscaped(), Facts(mark).toHtmlEscaped(), HtmlLines(TextOfHtml(mark.excerptHtml)));
    if (!mark.note.isEmpty())
        page += u"<p>%1</p>\n"_s.arg(HtmlLines(mark.note));
    return page;
}

QString MarkdownMark(const Mark &mark, const Mark *previous)
{
    QString text;
    // The comment is not shown. It finds the text again where names are missing or come twice.
    if (BeginsText(mark, previous)) {
        text += MarkdownLines(TextName(mark).simplified(), u"# "_s).chopped(1) +
                u" <!-- %1-%2 -->\n\n"_s.arg(mark.collection).arg(mark.text);
    }
    text += MarkdownLines(ShownTitle(mark), u"## "_s) + u'\n';
    text += MarkdownLines(Facts(mark), {}) + u'\n';
    text += MarkdownLines(TextOfHtml(mark.excerptHtml), u"> "_s) + u'\n';
    if (!mark.note.isEmpty())
        text += MarkdownLines(mark.note, {}) + u'\n';
    return text;
}

QString CsvMark(const Mark &mark, const Mark *)
{
    const QStringList cells{QString::number(mark.key),
                            QString::number(mark.collection),
                            QString::number(mark.text),
                            CsvCell(mark.nameVietnamese),
                            CsvCell(mark.namePali),
                            CsvCell(mark.nameEnglish),
                            CsvCell(QString(mark.title).remove(QChar::ByteOrderMark)),
                            CsvCell(mark.keywords),
                            QString::number(mark.priority),
                            mark.time.toString(Qt::ISODate),
                            CsvCell(mark.note),
                            CsvCell(TextOfHtml(mark.excerptHtml)),
                            CsvCell(mark.excerptHtml)};
    return cells.join(u',') + u"\r\n"_s;
}

} // namespace

void VisitMarks(DataFile &file, const std::function<void(const Mark &)> &visit)
{
    TpFIBDataSet rows;
    rows.SetDatabase(&file.Database());
    rows.SetTransaction(&file.Transaction());
    rows.SelectSQL() = QStringList{
        u"select F.ID_FOC, F.NIK_SUT, F.NIC_SUT, S.NAME_SUT_VIE, S.NAME_SUT_PAL, S.NAME_SUT_ENG, F.NAME_FOC,"_s,
        u"F.KEYWORD_FOC, F.DESC_FOC, F.PRIORITY_FOC, F.DATETIME_FOC, F.TEXT_FOC from SUTTA_TEXT_FOCUS F"_s,
        u"left join SUTTA_LIST S on S.NIK_SUT = F.NIK_SUT and S.NIC_SUT = F.NIC_SUT"_s,
        u"order by F.NIK_SUT, F.NIC_SUT, F.ID_FOC"_s};
    for (rows.Open(); !rows.Eof(); rows.Next()) {
        const auto text = [&rows](const QString &name) { return rows.FieldByName(name).AsString(); };
        const auto number = [&rows](const QString &name) { return rows.FieldByName(name).AsInteger(); };
        QString html = QString::fromUtf8(rows.FieldByName(Field::TextFoc).AsBytes());
        if (html.startsWith(QChar::ByteOrderMark))
            html.remove(0, 1);
        visit({number(Field::IdFoc), number(Field::NikSut), number(Field::NicSut), text(Field::NameSutVie),
               text(Field::NameSutPal), text(Field::NameSutEng), text(Field::NameFoc), text(Field::KeywordFoc),
               text(Field::DescFoc), number(Field::PriorityFoc), rows.FieldByName(Field::DatetimeFoc).AsDateTime(),
               html});
    }
}

QString ShownTitle(const Mark &mark)
{
    const QString title = QString(mark.title).remove(QChar::ByteOrderMark).simplified();
    return title.isEmpty() ? u"#%1"_s.arg(mark.key) : title;
}

QString PriorityName(int priority)
{
    static constexpr std::array names{u"Đặc biệt", u"Cao", u"Bình thường", u"Thấp"};
    static_assert(names.size() == Priority::All.size());
    const auto index = static_cast<size_t>(priority - Priority::All.front());
    return index < names.size() ? QString::fromUtf16(names[index]) : QString::number(priority);
}

MarksForm MarksFormNamed(const QString &name)
{
    if (name == "html"_L1) {
        return {
            u"html",
            u"<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>Lumivara</title>\n</head>\n<body>\n"_s,
            HtmlMark, u"</body>\n</html>\n"_s};
    }
    if (name == "markdown"_L1 || name == "md"_L1)
        return {u"markdown", {}, MarkdownMark, {}};
    if (name == "csv"_L1) {
        return {u"csv",
                u"ID_FOC,NIK_SUT,NIC_SUT,NAME_SUT_VIE,NAME_SUT_PAL,NAME_SUT_ENG,NAME_FOC,KEYWORD_FOC,PRIORITY_FOC,"
                "DATETIME_FOC,DESC_FOC,TEXT,TEXT_FOC\r\n"_s,
                CsvMark,
                {}};
    }
    throw ToolError(u"there is no format \"%1\": html, markdown or csv"_s.arg(name));
}
