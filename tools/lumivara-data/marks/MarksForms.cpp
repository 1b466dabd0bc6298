#include "lumivara-data/marks/MarksForms.h"

#include "common/Tool.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/HtmlText.h"
#include "lumivara-data/files/TextLines.h"
#include "stores/Schema.h"
#include "stores/data/FIBDataSet.h"

#include <QRegularExpression>
#include <QStringDecoder>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView Utf8Mark("\xEF\xBB\xBF");

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

/// "(1101:12) · Cao · 2024-02-29 23:59 · keywords"
QString Facts(const Mark &mark)
{
    QStringList facts{mark.reference.isEmpty() ? QString() : u'(' + mark.reference + u')', PriorityName(mark.priority),
                      mark.time.left(QStringView(u"yyyy-MM-dd HH:mm").size()), mark.keywords};
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

/// Nothing for null; an empty text has its quotes.
QString CsvCell(const QString &text)
{
    if (text.isNull())
        return text;
    // QString's own replacing moves the rest of a long text again and again.
    QString cell(u'"');
    cell.reserve(text.size() + text.count(u'"') + 2);
    for (const QChar c : text) {
        if (c == u'"')
            cell += c;
        cell += c;
    }
    return cell + u'"';
}

/// "2024-02-29T23:59:58", with a fraction where there is one.
QString CsvTime(QString time)
{
    if (time.endsWith(u".0000"_s))
        time.chop(5);
    return time.replace(u' ', u'T');
}

/// Every character, one for a byte order mark included.
QString WholeUtf8(const QByteArray &bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decoder.decode(bytes);
}

/// An excerpt as its cell and the form that it has there.
std::pair<QString, QString> CsvExcerpt(const QByteArray &excerpt)
{
    constexpr qsizetype mostLines = 100'000; // readers of CSV hold a record's lines one by one
    if (excerpt.isNull())
        return {QString(), ExcerptForm::None};
    if (!excerpt.isValidUtf8() || excerpt.contains('\0') || excerpt.count('\n') > mostLines)
        return {QString::fromLatin1(excerpt.toBase64()), ExcerptForm::Encoded};
    if (excerpt.startsWith(Utf8Mark))
        return {WholeUtf8(excerpt.sliced(Utf8Mark.size())), ExcerptForm::Marked};
    return {WholeUtf8(excerpt), ExcerptForm::Plain};
}

QString HtmlMark(const Mark &mark, const Mark *previous)
{
    QString page;
    if (BeginsText(mark, previous))
        page += u"<h1>%1</h1>\n"_s.arg(TextName(mark).toHtmlEscaped());
    page += u"<h2>%1</h2>\n<p><small>%2</small></p>\n<blockquote>%3</blockquote>\n"_s.arg(
        ShownTitle(mark).toHtmlEscaped(), Facts(mark).toHtmlEscaped(), HtmlLines(TextOfHtml(ExcerptHtml(mark))));
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
    text += MarkdownLines(TextOfHtml(ExcerptHtml(mark)), u"> "_s) + u'\n';
    if (!mark.note.isEmpty())
        text += MarkdownLines(mark.note, {}) + u'\n';
    return text;
}

QString CsvMark(const Mark &mark, const Mark *)
{
    // No cell of a spreadsheet holds more than 32,767 characters.
    constexpr qsizetype mostForText = 1 << 20;
    const auto [excerpt, form] = CsvExcerpt(mark.excerpt);
    const QString text = mark.excerpt.size() > mostForText ? QString() : TextOfHtml(ExcerptHtml(mark));
    const QStringList cells{QString::number(mark.key),
                            QString::number(mark.collection),
                            QString::number(mark.text),
                            CsvCell(mark.nameVietnamese),
                            CsvCell(mark.namePali),
                            CsvCell(mark.nameEnglish),
                            CsvCell(mark.title),
                            CsvCell(mark.keywords),
                            mark.priority ? QString::number(*mark.priority) : QString(),
                            CsvTime(mark.time),
                            CsvCell(mark.note),
                            CsvCell(text),
                            CsvCell(excerpt),
                            form,
                            CsvCell(mark.reference)};
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
        u"F.KEYWORD_FOC, F.DESC_FOC, F.PRIORITY_FOC, cast(F.DATETIME_FOC as varchar(30)) DATETIME_FOC, F.TEXT_FOC"_s,
        u"from SUTTA_TEXT_FOCUS F"_s, u"left join SUTTA_LIST S on S.NIK_SUT = F.NIK_SUT and S.NIC_SUT = F.NIC_SUT"_s,
        u"order by F.NIK_SUT, F.NIC_SUT, F.ID_FOC"_s};
    for (rows.Open(); !rows.Eof(); rows.Next()) {
        const auto text = [&rows](const QString &name) {
            const QVariant value = rows.FieldByName(name).Value();
            const QString stored = value.toString();
            return !value.isNull() && stored.isNull() ? u""_s : stored;
        };
        const auto number = [&rows](const QString &name) { return rows.FieldByName(name).AsInteger(); };
        const QVariant priority = rows.FieldByName(Field::PriorityFoc).Value();
        const QVariant stored = rows.FieldByName(Field::TextFoc).Value();
        QByteArray excerpt = stored.toByteArray();
        if (stored.isValid() && excerpt.isNull())
            excerpt = QByteArray("");
        visit({number(Field::IdFoc), number(Field::NikSut), number(Field::NicSut), text(Field::NameSutVie),
               text(Field::NameSutPal), text(Field::NameSutEng), text(Field::NameFoc), text(Field::KeywordFoc),
               text(Field::DescFoc), priority.isNull() ? std::optional<int>() : priority.toInt(),
               text(Field::DatetimeFoc), excerpt});
    }
}

QString ShownTitle(const Mark &mark)
{
    const QString title = QString(mark.title).remove(QChar::ByteOrderMark).simplified();
    return title.isEmpty() ? u"#%1"_s.arg(mark.key) : title;
}

QString ExcerptHtml(const Mark &mark)
{
    const QString html = QString::fromUtf8(mark.excerpt);
    return html.startsWith(QChar::ByteOrderMark) ? html.sliced(1) : html;
}

QString PriorityName(std::optional<int> given)
{
    if (!given)
        return {};
    const int priority = *given;
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
                "DATETIME_FOC,DESC_FOC,TEXT,TEXT_FOC,TEXT_FORM,REFERENCE\r\n"_s,
                CsvMark,
                {}};
    }
    throw ToolError(u"there is no format \"%1\": html, markdown or csv"_s.arg(name));
}
