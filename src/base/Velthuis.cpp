#include "base/Velthuis.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <numeric>

namespace {

struct Pair
{
    char16_t mark;
    char16_t plain; ///< in lower case
    char16_t letter;
};

constexpr char16_t AsTheFileWritesIt = 0;

constexpr std::array<Pair, 10> pairs{{
    {u'a', u'a', u'ā'},
    {u'i', u'i', u'ī'},
    {u'u', u'u', u'ū'},
    {u'"', u'n', u'ṅ'},
    {u'~', u'n', u'ñ'},
    {u'.', u't', u'ṭ'},
    {u'.', u'd', u'ḍ'},
    {u'.', u'n', u'ṇ'},
    {u'.', u'l', u'ḷ'},
    {u'.', u'm', AsTheFileWritesIt},
}};

constexpr qsizetype Enough = 20;

} // namespace

std::optional<VelthuisStep> VelthuisStepAt(QStringView before, QChar typed, const std::function<QChar()> &niggahita)
{
    if (before.isEmpty())
        return std::nullopt;
    const QChar mark = before.back();
    const auto pair = std::ranges::find_if(
        pairs, [&](const Pair &row) { return row.mark == mark.toLower() && row.plain == typed.toLower(); });
    if (pair == pairs.end() || (mark.isLower() && typed.isUpper()))
        return std::nullopt;
    const QChar letter = pair->letter == AsTheFileWritesIt ? niggahita() : QChar(pair->letter);
    const bool isCapital = mark.isLetter() ? mark.isUpper() : typed.isUpper();
    return VelthuisStep{QString(mark) + typed, isCapital ? letter.toUpper() : letter};
}

void NiggahitaCount::Add(QStringView text)
{
    for (const QChar letter : text)
        AddOne(letter);
}

bool NiggahitaCount::IsClear() const
{
    return std::accumulate(m_counts, m_counts + Kinds, qsizetype(0)) >= Enough;
}

QChar NiggahitaCount::Letter() const
{
    return Niggahitas[std::max_element(m_counts, m_counts + Kinds) - m_counts];
}

size_t NiggahitaCount::IndexOf(QChar letter)
{
    return static_cast<size_t>(std::ranges::find(Niggahitas, letter.toLower().unicode()) - std::begin(Niggahitas));
}
