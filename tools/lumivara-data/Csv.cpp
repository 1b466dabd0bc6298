#include "lumivara-data/Csv.h"

#include "lumivara-data/Verbs.h"

using namespace Qt::StringLiterals;

CsvTable::CsvTable(const QString &text, const QString &fileName) : m_fileName(fileName)
{
    Row row{1, {}};
    QString cell;
    bool quoted = false;
    int line = 1;
    const auto endRow = [&] {
        row.cells.append(cell);
        cell.clear();
        Append(row);
        row = {line + 1, {}};
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (quoted) {
            if (c == u'"' && i + 1 < text.size() && text[i + 1] == u'"')
                cell += text[++i];
            else if (c == u'"')
                quoted = false;
            else
                cell += c;
        } else if (c == u'"') {
            quoted = true;
        } else if (c == u',') {
            row.cells.append(cell);
            cell.clear();
        } else if (c == u'\n') {
            endRow();
        } else if (c != u'\r') {
            cell += c;
        }
        if (c == u'\n')
            ++line;
    }
    if (quoted)
        throw ToolError(u"%1:%2: a quote is not closed"_s.arg(m_fileName).arg(row.line));
    if (!cell.isEmpty() || !row.cells.isEmpty())
        endRow();
}

void CsvTable::Append(Row row)
{
    if (row.cells == QStringList{QString()})
        return;
    if (m_columns.isEmpty()) {
        m_columns = row.cells;
        return;
    }
    if (row.cells.size() != m_columns.size()) {
        throw ToolError(u"%1:%2: %3 cells where %4 columns are"_s.arg(m_fileName)
                            .arg(row.line)
                            .arg(row.cells.size())
                            .arg(m_columns.size()));
    }
    m_rows.append(std::move(row));
}

QString CsvTable::Text(qsizetype row, const QString &column) const
{
    const qsizetype index = m_columns.indexOf(column);
    if (index < 0)
        throw ToolError(u"%1: there is no column %2"_s.arg(m_fileName, column));
    const QString &cell = m_rows[row].cells[index];
    return cell.isEmpty() ? QString() : cell;
}

int CsvTable::Number(qsizetype row, const QString &column) const
{
    bool isNumber = false;
    const int number = Text(row, column).toInt(&isNumber);
    if (!isNumber)
        throw ToolError(u"%1:%2: %3 is no number"_s.arg(m_fileName).arg(m_rows[row].line).arg(column));
    return number;
}
