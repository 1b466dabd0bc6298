#include "dictionary/FormFinder.h"

#include "dictionary/EnglishReadings.h"
#include "dictionary/PaliAnalysis.h"
#include "dictionary/PaliLetters.h"
#include "dictionary/PaliTables.h"
#include "stores/Schema.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

enum class Language { English, Vietnamese, French, Pali };

Language LanguageOf(int kind)
{
    switch (kind) {
    case DictKind::PaliVietnamese:
    case DictKind::PaliEnglish:
        return Language::Pali;
    case DictKind::EnglishVietnamese:
    case DictKind::EnglishPali:
        return Language::English;
    case DictKind::FrenchVietnamese:
        return Language::French;
    default:
        return Language::Vietnamese;
    }
}

QString Derived(const QString &form, const QString &from, const QString &how = {})
{
    return form + u" → "_s + from + (how.isEmpty() ? QString() : u", "_s + how);
}

/// Adds a word once, as long as there is room.
void Append(const FoundWord &word, QList<FoundWord> &found)
{
    const auto isSame = [&](const FoundWord &known) { return known.word == word.word; };
    if (found.size() < FormFinder::MostWords && std::none_of(found.cbegin(), found.cend(), isSame))
        found.append(word);
}

void AppendPali(const QString &form, KnownWords &words, int language, QList<FoundWord> &found)
{
    for (const PaliWay &way : PaliWays(PaliFolded(form), words)) {
        QStringList names;
        for (const PaliPiece &piece : way.pieces)
            names.append(piece.word);
        const QString derivation = Derived(form, names.join(u" + "_s), PaliTerms(way.terms, language));
        for (const PaliPiece &piece : way.pieces) {
            if (piece.kind != 0)
                Append({piece.word, piece.kind, derivation}, found);
        }
    }
}

void AppendEnglish(const QString &form, KnownWords &words, int language, QList<FoundWord> &found)
{
    const QList<EnglishReading> readings = EnglishReadings(form);
    QStringList asked;
    for (const EnglishReading &reading : readings)
        asked.append(reading.head);
    words.Ask(asked);
    for (const EnglishReading &reading : readings) {
        if (const KnownWords::Place place = words.Of(reading.head); place.kind != 0)
            Append({place.word, place.kind, Derived(form, place.word, EnglishTerm(reading.term, language))}, found);
    }
}

QString Plain(const QString &text)
{
    return text.normalized(QString::NormalizationForm_C).toLower();
}

/// Without what cannot belong to a word at its ends.
QString Trimmed(const QString &form)
{
    qsizetype from = 0, to = form.size();
    while (from < to && !form[from].isLetterOrNumber() && !form[from].isMark() && !form[from].isSurrogate())
        ++from;
    while (to > from && !form[to - 1].isLetterOrNumber() && !form[to - 1].isMark() && !form[to - 1].isSurrogate())
        --to;
    return form.mid(from, to - from);
}

} // namespace

QList<FoundWord> FormFinder::WordsBehind(const QString &text, const QList<int> &kinds)
{
    const QString form = Trimmed(text.normalized(QString::NormalizationForm_C));
    QList<FoundWord> found;
    if (form.isEmpty() || form.size() > LongestForm)
        return found;
    QList<int> waiting = kinds;
    while (!waiting.isEmpty()) {
        const Language language = LanguageOf(waiting.first());
        QList<int> own, others;
        for (const int kind : std::as_const(waiting))
            (LanguageOf(kind) == language ? own : others).append(kind);
        waiting = others;
        KnownWords words(m_test, own, language == Language::Pali ? &m_signs : nullptr);
        if (language == Language::Pali) {
            AppendPali(form.toLower(), words, m_language, found);
        } else if (language == Language::English) {
            AppendEnglish(Plain(form), words, m_language, found);
        } else {
            words.Ask({Plain(form)});
            if (const KnownWords::Place place = words.Of(Plain(form)); place.kind != 0)
                Append({place.word, place.kind, Derived(Plain(form), place.word)}, found);
        }
    }
    return found;
}

QStringList SyllableRuns(const QStringList &syllables, qsizetype index)
{
    QStringList runs;
    if (index < 0 || index >= syllables.size())
        return runs;
    for (qsizetype size = std::min(FormFinder::MostSyllables, syllables.size()); size > 0; --size) {
        const qsizetype last = std::min(index, syllables.size() - size);
        for (qsizetype from = std::max<qsizetype>(0, index - size + 1); from <= last; ++from)
            runs.append(Plain(syllables.mid(from, size).join(u' ')));
    }
    return runs;
}

QList<FoundWord> FormFinder::WordsAround(const QStringList &syllables, qsizetype index, const QList<int> &kinds)
{
    QStringList plain;
    for (const QString &syllable : syllables)
        plain.append(Trimmed(syllable));
    const QStringList runs = SyllableRuns(plain, index);
    KnownWords words(m_test, kinds);
    words.Ask(runs);
    QList<FoundWord> found;
    for (const QString &run : runs) {
        if (const KnownWords::Place place = words.Of(run); place.kind != 0)
            Append({place.word, place.kind, Derived(Plain(plain[index]), place.word)}, found);
    }
    return found;
}

QList<int> KindsOfSameLanguage(int kind)
{
    QList<int> kinds{kind};
    for (const int other : DictKind::All) {
        if (other != kind && IsOneOf(DictKind::All, kind) && LanguageOf(other) == LanguageOf(kind))
            kinds.append(other);
    }
    return kinds;
}
