#include "reader/ExcerptPlaces.h"

#include "base/VisibleText.h"
#include "everywhere/PageLetters.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>

namespace {

constexpr qsizetype headSize = 8; // letters by which an excerpt is recognised first
constexpr int filterBits = 16;
constexpr qsizetype StretchSize = 64; // bits of its letters

quint64 HeadHash(const QChar *letters)
{
    quint64 parts[2];
    static_assert(sizeof parts == headSize * sizeof(QChar));
    std::memcpy(parts, letters, sizeof parts);
    return (parts[0] * 0x9E3779B97F4A7C15 ^ parts[1]) * 0xC2B2AE3D27D4EB4F;
}

size_t FilterOf(quint64 hash)
{
    return static_cast<size_t>(hash >> (64 - filterBits));
}

} // namespace

void WrittenText::Add(QStringView written)
{
    // A page may have a million of them, and each costs a call where they are appended one by one.
    qsizetype end = m_letters.size();
    m_letters.resize(end + written.size());
    QChar *const letters = m_letters.data();
    for (const QChar character : written) {
        const qsizetype place = m_size++;
        if (place % StretchSize == 0)
            m_stretches.push_back({0, end});
        if (IsVisibleLetter(character.unicode())) {
            letters[end++] = character;
            m_stretches.back().letters |= quint64(1) << (place % StretchSize);
        }
    }
    m_letters.truncate(end);
}

qsizetype WrittenText::PlaceOf(qsizetype letter) const
{
    const auto stretch = std::prev(std::ranges::upper_bound(m_stretches, letter, {}, &Stretch::before));
    quint64 letters = stretch->letters;
    for (qsizetype before = stretch->before; before < letter; ++before)
        letters &= letters - 1;
    return (stretch - m_stretches.begin()) * StretchSize + std::countr_zero(letters);
}

QString LettersOfExcerpt(const QByteArray &excerpt)
{
    QString text;
    text.reserve(excerpt.size());
    PageLetters letters(excerpt, Markup::Html);
    for (PageLetter letter; letters.Next(letter);) {
        if (letter.code != U' ')
            text += QStringView(QChar::fromUcs4(letter.code));
    }
    return text;
}

ExcerptFinder::ExcerptFinder(const QString &page, const QStringList &excerpts)
    : m_page(page), m_excerpts(excerpts), m_isHead(size_t(1) << filterBits),
      m_states(static_cast<size_t>(excerpts.size()))
{
    for (qsizetype excerpt = 0; excerpt < excerpts.size(); ++excerpt) {
        if (excerpts[excerpt].size() < headSize)
            continue;
        const quint64 hash = HeadHash(excerpts[excerpt].constData());
        m_heads.push_back({hash, excerpt});
        m_isHead[FilterOf(hash)] = true;
    }
    std::ranges::sort(m_heads, {}, &Head::hash);
}

bool ExcerptFinder::Go(qsizetype letters)
{
    const qsizetype last = m_heads.empty() ? -1 : m_page.size() - headSize;
    for (const qsizetype end = m_at + letters; m_at < end && m_at <= last; ++m_at) {
        const quint64 hash = HeadHash(m_page.constData() + m_at);
        if (m_isHead[FilterOf(hash)])
            LookAt(m_at, hash);
    }
    if (m_at <= last)
        return true;
    FindShort();
    std::ranges::stable_sort(m_found, {}, &ExcerptPlace::letter);
    return false;
}

void ExcerptFinder::LookAt(qsizetype letter, quint64 hash)
{
    const QStringView rest = QStringView(m_page).sliced(letter);
    for (const Head &head : std::ranges::equal_range(m_heads, hash, {}, &Head::hash)) {
        const QStringView words = m_excerpts[head.excerpt];
        // Texts say the same again with other words further on: their ends differ at once.
        if (MayTake(letter, head.excerpt) && words.size() <= rest.size() &&
            rest.first(words.size()).endsWith(words.last(headSize)) && rest.startsWith(words))
            Take(letter, head.excerpt);
    }
}

/// Not within the last place, nor after the most of them.
bool ExcerptFinder::MayTake(qsizetype letter, qsizetype excerpt) const
{
    const State &state = m_states[static_cast<size_t>(excerpt)];
    return letter >= state.end && state.count < MostPlaces;
}

void ExcerptFinder::Take(qsizetype letter, qsizetype excerpt)
{
    State &state = m_states[static_cast<size_t>(excerpt)];
    state = {letter + m_excerpts[excerpt].size(), state.count + 1};
    m_found.append({letter, excerpt});
}

/// Those that are too short to have a head.
void ExcerptFinder::FindShort()
{
    for (qsizetype excerpt = 0; excerpt < m_excerpts.size(); ++excerpt) {
        const QString &words = m_excerpts[excerpt];
        if (words.isEmpty() || words.size() >= headSize)
            continue;
        const State &state = m_states[static_cast<size_t>(excerpt)];
        for (qsizetype at = m_page.indexOf(words); at >= 0 && MayTake(at, excerpt);
             at = m_page.indexOf(words, state.end))
            Take(at, excerpt);
    }
}
