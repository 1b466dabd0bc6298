#pragma once

#include <QString>

#include <array>

/// How letters are compared without regard to case and marks. All letters are Unicode characters, not UTF-16 units.
/// Main thread only.

/// A letter in UTF-8 as it is compared: decomposed, without accents, in lower case, with the base letter in place of a
/// stroked one ("đ" is "d"). Empty for an accent by itself.
struct FoldedLetter
{
    quint8 size = 0;
    std::array<char, 15> bytes{}; // a line of the table is 16 bytes; the longest folded letter has 12
};

/// Table look-up; the table is filled as letters come.
const FoldedLetter &FoldedLetterOf(char32_t letter);

/// Those of Latin alphabets beyond ASCII, which are most of the others in a page: the same without a call for each.
class LatinLetters
{
public:
    LatinLetters();
    static bool Have(char32_t letter)
    {
        return (letter >= First && letter < First + FirstCount) ||
               (letter >= Additional && letter < Additional + AdditionalCount);
    }
    /// Of a letter that they have. None is empty.
    const FoldedLetter &Of(char32_t letter) const
    {
        return m_letters[letter < First + FirstCount ? letter - First : letter - Additional + FirstCount];
    }

private:
    static constexpr char32_t First = 0xC0, FirstCount = 0x300 - First;
    static constexpr char32_t Additional = 0x1E00, AdditionalCount = 0x100;

    std::array<FoldedLetter, FirstCount + AdditionalCount> m_letters;
};

/// A character that belongs to the letter before it: a combining one that is not dropped, or a vowel or final of a
/// Korean syllable. No hit begins or ends before it.
bool ContinuesLetter(char32_t letter);

/// A character of a word: a letter, a digit, or what combines with them.
bool IsWordLetter(char32_t letter);

/// A text as it is compared where case or marks count, or both: decomposed, so that "ā" is "a" with a macron.
QString ExactForm(const QString &text, bool keepsCase, bool keepsMarks);
