#include "dictionary/PaliReadings.h"
#include "dictionary/PaliSeams.h"
#include "dictionary/PaliTables.h"

#include <gmock/gmock.h>

#include <QSet>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

std::string Lower(QStringView text)
{
    return text.toUtf8().toStdString();
}

/// Each line: a form, the headwords that dictionaries may have it under, parted by "/", and what it is of them.
void ExpectReadings(const char *lines)
{
    for (const QString &line : QString::fromUtf8(lines).split(u'\n', Qt::SkipEmptyParts)) {
        const QStringList parts = line.simplified().split(u' ');
        const QList<PaliReading> readings = PaliReadings(parts[0]);
        const QString terms = parts.mid(2).join(u' ');
        for (const QString &head : parts[1].split(u'/')) {
            const auto found = std::find_if(readings.cbegin(), readings.cend(),
                                            [&](const PaliReading &reading) { return reading.head == head; });
            EXPECT_TRUE(found != readings.cend()) << Lower(line) << ": " << Lower(head);
            if (found != readings.cend() && head == parts[1].section(u'/', 0, 0)) {
                EXPECT_EQ(Lower(PaliTerms(found->terms, 1)), Lower(terms)) << Lower(line);
            }
        }
    }
}

TEST(PaliReadings, NounsOfEachStem)
{
    ExpectReadings(R"(
dhammo dhamma/dhammo nominative singular
dhammānaṃ dhamma/dhammo genitive plural
dhammasmiṃ dhamma locative singular
rūpāni rūpa/rūpaṃ nominative plural
kaññāyo kaññā nominative plural
vedanāsu vedanā locative plural
aggino aggi genitive singular
hatthīnaṃ hatthi/hatthī/hatthin genitive plural
hatthino hatthi/hatthin/hatthī genitive singular
bhikkhuniyā bhikkhunī/bhikkhuni instrumental singular
jaccā jāti instrumental singular
bhikkhave bhikkhu vocative plural
bhikkhūhi bhikkhu instrumental plural
viññūnaṃ viññū/viññu genitive plural
cakkhūni cakkhu nominative plural
satthāraṃ satthar/satthu/satthā accusative singular
satthuno satthar/satthu/satthā genitive singular
mātaraṃ mātar/mātu/mātā accusative singular
pitūnaṃ pitar/pitu/pitā genitive plural
rañño rājan/rāja/rājā genitive singular
mahārājānaṃ mahārāja/mahārājan/mahārājā accusative singular
brahmunā brahma/brahman instrumental singular
attano attan/atta/attā genitive singular
kammunā kamma/kamman instrumental singular
cetasā ceta/cetas/ceto instrumental singular
manaso mano/manas/mana genitive singular
guṇavatā guṇavant/guṇavantu/guṇavat/guṇavā/guṇavanta instrumental singular
bhagavato bhagavant/bhagavantu/bhagavat/bhagavā/bhagavanta genitive singular
cakkhumā cakkhumant/cakkhumantu/cakkhumat/cakkhumanta nominative singular
āyasmatā āyasmant/āyasmantu/āyasmā instrumental singular
arahato arahant/arahantu/arahat/arahā genitive singular
gāvo go/gāvī nominative plural
sakhino sakhi/sakhā genitive singular)");
}

TEST(PaliReadings, PronounsAndNumerals)
{
    ExpectReadings(R"(
mayhaṃ ahaṃ/amha/asmad genitive singular
vo tvaṃ/tumha genitive plural
tassā ta/so/taṃ/tad genitive singular
imissā ima/ayaṃ/idaṃ genitive singular
assa ima/ayaṃ/atthi genitive singular
amussa amu/asu genitive singular
yesaṃ ya/yo genitive plural
kismiṃ ka/ko/kiṃ locative singular
kenaci koci/kiñci instrumental singular
sabbesaṃ sabba genitive plural
aññataresu aññatara locative plural
ekissā eka genitive singular
dvinnaṃ dvi/dve genitive plural
tiṇṇannaṃ ti/tayo genitive plural
cattāri catu/cattāro nominative plural
pañcahi pañca instrumental plural
ubhinnaṃ ubha/ubho genitive plural)");
}

