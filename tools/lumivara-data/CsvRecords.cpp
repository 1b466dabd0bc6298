#include "lumivara-data/CsvRecords.h"

#include "common/Interrupt.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView LineEnds("\r\n");
constexpr qsizetype MostLines = 500000; ///< of one record, which are held until it has an end

/// Takes a record apart, fed line by line.
class RecordParser
{
public:
    explicit RecordParser(QByteArrayList &cells) : m_cells(cells) {}

    enum class Result { Whole, WantsMore, Faulty };

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
        m_cells.append(m_cell);
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

QString CsvRecords::Read(QByteArrayList &cells, QByteArrayList &taken)
{
    RecordParser parser(cells);
    QByteArray line;
    qsizetype bytes = 0;
    while (m_lines.Next(line)) {
        taken.append(line);
        bytes += line.size();
        if (m_lines.IsCut() || bytes >= TextLines::MostBytes || taken.size() > MostLines)
            return u"a record without an end, or longer than %1 MiB"_s.arg(TextLines::MostBytes >> 20);
        switch (parser.Feed(line)) {
        case RecordParser::Result::Faulty:
            return u"a quote stands where none belongs, or is not doubled"_s;
        case RecordParser::Result::WantsMore:
            continue;
        case RecordParser::Result::Whole:
            if (m_width != 0 && cells.size() != m_width)
                return u"%1 cells where %2 columns are"_s.arg(cells.size()).arg(m_width);
            for (const QByteArray &cell : std::as_const(cells)) {
                if (!cell.isValidUtf8())
                    return u"the text is not UTF-8"_s;
            }
            return {};
        }
    }
    return u"a quote is not closed"_s;
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
        if (IsBlank(line) && record.fault.isEmpty())
            continue;
        const qsizetype first = m_lines.Number();
        m_lines.GiveBack({line});
        CsvRecord found;
        QByteArrayList taken;
        found.line = first;
        found.fault = Read(found.cells, taken);
        if (found.fault.isEmpty()) {
            if (m_width == 0)
                m_width = found.cells.size();
            if (record.fault.isEmpty()) {
                record = found;
                return true;
            }
            m_waiting = found;
            m_isWaiting = true;
            break;
        }
        found.cells.clear();
        if (record.fault.isEmpty())
            record = found;
        // The damage may be that this record swallowed those behind it.
        m_lines.GiveBack(taken.sliced(1));
        lastLost = m_lines.Number();
        ThrowIfInterrupted();
    }
    if (lastLost > record.line)
        record.fault += u"; nothing of the lines %1 to %2 is taken"_s.arg(record.line).arg(lastLost);
    return record.line != 0;
}
