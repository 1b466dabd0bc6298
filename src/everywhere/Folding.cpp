#include "everywhere/Folding.h"

#include <QList>

#include <algorithm>
#include <memory>

namespace {

constexpr char32_t PageSize = 256;
constexpr char32_t PageCount = 0x110000 / PageSize;

/// Accents of alphabets like the Latin one. The vowels of Indic scripts combine as well, and stay.
bool IsAccent(char32_t letter)
{
    return (letter >= 0x0300 && letter <= 0x036F) || (letter >= 0x1AB0 && letter <= 0x1AFF) ||
           (letter >= 0x1DC0 && letter <= 0x1DFF) || (letter >= 0x20D0 && letter <= 0x20FF) ||
           (letter >= 0xFE20 && letter <= 0xFE2F);
}

/// Letters that Unicode does not decompose, and their bases.
constexpr std::u32string_view Stroked = U"đĐħĦıłŁøØŧŦ";
constexpr std::u32string_view Bases = U"dDhHilLoOtT";
static_assert(Stroked.size() == Bases.size());

char32_t WithoutStroke(char32_t letter)
{
    const std::size_t at = Stroked.find(letter);
    return at == std::u32string_view::npos ? letter : Bases[at];
}

FoldedLetter Fold(char32_t letter)
{
    FoldedLetter folded;
    const QByteArray bytes = ExactForm(QString::fromUcs4(&letter, 1), false, false).toUtf8();
    folded.size = static_cast<quint8>(std::min<qsizetype>(bytes.size(), std::ssize(folded.bytes)));
    std::copy_n(bytes.begin(), folded.size, folded.bytes.begin());
    return folded;
}

} // namespace

const FoldedLetter &FoldedLetterOf(char32_t letter)
{
    using Page = std::array<FoldedLetter, PageSize>;
    static std::array<std::unique_ptr<Page>, PageCount> pages;
    std::unique_ptr<Page> &page = pages[letter / PageSize];
    if (!page) {
        page = std::make_unique<Page>();
        const char32_t first = letter / PageSize * PageSize;
        for (char32_t i = 0; i < PageSize; ++i)
            (*page)[i] = QChar::isSurrogate(first + i) ? FoldedLetter() : Fold(first + i);
    }
    return (*page)[letter % PageSize];
}

LatinLetters::LatinLetters()
{
    for (char32_t i = 0; i < m_letters.size(); ++i)
        m_letters[i] = FoldedLetterOf(i < FirstCount ? First + i : Additional + (i - FirstCount));
}

bool ContinuesLetter(char32_t letter)
{
    constexpr char32_t firstVowel = 0x1160; // of Korean; finals follow
    constexpr char32_t lastFinal = 0x11FF;
    return QChar::isMark(letter) || (letter >= firstVowel && letter <= lastFinal);
}

bool IsWordLetter(char32_t letter)
{
    return QChar::isLetterOrNumber(letter) || QChar::isMark(letter);
}

QString ExactForm(const QString &text, bool keepsCase, bool keepsMarks)
{
    if (std::all_of(text.begin(), text.end(), [](QChar letter) { return letter < u'\x80'; }))
        return keepsCase ? text : text.toLower();
    const QList<uint> letters = text.normalized(QString::NormalizationForm_D).toUcs4();
    QString form;
    form.reserve(letters.size());
    for (char32_t letter : letters) {
        if (!keepsMarks) {
            if (IsAccent(letter))
                continue;
            letter = WithoutStroke(letter);
        }
        form += QChar::fromUcs4(keepsCase ? letter : QChar::toCaseFolded(letter));
    }
    return form;
}
