#pragma once

#include <QString>
#include <QVariant>

/// What a tool window may ask of the reader. The main window implements it and outlives every tool window.
class Reading
{
public:
    virtual ~Reading() = default;

    /// Opens the text of that ID_VIC by moving the tree to its row; the page follows. Nothing moves if the tree has no
    /// such row. Throws DatabaseError.
    virtual void OpenText(const QVariant &idVic) = 0;
    /// The same for a text as marks name it, in the collection that is open.
    virtual void OpenMarkedText(int collection, int number) = 0;
    /// Colours the words in the page in view, processing events meanwhile.
    virtual void ColourWords(const QString &words) = 0;
    /// The words to colour and to scroll to in each page that completes from now on; empty for none.
    virtual void SetSoughtWords(const QString &words) = 0;
};
