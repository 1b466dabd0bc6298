#include "everywhere/FoldedText.h"

#include "everywhere/Folding.h"

#include <QString>

#include <algorithm>
#include <limits>
#include <tuple>

namespace {

constexpr qsizetype RoomForLetter = std::tuple_size_v<decltype(FoldedLetter::bytes)>;

char LoweredByte(char byte)
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte | 0x20) : byte;
}

bool IsBlankByte(char byte)
{
    return byte == ' ';
}

} // namespace

TextFolder::TextFolder(QByteArrayView source, Markup markup, QByteArray &buffer)
    : m_letters(source, markup), m_buffer(buffer), m_sourceSize(source.size())
{}

/// For the longest step: a run of plain characters, or a letter.
void TextFolder::MakeRoom()
{
    const qsizetype least = m_size + FoldedText::PlaceDistance + RoomForLetter;
    if (m_buffer.size() < least)
        m_buffer.resize(std::max({least, m_sourceSize + FoldedText::PlaceDistance, m_buffer.size() * 2}));
}

void TextFolder::NotePlace(qsizetype source)
{
    if (m_size < m_nextPlace)
        return;
    m_places.push_back({static_cast<quint32>(m_size), static_cast<quint32>(source)});
    m_nextPlace = m_size + FoldedText::PlaceDistance;
}

bool TextFolder::Fold(qsizetype sourceBytes)
{
    const qsizetype limit = std::min(m_letters.At() + sourceBytes, m_sourceSize);
    PageLetter letter;
    while (m_letters.At() < limit) {
        MakeRoom();
        const qsizetype at = m_letters.At();
        const QByteArrayView plain = m_letters.TakePlain(FoldedText::PlaceDistance);
        if (!plain.isEmpty()) {
            NotePlace(at);
            std::transform(plain.begin(), plain.end(), m_buffer.data() + m_size, LoweredByte);
            m_size += plain.size();
        }
        if (!m_letters.Next(letter))
            break;
        char *const end = m_buffer.data() + m_size;
        if (letter.code == U' ') {
            if (m_size > 0 && !IsBlankByte(end[-1]))
                m_buffer.data()[m_size++] = ' ';
            continue;
        }
        const FoldedLetter &folded = FoldedLetterOf(letter.code);
        if (folded.size == 0)
            continue;
        NotePlace(letter.begin);
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
