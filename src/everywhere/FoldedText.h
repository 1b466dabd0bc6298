#pragma once

#include "everywhere/PageLetters.h"

#include <QByteArray>

#include <memory>
#include <vector>

/// A place in a folded text at which a letter begins, and where that is written in its source. In bytes.
struct FoldedPlace
{
    quint32 folded = 0;
    quint32 source = 0;
};

/// The visible text of a page as it is compared: folded letters in UTF-8, each run of blanks as one blank, none at the
/// start. Of the places of its letters only one in about PlaceDistance bytes is kept; the others follow from reading
/// the source on from there.
struct FoldedText
{
    static constexpr qsizetype PlaceDistance = 1024;

    QByteArray bytes;
    std::shared_ptr<const std::vector<FoldedPlace>> places; ///< ascending, the first at the start
};

/// A letter with its place in the folded text. Accents, and blanks after a blank, take no place there: begin is end.
struct FoldedPageLetter : PageLetter
{
    qsizetype foldedBegin = 0;
    qsizetype foldedEnd = 0;
};

/// Folds a text, in pieces if it is long.
class TextFolder
{
public:
    /// Borrows the source, which is shorter than 4 GB. Uses the memory of `buffer` and leaves the folded bytes there.
    TextFolder(QByteArrayView source, Markup markup, QByteArray &buffer);

    /// Goes on through about so many bytes of the source; false at its end.
    bool Fold(qsizetype sourceBytes);
    /// What has been folded, in memory of just its size.
    FoldedText Folded() const;

private:
    void MakeRoom();
    void FoldOrdinary(qsizetype most);
    void NotePlace(qsizetype folded, qsizetype source)
    {
        if (folded < m_nextPlace)
            return;
        m_places.push_back({static_cast<quint32>(folded), static_cast<quint32>(source)});
        m_nextPlace = folded + FoldedText::PlaceDistance;
    }

    PageLetters m_letters;
    QByteArray &m_buffer;
    qsizetype m_size = 0;
    qsizetype m_sourceSize;
    qsizetype m_nextPlace = 0;
    std::vector<FoldedPlace> m_places;
};

/// The folded text of a short source.
FoldedText Folded(QByteArrayView source, Markup markup);

/// Some letters of a text around a place, read from its source.
class FoldedStretch
{
public:
    /// Reads from the last known place at or before `begin` up to the end of the letters that end at `end`, and on to
    /// the next known place. Offsets are those of the folded text.
    void Read(QByteArrayView source, Markup markup, const std::vector<FoldedPlace> &places, qsizetype begin,
              qsizetype end);
    /// True if all letters from `begin` to `end` are here.
    bool Holds(qsizetype begin, qsizetype end) const;
    const std::vector<FoldedPageLetter> &Letters() const { return m_letters; }
    /// True if no letter comes after these.
    bool IsAtEnd() const { return m_isAtEnd; }
    /// Index of the letter that begins at a place; that of the letter after it if none begins there. Letters().size()
    /// at the end of the text. After the accents of the letter before.
    qsizetype IndexAt(qsizetype folded) const;
    /// Letters by index, blanks as in the folded text.
    QString Text(qsizetype first, qsizetype last) const;

private:
    std::vector<FoldedPageLetter> m_letters;
    qsizetype m_end = 0; ///< in the folded text
    bool m_isAtEnd = false;
};
