#pragma once

#include <QString>

#include <functional>

class TpFIBDataSet;

/// Callbacks of a scan; each may be empty.
struct SuttaSearchEvents
{
    /// The current row contains the word; `sample` begins with it. If this throws, the row counts as failed and not as
    /// a hit.
    std::function<void(const QString &sample)> onHit;
    /// The current row's page could not be read, or onHit failed; the scan goes on.
    std::function<void()> onFailure;
    /// After each row, found or not, failed or not. An exception ends the scan.
    std::function<void()> onRow;
};

/// Searches every passage from the current row to the last for a word (trimmed, as typed), in a language mode: 0 Pāli,
/// 1 Vietnamese, 10 parallel. With any other mode nothing is read or found. Moves the cursor to the end; keeps one page
/// at a time. Returns the number of hits. Throws DatabaseError if the rows themselves can't be fetched.
int ScanSuttas(TpFIBDataSet &passages, const QString &word, int language, const SuttaSearchEvents &events);
