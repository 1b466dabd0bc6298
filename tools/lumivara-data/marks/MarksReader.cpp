#include "lumivara-data/marks/MarksReader.h"

#include "common/Report.h"
#include "common/Tool.h"
#include "marks/Excerpt.h"
#include "stores/Schema.h"

#include <array>
#include <numeric>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array NeededColumns{Field::NikSut,     Field::NicSut,      Field::NameFoc,
                                   Field::KeywordFoc, Field::PriorityFoc, Field::DescFoc};
constexpr SchemaName PlainText = u"TEXT"; ///< the excerpt without its HTML
constexpr std::array OtherColumns{Field::IdFoc,       Field::NameSutVie, Field::NameSutPal, Field::NameSutEng,
                                  Field::DatetimeFoc, PlainText,         Field::TextFoc};

bool IsAmong(const auto &columns, const QString &name)
{
    return std::any_of(columns.begin(), columns.end(), [&](const QString &known) { return name == known; });
}

qsizetype BytesOf(const CsvRecord &record)
{
    return std::accumulate(record.cells.cbegin(), record.cells.cend(), qsizetype(0),
                           [](qsizetype bytes, const QByteArray &cell) { return bytes + cell.size(); });
}

/// A moment in ISO form, in local time where it names no zone; null for an empty text, nothing for anything else.
std::optional<QDateTime> MomentOf(const QString &text)
{
    if (text.isEmpty())
        return QDateTime();
    QDateTime moment = QDateTime::fromString(text, Qt::ISODate);
    if (!moment.isValid()) // perhaps an hour that summer time leaves out here
        moment = QDateTime::fromString(text + u'Z', Qt::ISODate);
    else if (moment.timeSpec() != Qt::LocalTime)
        moment = moment.toLocalTime();
    constexpr int lastYear = 9999;
    const int year = moment.date().year();
    if (!moment.isValid() || year < 1 || year > lastYear)
        return {};
    return moment;
}

} // namespace

MarksReader::MarksReader(QIODevice &device, const QString &fileName, Report &report)
    : m_fileName(fileName), m_report(report), m_lines(device, fileName)
{
    if (m_lines.WasConverted())
        m_report.Note(fileName, u"converted from UTF-16"_s);
}

QString MarksReader::TooLarge()
{
    return u"the mark is longer than %1 MiB"_s.arg(LargestMark >> 20);
}

bool MarksReader::Next(MarkAtLine &mark)
{
    if (!ReadNext(mark))
        return false;
    if (++m_count > MostMarks)
        throw ToolError(u"%1: more than %2 marks"_s.arg(Place(mark.line)).arg(MostMarks));
    return true;
}

bool MarksReader::IsStorable(const MarkAtLine &source)
{
    const Mark &mark = source.mark;
    const auto leave = [&](const QString &fault) {
        m_report.Find(Place(source.line), fault);
        return false;
    };
    if (mark.collection < 1 || mark.text < 1)
        return leave(u"text %1 of collection %2: there is no such text"_s.arg(mark.text).arg(mark.collection));
    if (!IsOneOf(Priority::All, mark.priority))
        return leave(u"the priority is %1, not 1 to 4"_s.arg(mark.priority));
    const auto tooLong = [&](const QString &what, const QString &text, qsizetype most) {
        return text.size() > most && !leave(u"%1 is longer than %2 characters"_s.arg(what).arg(most));
    };
    return !(tooLong(u"the title"_s, mark.title, Length::Name) ||
             tooLong(u"the keywords"_s, mark.keywords, Length::Keyword) ||
             tooLong(u"the note"_s, mark.note, Length::Desc) ||
             tooLong(u"the Vietnamese name"_s, mark.nameVietnamese, Length::Name) ||
             tooLong(u"the Pāli name"_s, mark.namePali, Length::Name) ||
             tooLong(u"the English name"_s, mark.nameEnglish, Length::Name));
}

qsizetype FreshExcerptSize(const QString &text)
{
    return std::accumulate(text.cbegin(), text.cend(), text.size(), [](qsizetype size, QChar c) {
        constexpr qsizetype moreOfLine = 8, moreOfEntity = 5;
        const bool isLineEnd = c == u'\n' || c == u'\r';
        const bool isEntity = c == u'&' || c == u'<' || c == u'>' || c == u'"';
        return size + (isLineEnd ? moreOfLine : isEntity ? moreOfEntity : 0);
    });
}

