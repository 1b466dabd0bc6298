#include "dictionary/PaliReadings.h"

#include "dictionary/PaliLetters.h"
#include "dictionary/PaliTables.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <deque>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// An ending with one of the heads that may replace it.
struct Rule
{
    QStringView head;
    QStringView terms;
    int cost;
    int shortest;
    int order; ///< of the head among those of its row
};

/// The persons of a tense whose third person singular is given.
QStringList Persons(const QString &third)
{
    const auto all = [&](qsizetype cut, std::initializer_list<QStringView> endings) {
        QStringList forms;
        for (const QStringView ending : endings)
            forms.append(Joined(QStringView(third).chopped(cut), ending));
        return forms;
    };
    if (third.endsWith(u"ati"))
        return all(3, {u"ati", u"anti", u"asi", u"atha", u"āmi", u"āma", u"aṃ"});
    if (third.endsWith(u"si"))
        return all(2, {u"si", u"suṃ", u"siṃ", u"simha", u"simhā", u"sittha", u"sī"});
    return all(1, {u"i", u"iṃsu", u"uṃ", u"iṃ", u"imha", u"imhā", u"ittha", u"ī"});
}

/// The rows of some tables by their endings.
class EndingIndex
{
public:
    EndingIndex(std::initializer_list<std::span<const PaliEndings>> tables)
    {
        for (const auto &table : tables) {
            for (const PaliEndings &row : table)
                Add(row);
        }
    }

    /// Calls take(what remains, rule) for each rule that fits.
    template <typename Take>
    void Each(QStringView form, const Take &take) const
    {
        const qsizetype most = std::min(m_longest, form.size());
        for (qsizetype size = 1; size <= most; ++size) {
            const auto rules = m_rules.constFind(form.last(size));
            if (rules == m_rules.cend())
                continue;
            for (const Rule &rule : *rules) {
                if (form.size() - size >= rule.shortest)
                    take(form.chopped(size), rule);
            }
        }
    }

    /// The rules of a whole word.
    QList<Rule> Of(QStringView form) const { return m_rules.value(form); }

private:
    void Add(const PaliEndings &row)
    {
        const QList<QStringView> heads = QStringView(row.heads).split(u' ', Qt::SkipEmptyParts);
        for (const QStringView group : QStringView(row.endings).split(u'|')) {
            const QList<QStringView> words = group.split(u' ', Qt::SkipEmptyParts);
            for (const QStringView ending : words.sliced(1)) {
                const bool isAll = ending.endsWith(u'*');
                const QStringList forms =
                    isAll ? Persons(ending.chopped(1).toString()) : QStringList{ending.toString()};
                for (const QString &form : forms) {
                    for (int order = 0; order < heads.size(); ++order) {
                        const QStringView head = heads[order] == u"-" ? QStringView() : heads[order];
                        Add(form, {head, words.first(), row.cost, row.shortest, order});
                    }
                }
            }
        }
    }

    void Add(const QString &ending, const Rule &rule)
    {
        m_longest = std::max(m_longest, ending.size());
        if (const auto known = m_rules.find(ending); known != m_rules.end()) {
            known->append(rule);
            return;
        }
        m_texts.push_back(ending);
        m_rules.insert(m_texts.back(), {rule});
    }

    std::deque<QString> m_texts; ///< what the keys are views of
    QHash<QStringView, QList<Rule>> m_rules;
    qsizetype m_longest = 0;
};

const EndingIndex &Cases()
{
    static const EndingIndex index{PaliCases()};
    return index;
}

const EndingIndex &PossessorCases()
{
    static const EndingIndex index{PaliPossessorCases()};
    return index;
}

const EndingIndex &VerbForms()
{
    static const EndingIndex index{PaliVerbForms(), PaliPastForms()};
    return index;
}

const EndingIndex &PastForms()
{
    static const EndingIndex index{PaliPastForms()};
    return index;
}

const EndingIndex &VerbStems()
{
    static const EndingIndex index{PaliVerbStems()};
    return index;
}

const EndingIndex &NounStems()
{
    static const EndingIndex index{PaliNounStems()};
    return index;
}

const EndingIndex &DerivedVerbs()
{
    static const EndingIndex index{PaliDerivedVerbs()};
    return index;
}

