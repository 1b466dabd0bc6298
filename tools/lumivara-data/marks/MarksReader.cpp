#include "lumivara-data/marks/MarksReader.h"

#include "common/Report.h"
#include "common/Tool.h"
#include "marks/Excerpt.h"
#include "stores/Schema.h"

#include <QDateTime>
#include <QRegularExpression>

#include <array>
#include <numeric>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array NeededColumns{Field::NikSut,     Field::NicSut,      Field::NameFoc,
                                   Field::KeywordFoc, Field::PriorityFoc, Field::DescFoc};
constexpr SchemaName PlainText = u"TEXT";      ///< the excerpt without its HTML
constexpr SchemaName Reference = u"REFERENCE"; ///< for people alone: the excerpt tells where it stands
constexpr std::array OtherColumns{Field::IdFoc,      Field::NameSutVie,   Field::NameSutPal,
                                  Field::NameSutEng, Field::DatetimeFoc,  PlainText,
                                  Field::TextFoc,    ExcerptForm::Column, Reference};
const QString TimeForm = u"yyyy-MM-dd HH:mm:ss.zzz0"_s; ///< of Mark::time

bool IsAmong(const auto &columns, const QString &name)
{
    return std::any_of(columns.begin(), columns.end(), [&](const QString &known) { return name == known; });
}

qsizetype BytesOf(const CsvRecord &record)
{
    return std::accumulate(record.cells.cbegin(), record.cells.cend(), qsizetype(0),
                           [](qsizetype bytes, const QByteArray &cell) { return bytes + cell.size(); });
}

/// A moment in ISO form, in local time where it names no zone, as Mark has it; nothing for anything else.
std::optional<QString> MomentOf(const QString &written)
{
    // QDateTime has milliseconds, the file a digit more.
    static const QRegularExpression fraction(uR"((:\d\d:\d\d)[.,](\d{4})\d*)"_s);
    const auto exact = fraction.match(written);
    const QString text = exact.hasMatch() ? QString(written).replace(fraction, u"\\1"_s) : written;
    QDateTime moment = QDateTime::fromString(text, Qt::ISODate);
    if (!moment.isValid()) // perhaps an hour that summer time leaves out here
        moment = QDateTime::fromString(text + u'Z', Qt::ISODate);
    else if (moment.timeSpec() != Qt::LocalTime)
        moment = moment.toLocalTime();
    constexpr int lastYear = 9999;
    const int year = moment.date().year();
    if (!moment.isValid() || year < 1 || year > lastYear)
        return {};
    return exact.hasMatch() ? moment.toString(u"yyyy-MM-dd HH:mm:ss."_s) + exact.captured(2)
                            : moment.toString(TimeForm);
}

} // namespace

MarksReader::MarksReader(QIODevice &device, const QString &fileName, Report &report)
    : m_fileName(fileName), m_report(report), m_lines(device, fileName, 2 * LargestMark) // quotes may be doubled
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
    if (mark.priority && !IsOneOf(Priority::All, *mark.priority))
        return leave(u"the priority is %1, not 1 to 4"_s.arg(*mark.priority));
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

QByteArray FreshExcerpt(const QString &text)
{
    if (text.trimmed().isEmpty())
        return {};
    QStringList lines = WithUnixLineEnds(text).split(u'\n');
    for (QString &line : lines)
        line = u"<p>"_s + line.toHtmlEscaped() + u"</p>"_s;
    return ExcerptFileBytes(ExcerptPage(lines.join(u'\n')));
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

QString CsvMarks::Take(const CsvRecord &record, MarkAtLine &source) const
{
    Mark &mark = source.mark;
    source.isExact = !Cell(record, ExcerptForm::Column).isEmpty();
    if (const QString fault = TakeFacts(record, source); !fault.isEmpty())
        return fault;
    mark.nameVietnamese = Cell(record, Field::NameSutVie);
    mark.namePali = Cell(record, Field::NameSutPal);
    mark.nameEnglish = Cell(record, Field::NameSutEng);
    const auto text = [&](const QString &column) {
        const QString cell = Cell(record, column);
        return cell.isEmpty() && !source.isExact ? QString() : cell;
    };
    mark.title = text(Field::NameFoc);
    mark.keywords = text(Field::KeywordFoc);
    mark.note = text(Field::DescFoc);
    return TakeExcerpt(record, mark);
}

QString CsvMarks::TakeFacts(const CsvRecord &record, MarkAtLine &source) const
{
    Mark &mark = source.mark;
    const QString priority = Cell(record, Field::PriorityFoc);
    if (!priority.isEmpty() || !source.isExact)
        mark.priority = 0;
    struct NumberColumn
    {
        SchemaName name;
        int *number;
    };
    const NumberColumn numbers[] = {{Field::NikSut, &mark.collection},
                                    {Field::NicSut, &mark.text},
                                    {Field::PriorityFoc, mark.priority ? &*mark.priority : nullptr}};
    for (const auto &[name, number] : numbers) {
        const QString column = name;
        bool isNumber = !number;
        if (number)
            *number = Cell(record, column).toInt(&isNumber);
        if (!isNumber)
            return u"%1 is no number: \"%2\""_s.arg(column, Cell(record, column).left(Length::Name));
    }
    const QString time = Cell(record, Field::DatetimeFoc);
    if (time.isEmpty()) {
        if (!source.isExact)
            mark.time = QDateTime::currentDateTime().toString(TimeForm);
        return {};
    }
    const auto moment = MomentOf(time);
    if (!moment)
        return u"DATETIME_FOC is no date such as 2024-02-29T23:59:58: \"%1\""_s.arg(time.left(Length::Name));
    mark.time = *moment;
    return {};
}

QString CsvMarks::TakeExcerpt(const CsvRecord &record, Mark &mark) const
{
    const QString form = Cell(record, ExcerptForm::Column);
    const QString page = Cell(record, Field::TextFoc);
    if (form == ExcerptForm::None)
        return page.isEmpty() ? QString() : u"TEXT_FOC is not empty, as TEXT_FORM says"_s;
    if (form == ExcerptForm::Plain) {
        mark.excerpt = page.isEmpty() ? QByteArray("") : page.toUtf8();
        return {};
    }
    if (form == ExcerptForm::Marked) {
        mark.excerpt = ExcerptFileBytes(page);
        return {};
    }
    if (form == ExcerptForm::Encoded) {
        const auto decoded = QByteArray::fromBase64Encoding(page.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        mark.excerpt = *decoded;
        return decoded ? QString() : u"TEXT_FOC is no base64, as TEXT_FORM says"_s;
    }
    if (!form.isEmpty())
        return u"TEXT_FORM is no form of an excerpt: \"%1\""_s.arg(form.left(Length::Name));
    // Stored excerpts begin with the mark of their encoding; rows without a form may lack it.
    if (!page.isEmpty()) {
        mark.excerpt = ExcerptFileBytes(page.startsWith(QChar::ByteOrderMark) ? page.sliced(1) : page);
        return {};
    }
    const QString text = Cell(record, PlainText);
    if (FreshExcerptSize(text) > LargestMark)
        return TooLarge();
    mark.excerpt = FreshExcerpt(text);
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
            fault = Take(record, mark);
        if (!fault.isEmpty())
            m_report.Find(Place(record.line), fault);
        else if (IsStorable(mark))
            return true;
    }
    return false;
}
