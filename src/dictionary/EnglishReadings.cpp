#include "dictionary/EnglishReadings.h"

#include "base/Messages.h"

#include <QHash>
#include <QStringList>

#include <array>

using namespace Qt::StringLiterals;

namespace {

/// Headword, then its past and its past participle where the two differ.
constexpr char16_t Verbs[] =
    u"arise arose arisen|awake awoke awoken|bear bore borne/born|beat beat beaten|become became become|befall befell "
    u"befallen|"
    u"begin began begun|behold beheld|bend bent|beseech besought|bid bade bidden|bind bound|bite bit bitten|bleed bled|"
    u"blow blew blown|break broke broken|breed bred|bring brought|build built|burn burnt|buy bought|catch caught|"
    u"choose chose chosen|cling clung|come came|creep crept|deal dealt|dig dug|do did done|draw drew drawn|dream "
    u"dreamt|"
    u"drink drank drunk|drive drove driven|dwell dwelt|eat ate eaten|fall fell fallen|feed fed|feel felt|fight fought|"
    u"find found|flee fled|fling flung|fly flew flown|forbear forbore forborne|forbid forbade forbidden|foresee "
    u"foresaw foreseen|"
    u"forget forgot forgotten|forgive forgave forgiven|forsake forsook forsaken|freeze froze frozen|get got "
    u"gotten|give gave given|"
    u"go went gone|grind ground|grow grew grown|hang hung|have had|hear heard|hide hid hidden|hold held|keep "
    u"kept|kneel knelt|"
    u"know knew known|lay laid|lead led|lean leant|leap leapt|learn learnt|leave left|lend lent|lie lay lain|light "
    u"lit|lose lost|"
    u"make made|mean meant|meet met|mistake mistook mistaken|overcome overcame|partake partook partaken|pay paid|ride "
    u"rode ridden|"
    u"ring rang rung|rise rose risen|run ran|say said|see saw seen|seek sought|sell sold|send sent|shake shook "
    u"shaken|shave shaved shaven|"
    u"shine shone|shoot shot|show showed shown|shrink shrank shrunk|sing sang sung|sink sank sunk|sit sat|slay slew "
    u"slain|sleep slept|"
    u"slide slid|sling slung|smite smote smitten|sow sowed sown|speak spoke spoken|spell spelt|spend spent|spill "
    u"spilt|spin spun|"
    u"spring sprang sprung|stand stood|steal stole stolen|stick stuck|sting stung|stink stank stunk|strew strewed "
    u"strewn|"
    u"stride strode stridden|strike struck stricken|string strung|strive strove striven|swear swore sworn|sweep "
    u"swept|swell swelled swollen|"
    u"swim swam swum|swing swung|take took taken|teach taught|tear tore torn|tell told|think thought|throw threw "
    u"thrown|"
    u"tread trod trodden|undergo underwent undergone|understand understood|undertake undertook undertaken|wake woke "
    u"woken|"
    u"wear wore worn|weave wove woven|weep wept|win won|wind wound|withdraw withdrew withdrawn|withhold "
    u"withheld|withstand withstood|"
    u"wring wrung|write wrote written|be was been|be were";
constexpr char16_t ThirdPersons[] = u"be is|be am|be are|have has|do does|go goes";
constexpr char16_t Plurals[] =
    u"man men|woman women|child children|foot feet|tooth teeth|goose geese|mouse mice|louse lice|ox oxen|person people|"
    u"brother brethren|die dice|penny pence|crisis crises|basis bases|analysis analyses|axis axes|thesis theses|"
    u"phenomenon phenomena|criterion criteria|datum data|stratum strata|index indices|appendix appendices|vertex "
    u"vertices|"
    u"radius radii|stimulus stimuli|nucleus nuclei|formula formulae|life lives|knife knives|wife wives|leaf "
    u"leaves|loaf loaves|"
    u"half halves|self selves|shelf shelves|thief thieves|wolf wolves|calf calves|hoof hooves|sheaf sheaves|elf "
    u"elves|scarf scarves|"
    u"wharf wharves|beef beeves|oneself themselves|yourself yourselves|this these|that those|i we|he they|me us|him "
    u"them";
constexpr char16_t Compared[] = u"good better best|well better best|bad worse worst|ill worse worst|little less "
                                u"least|much more most|many more most|"
                                u"far farther farthest|far further furthest|old elder eldest|late latter last";
constexpr char16_t Contracted[] = u"not n’t|will won’t|can can’t|can cannot|shall shan’t|be isn’t|be aren’t|be "
                                  u"wasn’t|be weren’t|do don’t|do doesn’t|do didn’t|"
                                  u"have haven’t|have hasn’t|have hadn’t|would wouldn’t|should shouldn’t|could "
                                  u"couldn’t|must mustn’t|i i’m|i i’ve|i i’ll|i i’d|"
                                  u"it it’s|he he’s|she she’s|that that’s|there there’s|let let’s|you you’re|you "
                                  u"you’ve|you you’ll|we we’re|we we’ve|we we’ll|"
                                  u"they they’re|they they’ve|they they’ll|who who’s|what what’s";

using Irregular = QHash<QString, QList<EnglishReading>>;

/// Rows of headword and its forms; each place has its name, several forms of one place stand with "/".
void AddRows(QStringView rows, std::array<EnglishForm, 2> names, Irregular &words)
{
    for (const QStringView row : rows.split(u'|')) {
        const QList<QStringView> parts = row.split(u' ');
        for (qsizetype place = 1; place < parts.size() && place <= 2; ++place) {
            for (const QStringView form : parts[place].split(u'/'))
                words[form.toString()].append({parts[0].toString(), names[static_cast<size_t>(place - 1)]});
        }
    }
}

const Irregular &IrregularForms()
{
    static const Irregular words = [] {
        Irregular all;
        using enum EnglishForm;
        AddRows(Verbs, {Past, PastParticiple}, all);
        AddRows(ThirdPersons, {ThirdPerson, ThirdPerson}, all);
        AddRows(Plurals, {Plural, Plural}, all);
        AddRows(Compared, {Comparative, Superlative}, all);
        AddRows(Contracted, {Contraction, Contraction}, all);
        return all;
    }();
    return words;
}

class Readings
{
public:
    explicit Readings(const QString &form) : m_form(form) { Add(form, EnglishForm::Itself); }

