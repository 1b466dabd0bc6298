#include "lumivara-data/DictionaryOrder.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype LongestKey = 190;
constexpr char FirstWeight = '0';

// Letters of more than one character stand before their first letter could match alone.
const QStringList &PaliLetters()
{
    static const QStringList letters =
        u"a ā i ī u ū e o ṃ k kh g gh ṅ c ch j jh ñ ṭ ṭh ḍ ḍh ṇ t th d dh n p ph b bh m y r l v s h ḷ"_s.split(u' ');
    return letters;
}

const QStringList &VietnameseLetters()
{
    static const QStringList letters =
        u"a ă â b c d đ e ê f g h i j k l m n o ô ơ p q r s t u ư v w x y z"_s.split(u' ');
    return letters;
}

const QStringList &LatinLetters()
{
    static const QStringList letters = u"a b c d e f g h i j k l m n o p q r s t u v w x y z"_s.split(u' ');
    return letters;
}

const QStringList &LettersOf(int kind)
{
    switch (kind) {
    case 2:
    case 4:
    case 6:
        return VietnameseLetters();
    case 5:
    case 8:
        return PaliLetters();
    default:
        return LatinLetters();
    }
}

char Weight(qsizetype position)
{
    return char(FirstWeight + position);
}

/// Tone marks of Vietnamese in their order, as combining characters: grave, hook, tilde, acute, dot below.
int ToneOf(QChar mark)
{
    return int(u"\u0300\u0309\u0303\u0301\u0323"_s.indexOf(mark)) + 1;
}

/// Position of the longest letter at `at`, and its length in `length`; -1 if the alphabet has none.
qsizetype FindLetter(const QStringList &letters, const QString &word, qsizetype at, qsizetype &length)
{
    qsizetype found = -1;
    length = 1;
    for (qsizetype i = 0; i < letters.size(); ++i) {
        if (QStringView(word).mid(at).startsWith(letters[i]) && (found < 0 || letters[i].size() > length)) {
            found = i;
            length = letters[i].size();
        }
    }
    return found;
}

/// Takes the tone marks out of a word and gives them as weights, one for each mark.
QString WithoutTones(const QString &word, QByteArray &tones)
{
    QString plain;
    for (const QChar c : word.normalized(QString::NormalizationForm_D)) {
        if (const int tone = ToneOf(c); tone > 0)
            tones += Weight(tone);
        else
            plain += c;
    }
    return plain.normalized(QString::NormalizationForm_C);
}

} // namespace

QByteArray DictionarySortKey(int kind, const QString &word)
{
    const QStringList &letters = LettersOf(kind);
    QByteArray tones;
    QString plain = word.toLower();
    if (&letters == &VietnameseLetters())
        plain = WithoutTones(plain, tones);

    QByteArray key;
    for (qsizetype at = 0, length = 1; at < plain.size(); at += length) {
        qsizetype position = FindLetter(letters, plain, at, length);
        if (position < 0) {
            // A foreign letter counts as its base letter; what has none (blank, hyphen) comes before all letters.
            const QString base = plain.mid(at, 1).normalized(QString::NormalizationForm_D).left(1);
            position = letters.indexOf(base);
        }
        key += position < 0 ? '!' : Weight(position + 1);
    }
    key += ' ' + tones;
    return key.left(LongestKey);
}

QString DictionaryWordForm(int kind, const QString &word)
{
    QString form = word;
    for (QChar &c : form)
        c = kind == 1 ? c.toLower() : c.toUpper();
    return form;
}
