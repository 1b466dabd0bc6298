#include "lumivara-data/dictionary/DictionaryOrder.h"

#include "stores/Schema.h"

#include <QHash>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype LongestKey = 190;

// Marks of a key in the order of their bytes: end of a syllable or word, blank, digits, letters, letters of no
// alphabet.
constexpr char EndMark = ' ';
constexpr char BlankMark = '!';
constexpr char FirstDigitMark = '#';
constexpr char FirstLetterMark = '0';
constexpr char StrangerMark = '~';

enum class Language { Pali, Vietnamese, English, French };

Language LanguageOf(int kind)
{
    switch (kind) {
    case DictKind::VietnameseEnglish:
    case DictKind::VietnameseFrench:
    case DictKind::VietnamesePali:
        return Language::Vietnamese;
    case DictKind::PaliVietnamese:
    case DictKind::PaliEnglish:
        return Language::Pali;
    case DictKind::FrenchVietnamese:
        return Language::French;
    default:
        return Language::English;
    }
}

/// The marks of the letters, those of two characters with both in one number.
class Alphabet
{
public:
    explicit Alphabet(const QString &letters)
    {
        for (const QString &letter : letters.split(u' ')) {
            m_marks.insert(NumberOf(letter), char(FirstLetterMark + m_marks.size()));
            m_hasPairs = m_hasPairs || letter.size() > 1;
        }
    }
    /// 0 for what is no letter, such as an empty text.
    char Mark(QStringView letter) const { return m_marks.value(NumberOf(letter)); }
    bool HasPairs() const { return m_hasPairs; }

private:
    static quint32 NumberOf(QStringView letter)
    {
        quint32 number = 0;
        for (const QChar unit : letter)
            number = number << 16 | unit.unicode();
        return number;
    }

    QHash<quint32, char> m_marks;
    bool m_hasPairs = false;
};

const Alphabet &AlphabetOf(Language language)
{
    static const Alphabet pali(u"a ā i ī u ū e o k kh g gh ṅ c ch j jh ñ ṭ ṭh ḍ ḍh ṇ t th d dh n "
                               "p ph b bh m y r l v s h ḷ ṃ"_s);
    static const Alphabet vietnamese(u"a ă â b c d đ e ê f g h i j k l m n o ô ơ p q r s t u ư v w x y z"_s);
    static const Alphabet latin(u"a b c d e f g h i j k l m n o p q r s t u v w x y z"_s);
    return language == Language::Pali ? pali : language == Language::Vietnamese ? vietnamese : latin;
}

// Combining marks in the order of their languages: grave, hook, tilde, acute, dot; acute, grave, circumflex, diaeresis,
// cedilla, tilde, macron.
const QString VietnameseTones = u"\u0300\u0309\u0303\u0301\u0323"_s;
const QString LatinAccents = u"\u0301\u0300\u0302\u0308\u0327\u0303\u0304"_s;

/// The mark of the longest letter at `at`, whose length goes into `length`. What the alphabet lacks counts as its base
/// letter; 0 for what has no place in the order, such as an apostrophe.
char MarkAt(const Alphabet &alphabet, const QString &word, qsizetype at, qsizetype &length)
{
    if (alphabet.HasPairs() && at + 1 < word.size()) {
        length = 2;
        if (const char mark = alphabet.Mark(QStringView(word).mid(at, 2)))
            return mark;
    }
    length = 1;
    if (const char mark = alphabet.Mark(QStringView(word).mid(at, 1)))
        return mark;
    const QChar c = word[at];
    if (c.isSpace() || c == u'-')
        return BlankMark;
    if (c >= u'0' && c <= u'9')
        return char(FirstDigitMark + (c.unicode() - u'0'));
    const QString base = c == u'đ' ? u"d"_s : QString(c).normalized(QString::NormalizationForm_D).left(1);
    if (const char mark = alphabet.Mark(base))
        return mark;
    return c.isLetterOrNumber() || c.isSurrogate() ? StrangerMark : '\0';
}

QByteArray MarksOf(const Alphabet &alphabet, const QString &word)
{
    QByteArray marks;
    for (qsizetype at = 0, length = 1; at < word.size(); at += length) {
        if (const char mark = MarkAt(alphabet, word, at, length))
            marks += mark;
    }
    return marks;
}

QByteArray VietnameseKey(const QString &word)
{
    QByteArray key;
    for (const QString &syllable : QString(word).replace(u'-', u' ').split(u' ', Qt::SkipEmptyParts)) {
        int tone = 0;
        QString plain;
        for (const QChar c : syllable.normalized(QString::NormalizationForm_D)) {
            if (const qsizetype found = VietnameseTones.indexOf(c); found >= 0)
                tone = int(found) + 1;
            else
                plain += c;
        }
        key += MarksOf(AlphabetOf(Language::Vietnamese), plain.normalized(QString::NormalizationForm_C));
        key += EndMark;
        key += char(FirstLetterMark + tone);
    }
    return key;
}

/// Letters first, then a mark for the accent on each of them.
QByteArray LatinKey(const QString &word, bool accentsFromTheEnd)
{
    QString letters = word;
    letters.replace(u'œ', u"oe"_s).replace(u'æ', u"ae"_s).replace(u'ß', u"ss"_s);
    QString base;
    QByteArray accents;
    for (const QChar c : letters.normalized(QString::NormalizationForm_D)) {
        if (!c.isMark()) {
            base += c;
            accents += FirstLetterMark;
        } else if (!accents.isEmpty()) {
            const qsizetype accent = LatinAccents.indexOf(c);
            accents.back() = accent < 0 ? StrangerMark : char(FirstLetterMark + 1 + accent);
        }
    }
    if (accentsFromTheEnd)
        std::reverse(accents.begin(), accents.end());
    return MarksOf(AlphabetOf(Language::English), base) + EndMark + accents;
}

} // namespace

QByteArray DictionarySortKey(int kind, const QString &word)
{
    const Language language = LanguageOf(kind);
    const QString lower = word.toLower().normalized(QString::NormalizationForm_C);
    QByteArray key;
    if (language == Language::Pali)
        key = MarksOf(AlphabetOf(language), lower);
    else if (language == Language::Vietnamese)
        key = VietnameseKey(lower);
    else
        key = LatinKey(lower, language == Language::French);
    return key.left(LongestKey);
}
