#include "dictionary/KnownWords.h"

#include "stores/Schema.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Spellings of one word: dictionaries write the niggahita in three ways, and before a consonant also as the nasal of
/// its class.
void AddNiggahita(const QString &word, QStringList &spellings)
{
    spellings.append(word);
    if (!word.contains(u'ṃ'))
        return;
    for (const QChar sign : {u'ṁ', u'ŋ'})
        spellings.append(QString(word).replace(u'ṃ', sign));
    QString assimilated = word;
    for (qsizetype at = 0; at + 1 < assimilated.size(); ++at) {
        if (assimilated[at] != u'ṃ')
            continue;
        const QChar next = assimilated[at + 1];
        assimilated[at] = QStringView(u"kg").contains(next)   ? u'ṅ'
                          : QStringView(u"cj").contains(next) ? u'ñ'
                          : QStringView(u"ṭḍ").contains(next) ? u'ṇ'
                          : QStringView(u"td").contains(next) ? u'n'
                          : QStringView(u"pb").contains(next) ? u'm'
                                                              : u'ṃ';
    }
    if (assimilated != word)
        spellings.append(assimilated);
}

/// Letters that one edition or dictionary writes for those of another.
constexpr std::pair<QStringView, QStringView> Respellings[] = {
    {u"by", u"vy"},        {u"vy", u"by"},       {u"ḷ", u"l"},         {u"paṭi", u"pati"},
    {u"vīriy", u"viriy"},  {u"viriy", u"vīriy"}, {u"sūriy", u"suriy"}, {u"kathin", u"kaṭhin"},
    {u"iyyati", u"īyati"}, {u"nahā", u"nhā"},    {u"nhā", u"nahā"},    {u"vedayat", u"vediyat"},
};

} // namespace

const QStringList &HeadwordSigns::Of(int kind, WordTest &test)
{
    if (const auto known = m_signs.constFind(kind); known != m_signs.cend())
        return *known;
    QStringList found;
    const QStringList words = u"dhamma attha kata na ca pada rūpa kāma loka mata aṅga bala vata"_s.split(u' ');
    for (const QString &sign : {u" 1"_s, u"1"_s, u"¹"_s, u" (1)"_s, u"(1)"_s, u" 1.1"_s, u" 1.01"_s, u".1"_s, u"-1"_s,
                                u"_1"_s, u" i"_s, u", 1"_s, u"-"_s, u"°"_s}) {
        QStringList asked;
        const QStringList prefixes = u"mahā su du sa a abhi anu paṭi"_s.split(u' ');
        for (const QString &word : sign == u"-" || sign == u"°" ? prefixes : words)
            asked.append(word + sign);
        if (test.Have(kind, asked).contains(true))
            found.append(sign);
    }
    // Whether a nasal before a consonant is written as niggahita: "saṃgha".
    if (test.Have(kind, {u"saṃgha"_s, u"saṃkhāra"_s, u"saṁgha"_s, u"saṁkhāra"_s}).contains(true))
        found.append(u"ṅ"_s);
    return *m_signs.insert(kind, found);
}

QStringList KnownWords::Spellings(const QString &word, int kind) const
{
    QStringList spellings;
    AddNiggahita(word, spellings);
    if (!m_signs)
        return spellings;
    for (const auto &[letters, others] : Respellings) {
        if (word.contains(letters))
            AddNiggahita(QString(word).replace(letters.toString(), others.toString()), spellings);
    }
    for (const QString &sign : m_signs->Of(kind, m_test)) {
        if (sign != u"ṅ")
            AddNiggahita(word + sign, spellings);
        else if (word.contains(u'ṅ'))
            AddNiggahita(QString(word).replace(u'ṅ', u'ṃ'), spellings);
    }
    return spellings;
}

void KnownWords::Ask(const QStringList &words)
{
    QStringList pending;
    for (const QString &word : words) {
        if (!word.isEmpty() && !m_places.contains(word)) {
            m_places.insert(word, {});
            if (word.size() <= Length::Word)
                pending.append(word);
        }
    }
    for (int rank = 0; rank < m_kinds.size() && !pending.isEmpty(); ++rank) {
        const int kind = m_kinds[rank];
        QStringList asked;
        QList<qsizetype> owners;
        for (qsizetype i = 0; i < pending.size(); ++i) {
            const QStringList spellings = m_signs ? Spellings(pending[i], kind) : QStringList{pending[i]};
            for (const QString &spelling : spellings) {
                asked.append(spelling);
                owners.append(i);
            }
        }
        const QList<bool> answers = m_test.Have(kind, asked);
        QStringList missing;
        for (qsizetype i = 0; i < asked.size(); ++i) {
            Place &place = m_places[pending[owners[i]]];
            if (answers[i] && place.kind == 0)
                place = {asked[i], kind, rank};
        }
        for (const QString &word : std::as_const(pending)) {
            if (!Has(word))
                missing.append(word);
        }
        pending = missing;
    }
}
