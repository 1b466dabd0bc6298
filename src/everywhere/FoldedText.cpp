#include "everywhere/FoldedText.h"

#include "everywhere/Folding.h"

#include <QString>

#include <algorithm>
#include <array>
#include <limits>
#include <tuple>

namespace {

constexpr qsizetype RoomForLetter = std::tuple_size_v<decltype(FoldedLetter::bytes)>;

/// Of ASCII characters that stand for themselves, what is compared: a letter in lower case, one kind of blank. Zero of
/// all others.
constexpr std::array<char, 256> OrdinaryBytes(Markup markup)
{
    std::array<char, 256> bytes{};
    for (char byte = '!'; byte <= '~'; ++byte) {
        const bool isMarkup = markup == Markup::Html && (byte == '<' || byte == '&');
        bytes[static_cast<unsigned char>(byte)] = isMarkup                     ? '\0'
                                                  : byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte | 0x20)
                                                                               : byte;
    }
    for (const char blank : {' ', '\t', '\n', '\v', '\f', '\r'})
        bytes[static_cast<unsigned char>(blank)] = ' ';
    return bytes;
}

constexpr std::array OrdinaryHtmlBytes = OrdinaryBytes(Markup::Html);
constexpr std::array OrdinaryTextBytes = OrdinaryBytes(Markup::None);

} // namespace

TextFolder::TextFolder(QByteArrayView source, Markup markup, QByteArray &buffer)
    : m_letters(source, markup), m_buffer(buffer), m_sourceSize(source.size())
{}

/// For the longest step, FoldOrdinary() and a letter. A letter of two bytes in a page has up to three folded.
void TextFolder::MakeRoom()
{
    const qsizetype least = m_size + 2 * FoldedText::PlaceDistance + RoomForLetter;
    if (m_buffer.size() < least)
        m_buffer.resize(std::max({least, m_sourceSize + 2 * FoldedText::PlaceDistance, m_buffer.size() * 2}));
}

/// What comes most, as long as nothing else does: ASCII characters, blanks, and letters of Latin alphabets beyond them.
void TextFolder::FoldOrdinary(qsizetype most)
{
    static const LatinLetters latin;
    const auto &ordinary = m_letters.IsHtml() ? OrdinaryHtmlBytes : OrdinaryTextBytes;
    const QByteArrayView bytes = m_letters.Ahead(most);
    const qsizetype start = m_letters.At();
    char *const folded = m_buffer.data();
    qsizetype at = 0, size = m_size; // bytes that are written might be members, for all that the compiler knows
    while (at < bytes.size()) {
        const char plain = ordinary[static_cast<unsigned char>(bytes[at])];
        if (plain == ' ') {
            if (size > 0 && folded[size - 1] != ' ')
                folded[size++] = ' ';
            ++at;
        } else if (plain != '\0') {
            NotePlace(size, start + at);
            folded[size++] = plain;
            ++at;
        } else {
            const Utf8::Character character = Utf8::At(bytes, at);
            if (!LatinLetters::Have(character.code))
                break;
            NotePlace(size, start + at);
            const FoldedLetter &letter = latin.Of(character.code);
            std::copy_n(letter.bytes.begin(), RoomForLetter, folded + size);
            size += letter.size;
            at += character.size;
        }
    }
    m_size = size;
    m_letters.Pass(at);
}

bool TextFolder::Fold(qsizetype sourceBytes)
{
    const qsizetype limit = std::min(m_letters.At() + sourceBytes, m_sourceSize);
    PageLetter letter;
    while (m_letters.At() < limit) {
        MakeRoom();
        FoldOrdinary(FoldedText::PlaceDistance);
        if (!m_letters.Next(letter))
            break;
        char *const end = m_buffer.data() + m_size;
        if (letter.code == U' ') {
            if (m_size > 0 && end[-1] != ' ')
                m_buffer.data()[m_size++] = ' ';
            continue;
        }
        const FoldedLetter &folded = FoldedLetterOf(letter.code);
        if (folded.size == 0)
            continue;
        NotePlace(m_size, letter.begin);
        std::copy_n(folded.bytes.begin(), RoomForLetter, end);
        m_size += folded.size;
    }
    return m_letters.At() < m_sourceSize;
}

FoldedText TextFolder::Folded() const
{
    return {QByteArray(m_buffer.constData(), m_size), std::make_shared<const std::vector<FoldedPlace>>(m_places)};
}

FoldedText Folded(QByteArrayView source, Markup markup)
{
    QByteArray buffer;
    TextFolder folder(source, markup, buffer);
    folder.Fold(source.size());
    return folder.Folded();
}

void FoldedStretch::Read(QByteArrayView source, Markup markup, const std::vector<FoldedPlace> &places, qsizetype begin,
                         qsizetype end)
{
    m_letters.clear();
    m_isAtEnd = true;
    m_end = 0;
    const auto isBefore = [](qsizetype offset, const FoldedPlace &place) { return offset < place.folded; };
    const auto next = std::upper_bound(places.begin(), places.end(), begin, isBefore);
    qsizetype at = 0;
    if (next != places.begin()) {
        m_end = std::prev(next)->folded;
        at = std::prev(next)->source;
    }
    // After the last place there is not more to come than between two.
    const qsizetype least =
        next == places.end() ? std::numeric_limits<qsizetype>::max() : std::max<qsizetype>(end, next->folded);

    PageLetters letters(source, markup, at);
    bool isAfterBlank = true; // at a known place no blank begins
    FoldedPageLetter letter;
    while (letters.Next(letter)) {
        const bool isBlank = letter.code == U' ';
        const qsizetype size = !isBlank ? FoldedLetterOf(letter.code).size : isAfterBlank ? 0 : 1;
        if (size > 0 && m_end >= least && !m_letters.empty()) {
            m_isAtEnd = false;
            break;
        }
        letter.foldedBegin = m_end;
        letter.foldedEnd = m_end += size;
        if (size > 0)
            isAfterBlank = isBlank;
        if (size > 0 || !isBlank)
            m_letters.push_back(letter);
    }
}

bool FoldedStretch::Holds(qsizetype begin, qsizetype end) const
{
    return !m_letters.empty() && m_letters.front().foldedBegin <= begin && end <= m_end;
}

qsizetype FoldedStretch::IndexAt(qsizetype folded) const
{
    const auto found = std::find_if(
        std::lower_bound(m_letters.begin(), m_letters.end(), folded,
                         [](const FoldedPageLetter &letter, qsizetype offset) { return letter.foldedBegin < offset; }),
        m_letters.end(), [](const FoldedPageLetter &letter) { return letter.foldedEnd > letter.foldedBegin; });
    return found - m_letters.begin();
}

QString FoldedStretch::Text(qsizetype first, qsizetype last) const
{
    QString text;
    for (qsizetype i = first; i < last; ++i)
        text += QChar::fromUcs4(m_letters[static_cast<std::size_t>(i)].code);
    return text;
}