const EndingIndex &ClosedWords()
{
    static const EndingIndex index{PaliSmallWords(), PaliClosedWords()};
    return index;
}

/// A past form without its augment, also where a prefix has run together with it.
QStringList WithoutAugment(const QString &form)
{
    constexpr std::pair<QStringView, QStringView> prefixes[]{
        {u"pā", u"pa"},      {u"upā", u"upa"},   {u"apā", u"apa"},    {u"pacca", u"paṭi"}, {u"abbha", u"abhi"},
        {u"ajjha", u"adhi"}, {u"vya", u"vi"},    {u"bya", u"vi"},     {u"anva", u"anu"},   {u"pariya", u"pari"},
        {u"acca", u"ati"},   {u"sama", u"samā"}, {u"paccā", u"paṭi"}, {u"sama", u"sañ"},
    };
    QStringList forms;
    if (form.size() > 4 && form[0] == u'a' && !IsPaliVowel(form[1])) {
        forms.append(form.mid(1));
        if (StartsDoubled(QStringView(form).mid(1)))
            forms.append(form.mid(2));
    }
    for (const auto &[joined, plain] : prefixes) {
        if (form.size() > joined.size() + 2 && form.startsWith(joined)) {
            forms.append(Joined(plain, QStringView(form).mid(joined.size())));
            if (StartsDoubled(QStringView(form).mid(joined.size())))
                forms.append(Joined(plain, QStringView(form).mid(joined.size() + 1)));
        }
    }
    return forms;
}

/// The verb as a root, as some dictionaries have it. Null if none is known.
QString RootOf(const QString &verb)
{
    static const QHash<QString, QString> roots{
        {u"gacchati"_s, u"gam"_s}, {u"deti"_s, u"dā"_s},       {u"tiṭṭhati"_s, u"ṭhā"_s}, {u"jānāti"_s, u"ñā"_s},
        {u"suṇāti"_s, u"su"_s},    {u"passati"_s, u"dis"_s},   {u"pivati"_s, u"pā"_s},    {u"jahati"_s, u"hā"_s},
        {u"gaṇhāti"_s, u"gah"_s},  {u"neti"_s, u"nī"_s},       {u"bhavati"_s, u"bhū"_s},  {u"dahati"_s, u"dhā"_s},
        {u"vatti"_s, u"vac"_s},    {u"bhindati"_s, u"bhid"_s}, {u"chindati"_s, u"chid"_s}};
    if (const QString root = roots.value(verb); !root.isNull())
        return root;
    const QString root = verb.chopped(3);
    return verb.size() > 5 && !IsPaliVowel(root.back()) ? root : QString();
}

bool IsParticle(const QString &word)
{
    static const QSet<QString> particles = [] {
        QSet<QString> words;
        for (const QStringView word : PaliParticles().split(u' ', Qt::SkipEmptyParts))
            words.insert(word.toString());
        return words;
    }();
    return particles.contains(word);
}

class Gatherer
{
public:
    explicit Gatherer(int doubt = 0) : m_doubt(doubt) {}

    /// Of a guess; words without inflection have other forms, and are other words, by chance alone.
    void Guess(const QString &head, QStringView terms, int cost, int order = 0)
    {
        Add(head, terms, cost + m_doubt + (cost > 0 && IsParticle(head) ? CommonReading : 0), order);
    }

    void Add(const QString &head, QStringView terms, int cost, int order = 0)
    {
        if (const auto known = m_places.constFind(head); known != m_places.cend()) {
            if (PaliReading &reading = m_readings[*known]; reading.cost > cost)
                reading = {head, terms, cost, order};
            return;
        }
        m_places.insert(head, m_readings.size());
        m_readings.append({head, terms, cost, order});
    }

