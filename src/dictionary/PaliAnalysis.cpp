#include "dictionary/PaliAnalysis.h"

#include "dictionary/PaliLetters.h"
#include "dictionary/PaliReadings.h"
#include "dictionary/PaliSeams.h"

#include <QSet>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr int SeamCost = 3;          ///< of each place where words meet
constexpr int PieceCost = 2;         ///< of a way in pieces beside whole words
constexpr int MostSeams = 3;         ///< in a form
constexpr int MostCost = 14;         ///< of a way that is worth telling
constexpr int GoodCost = 3;          ///< of a reading that needs no others beside it
constexpr qsizetype MostStates = 24; ///< that are followed at a time
constexpr qsizetype LongWord = 5;
constexpr qsizetype UsualStem = 5;
constexpr qsizetype MostCompoundCores = 6;
constexpr qsizetype LongForm = 24; ///< of which more pieces may be expected, and fewer beginnings are tried
constexpr qsizetype LettersAPiece = 6;
constexpr qsizetype LongestFunctionWord = 9;

/// What is left of a form, and the pieces that were taken off it.
struct State
{
    QList<PaliPiece> before;
    QString core;
    QList<PaliPiece> after;
    int cost = 0;
    int stems = 0;          ///< of a compound among the pieces before
    qsizetype letters = 0;  ///< of those stems
    bool isChanged = false; ///< at the last seam, which is of a compound
    bool isCase = false;    ///< the last piece before is no stem, so any word may follow
    qsizetype least = 4;    ///< letters of the word that is left, to be no chance
    bool isSmall = false;   ///< a small word must be left
    bool mayBeLong = true;  ///< or a long one
};

/// Prefixes of nouns and verbs, as they are written before a consonant or a vowel. None needs a place in a dictionary.
struct Prefix
{
    QStringView written, name;
    int cost;
};

constexpr Prefix Prefixes[] = {
    {u"a", u"a", 0},        {u"an", u"an", 0},     {u"su", u"su", 2},         {u"du", u"du", 2},
    {u"dur", u"du", 2},     {u"sa", u"sa", 3},     {u"nir", u"nir", 3},       {u"ni", u"ni", 3},
    {u"nī", u"ni", 3},      {u"ati", u"ati", 3},   {u"acc", u"ati", 3},       {u"adhi", u"adhi", 3},
    {u"ajjh", u"adhi", 3},  {u"anu", u"anu", 3},   {u"anv", u"anu", 3},       {u"apa", u"apa", 3},
    {u"ap", u"apa", 3},     {u"abhi", u"abhi", 3}, {u"abbh", u"abhi", 3},     {u"ava", u"ava", 3},
    {u"o", u"ava", 4},      {u"ā", u"ā", 4},       {u"u", u"ud", 4},          {u"ud", u"ud", 4},
    {u"upa", u"upa", 3},    {u"up", u"upa", 3},    {u"pa", u"pa", 3},         {u"paṭi", u"paṭi", 3},
    {u"pati", u"pati", 3},  {u"pacc", u"paṭi", 3}, {u"parā", u"parā", 4},     {u"pari", u"pari", 3},
    {u"pariy", u"pari", 3}, {u"vi", u"vi", 3},     {u"vy", u"vi", 3},         {u"by", u"vi", 3},
    {u"saṃ", u"saṃ", 3},    {u"sam", u"saṃ", 3},   {u"sañ", u"saṃ", 3},       {u"saṅ", u"saṃ", 3},
    {u"san", u"saṃ", 3},    {u"ku", u"ku", 5},     {u"mahā", u"mahā", 2},     {u"mah", u"mahā", 2},
    {u"pātu", u"pātu", 2},  {u"āvi", u"āvi", 2},   {u"sacchi", u"sacchi", 2}, {u"antara", u"antara", 3},
};

/// Short stems that begin or end many compounds.
bool IsCommonShort(const QString &stem)
{
    static const QSet<QString> stems{u"dvi"_s, u"dve"_s, u"ti"_s,  u"cha"_s, u"eka"_s,  u"isi"_s,
                                     u"ādi"_s, u"go"_s,  u"uju"_s, u"aja"_s, u"catu"_s, u"asi"_s,
                                     u"ahi"_s, u"āyu"_s, u"ura"_s, u"iṇa"_s, u"usu"_s};
    return stems.contains(stem);
}

