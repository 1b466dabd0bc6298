#include "lumivara-lang/NumberLedger.h"

#include "common/Tool.h"

#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// No window has as many texts; a slip of the pen is told, not taken for as many that are missing.
constexpr int HighestNumber = 99'999;

QString LineOf(const QString &section, int number, const QString &text)
{
    return u"%1\t%2\t%3\n"_s.arg(section).arg(number).arg(text);
}

} // namespace

NumberLedger NumberLedger::Read(const QString &path)
{
    NumberLedger ledger;
    QFile file(path);
    if (!file.exists())
        return ledger;
    if (!file.open(QIODevice::ReadOnly))
        throw ToolError(u"%1: %2"_s.arg(path, file.errorString()));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (qsizetype index = 0; index < lines.size(); ++index) {
        const QString &line = lines[index];
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        const QString place = u"%1:%2"_s.arg(path).arg(index + 1);
        const QStringList cells = line.split(u'\t');
        const int number = cells.value(1).toInt();
        if (cells.size() != 3 || number <= 0 || number > HighestNumber || cells[0].isEmpty() || cells[2].isEmpty())
            throw ToolError(u"%1: not a section, a number and a text, parted by tabs"_s.arg(place));
        ledger.Take(cells[0], number, cells[2], place);
    }
    return ledger;
}

void NumberLedger::Take(const QString &section, int number, const QString &text, const QString &place)
{
    QList<Row> &rows = m_rows[section];
    const auto known = std::ranges::find(rows, number, &Row::number);
    if (text == "-"_L1) {
        if (known == rows.end())
            m_problems += u"%1: %2 %3 is retired before it was given out"_s.arg(place, section).arg(number);
        else
            known->isRetired = true;
        return;
    }
    if (known != rows.end())
        m_problems += u"%1: %2 %3 was given out before"_s.arg(place, section).arg(number);
    if (std::ranges::any_of(rows, [&](const Row &row) { return row.text == text && !row.isRetired; }))
        m_problems += u"%1: %2 has a number already"_s.arg(place, text);
    rows.append({number, text});
}

QHash<QString, int> NumberLedger::Numbers(const QString &section) const
{
    QHash<QString, int> numbers;
    for (const Row &row : m_rows.value(section)) {
        if (!row.isRetired)
            numbers.insert(row.text, row.number);
    }
    return numbers;
}

int NumberLedger::Highest(const QString &section) const
{
    int highest = 0;
    for (const Row &row : m_rows.value(section))
        highest = std::max(highest, row.number);
    return highest;
}

QStringList NumberLedger::Problems() const
{
    QStringList problems = m_problems;
    for (auto section = m_rows.begin(); section != m_rows.end(); ++section) {
        for (int number = 1; number < Highest(section.key()); ++number) {
            if (std::ranges::find(*section, number, &Row::number) == section->end())
                problems += u"%1 %2 has vanished from the numbers"_s.arg(section.key()).arg(number);
        }
    }
    return problems;
}

void NumberLedger::Add(const QString &section, int number, const QString &text)
{
    m_rows[section].append({number, text});
    m_added += LineOf(section, number, text);
}

void NumberLedger::Retire(const QString &section, int number)
{
    std::ranges::find(m_rows[section], number, &Row::number)->isRetired = true;
    m_added += LineOf(section, number, u"-"_s);
}

void NumberLedger::Append(const QString &path) const
{
    if (m_added.isEmpty())
        return;
    QFile file(path);
    const QByteArray bytes = m_added.join(QString()).toUtf8();
    if (!file.open(QIODevice::Append) || file.write(bytes) != bytes.size() || !file.flush())
        throw ToolError(u"%1: %2"_s.arg(path, file.errorString()));
}