    /// A verb as dictionaries list it, and what it is made of.
    void AddVerb(const QString &head, QStringView terms, int cost, int order = 0)
    {
        Guess(head, terms, cost, order);
        if (head.size() > 6 && head.endsWith(u"ayati"))
            Guess(Joined(QStringView(head).chopped(5), u"eti"), terms, cost, order);
        else if (head.size() > 5 && head.endsWith(u"eti"))
            Guess(Joined(QStringView(head).chopped(3), u"ayati"), terms, cost + 1);
        DerivedVerbs().Each(head, [&](QStringView stem, const Rule &rule) {
            Guess(Joined(stem, rule.head), rule.terms, cost + rule.cost);
            // The vowel of the root was lengthened.
            if (const QString shortened = WithShortRoot(stem); !shortened.isNull())
                Guess(Joined(shortened, rule.head), rule.terms, cost + rule.cost);
        });
        if (head.endsWith(u"eti")) {
            Guess(Joined(QStringView(head).chopped(3), u"ati"), u"Z", cost + CommonReading);
            if (const QString shortened = WithShortRoot(QStringView(head).chopped(3)); !shortened.isNull()) {
                Guess(Joined(shortened, u"ati"), u"Z", cost + CommonReading);
                Guess(Joined(shortened, u"oti"), u"Z", cost + CommonReading);
            }
        }
        if (const QString root = RootOf(head); !root.isNull())
            Guess(root, terms, cost + CommonReading);
    }

    QList<PaliReading> Take() { return std::move(m_readings); }

private:
    static QString WithShortRoot(QStringView stem)
    {
        qsizetype last = stem.size() - 1;
        while (last >= 0 && !IsPaliVowel(stem[last]))
            --last;
        if (last < 0 || stem[last] != u'ā')
            return {};
        QString text = stem.toString();
        text[last] = u'a';
        return text;
    }

    int m_doubt; ///< that falls on every guess
    QList<PaliReading> m_readings;
    QHash<QString, qsizetype> m_places;
};

/// Of readings that cost the same, that of a whole word comes first, and then that which leaves the longest rest: where
/// a dictionary has "udāna" and "uda", "udānaṃ" is of the former.
int Order(const Rule &rule, QStringView rest)
{
    constexpr int longerThanAnyRest = 100;
    const auto size = static_cast<int>(std::min<qsizetype>(rest.size(), longerThanAnyRest));
    return rule.order * longerThanAnyRest + (size == 0 ? 0 : longerThanAnyRest - size);
}

/// What a stem without its case may be made of.
void AddStem(const QString &stem, int cost, Gatherer &readings)
{
    VerbStems().Each(stem, [&](QStringView rest, const Rule &rule) {
        readings.AddVerb(Joined(rest, rule.head), rule.terms, rule.cost + cost, Order(rule, rest));
    });
    NounStems().Each(stem, [&](QStringView rest, const Rule &rule) {
        readings.Guess(Joined(rest, rule.head), rule.terms, rule.cost + cost, Order(rule, rest));
    });
}

struct FunctionWords
{
    FunctionWords()
    {
        for (const QStringView word : PaliParticles().split(u' ', Qt::SkipEmptyParts))
            heads[word.toString()].append(word.toString());
        for (const PaliEndings &row : PaliSmallWords()) {
            const QStringView usual = QStringView(row.heads).split(u' ').first();
            const bool isVerb = usual == u"āha" || usual == u"atthi" || (usual.size() > 2 && usual.endsWith(u"ti"));
            for (const QStringView head : QStringView(row.heads).split(u' ')) {
                if (!isVerb || usual == u"atthi")
                    lemmas.insert(head.toString());
            }
            for (const QStringView group : QStringView(row.endings).split(u'|')) {
                for (const QStringView form : group.split(u' ').sliced(1)) {
                    if (isVerb)
                        verbs.insert(form.toString());
                    QStringList &known = heads[form.toString()];
                    if (!known.contains(form))
                        known.prepend(form.toString());
                    for (const QStringView head : QStringView(row.heads).split(u' '))
                        known.append(head.toString());
                }
            }
        }
        // Without the first vowel.
        for (const QStringView word :
             {u"api", u"iti", u"eva", u"iva", u"ahaṃ", u"assa", u"asi", u"asmi", u"amhi", u"ayaṃ", u"idaṃ", u"idāni",
              u"atthi", u"assu", u"attha", u"amha", u"imaṃ", u"ime"}) {
            QStringList &known = shortened[word.mid(1).toString()];
            known.append(word.toString());
            known.append(heads.value(word.toString()));
        }
        heads[u"ñeva"_s] = heads[u"yeva"_s] = QStringList{u"eva"_s, u"yeva"_s};
        heads[u"pi"_s] = QStringList{u"pi"_s, u"api"_s};
        heads[u"ti"_s] = QStringList{u"iti"_s, u"ti"_s};
        heads[u"va"_s] = QStringList{u"eva"_s, u"iva"_s, u"va"_s};
        heads[u"ssu"_s] = QStringList{u"su"_s, u"assu"_s};
        for (const char16_t *surface : {u"ñeva", u"yeva", u"pi", u"ti", u"va", u"ssu"})
            shortened.remove(QString::fromUtf16(surface));
    }
    QHash<QString, QStringList> heads, shortened;
    QSet<QString> verbs;  ///< among the forms
    QSet<QString> lemmas; ///< of pronouns and numerals, and "atthi"
};