/// Words in a vowel that end many compounds.
bool IsCommonLast(const QString &head)
{
    static const QSet<QString> words{u"attha"_s,   u"agga"_s,  u"anta"_s,   u"ādi"_s,
                                     u"atthika"_s, u"okāsa"_s, u"indriya"_s};
    return words.contains(head);
}

/// Whether a reading is of a noun, or of what declines like one: a finite verb ends no compound.
bool IsNominal(const PaliReading &reading)
{
    for (const QChar letter : reading.terms) {
        if (QStringView(u"ABCDEFPMOURNKTIZV").contains(letter))
            return false;
    }
    const QString &head = reading.head;
    return !reading.terms.isEmpty() || head.size() < 5 || !head.endsWith(u"ti") ||
           !QStringView(u"aāeo").contains(head[head.size() - 3]);
}

class Analysis
{
public:
    Analysis(const QString &form, KnownWords &words) : m_form(form), m_words(words)
    {
        if (form.size() > LongForm) {
            m_mostSeams = static_cast<int>(form.size() / LettersAPiece);
            m_mostCost = std::max(MostCost, m_mostSeams * (SeamCost + 1));
            m_mostCores = 1;
        }
    }

    QList<PaliWay> Ways()
    {
        const bool isMarked = m_form.contains(u'’');
        if (!isMarked) {
            TakeWhole(false);
            if (!m_ways.isEmpty() && Best() <= GoodCost)
                return Sorted();
        }
        const QList<State> once = isMarked ? Marked() : Loosened(Endings());
        TakeCores(once);
        if (!m_ways.isEmpty() && Best() <= GoodCost + SeamCost)
            return Sorted();
        QList<State> states = once;
        QList<State> cores = Cores(once, m_mostCores);
        for (int seams = 2; seams <= MostSeams; ++seams) {
            states = Loosened(states);
            TakeCores(states);
            if (seams == 2)
                cores += Cores(states, m_mostCores);
        }
        if (!isMarked && m_ways.isEmpty())
            TakeWhole(true);
        if (!isMarked || m_ways.isEmpty())
            TakeCompounds(isMarked ? cores : Endings() + cores);
        return Sorted();
    }

private:
    /// The states that may hold a compound: their small words are those that cling to any other.
    static QList<State> Cores(const QList<State> &states, qsizetype most)
    {
        QList<State> cores;
        for (const State &state : states) {
            if (cores.size() < most && !state.isSmall &&
                (state.before.isEmpty() || IsPaliFirstPart(state.before.last().word)))
                cores.append(state);
        }
        return cores;
    }

    int Best() const
    {
        return std::min_element(m_ways.cbegin(), m_ways.cend(),
                                [](const auto &a, const auto &b) { return a.cost < b.cost; })
            ->cost;
    }

    QList<PaliWay> Sorted()
    {
        std::stable_sort(m_ways.begin(), m_ways.end(), [](const auto &a, const auto &b) {
            // Whole words before pieces.
            const auto rank = [](const PaliWay &way) { return way.cost + (way.pieces.size() > 1 ? PieceCost : 0); };
            return std::pair(rank(a), a.order) < std::pair(rank(b), b.order);
        });
        return std::move(m_ways);
    }

    const QList<PaliReading> &Readings(const QString &core)
    {
        auto known = m_readings.find(core);
        if (known == m_readings.end())
            known = m_readings.insert(core, PaliReadings(core));
        return *known;
    }

    /// Asks for the readings of several cores at once.
    void Prepare(const QStringList &cores, bool isDeep)
    {
        QStringList asked;
        for (const QString &core : cores) {
            for (const PaliReading &reading : Readings(core)) {
                if (isDeep || reading.cost <= CommonReading)
                    asked.append(reading.head);
            }
        }
        m_words.Ask(asked);
    }

