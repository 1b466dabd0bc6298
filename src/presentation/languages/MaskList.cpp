#include "presentation/languages/MaskList.h"

#include <algorithm>

namespace {

// Goes back to the last "*" only, which is enough: an earlier one can't reach further than it did.
bool MatchesMask(QStringView text, QStringView mask)
{
    qsizetype at = 0, inMask = 0, star = -1, afterStar = 0;
    while (at < text.size()) {
        if (inMask < mask.size() && mask[inMask] == u'*') {
            star = inMask++;
            afterStar = at;
        } else if (inMask < mask.size() && (mask[inMask] == u'?' || mask[inMask] == text[at])) {
            ++inMask;
            ++at;
        } else if (star >= 0) {
            inMask = star + 1;
            at = ++afterStar;
        } else {
            return false;
        }
    }
    while (inMask < mask.size() && mask[inMask] == u'*')
        ++inMask;
    return inMask == mask.size();
}

// One unit for one unit, so that "?" counts the text as it stands.
QString Folded(QString text)
{
    for (QChar &unit : text)
        unit = unit.toCaseFolded();
    return text;
}

} // namespace

TDKLang_MaskList::TDKLang_MaskList(const QStringList &masks)
{
    for (const QString &mask : masks)
        m_masks.append(Folded(mask));
}

bool TDKLang_MaskList::Matches(const QString &text) const
{
    if (m_masks.isEmpty())
        return false;
    const QString folded = Folded(text);
    return std::any_of(m_masks.cbegin(), m_masks.cend(),
                       [&folded](const QString &mask) { return MatchesMask(folded, mask); });
}