TEST(PaliReadings, VerbsInEachTenseAndMood)
{
    ExpectReadings(R"(
gacchanti gacchati third person plural present
jānāmi jānāti first person singular present
desenti deseti/desayati third person plural present
karonti karoti third person plural present
labhate labhati third person singular present middle
suṇohi suṇāti/suṇoti imperative
gacchantu gacchati third person plural imperative
bhāseyya bhāsati third person singular optative
deseyyaṃ deseti first person singular optative
kareyyātha karoti second person plural optative
siyā atthi third person singular optative
gamissāmi gacchati future
karissanti karoti third person plural future
dassāmi deti/dadāti future
abhavissa bhavati/hoti third person singular conditional
bhāsi bhāsati third person singular aorist
abhāsiṃsu bhāsati third person plural aorist
desesi deseti third person singular aorist
ahosi hoti/bhavati third person singular aorist
akāsi karoti aorist
adāsi deti/dadāti aorist
aññāsi jānāti aorist
addasa passati third person singular aorist
avocuṃ vadati/vatti/vacati third person plural aorist
agamaṃsu gacchati third person plural aorist
paccassosi paṭissuṇāti/paṭissuṇoti aorist
byākāsi byākaroti aorist
pāvisi pavisati third person singular aorist
upāgami upagacchati aorist
āhaṃsu āha/brūti third person plural perfect)");
}

TEST(PaliReadings, WordsMadeOfVerbs)
{
    ExpectReadings(R"(
gantvā gacchati absolutive
upasaṅkamitvā upasaṅkamati absolutive
desetvā deseti absolutive
katvāna karoti absolutive
ādāya ādāti/ādiyati absolutive
pahāya pajahati absolutive
nisajja nisīdati absolutive
paṭicca paṭicca
kātuṃ karoti infinitive
codetuṃ codeti infinitive
gacchanto gacchanta/gacchati nominative singular
karonto karoti/karonta present participle
gacchatā gacchant/gacchati/gacchanta instrumental singular
jānaṃ jānāti present participle
bhuñjamānassa bhuñjati/bhuñjamāna present participle
katāya karoti/kata past participle
bhāsitaṃ bhāsati/bhāsita past participle
kātabbo karoti/kātabba future passive participle
upasampādetabbaṃ upasampādeti/upasampādetabba future passive participle
karaṇīyena karoti/karaṇīya future passive participle
kārāpenti kārāpeti/karoti third person plural present
ukkhipīyati ukkhipati/ukkhipīyati passive
codako codeti/codaka agent noun
sundarataro sundara/sundaratara comparative
dhammattā dhamma/dhammatta abstract noun
pāpikāya pāpaka/pāpikā feminine)");
}

TEST(PaliReadings, RootsStandForVerbs)
{
    for (const auto &[form, root] :
         {std::pair(u"vadanti"_s, u"vad"_s), {u"gacchanti"_s, u"gam"_s}, {u"karomi"_s, u"kar"_s}}) {
        const QList<PaliReading> readings = PaliReadings(form);
        EXPECT_TRUE(std::any_of(readings.cbegin(), readings.cend(), [&](const auto &reading) {
            return reading.head == root && reading.cost > CommonReading;
        })) << Lower(form);
    }
}

TEST(PaliReadings, AreEachToldOnceAndAreFewForAnyText)
{
    for (const QString &form : {u"a"_s, u"’"_s, u"ṃ"_s, u"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"_s, u"upasampādetabbānaṃ"_s,
                                u"\U0001F600x"_s, u"vantamantavantamantavantamanta"_s}) {
        QSet<QString> heads;
        const QList<PaliReading> readings = PaliReadings(form);
        for (const PaliReading &reading : readings)
            heads.insert(reading.head);
        EXPECT_EQ(heads.size(), readings.size()) << Lower(form);
        EXPECT_LT(readings.size(), 300) << Lower(form);
    }
}

/// Each line: a form cut by "·", and the two words that it may have been.
TEST(PaliSeams, UndoWhatHappensWhereWordsMeet)
{
    for (const QString &line : uR"(
tena·kho tena kho
bhikkhū·pi bhikkhu pi
dhammañ·ca dhammaṃ ca
evam·pi evaṃ pi
kathañ·hi kathaṃ hi
taññ·eva taṃ eva
evam·etaṃ evaṃ etaṃ
etad·avoca eta avoca
puna·deva puna eva
sammad·eva sammā eva
ten·upasaṅkami tena upasaṅkami
n·āhaṃ na ahaṃ
yen·āyasmā yena āyasmā
atth·āpatti atthi āpatti
so·haṃ so ahaṃ
na·kkhamati na khamati
yv·āyaṃ yo ayaṃ
icc·etaṃ iti etaṃ
bandhuss·eva bandhussa iva
āpatt·ādhikaraṇa āpatti adhikaraṇa)"_s.split(u'\n', Qt::SkipEmptyParts)) {
        const QStringList parts = line.split(u' ');
        const qsizetype at = parts[0].indexOf(u'·');
        const QString form = QString(parts[0]).remove(u'·');
        bool isThere = false;
        // A letter of both may be on either side.
        for (qsizetype cut = std::max<qsizetype>(at - 1, 1); cut < std::min(at + 2, form.size()); ++cut) {
            for (const PaliSeam &seam : PaliSeamsAt(form, cut))
                isThere = isThere || (seam.left == parts[1] && seam.right == parts[2]);
        }
        EXPECT_TRUE(isThere) << Lower(line);
    }
}

} // namespace