    /// Those readings of a prepared core that are words.
    QList<PaliReading> Hits(const QString &core)
    {
        QList<PaliReading> hits;
        for (const PaliReading &reading : Readings(core)) {
            if (m_words.Has(reading.head))
                hits.append(reading);
        }
        return hits;
    }

    PaliPiece PieceOf(const QString &head) const
    {
        const KnownWords::Place place = m_words.Of(head);
        return {place.word, place.kind};
    }

    void Add(const State &state, const PaliReading &reading)
    {
        const KnownWords::Place place = m_words.Of(reading.head);
        QList<PaliPiece> pieces = state.before;
        pieces.append({place.word, place.kind});
        pieces.append(state.after);
        const int cost = state.cost + reading.cost + (place.rank > 0 ? 1 : 0);
        if (pieces.size() == 1 || cost <= m_mostCost)
            m_ways.append({pieces, pieces.size() == 1 ? reading.terms : QStringView(), cost, reading.order});
    }

    /// The form, also with its end as it stands before a quotation mark: "hotī", "pācittiyan".
    QList<State> Endings() const
    {
        QList<State> states{{{}, m_form, {}, 0}};
        const QChar last = m_form.back();
        if (m_form.size() > 2 && QStringView(u"nmñṅ").contains(last))
            states.append({{}, m_form.chopped(1) + u'ṃ', {}, 0});
        // Most words in "tī" are verbs, most others in a long vowel are plurals.
        const int cost = m_form.endsWith(u"tī") ? 0 : 2;
        if (const QChar plain = WithoutLength(last); m_form.size() > 1 && plain != last)
            states.append({{}, m_form.chopped(1) + plain, {}, cost});
        return states;
    }

    /// The form as one word.
    void TakeWhole(bool isDeep)
    {
        QStringList cores;
        for (const State &state : Endings())
            cores.append(state.core);
        Prepare(cores, isDeep);
        for (const State &state : Endings()) {
            for (const PaliReading &hit : Hits(state.core))
                Add(state, hit);
        }
    }

    /// The first of a function word's heads that a dictionary has, else the word itself as a piece without a
    /// dictionary.
    PaliPiece FunctionPiece(const QString &form, bool atEnd)
    {
        const QStringList heads = PaliFunctionHeads(form, atEnd);
        m_words.Ask(heads);
        for (const QString &head : heads) {
            if (m_words.Has(head))
                return PieceOf(head);
        }
        return {heads.value(0), 0};
    }

    using States = QHash<QString, State>; ///< by what is left of the form

    static void Keep(const State &state, const QString &key, States &states)
    {
        const auto known = states.find(key);
        if (known == states.end())
            states.insert(key, state);
        else if (known->cost > state.cost)
            *known = state;
    }

    /// Takes off a small word at the end of a state.
    void TakeEnd(const State &state, const PaliSeam &seam, bool isMarked, States &states)
    {
        const bool isEnclitic = IsPaliEnclitic(seam.right);
        const bool isSmall = isMarked ? IsPaliFunctionWord(seam.right) : isEnclitic || IsPaliFollower(seam.right);
        // Before "ti" a vowel is long: with a short one this is the ending of a verb.
        const qsizetype last = state.core.size() - seam.right.size() - 1;
        const bool isVerb = (seam.right == u"ti" && last >= 0 && QStringView(u"aiu").contains(state.core[last])) ||
                            (seam.right == u"iti" && IsPaliVowel(seam.left.back()));
        if (!isSmall || seam.left.size() < 2 || (isVerb && !isMarked))
            return;
        State next{state.before, seam.left, QList{FunctionPiece(seam.right, true)} + state.after,
                   state.cost + seam.cost + SeamCost};
        // What looks like it is most often a genitive.
        if (seam.right == u"assa" && !isMarked)
            next.cost += 2;
        else if (seam.right == u"va" || seam.right == u"ce")
            next.cost += 1;
        next.least = state.least;
        next.isSmall = state.isSmall || !(isEnclitic || isMarked);
        const bool isTail = isEnclitic || (IsPaliTail(seam.right) && seam.cost <= 1);
        next.mayBeLong = next.isSmall && state.mayBeLong && isTail;
        Keep(next, next.core, states);
    }

