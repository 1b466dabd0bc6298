#include "lumivara-data/files/CsvTable.h"

#include "base/Messages.h"
#include "common/Tool.h"

#include <QBuffer>

using namespace Qt::StringLiterals;

CsvTable::CsvTable(const QByteArray &text, const QString &fileName) : m_fileName(fileName)
{
    QBuffer device;
    device.setData(text);
    device.open(QIODevice::ReadOnly);
    TextLines lines(device, fileName);
    CsvRecords records(lines);
    for (CsvRecord record; records.Next(record);) {
        if (!record.fault.isEmpty())
            throw ToolError(u"%1:%2: %3"_s.arg(m_fileName).arg(record.line).arg(record.fault));
        m_records.append(record);
    }
    if (m_records.isEmpty())
        throw ToolError(Sentence({u"%1: tệp trống", u"%1: the file is empty"}).arg(m_fileName));
}

QString CsvTable::Text(qsizetype row, const QString &column) const
{
    const qsizetype index = m_records.first().cells.indexOf(column.toUtf8());
    if (index < 0)
        throw ToolError(Sentence({u"%1: không có cột %2", u"%1: there is no column %2"}).arg(m_fileName, column));
    const QString cell = m_records[row + 1].Text(index);
    return cell.isEmpty() ? QString() : cell;
}

int CsvTable::Number(qsizetype row, const QString &column) const
{
    bool isNumber = false;
    const int number = Text(row, column).toInt(&isNumber);
    if (!isNumber)
        throw ToolError(Sentence({u"%1:%2: %3 không phải là số", u"%1:%2: %3 is no number"})
                            .arg(m_fileName)
                            .arg(m_records[row + 1].line)
                            .arg(column));
    return number;
}
