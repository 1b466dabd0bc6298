#include "dictionary/FormSearch.h"

#include "base/Messages.h"
#include "stores/Schema.h"

#include <QElapsedTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype MostAtOnce = 24; ///< words of one question
constexpr qint64 LongQuestion = 10;  ///< milliseconds: fewer words at once
constexpr qint64 ShortQuestion = 3;  ///< more
constexpr qint64 MostWork = 1500;    ///< milliseconds: a dictionary that answers so slowly is not asked any more
constexpr qsizetype MostTyped = 12;  ///< syllables of a text that are looked at
constexpr qsizetype MostCapitals = 5;

const QString Arrow = u" → "_s;

constexpr Message brought{u"dạng mà từ điển ghi", u"a form that the dictionary gives"};

QString Folded(const QString &text)
{
    return text.normalized(QString::NormalizationForm_C).toLower();
}

bool IsOfPieces(const FoundWord &word)
{
    return word.derivation.contains(u" + "_s);
}

/// Kinds that a command selects.
bool MayBeChosen(int kind)
{
    return IsOneOf(DictKind::All, kind) && kind != DictKind::FrenchVietnamese && kind != DictKind::VietnameseFrench;
}

bool IsVietnamese(int kind)
{
    return KindsOfSameLanguage(DictKind::VietnamesePali).contains(kind);
}

} // namespace

/// The source during one piece of work: it answers what was asked before at once, and ends the piece when its time is
/// over. The finder then begins again with the next piece and is soon as far as it was.
class FormSearch::Piece : public WordTest
{
public:
    struct Over
    {};

    Piece(FormSearch &search, int milliseconds) : m_search(search), m_milliseconds(milliseconds) { m_clock.start(); }

    QList<bool> Have(int kind, const QStringList &words) override
    {
        QStringList unknown;
        for (const QString &word : words) {
            if (!m_search.m_answers.contains({kind, word}))
                unknown.append(word);
        }
        for (qsizetype from = 0; from < unknown.size();) {
            Rest();
            const QStringList asked = unknown.mid(from, m_search.m_atOnce);
            const QList<bool> told = Timed([&] { return m_search.m_source.Have(kind, asked); });
            for (qsizetype i = 0; i < asked.size(); ++i)
                m_search.m_answers.insert({kind, asked[i]}, told[i]);
            from += asked.size();
        }
        QList<bool> answers;
        for (const QString &word : words)
            answers.append(m_search.m_answers.value({kind, word}));
        return answers;
    }

    bool IsOver() const { return m_hasAsked && m_clock.elapsed() >= m_milliseconds; }
    /// Counts as a question.
    void Rest()
    {
        if (IsOver())
            throw Over();
        m_hasAsked = true;
    }
    qint64 Worked() const { return m_clock.elapsed(); }

private:
    QList<bool> Timed(const std::function<QList<bool>()> &question)
    {
        const qint64 before = m_clock.elapsed();
        const QList<bool> told = question();
        const qint64 taken = m_clock.elapsed() - before;
        if (taken > LongQuestion)
            m_search.m_atOnce = std::max<qsizetype>(1, m_search.m_atOnce / 2);
        else if (taken < ShortQuestion)
            m_search.m_atOnce = std::min(MostAtOnce, m_search.m_atOnce * 2);
        return told;
    }

    FormSearch &m_search;
    int m_milliseconds;
    bool m_hasAsked = false;
    QElapsedTimer m_clock;
};

void FormSearch::Start(const SoughtForm &sought, bool isListed, int language)
{
    m_sought = sought;
    m_isListed = isListed;
    m_language = language;
    m_languages = KindsToSeek(sought.kind);
    m_step = m_languages.isEmpty() || sought.form.trimmed().isEmpty() ? Step::Over : Step::Brought;
    m_written = 0;
    m_worked = 0;
    m_answers.clear();
    m_found.clear();
}

bool FormSearch::GoOn(int milliseconds)
{
    Piece piece(*this, milliseconds);
    try {
        while (m_step != Step::Over && m_worked + piece.Worked() < MostWork)
            TakeStep(piece);
    } catch (const Piece::Over &) {
        m_worked += piece.Worked();
        return false;
    } catch (...) {
        m_step = Step::Over;
        m_found.clear();
        throw;
    }
    m_step = Step::Over;
    m_answers.clear();
    return true;
}

void FormSearch::TakeStep(Piece &piece)
{
    switch (m_step) {
    case Step::Brought:
        TakeBrought();
        m_step = Step::Around;
        break;
    case Step::Around:
        TakeAround(piece);
        m_step = m_isListed ? Step::Writing : Step::Behind;
        break;
    case Step::Behind:
        TakeBehind(piece);
        m_step = Step::Writing;
        break;
    case Step::Writing:
        piece.Rest();
        if (!WriteNext())
            m_step = Step::Over;
        break;
    case Step::Over:
        break;
    }
}

void FormSearch::Append(const FoundWord &word)
{
    const auto isSame = [&](const FoundWord &known) { return IsSameWord(known.word, word.word); };
    if (m_found.size() < FormFinder::MostWords && std::none_of(m_found.cbegin(), m_found.cend(), isSame))
        m_found.append(word);
}

