#include "base/Velthuis.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

struct Pair
{
    char16_t mark;
    char16_t plain; ///< in lower case
    char16_t letter;
};

constexpr char16_t AsTheFileWritesIt = u'm';

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

} // namespace

std::optional<VelthuisStep> VelthuisStepAt(QStringView text, QChar niggahita)
{
    if (text.size() < 2)
        return std::nullopt;
    const QChar mark = text[text.size() - 2], plain = text.back();
    for (const Pair &pair : pairs) {
        if (mark.toLower() != pair.mark || plain.toLower() != pair.plain)
            continue;
        // Of a doubled vowel the first letter tells the case, else the only one that has any.
        const bool isCapital = (mark.isLetter() ? mark : plain).isUpper();
        const QChar letter = pair.letter == AsTheFileWritesIt ? niggahita : QChar(pair.letter);
        return VelthuisStep{text.last(2).toString(), QString(isCapital ? letter.toUpper() : letter)};
    }
    return std::nullopt;
}
