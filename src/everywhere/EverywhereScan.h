#pragma once

#include "everywhere/EverywhereHit.h"
#include "everywhere/EverywhereQuery.h"

#include <QtGlobal>

#include <chrono>
#include <functional>
#include <memory>

class TpFIBDatabase;

/// Searches pages and names of all texts, and all marks, in pieces on the thread of the databases. There is no index:
/// pages are read and folded as they come, and kept folded for the next query within MostKept.
///
/// The result is a list of texts that have every word of the query, each with its hits. First come those in which the
/// words stand near each other (NearLetters), then those in which they only occur; both in reading order, which is that
/// of the tree, and marks after the texts, in the order of their texts. With a single word that is reading order alone.
/// A mark is a text of its own in this: all words must be in it, in whichever of its fields.
///
/// A parallel page repeats the pages in Pāli and Vietnamese, and would give every hit again. It is searched, where one
/// of the two languages is, in a text that has neither of these pages.
class EverywhereScan
{
public:
    /// Bytes of folded pages that are kept. What came first stays: a search goes through all of them in the same order,
    /// so that dropping the oldest would drop each just before it is needed.
    static constexpr qint64 MostKept = 64 * 1024 * 1024;
    /// Of a step, at most; what reads one blob of many megabytes may take longer.
    static constexpr std::chrono::milliseconds StepTime{12};

    /// Borrows the databases, which are connected, with their default transactions active; without `marks` none are
    /// found. ForgetPages() must be called before either is closed.
    EverywhereScan(TpFIBDatabase &canon, TpFIBDatabase *marks, qint64 mostKept = MostKept);
    ~EverywhereScan();
    EverywhereScan(const EverywhereScan &) = delete;
    EverywhereScan &operator=(const EverywhereScan &) = delete;

    /// Empties the result and starts anew; an empty query is done at once. Does no work itself.
    void Begin(const EverywhereQuery &query);
    /// Goes on for at most that time; true if there is more to do. Throws DatabaseError if the rows can't be fetched;
    /// the scan is stopped then. A page that can't be read is counted in Failures(), and the scan goes on.
    bool Step(std::chrono::milliseconds time = StepTime);
    /// Ends the search; the result so far stays.
    void Stop();
    bool IsRunning() const;
    /// Drops the kept pages, the result and all that is open in the databases: one of them is about to be closed or
    /// replaced. The next Begin() reads anew.
    void ForgetPages();

    /// What is sought, and the texts of the result so far, in its order.
    const EverywhereQuery &Query() const;
    int TextCount() const;
    const EverywhereText &Text(int text) const;
    qint64 HitCount() const; ///< of all texts so far
    /// A hit with its words, read from the database. Throws DatabaseError.
    EverywhereHit Hit(int text, int hit);
    int TextsDone() const;
    int TextsInAll() const;   ///< texts and marks; grows while their list is being read
    int Failures() const;     ///< pages that could not be read
    qint64 KeptBytes() const; ///< of folded pages

    /// Called by Step() before and after a text with all its hits enters the result at that place. Both may be empty.
    /// They must not call Begin(), Step() or ForgetPages().
    std::function<void(int text)> BeforeText, AfterText;

private:
    struct State;
    std::unique_ptr<State> m_state;
};