/// Without a pause: a few questions for each kind.
void FormSearch::TakeBrought()
{
    if (m_isListed)
        return;
    const QString form = Folded(m_sought.form.trimmed());
    // Editions write the niggahita in other ways than dictionaries.
    QStringList spellings{form, QString(form).replace(u'ṁ', u'ṃ'), QString(form).replace(u'ṃ', u'ṁ')};
    spellings.removeDuplicates();
    for (const QList<int> &kinds : std::as_const(m_languages)) {
        for (const int kind : kinds) {
            for (const QString &spelling : std::as_const(spellings)) {
                for (const QString &word : m_source.FormsBrought(kind, spelling)) {
                    // A word whose entry is gone would lead nowhere.
                    if (!word.isEmpty() && m_source.Have(kind, {Folded(word)}).first())
                        Append({word, kind, form + Arrow + word + u", "_s + TextOrEnglish(brought, m_language)});
                }
            }
        }
    }
}

void FormSearch::TakeAround(Piece &piece)
{
    QStringList syllables = m_sought.around.before;
    qsizetype from = syllables.size();
    // A text of several words that was typed, or selected, has no point: each of its syllables may be meant.
    const QStringList own = m_sought.form.simplified().split(u' ');
    syllables += own;
    qsizetype to = syllables.size();
    syllables += m_sought.around.after;
    if (to - from > MostTyped)
        to = from + MostTyped;
    QList<int> kinds;
    for (const QList<int> &ofLanguage : std::as_const(m_languages))
        std::copy_if(ofLanguage.cbegin(), ofLanguage.cend(), std::back_inserter(kinds), IsVietnamese);
    if (syllables.size() < 2 || kinds.isEmpty())
        return;
    QList<FoundWord> longer;
    FormFinder finder(piece, m_language);
    for (; from < to; ++from) {
        for (FoundWord &word : finder.WordsAround(syllables, from, kinds)) {
            if (own.size() > 1)
                word.derivation = Folded(own.join(u' ')) + Arrow + word.word;
            if (word.word.contains(u' '))
                longer.append(word);
        }
    }
    const auto isLonger = [](const FoundWord &one, const FoundWord &other) {
        return one.word.count(u' ') > other.word.count(u' ');
    };
    std::stable_sort(longer.begin(), longer.end(), isLonger);
    for (const FoundWord &word : std::as_const(longer)) {
        if (!m_isListed || !IsSameWord(word.word, m_sought.form))
            Append(word);
    }
}

void FormSearch::TakeBehind(Piece &piece)
{
    FormFinder finder(piece, m_language);
    QList<FoundWord> found;
    for (const QList<int> &kinds : std::as_const(m_languages))
        found += finder.WordsBehind(m_sought.form, kinds);
    std::stable_partition(found.begin(), found.end(), [](const FoundWord &word) { return !IsOfPieces(word); });
    for (const FoundWord &word : std::as_const(found))
        Append(word);
}

/// Gives the next word its capitals; false if there is none left.
bool FormSearch::WriteNext()
{
    if (m_written == m_found.size())
        return false;
    FoundWord &word = m_found[m_written++];
    const QString written = m_source.AsWritten(word.kind, word.word);
    if (!IsOfPieces(word))
        word.derivation.replace(Arrow + word.word, Arrow + written);
    word.word = written;
    return true;
}

QList<QList<int>> KindsToSeek(int kind)
{
    QList<QList<int>> languages;
    if (!MayBeChosen(kind))
        return languages;
    QList<int> taken;
    const int partner = kind % 2 == 1 ? kind + 1 : kind - 1;
    for (const int first : {kind, partner}) {
        QList<int> kinds;
        for (const int other : KindsOfSameLanguage(first)) {
            if (MayBeChosen(other) && !taken.contains(other))
                kinds.append(other);
        }
        taken += kinds;
        languages.append(kinds);
    }
    return languages;
}

bool IsSameWord(const QString &one, const QString &other)
{
    return Folded(one) == Folded(other);
}

QStringList WithCapitals(const QString &word)
{
    QList<qsizetype> starts;
    for (qsizetype at = 0; at < word.size() && starts.size() < MostCapitals; ++at) {
        if (at == 0 || word[at - 1] == u' ' || word[at - 1] == u'-')
            starts.append(at);
    }
    QStringList ways{word};
    const unsigned all = (1u << starts.size()) - 1;
    // A name with all its capitals, or with the first alone, is more usual than what lies between.
    QList<unsigned> choices{1, all};
    for (unsigned choice = 2; choice < all; ++choice)
        choices.append(choice);
    for (const unsigned choice : std::as_const(choices)) {
        QString way = word;
        for (qsizetype start = 0; start < starts.size(); ++start) {
            if (choice >> start & 1)
                way[starts[start]] = way[starts[start]].toUpper();
        }
        ways.append(way);
    }
    ways.append(word.toUpper());
    ways.removeDuplicates();
    return ways;
}
