#pragma once

#include <QString>
#include <QVariant>

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
};