    /// Takes off a small word at the beginning of a state.
    void TakeBeginning(const State &state, const PaliSeam &seam, bool isMarked, States &states)
    {
        if (!IsPaliLeader(seam.left))
            return;
        // The word stands unchanged.
        const bool isPlain = state.core.startsWith(seam.left) && IsPaliVowel(seam.left.back()) &&
                             seam.left.size() + seam.right.size() <= state.core.size() &&
                             state.core[seam.left.size()] == seam.right.front();
        const bool isBeforeSmall = IsPaliFunctionWord(seam.right);
        const bool isShort = seam.left.size() < 3;
        if (!isMarked && !(isPlain ? IsPaliFirstPart(seam.left) : !StandsApart(seam.left)))
            return;
        // What a short word begins must be long enough to be no chance.
        if (isShort && !isBeforeSmall && seam.left != u"na" && seam.left != u"ca" && seam.left != u"mā")
            return;
        if (seam.right.size() < (isShort ? 5 : 4) && !isBeforeSmall && !isMarked)
            return;
        State next{state.before + QList{FunctionPiece(seam.left, false)}, seam.right, state.after,
                   state.cost + seam.cost + SeamCost + 1};
        next.least = !isShort || seam.left == u"na" ? 4 : 5;
        next.isSmall = state.isSmall;
        next.mayBeLong = state.mayBeLong;
        if (isPlain && isBeforeSmall && !isMarked)
            next.cost += 2;
        else if (seam.left.endsWith(u'ṃ') && !IsPaliFirstPart(seam.left) && !isBeforeSmall)
            next.cost += 1;
        else if (seam.left == u"tu")
            next.cost += 2;
        Keep(next, next.core, states);
    }

    void TakeSeam(const State &state, const PaliSeam &seam, bool isMarked, States &states)
    {
        TakeEnd(state, seam, isMarked, states);
        TakeBeginning(state, seam, isMarked, states);
    }

    QList<State> Cheapest(const States &states) const
    {
        QList<State> list = states.values();
        std::sort(list.begin(), list.end(), [](const State &a, const State &b) {
            return std::tie(a.cost, a.core, a.stems, a.isCase) < std::tie(b.cost, b.core, b.stems, b.isCase);
        });
        const qsizetype most = m_form.size() > LongForm ? MostStates / 2 : MostStates;
        if (list.size() > most)
            list.resize(most);
        return list;
    }

    /// Each of the states with one function word less, at its beginning or end.
    QList<State> Loosened(const QList<State> &states)
    {
        States next;
        for (const State &state : states) {
            const qsizetype size = state.core.size();
            for (qsizetype at = 1; at < size; ++at) {
                if (at > LongestFunctionWord && at < size - LongestFunctionWord)
                    continue;
                for (const PaliSeam &seam : PaliSeamsAt(state.core, at))
                    TakeSeam(state, seam, false, next);
            }
        }
        return Cheapest(next);
    }

    /// The states of a form with an apostrophe, which tells where two words meet.
    QList<State> Marked()
    {
        const qsizetype at = m_form.lastIndexOf(u'’');
        const QString left = QString(m_form.first(at)).remove(u'’'), right = m_form.sliced(at + 1);
        QList<PaliSeam> seams = PaliSeamsAt(left + right, left.size());
        const QChar last = left.back();
        QList<std::pair<QString, int>> lefts{{left, 0}};
        if (const QChar plain = WithoutLength(last); plain != last)
            lefts.append({left.chopped(1) + plain, 0});
        if (QStringView(u"nmñṅṇ").contains(last))
            lefts.append({left.chopped(1) + u'ṃ', 0});
        States next;
        for (const auto &[word, cost] : lefts) {
            for (const QString &start : {QString(), u"a"_s, u"i"_s, u"e"_s})
                seams.append({word, start + right, cost + (start.isEmpty() ? 0 : 1)});
        }
        for (const PaliSeam &seam : std::as_const(seams))
            TakeSeam({}, seam, true, next);
        return Cheapest(next);
    }

