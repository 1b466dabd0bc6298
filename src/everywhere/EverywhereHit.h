#pragma once

#include <QString>

enum class EverywhereKind { Name, Page, Mark };

enum class EverywhereField { None, Title, Keywords, Note, Excerpt };

/// All words within so many letters are near each other. Counted in bytes of folded text, which are letters in every
/// alphabet like the Latin one.
inline constexpr int NearLetters = 200;

/// A place where a word or a phrase of the query stands. Hits do not overlap: the one that begins first counts, and of
/// those that begin together the longest.
struct EverywhereHit
{
    EverywhereKind kind = EverywhereKind::Page;
    int language = 0;                              ///< PageMode of a page or a name; a parallel page is Parallel
    int idFoc = 0;                                 ///< key of a mark
    EverywhereField field = EverywhereField::None; ///< of a mark
    QString before;                                ///< words before, on one line, cut at words; with "…" if cut
    QString hit;                                   ///< as it stands in the text, marks and case kept
    QString after;                                 ///< words after, likewise
    /// Which of the hits of that page, name or field it is, from 0, and how many these are. EverywhereRanges() finds
    /// the same in the text of the page on the screen, so that this one can be brought into sight.
    int number = 0;
    int count = 0;
    bool isNear = false; ///< all words stand near each other here; always true for a single word
};

/// Names in three languages, as stored; any may be empty.
struct EverywhereNames
{
    QString pali;
    QString vietnamese;
    QString english;
};

/// A text with hits in its names and pages, or in its marks. Its hits are in reading order: names, then the pages in
/// Pāli, Vietnamese, English; of marks by key, then title, keywords, note, excerpt.
struct EverywhereText
{
    bool isMarks = false;
    int collection = 0; ///< NIK_SUT; Collection::Kelora for every text of the canon
    int idVic = 0;      ///< the text, NIC_SUT of marks
    EverywhereNames names;
    int idVit = 0;         ///< its group; 0 if it is not in the canon
    EverywhereNames group; ///< names of the group; empty if it is not in the canon
    bool isNear = false;   ///< one of its hits is near
    int hitCount = 0;
    int nearest = 0; ///< the first of its hits that is near; 0 without one
};