    void Add(const QString &head, EnglishForm term)
    {
        for (const EnglishReading &known : std::as_const(m_all)) {
            if (known.head == head)
                return;
        }
        if (head.size() > 1 || head == u"i" || head == u"a")
            m_all.append({head, term});
    }

    /// The ending goes, and the stem is as it was before it: with "e", with one consonant instead of two, with "y".
    void Cut(QStringView ending, EnglishForm term)
    {
        if (m_form.size() < ending.size() + 2 || !m_form.endsWith(ending))
            return;
        const QString stem = m_form.chopped(ending.size());
        const qsizetype last = stem.size() - 1;
        const bool isDoubled = last > 1 && stem[last] == stem[last - 1] && !QStringView(u"aeiou").contains(stem[last]);
        if (isDoubled)
            Add(stem.chopped(1), term);
        if (stem.endsWith(u'i'))
            Add(stem.chopped(1) + u'y', term);
        Add(stem, term);
        Add(stem + u'e', term);
        if (stem.endsWith(u'y') && ending == u"ing")
            Add(stem.chopped(1) + u"ie"_s, term);
    }

    const QString &Form() const { return m_form; }
    QList<EnglishReading> Take() { return std::move(m_all); }

private:
    QString m_form;
    QList<EnglishReading> m_all;
};

void AddPlural(Readings &readings)
{
    const QString &form = readings.Form();
    using enum EnglishForm;
    if (!form.endsWith(u's') || form.endsWith(u"ss") || form.size() < 3)
        return;
    if (form.endsWith(u"ies") && form.size() > 4)
        readings.Add(form.chopped(3) + u'y', Plural);
    readings.Add(form.chopped(1), Plural);
    if (form.endsWith(u"es"))
        readings.Add(form.chopped(2), Plural);
    if (form.endsWith(u"ves")) {
        readings.Add(form.chopped(3) + u'f', Plural);
        readings.Add(form.chopped(3) + u"fe"_s, Plural);
    }
}

} // namespace

QList<EnglishReading> EnglishReadings(const QString &text)
{
    using enum EnglishForm;
    const QString form = QString(text).replace(u'\'', u'’');
    Readings readings(form);
    for (const EnglishReading &irregular : IrregularForms().value(form))
        readings.Add(irregular.head, irregular.term);
    if (form.endsWith(u"’s"))
        readings.Add(form.chopped(2), Possessive);
    else if (form.endsWith(u"s’"))
        readings.Add(form.chopped(2), Possessive);
    AddPlural(readings);
    readings.Cut(u"ed", Past);
    readings.Cut(u"ing", Ing);
    readings.Cut(u"ings", Ing);
    readings.Cut(u"er", Comparative);
    readings.Cut(u"est", Superlative);
    if (form.endsWith(u"ily"))
        readings.Add(form.chopped(3) + u'y', Adverb);
    if (form.endsWith(u"ly") && form.size() > 4) {
        readings.Add(form.chopped(2), Adverb);
        readings.Add(form.chopped(1) + u'e', Adverb);
        if (form.endsWith(u"ally"))
            readings.Add(form.chopped(4), Adverb);
    }
    return readings.Take();
}

QString EnglishTerm(EnglishForm form, int language)
{
    constexpr Message names[] = {
        {u"", u""},
        {u"số nhiều", u"plural"},
        {u"sở hữu cách", u"possessive"},
        {u"ngôi thứ ba số ít", u"third person singular"},
        {u"quá khứ", u"past"},
        {u"quá khứ phân từ", u"past participle"},
        {u"hiện tại phân từ", u"present participle"},
        {u"so sánh hơn", u"comparative"},
        {u"so sánh nhất", u"superlative"},
        {u"trạng từ", u"adverb"},
        {u"dạng rút gọn", u"contraction"},
    };
    return TextOrEnglish(names[static_cast<size_t>(form)], language);
}
