#include "dictionary/PaliLetters.h"

namespace {

constexpr QStringView Vowels = u"aāiīuūeo";
constexpr QStringView Short = u"aiu";
constexpr QStringView Long = u"āīū";
constexpr QStringView Apostrophes = u"'’‘ʼ`´";

} // namespace

QString PaliFolded(const QString &text)
{
    QString folded = text.normalized(QString::NormalizationForm_C).toLower().normalized(QString::NormalizationForm_C);
    for (QChar &letter : folded) {
        if (letter == u'ṁ' || letter == u'ŋ')
            letter = u'ṃ';
        else if (Apostrophes.contains(letter))
            letter = u'’';
    }
    qsizetype from = 0, to = folded.size();
    while (from < to && folded[from] == u'’')
        ++from;
    while (to > from && folded[to - 1] == u'’')
        --to;
    return folded.mid(from, to - from);
}

QString Joined(QStringView left, QStringView right)
{
    QString text;
    text.reserve(left.size() + right.size());
    return text.append(left).append(right);
}

bool IsPaliVowel(QChar letter)
{
    return Vowels.contains(letter);
}

QChar WithLength(QChar vowel)
{
    const qsizetype at = Short.indexOf(vowel);
    return at < 0 ? vowel : Long[at];
}

QChar WithoutLength(QChar vowel)
{
    const qsizetype at = Long.indexOf(vowel);
    return at < 0 ? vowel : Short[at];
}

bool StartsDoubled(QStringView text)
{
    return text.size() > 2 && text[0] == text[1] && !IsPaliVowel(text[0]) && text[0] != u'ṃ';
}

bool IsNasalBefore(QChar nasal, QChar consonant)
{
    switch (nasal.unicode()) {
    case u'ṃ':
        return true;
    case u'ñ':
        return QStringView(u"cjhñy").contains(consonant);
    case u'n':
        return QStringView(u"tdn").contains(consonant);
    case u'm':
        return QStringView(u"pbmv").contains(consonant);
    case u'ṅ':
        return QStringView(u"kg").contains(consonant);
    case u'ṇ':
        return QStringView(u"ṭḍṇ").contains(consonant);
    case u'l':
        return consonant == u'l';
    default:
        return false;
    }
}