    void TakeCores(const QList<State> &states)
    {
        QStringList cores;
        for (const State &state : states)
            cores.append(state.core);
        Prepare(cores, false);
        for (const State &state : states) {
            const bool isSmall = IsPaliFunctionWord(state.core);
            const bool isNeverLast = isSmall && IsPaliVowel(state.core.front()) && !IsPaliFollower(state.core);
            if (state.before.isEmpty() ? IsNeverFirst(state.core) : isNeverLast)
                continue;
            for (const PaliReading &hit : Hits(state.core)) {
                if (state.isSmall && !isSmall && !state.mayBeLong)
                    continue;
                const qsizetype least = state.isSmall                             ? LongWord
                                        : state.before.isEmpty() && hit.cost <= 1 ? 3
                                                                                  : state.least;
                // "chattaṃ" is hardly of "cha" and "attan".
                const bool isSelf =
                    !state.before.isEmpty() && state.core.startsWith(u"att") && hit.head.startsWith(u"atta");
                if (!isSmall && ((hit.cost > 0 && IsPaliPronoun(hit.head)) || isSelf))
                    continue;
                if (hit.cost <= CommonReading && (isSmall || hit.head.size() >= least))
                    Add(state, hit);
            }
        }
    }

    /// One step of a compound: a first piece and what follows it.
    struct Step
    {
        qsizetype state;
        PaliSeam seam;
        QString prefix; ///< the first piece is this one
        QList<PaliReading> heads;
    };

    /// The readings of a word that stands before another with its ending.
    static QList<PaliReading> CaseReadings(const QString &word)
    {
        QList<PaliReading> readings;
        if (word.size() < 5)
            return readings;
        for (PaliReading &reading : PaliReadings(word)) {
            const bool isFit = IsNominal(reading) || reading.terms.contains(u'T');
            if (isFit && !reading.terms.isEmpty() && reading.cost <= 2)
                readings.append(std::move(reading));
        }
        return readings;
    }

    QList<Step> StepsOf(qsizetype place, const State &state, bool isCase) const
    {
        QList<Step> steps;
        for (const Prefix &prefix : Prefixes) {
            // Behind another word there is no telling it from chance.
            const bool isFirst =
                state.before.isEmpty() || state.before.last().kind == 0 || state.before.last().word == u"na";
            if (state.stems > 0 || isCase || !isFirst)
                break;
            const qsizetype size = prefix.written.size();
            if (state.core.size() < size + 4 || !state.core.startsWith(prefix.written))
                continue;
            const QString rest = state.core.mid(size);
            const bool wantsVowel = !IsPaliVowel(prefix.written.back()) && prefix.name != u"saṃ";
            if (wantsVowel != IsPaliVowel(rest.front()) && prefix.name != u"saṃ" && prefix.written != u"sa")
                continue;
            // A short prefix before a short word is chance.
            const int doubt = rest.size() < 6 && size < 3 ? 3 : 0;
            if (StartsDoubled(rest))
                steps.append(
                    {place, {prefix.written.toString(), rest.mid(1), prefix.cost + doubt}, prefix.name.toString(), {}});
            else if (prefix.name != u"ud" || wantsVowel)
                steps.append(
                    {place, {prefix.written.toString(), rest, prefix.cost + doubt}, prefix.name.toString(), {}});
        }
        for (qsizetype at = 2; at + 2 < state.core.size(); ++at) {
            for (const PaliSeam &seam : PaliSeamsAt(state.core, at)) {
                if (seam.right.size() < 4 || (seam.left.size() < 4 && !(IsCommonShort(seam.left) && state.stems == 0)))
                    continue;
                steps.append({place, seam, {}, isCase ? CaseReadings(seam.left) : PaliStemReadings(seam.left)});
            }
        }
        return steps;
    }