QString FreshExcerpt(const QString &text)
{
    if (text.trimmed().isEmpty())
        return {};
    QStringList lines = WithUnixLineEnds(text).split(u'\n');
    for (QString &line : lines)
        line = u"<p>"_s + line.toHtmlEscaped() + u"</p>"_s;
    return ExcerptPage(lines.join(u'\n'));
}

CsvMarks::CsvMarks(QIODevice &device, const QString &fileName, Report &report)
    : MarksReader(device, fileName, report), m_records(m_lines)
{
    CsvRecord header;
    if (!m_records.Next(header))
        throw ToolError(u"%1: the file is empty"_s.arg(fileName));
    if (!header.fault.isEmpty())
        throw ToolError(u"%1: %2"_s.arg(Place(header.line), header.fault));
    for (qsizetype i = 0; i < header.cells.size(); ++i) {
        const QString name = QString::fromUtf8(header.cells[i]).trimmed();
        if (m_columns.contains(name))
            throw ToolError(u"%1: the column %2 stands twice"_s.arg(Place(header.line), name));
        m_columns[name] = i;
    }
    QStringList missing;
    for (const SchemaName &name : NeededColumns) {
        if (!m_columns.contains(name))
            missing.append(name);
    }
    if (!m_columns.contains(PlainText) && !m_columns.contains(Field::TextFoc))
        missing.append(Field::TextFoc);
    if (!missing.isEmpty()) {
        throw ToolError(u"%1: no marks parted by commas, as \"export marks\" writes them; missing columns: %2"_s.arg(
            Place(header.line), missing.join(u", "_s)));
    }
    for (const QByteArray &cell : std::as_const(header.cells)) {
        const QString name = QString::fromUtf8(cell).trimmed();
        if (!IsAmong(NeededColumns, name) && !IsAmong(OtherColumns, name))
            m_report.Note(Place(header.line), u"the column \"%1\" means nothing here"_s.arg(name.left(Length::Name)));
    }
}

QString CsvMarks::Cell(const CsvRecord &record, const QString &column) const
{
    const qsizetype index = m_columns.value(column, -1);
    return index < 0 ? QString() : record.Text(index);
}

QString CsvMarks::Take(const CsvRecord &record, Mark &mark) const
{
    struct NumberColumn
    {
        SchemaName name;
        int &number;
    };
    const NumberColumn numbers[] = {
        {Field::NikSut, mark.collection}, {Field::NicSut, mark.text}, {Field::PriorityFoc, mark.priority}};
    for (const auto &[name, number] : numbers) {
        const QString column = name;
        bool isNumber = false;
        number = Cell(record, column).toInt(&isNumber);
        if (!isNumber)
            return u"%1 is no number: \"%2\""_s.arg(column, Cell(record, column).left(Length::Name));
    }
    const auto moment = MomentOf(Cell(record, Field::DatetimeFoc));
    if (!moment)
        return u"DATETIME_FOC is no date such as 2024-02-29T23:59:58: \"%1\""_s.arg(
            Cell(record, Field::DatetimeFoc).left(Length::Name));
    mark.time = *moment;
    mark.nameVietnamese = Cell(record, Field::NameSutVie);
    mark.namePali = Cell(record, Field::NameSutPal);
    mark.nameEnglish = Cell(record, Field::NameSutEng);
    mark.title = Cell(record, Field::NameFoc).remove(QChar::ByteOrderMark);
    mark.keywords = Cell(record, Field::KeywordFoc);
    mark.note = Cell(record, Field::DescFoc);
    mark.excerptHtml = Cell(record, Field::TextFoc);
    // Stored excerpts begin with the mark of their encoding; it is put there again.
    if (mark.excerptHtml.startsWith(QChar::ByteOrderMark))
        mark.excerptHtml.remove(0, 1);
    if (!mark.excerptHtml.isEmpty())
        return {};
    const QString text = Cell(record, PlainText);
    if (FreshExcerptSize(text) > LargestMark)
        return TooLarge();
    mark.excerptHtml = FreshExcerpt(text);
    return {};
}

bool CsvMarks::ReadNext(MarkAtLine &mark)
{
    for (CsvRecord record; m_records.Next(record);) {
        mark = {record.line, {}};
        QString fault = record.fault;
        if (fault.isEmpty() && BytesOf(record) > LargestMark)
            fault = TooLarge();
        if (fault.isEmpty())
            fault = Take(record, mark.mark);
        if (!fault.isEmpty())
            m_report.Find(Place(record.line), fault);
        else if (IsStorable(mark))
            return true;
    }
    return false;
}
