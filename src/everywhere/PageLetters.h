#pragma once

#include "everywhere/Folding.h"
#include "everywhere/Utf8.h"

#include <algorithm>

/// What a text is written in: mark-up with entities, or letters that stand for themselves. UTF-8 both.
enum class Markup { Html, None };

/// A letter of the visible text and where it is written.
struct PageLetter
{
    char32_t code = 0;   ///< U' ' for every kind of blank and for the border of a block
    qsizetype begin = 0; ///< of its bytes, or of those of its entity or tag
    qsizetype end = 0;
};

/// Reads the visible text of a page letter by letter, without building a document: tags end words only where a block
/// begins or ends; comments and elements that are not shown are left out, and so are characters without width. Blanks
/// come as they are written, several in a row too. An invalid byte is a U+FFFD. Takes linear time for any bytes.
class PageLetters
{
public:
    /// Borrows the bytes. `at` is the start, or a place where a letter begins; the end if there is none.
    PageLetters(QByteArrayView bytes, Markup markup, qsizetype at = 0)
        : m_bytes(bytes), m_isHtml(markup == Markup::Html), m_at(std::min(at, bytes.size()))
    {}

    /// False at the end.
    bool Next(PageLetter &letter)
    {
        if (m_at == m_bytes.size())
            return false;
        // Nearly all letters; the others cost a call.
        if (const Utf8::Character character = Utf8::At(m_bytes, m_at); IsOrdinary(character.code)) {
            letter = {character.code, m_at, m_at + character.size};
            m_at += character.size;
            return true;
        }
        return NextOfAny(letter);
    }
    /// The bytes from the place that is reached on, at most so many.
    QByteArrayView Ahead(qsizetype most) const { return m_bytes.sliced(m_at, std::min(most, m_bytes.size() - m_at)); }
    /// Passes bytes that the caller has read itself: whole letters that stand for themselves, and no mark-up.
    void Pass(qsizetype bytes) { m_at += bytes; }
    bool IsHtml() const { return m_isHtml; }
    /// How far the bytes have been read.
    qsizetype At() const { return m_at; }

private:
    static bool IsOrdinary(char32_t code) { return code == U' ' || LatinLetters::Have(code); }
    bool NextOfAny(PageLetter &letter);
    char32_t TakeCharacter();
    char32_t TakeEntity();
    /// At a "<" that begins markup, passes that and tells whether a block begins or ends there.
    bool BeginsMarkup() const;
    bool PassMarkup();
    bool PassTag();
    void PassAttributes();
    void PassTo(QByteArrayView end);
    void PassElement(QByteArrayView name);
    char Byte(qsizetype at) const { return at < m_bytes.size() ? m_bytes[at] : '\0'; }

    QByteArrayView m_bytes;
    bool m_isHtml;
    qsizetype m_at;
};
