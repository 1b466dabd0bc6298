#pragma once

#include "lumivara-data/files/TextLines.h"

/// One record of a comma separated text, or a damaged part of it.
struct CsvRecord
{
    qsizetype line = 0;   ///< where it begins
    QByteArrayList cells; ///< as bytes, without quotes; null for an empty one that has none
    QString fault;        ///< why there are no cells; empty for a record
    bool isOpen = false;  ///< a quote that is never closed is among the faults

    /// A cell with each of its characters, null for a null one.
    QString Text(qsizetype cell) const;
};

/// The records one by one, each with the same number of cells. Cells may be in double quotes, with inner quotes
/// doubled; only quoted cells can have commas and line ends. Damage is never guessed at: it is returned as a fault, and
/// reading goes on at the next line that begins a complete record.
class CsvRecords
{
public:
    explicit CsvRecords(TextLines &lines) : m_lines(lines) {}

    /// Of a record. Those of marks and of canons have fewer than twenty.
    static constexpr qsizetype MostCells = 1000;

    /// False at the end. The first record sets the number of cells.
    bool Next(CsvRecord &record);

private:
    enum class Fault { None, TooLong, TooWide, Quote, OpenQuote, Width, Encoding };

    /// Reads one record; the lines that it took are in `taken`.
    Fault Read(QByteArrayList &cells, QByteArrayList &taken);
    QString TextOf(Fault fault, qsizetype cells) const;

    TextLines &m_lines;
    CsvRecord m_waiting; ///< found behind a fault
    bool m_isWaiting = false;
    qsizetype m_width = 0;
};