const FunctionWords &Functions()
{
    static const FunctionWords words;
    return words;
}

} // namespace

QList<PaliReading> PaliReadings(const QString &form)
{
    const QList<Rule> closed = ClosedWords().Of(form);
    // A small word is hardly another one.
    Gatherer readings(IsParticle(form) ? CommonReading : closed.isEmpty() ? 0 : 2);
    readings.Add(form, {}, 0);
    if (form.size() > 4 && form.endsWith(u"ti"))
        readings.AddVerb(form, {}, 0);
    for (const Rule &rule : closed)
        readings.Add(rule.head.toString(), rule.terms, rule.cost, Order(rule, {}));
    QStringList stems;
    const auto takeCase = [&](QStringView stem, const Rule &rule) {
        const QString head = Joined(stem, rule.head);
        readings.Guess(head, rule.terms, rule.cost, Order(rule, stem));
        if (rule.cost <= 2 && !stems.contains(head))
            stems.append(head);
    };
    Cases().Each(form, takeCase);
    PossessorCases().Each(form, [&](QStringView stem, const Rule &rule) {
        if (!stem.isEmpty() && (IsPaliVowel(stem.back()) || stem.endsWith(u's')))
            takeCase(stem, rule);
    });
    const auto takeVerb = [&](QStringView stem, const Rule &rule) {
        readings.AddVerb(Joined(stem, rule.head), rule.terms, rule.cost, Order(rule, stem));
    };
    VerbForms().Each(form, takeVerb);
    for (const QString &past : WithoutAugment(form))
        PastForms().Each(past, takeVerb);
    if (!stems.contains(form))
        stems.append(form);
    for (const QString &stem : std::as_const(stems))
        AddStem(stem, 0, readings);
    return readings.Take();
}

QList<PaliReading> PaliStemReadings(const QString &stem)
{
    constexpr std::pair<QStringView, QStringView> finals[]{
        {u"a", u"ā"},          {u"i", u"ī"},        {u"i", u"in"},       {u"u", u"ū"},
        {u"tu", u"tar"},       {u"o", u"a"},        {u"o", u"as"},       {u"ī", u"i"},
        {u"ā", u"a"},          {u"ti", u"t"},       {u"rāja", u"rājan"}, {u"brahma", u"brahman"},
        {u"kamma", u"kamman"}, {u"atta", u"attan"}, {u"vanta", u"vant"}, {u"manta", u"mant"},
        {u"va", u"vant"},      {u"ma", u"mant"},    {u"tā", u"tar"},     {u"tā", u"tu"},
    };
    Gatherer readings;
    readings.Add(stem, {}, 0);
    for (const auto &[final, head] : finals) {
        if (stem.size() > final.size() + 1 && stem.endsWith(final))
            readings.Add(Joined(QStringView(stem).chopped(final.size()), head), {},
                         final == u"o" || head == u"ā" ? 1 : 2);
    }
    AddStem(stem, 3, readings);
    if (stem.endsWith(u"tu")) { // of an infinitive: "kattukāma"
        for (const PaliReading &reading : PaliReadings(stem + u'ṃ')) {
            if (reading.terms == u"I")
                readings.Add(reading.head, reading.terms, 2);
        }
    } else if (stem.endsWith(u'ṃ')) { // a case that stays: "kālaṅkata"
        for (const PaliReading &reading : PaliReadings(stem)) {
            if (reading.cost <= 2)
                readings.Add(reading.head, reading.terms, reading.cost + 1);
        }
    }
    return readings.Take();
}

bool IsPaliFunctionWord(const QString &form)
{
    return Functions().heads.contains(form) || Functions().shortened.contains(form);
}

