#pragma once

#include "base/TextRange.h"

#include <QString>
#include <QVariant>

#include <functional>
#include <optional>

/// The reader as tool windows see it. The main window implements it and outlives every tool window.
class Reading
{
public:
    virtual ~Reading() = default;

    /// Opens the text of that ID_VIC by moving the tree to its row; the page follows. Nothing moves if the tree has no
    /// such row. Throws DatabaseError.
    virtual void OpenText(const QVariant &idVic) = 0;
    /// The same for a text as marks refer to it, in the collection that is open.
    virtual void OpenMarkedText(int collection, int number) = 0;
    /// Highlights the words in the current page, processing events meanwhile.
    virtual void ColourWords(const QString &words) = 0;
    /// Takes the reader to the next or the previous highlighted place of the current page, or of what the find bar
    /// holds.
    virtual void StepToPlace(bool isBackward) = 0;
    /// Sets the words to highlight and to scroll to in each page that completes from now on; empty for none.
    virtual void SetSoughtWords(const QString &words) = 0;

    /// A search whose places are in many texts.
    struct Search
    {
        PlacesIn placesIn; ///< the places in the visible text of a page
        std::function<void(bool isBackward)> step;
    };
    /// From now on F3 and Shift+F3 make this search's steps, and each page that opens has its places marked, until
    /// another search begins or EndSearch(). The page on show loses its marks.
    virtual void BeginSearch(const Search &search) = 0;
    virtual void EndSearch() = 0;
    /// Opens a text at a place of the search, counted from 0 in its page; none if negative. In the given language mode,
    /// or the reader's own; that is not stored, and ends with the text. If the tree is filtered, the whole tree comes
    /// first. False, and told at the foot, if the canon has no such text. Throws DatabaseError.
    virtual bool OpenPlace(int idVic, std::optional<int> language, qsizetype place) = 0;
    /// Brings the reader to the front, with the focus in its page.
    virtual void GoToPage() = 0;
};