    /// The states behind each first piece that is a word.
    QList<State> Split(const QList<State> &states, bool isCase)
    {
        QList<Step> steps;
        QStringList asked;
        for (qsizetype i = 0; i < states.size(); ++i)
            steps += StepsOf(i, states[i], isCase);
        for (const Step &step : std::as_const(steps)) {
            for (const PaliReading &head : step.heads) {
                if (head.cost <= 3)
                    asked.append(head.head);
            }
        }
        m_words.Ask(asked);
        States next;
        for (const Step &step : std::as_const(steps)) {
            const State &state = states[step.state];
            State following{state.before, step.seam.right, state.after, state.cost + step.seam.cost + SeamCost};
            following.stems = state.stems;
            following.letters = state.letters;
            if (!step.prefix.isEmpty()) {
                following.before.append({step.prefix, 0});
            } else {
                const auto head =
                    std::find_if(step.heads.cbegin(), step.heads.cend(), [this](const PaliReading &reading) {
                        return reading.cost <= 3 && m_words.Has(reading.head);
                    });
                if (head == step.heads.cend())
                    continue;
                following.before.append(PieceOf(head->head));
                following.cost += head->cost;
                following.stems += 1;
                following.letters += step.seam.left.size();
                following.isChanged = step.seam.cost > 0 || IsPaliVowel(step.seam.right.front());
                following.isCase = isCase || step.seam.left.endsWith(u'ṃ');
                following.cost += isCase ? SeamCost : 0;
                // A usual short stem counts as a longer one.
                if (IsCommonShort(step.seam.left))
                    following.letters += UsualStem - step.seam.left.size();
                else if (step.seam.left.size() < UsualStem)
                    following.cost += 1;
            }
            if (following.cost > m_mostCost)
                continue;
            // What may follow depends on what stands before.
            const QString key = following.core + QChar(following.stems == 0 ? u'0' : following.isCase ? u'1' : u'2');
            Keep(following, key, next);
        }
        return Cheapest(next);
    }

    /// Whether the pieces of a compound are long enough to be no chance.
    static bool IsSound(const State &state, const PaliReading &last)
    {
        const qsizetype size = std::min(last.head.size(), state.core.size());
        if (last.cost > (state.stems == 0 ? 3 : CommonReading) || IsPaliParticle(last.head) ||
            (IsPaliFunctionWord(last.head) && last.head != u"attha"))
            return false;
        if (state.stems == 0) {
            const QString &prefix = state.before.last().word;
            const bool isNegation = prefix == u"a" || prefix == u"an";
            return size >= (isNegation && last.cost <= 3 ? 4 : 5);
        }
        if ((!IsNominal(last) && !state.isCase) || (size < 4 && !IsCommonShort(last.head)))
            return false;
        // Some four letters a piece are a chance where the seam is not plain, or where there are many.
        const qsizetype letters = state.letters + size;
        const qsizetype least = IsCommonLast(last.head) ? 8 : state.isChanged || state.isCase ? 10 : 9;
        return letters >= (state.stems == 1 ? least : 14) && !last.head.startsWith(u"atta");
    }

    /// The compounds whose last piece follows the states.
    void TakeLastPieces(const QList<State> &states)
    {
        QStringList cores;
        for (const State &state : states)
            cores.append(state.core);
        Prepare(cores, false);
        for (const State &state : states) {
            for (const PaliReading &hit : Hits(state.core)) {
                if (IsSound(state, hit))
                    Add(state, hit);
            }
        }
    }

    void TakeCompounds(const QList<State> &cores)
    {
        const qsizetype before = m_ways.size();
        QList<State> states = cores;
        for (int seams = 1; seams <= m_mostSeams && !states.isEmpty() && m_ways.size() == before; ++seams) {
            states = Split(states, false);
            TakeLastPieces(states);
        }
        // Two words, the first with its ending.
        if (m_ways.isEmpty())
            TakeLastPieces(Split(cores, true));
    }

    QString m_form;
    KnownWords &m_words;
    int m_mostSeams = MostSeams, m_mostCost = MostCost;
    qsizetype m_mostCores = MostCompoundCores;
    QHash<QString, QList<PaliReading>> m_readings;
    QList<PaliWay> m_ways;
};

} // namespace

QList<PaliWay> PaliWays(const QString &form, KnownWords &words)
{
    return form.size() < 1 ? QList<PaliWay>() : Analysis(form, words).Ways();
}