QStringList PaliFunctionHeads(const QString &form, bool atEnd)
{
    const QStringList heads = Functions().heads.value(form), shortened = Functions().shortened.value(form);
    return atEnd ? shortened + heads : heads + shortened;
}

bool IsPaliEnclitic(const QString &form)
{
    static const QSet<QString> enclitics{u"pi"_s,   u"ti"_s,   u"ca"_s,  u"ce"_s,   u"va"_s,   u"yeva"_s,
                                         u"ñeva"_s, u"vā"_s,   u"hi"_s,  u"nu"_s,   u"su"_s,   u"ssu"_s,
                                         u"ssa"_s,  u"si"_s,   u"mhi"_s, u"smi"_s,  u"api"_s,  u"iti"_s,
                                         u"eva"_s,  u"assa"_s, u"asi"_s, u"amhi"_s, u"asmi"_s, u"atthi"_s};
    return enclitics.contains(form);
}

bool IsPaliFollower(const QString &form)
{
    static const QSet<QString> followers{u"mha"_s, u"haṃ"_s,  u"yaṃ"_s,  u"dāni"_s,
                                         u"kho"_s, u"ttha"_s, u"tthi"_s, u"me"_s};
    static const QSet<QString> never{u"are"_s, u"aho"_s, u"āma"_s, u"āvi"_s, u"ambho"_s, u"iṅgha"_s, u"ubhato"_s};
    return followers.contains(form) ||
           (IsPaliVowel(form.front()) && Functions().heads.contains(form) && !never.contains(form));
}

bool IsPaliTail(const QString &form)
{
    static const QSet<QString> tails{u"etaṃ"_s,  u"eso"_s,  u"esā"_s,   u"ete"_s,   u"etāni"_s,
                                     u"ahaṃ"_s,  u"ayaṃ"_s, u"idaṃ"_s,  u"imaṃ"_s,  u"ime"_s,
                                     u"ettha"_s, u"idha"_s, u"āvuso"_s, u"idāni"_s, u"āha"_s};
    return tails.contains(form);
}

bool IsPaliPronoun(const QString &head)
{
    return Functions().lemmas.contains(head);
}

bool IsNeverFirst(const QString &form)
{
    static const QSet<QString> words{u"pi"_s, u"ti"_s,  u"va"_s,  u"su"_s, u"nu"_s,
                                     u"si"_s, u"ssa"_s, u"ssu"_s, u"haṃ"_s};
    return words.contains(form);
}

bool IsPaliLeader(const QString &form)
{
    static const QSet<QString> never{u"pi"_s,   u"ti"_s,   u"va"_s,  u"su"_s,  u"nu"_s,   u"si"_s,  u"asi"_s,
                                     u"asmi"_s, u"amhi"_s, u"bho"_s, u"ssu"_s, u"vinā"_s, u"asu"_s, u"amu"_s,
                                     u"kaṃ"_s,  u"maṃ"_s,  u"are"_s, u"āvi"_s, u"iva"_s};
    return Functions().heads.contains(form) && !Functions().verbs.contains(form) && !never.contains(form);
}

bool IsPaliFirstPart(const QString &form)
{
    static const QSet<QString> parts{u"na"_s,      u"yathā"_s,  u"tathā"_s,  u"yāva"_s,   u"saha"_s,  u"anto"_s,
                                     u"bahi"_s,    u"tiro"_s,   u"puna"_s,   u"sammā"_s,  u"evaṃ"_s,  u"kiṃ"_s,
                                     u"taṃ"_s,     u"sayaṃ"_s,  u"sāmaṃ"_s,  u"antarā"_s, u"upari"_s, u"heṭṭhā"_s,
                                     u"pure"_s,    u"pacchā"_s, u"ubhato"_s, u"ekato"_s,  u"alaṃ"_s,  u"yaṃ"_s,
                                     u"aññatra"_s, u"pañca"_s,  u"cha"_s,    u"dasa"_s,   u"nānā"_s};
    return parts.contains(form);
}

bool StandsApart(const QString &form)
{
    static const QSet<QString> words{u"bahi"_s, u"upari"_s, u"tiro"_s, u"pure"_s, u"pacchā"_s, u"heṭṭhā"_s, u"anto"_s};
    return words.contains(form);
}

bool IsPaliParticle(const QString &word)
{
    return IsParticle(word);
}
