#include "dictionary/PaliSeams.h"

#include "dictionary/PaliLetters.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype LongestEnclitic = 3; ///< that lengthens the vowel before it

/// The right word with the vowel that it may have begun with.
QList<std::pair<QString, int>> FirstVowels(const QString &right)
{
    QList<std::pair<QString, int>> words{{right, 0}};
    const QChar first = right.front();
    if (const QChar plain = WithoutLength(first); plain != first)
        words.append({plain + right.mid(1), 0});
    else if (first == u'e')
        words.append({u'i' + right.mid(1), 2});
    else if (first == u'o')
        words.append({u'u' + right.mid(1), 1});
    return words;
}

/// The left word has lost its last vowel before that of the right one, or turned it into a consonant.
void AddBeforeVowel(const QString &left, const QString &right, QList<PaliSeam> &seams)
{
    const QChar last = left.back();
    const QString shorter = left.chopped(1);
    if (last == u'm')
        seams.append({shorter + u'ṃ', right, 0});
    const auto rights = FirstVowels(right);
    for (const auto &[word, cost] : rights) {
        for (const auto &[vowel, more] :
             {std::pair(u'a', 1), {u'ā', 2}, {u'i', 1}, {u'u', 2}, {u'e', 2}, {u'o', 2}, {u'ī', 2}}) {
            // "ī" is of two short ones, hardly of "a" and "i".
            const bool isRare = right.front() == u'ī' && word.front() == u'i' && vowel != u'i';
            seams.append({left + vowel, word, cost + more + (isRare ? 2 : 0)});
        }
        if (!shorter.isEmpty() && last == u'v') {
            seams.append({shorter + u'o', word, cost + 2});
            seams.append({shorter + u'u', word, cost + 1});
            if (shorter.back() == u't') // "iti"
                seams.append({shorter + u'i', word, cost + 2});
        } else if (!shorter.isEmpty() && last == u'y') {
            seams.append({shorter + u'e', word, cost + 2});
            seams.append({shorter + u'i', word, cost + 1});
        }
    }
    if (left.size() > 2 && left.endsWith(u"cc")) // "iti" before a vowel
        seams.append({left.chopped(2) + u"ti"_s, right, 2});
    // An inserted consonant, or one that the left word has only before vowels.
    if (!shorter.isEmpty() && QStringView(u"drymntghḷ").contains(last) && IsPaliVowel(shorter.back())) {
        seams.append({shorter, right, last == u'd' || last == u'y' ? 1 : 2});
        if (last == u'd') // "yad", "tad", "etad"
            seams.append({shorter + u'ṃ', right, shorter.size() < 3 || shorter == u"eta" ? 0 : 1});
        if (const QChar longer = WithLength(shorter.back()); longer != shorter.back())
            seams.append({shorter.chopped(1) + longer, right, 2});
    }
}

} // namespace

QList<PaliSeam> PaliSeamsAt(const QString &form, qsizetype at)
{
    const QString left = form.left(at), right = form.mid(at);
    const QChar last = left.back(), first = right.front();
    QList<PaliSeam> seams;
    if (IsPaliVowel(last) && IsPaliVowel(first)) {
        seams.append({left, right, 0});
    } else if (IsPaliVowel(last)) {
        seams.append({left, right, 0});
        if (const QChar plain = WithoutLength(last); plain != last)
            seams.append({left.chopped(1) + plain, right, last == u'ā' && right.size() > LongestEnclitic ? 2 : 1});
        if (StartsDoubled(right))
            seams.append({left, right.mid(1), 0});
        // The right word has lost its vowel: "cakkhundriya".
        if (right.size() > LongestEnclitic && IsNasalBefore(first, right[1]) && first != u'ṃ' && first != right[1])
            seams.append({left, u'i' + right, 2});
        // A vowel was dropped behind "o" or "e".
        if (last == u'o' || last == u'e')
            seams.append({left, u'a' + right, 3});
    } else if (IsPaliVowel(first)) {
        AddBeforeVowel(left, right, seams);
    } else if (left.size() > 1 && IsPaliVowel(left[left.size() - 2]) && IsNasalBefore(last, first)) {
        seams.append({left.chopped(1) + u'ṃ', right, 0});
        if (right.size() > 1 &&
            (first == u'ñ' || first == u'm' || first == u'n')) // "taññeva": the consonant is the niggahita's too
            seams.append({left.chopped(1) + u'ṃ', right.mid(1), 1});
    }
    return seams;
}
