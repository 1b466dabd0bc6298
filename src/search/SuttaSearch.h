#pragma once

#include <QString>

#include <functional>

class TpFIBDataSet;

/// What a scan tells its caller; each may be empty.
struct SuttaSearchEvents
{
    /// The current row of the passages holds the word; `sample` begins with it. What this throws counts as a failure of
    /// the row, and the hit is not counted.
    std::function<void(const QString &sample)> onHit;
    /// The current row's page could not be read, or onHit failed; the scan goes on.
    std::function<void()> onFailure;
    /// After each row, found or not, failed or not. What this throws ends the scan.
    std::function<void()> onRow;
};

/// Seeks a word (trimmed, as typed) in every passage from the current row to the last, in the language the reader
/// reads: 0 Pāli, 1 Vietnamese, 10 parallel. Any other value reads nothing, so nothing is found. Moves the cursor to
/// the end; keeps one page at a time. Returns the number of hits. Throws DatabaseError when the rows themselves can't
/// be fetched.
int ScanSuttas(TpFIBDataSet &passages, const QString &word, int language, const SuttaSearchEvents &events);
