#include "lumivara-data/files/CsvRecords.h"

#include "base/Messages.h"
#include "common/Interrupt.h"

#include <QStringDecoder>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView LineEnds("\r\n");
constexpr qsizetype MostLines = 500000; ///< of one record, which are held until it has an end

/// Takes a record apart, fed line by line.
class RecordParser
{
public:
    explicit RecordParser(QByteArrayList &cells) : m_cells(cells) {}

    enum class Result { Whole, WantsMore, Faulty, TooWide };

    Result Feed(const QByteArray &line)
    {
        qsizetype i = 0;
        while (m_isQuoted || i < line.size()) {
            if (m_isQuoted) {
                i = ReadQuoted(line, i);
                if (m_isQuoted)
                    return Result::WantsMore;
            } else if (line[i] == '"') {
                if (!m_cell.isEmpty() || m_wasQuoted)
                    return Result::Faulty;
                m_isQuoted = m_wasQuoted = true;
                ++i;
                continue;
            }
            qsizetype end = i;
            while (end < line.size() && line[end] != ',' && line[end] != '"' && !LineEnds.contains(line[end]))
                ++end;
            if (m_wasQuoted && end > i)
                return Result::Faulty;
            m_cell.append(line.constData() + i, end - i);
            if (end < line.size() && line[end] == '"') {
                if (!m_cell.isEmpty() || m_wasQuoted)
                    return Result::Faulty;
                i = end;
                continue;
            }
            EndCell();
            if (m_cells.size() > CsvRecords::MostCells)
                return Result::TooWide;
            if (end == line.size() || line[end] != ',')
                return QByteArrayView(line).sliced(end).trimmed().isEmpty() ? Result::Whole : Result::Faulty;
            i = end + 1;
        }
        EndCell();
        return Result::Whole;
    }

private:
    /// Up to the quote that ends the cell, or to the line's end.
    qsizetype ReadQuoted(const QByteArray &line, qsizetype i)
    {
        for (;;) {
            const qsizetype quote = line.indexOf('"', i);
            m_cell.append(line.constData() + i, (quote < 0 ? line.size() : quote) - i);
            if (quote < 0)
                return line.size();
            i = quote + 1;
            if (i == line.size() || line[i] != '"') {
                m_isQuoted = false;
                return i;
            }
            m_cell += '"';
            ++i;
        }
    }
    void EndCell()
    {
        m_cells.append(m_cell.isEmpty() && m_wasQuoted ? QByteArray("") : m_cell);
        m_cell.clear();
        m_wasQuoted = false;
    }

    QByteArrayList &m_cells;
    QByteArray m_cell;
    bool m_isQuoted = false;
    bool m_wasQuoted = false;
};

bool IsBlank(const QByteArray &line)
{
    return line == "\n" || line == "\r\n";
}

} // namespace

QString CsvRecord::Text(qsizetype cell) const
{
    if (cells[cell].isEmpty())
        return cells[cell].isNull() ? QString() : u""_s;
    // A cell may begin with the character that files have for a byte order mark.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decoder.decode(cells[cell]);
}

CsvRecords::Fault CsvRecords::Read(QByteArrayList &cells, QByteArrayList &taken)
{
    RecordParser parser(cells);
    QByteArray line;
    qsizetype bytes = 0;
    while (m_lines.Next(line)) {
        taken.append(line);
        bytes += line.size();
        if (m_lines.IsCut() || bytes >= m_lines.Most() || taken.size() > MostLines)
            return Fault::TooLong;
        switch (parser.Feed(line)) {
        case RecordParser::Result::Faulty:
            return Fault::Quote;
        case RecordParser::Result::TooWide:
            return Fault::TooWide;
        case RecordParser::Result::WantsMore:
            continue;
        case RecordParser::Result::Whole:
            if (m_width != 0 && cells.size() != m_width)
                return Fault::Width;
            return std::all_of(cells.cbegin(), cells.cend(), [](const QByteArray &cell) { return cell.isValidUtf8(); })
                       ? Fault::None
                       : Fault::Encoding;
        }
    }
    return Fault::OpenQuote;
}

QString CsvRecords::TextOf(Fault fault, qsizetype cells) const
{
    switch (fault) {
    case Fault::None:
        break;
    case Fault::TooLong:
        return Sentence({u"một bản ghi không có chỗ kết thúc, hoặc dài hơn %1 MiB",
                         u"a record without an end, or longer than %1 MiB"})
            .arg(m_lines.Most() >> 20);
    case Fault::TooWide:
        return Sentence({u"nhiều hơn %1 ô", u"more than %1 cells"}).arg(MostCells);
    case Fault::Quote:
        return Sentence({u"có dấu ngoặc kép sai chỗ, hoặc không được viết đôi",
                         u"a quote stands where none belongs, or is not doubled"});
    case Fault::OpenQuote:
        return Sentence({u"một dấu ngoặc kép không được đóng", u"a quote is not closed"});
    case Fault::Width:
        return Sentence({u"có %1 ô nhưng bảng có %2 cột", u"%1 cells where %2 columns are"}).arg(cells).arg(m_width);
    case Fault::Encoding:
        return Sentence({u"văn bản không phải là UTF-8", u"the text is not UTF-8"});
    }
    return {};
}

bool CsvRecords::Next(CsvRecord &record)
{
    record = {};
    if (m_isWaiting) {
        record = std::exchange(m_waiting, {});
        m_isWaiting = false;
        return true;
    }
    qsizetype lastLost = 0;
    for (QByteArray line; m_lines.Next(line);) {
        if (IsBlank(line))
            continue;
        m_lines.GiveBack({line});
        CsvRecord found;
        QByteArrayList taken;
        found.line = m_lines.Number() + 1;
        const Fault fault = Read(found.cells, taken);
        if (fault == Fault::None) {
            if (m_width == 0)
                m_width = found.cells.size();
            m_isWaiting = !record.fault.isEmpty();
            (m_isWaiting ? m_waiting : record) = found;
            break;
        }
        if (record.fault.isEmpty()) {
            record.line = found.line;
            record.fault = TextOf(fault, found.cells.size());
        }
        record.isOpen |= fault == Fault::OpenQuote;
        // The damage may be that this record swallowed those behind it.
        m_lines.GiveBack(taken.sliced(1));
        lastLost = m_lines.Number();
        ThrowIfInterrupted();
    }
    if (lastLost > record.line)
        record.fault +=
            Sentence({u"; các dòng từ %1 đến %2 không được nhập", u"; nothing of the lines %1 to %2 is taken"})
                .arg(record.line)
                .arg(lastLost);
    return record.line != 0;
}
