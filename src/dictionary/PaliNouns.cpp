#include "dictionary/PaliTables.h"

namespace {

constexpr PaliEndings Cases[] = {
    // Stems in a: masculine and neuter.
    {u"a o aṃ",
     u"n1 o|a1 aṃ|i1 ena|g1 assa|n2 ā āni|b1 ā asmā amhā|l1 e asmiṃ amhi|i2 ehi ebhi|g2 ānaṃ|l2 esu|d1 āya|v1 a", 1},
    {u"a", u"e ato", 2},
    {u"a", u"e aso|n2 āse āso|i1 asā|l1 asmi asi", 3},
    {u"a", u"e adā athā attha atra", 5},
    // The same as feminine adjectives, and as pronouns decline.
    {u"a", u"n2 āyo|l1 āyaṃ|i2 āhi ābhi|l2 āsu", 2},
    {u"a", u"n2 e|g2 esaṃ esānaṃ āsaṃ āsānaṃ|g1 assā issā issāya|l1 assaṃ issaṃ", 4},
    // Stems in ā.
    {u"ā", u"i1 āya|l1 āyaṃ|n2 āyo|i2 āhi ābhi|g2 ānaṃ|l2 āsu", 1},
    {u"ā", u"a1 aṃ|v1 e|e āto", 2},
    {u"ā", u"e ato", 3},
    // Stems in i, ī and in.
    {u"i ī in", u"a1 iṃ|i1 inā|g1 ino issa|b1 ismā imhā|l1 ismiṃ imhi|n2 ī|i2 īhi ībhi|g2 īnaṃ|l2 īsu", 1},
    {u"i ī", u"i1 iyā|l1 iyaṃ|n2 iyo", 2},
    {u"i in", u"n2 ayo īni|i2 ihi ibhi|g2 inaṃ|l2 isu|e ito iso|l1 ini|v2 ayo", 2},
    {u"ī in i", u"n1 ī i|a1 inaṃ iyaṃ|l1 ini|a2 ine|b1 ito|i2 ihi|g2 inaṃ iyānaṃ|n2 iyāyo", 2},
    {u"ti tī", u"i1 tyā ccā|l1 tyaṃ ccaṃ|n2 tyo cco", 4},
    {u"dī di", u"i1 jjā|l1 jjaṃ|n2 jjo", 4},
    {u"ṇī nī", u"i1 ññā|l1 ññaṃ|n2 ñño", 4},
    // Stems in u and ū.
    {u"u ū", u"n2 ū|a1 uṃ|i1 unā|g1 uno ussa|b1 usmā umhā|l1 usmiṃ umhi|n2 avo|v2 ave|i2 ūhi ūbhi|g2 ūnaṃ|l2 ūsu", 1},
    {u"u ū", u"n2 ūni uno uyo ave ūyo|i2 uhi ubhi|g2 unaṃ unnaṃ|l2 usu|i1 uyā|l1 uyaṃ|e uto uso|v2 avo|i1 usā", 2},
    // Stems in ar: agents and relations.
    {u"tar tu tā", u"n1 tā|a1 tāraṃ|i1 tārā|n2 tāro|a2 tāre|i2 tārehi tārebhi|g2 tārānaṃ|l2 tāresu", 2},
    {u"tar tā", u"g1 tu tuno tussa|i1 tunā|i2 tūhi|g2 tūnaṃ tunnaṃ|l2 tūsu", 3},
    {u"tar tu tā", u"g2 tānaṃ", 4},
    {u"satthar satthu satthā",
     u"n1 satthā|a1 satthāraṃ|i1 satthārā|g1 satthu satthuno satthussa|l1 satthari|n2 satthāro|i2 satthārehi|g2 "
     u"satthārānaṃ satthūnaṃ",
     0, 0},
    {u"mātar mātu", u"n1 mātā", 0, 0},
    {u"pitar pitu", u"n1 pitā", 0, 0},
    {u"bhātar bhātu", u"n1 bhātā", 0, 0},
    {u"dhītar dhītu", u"n1 dhītā", 0, 0},
    {u"tar tu tā", u"a1 taraṃ|i1 tarā|l1 tari|n2 taro|a2 tare|i2 tarehi|g2 tarānaṃ|l2 taresu|g1 tuyā|l1 tuyaṃ", 3},
    // Stems in an and as.
    {u"a an ā", u"n1 ā|a1 ānaṃ|i1 anā|g1 ano|l1 ani|n2 āno", 3},
    {u"a an", u"i1 unā|g1 uno", 4},
    {u"rāja rājan rājā",
     u"n1 rājā|a1 rājaṃ rājānaṃ|i1 raññā rājinā|g1 rañño rājino|l1 raññe rājini|n2 rājāno|i2 rājūhi rājehi|g2 raññaṃ "
     u"rājūnaṃ|l2 rājūsu",
     0, 0},
    {u"a as o", u"n1 o|i1 asā|g1 aso|l1 asi", 3},
    // Stems in ant; their strong cases are those of stems in a.
    {u"anta ant at", u"n1 aṃ|i1 atā|g1 ato|l1 ati|g2 ataṃ|n2 anto", 6},
    {u"ant at", u"n1 anto|a1 antaṃ|i1 antena|g1 antassa|l1 ante|n2 antā|i2 antehi|g2 antānaṃ|l2 antesu", 5},
    // Numerals that count, and plurals in short vowels.
    {u"a", u"i2 ahi|g2 annaṃ|l2 asu", 5},
    // Adverbs.
    {u"-", u"e dhā khattuṃ kkhattuṃ", 5},
    {u"i u", u"l1 ismi usmi", 4},
    {u"vant vantu", u"c vattaro vattaraṃ vattarā", 5},
};

constexpr PaliEndings PossessorCases[] = {
    {u"vant vantu vat vā vanta",
     u"n1 vā vanto|a1 vantaṃ|i1 vatā vantena|g1 vato vantassa|l1 vati vante vantasmiṃ vantamhi|n2 vanto vantā|a2 "
     u"vante|i2 vantehi vantebhi|g2 vataṃ vantānaṃ|l2 vantesu|v1 va",
     1},
    {u"mant mantu mat mā manta",
     u"n1 mā manto|a1 mantaṃ|i1 matā mantena|g1 mato mantassa|l1 mati mante mantasmiṃ mantamhi|n2 manto mantā|a2 "
     u"mante|i2 mantehi mantebhi|g2 mataṃ mantānaṃ|l2 mantesu|v1 ma",
     1},
    {u"vant vantu", u"n1 vaṃ", 3},
    {u"mant mantu", u"n1 maṃ", 3},
    {u"vatī vantī vant vantu", u"n1 vatī vantī|a1 vatiṃ vantiṃ|i1 vatiyā vantiyā|n2 vatiyo vantiyo|g2 vatīnaṃ vantīnaṃ",
     3},
    {u"matī mantī mant mantu", u"n1 matī mantī|a1 matiṃ mantiṃ|i1 matiyā mantiyā|n2 matiyo mantiyo|g2 matīnaṃ mantīnaṃ",
     3},
};

constexpr PaliEndings NounStems[] = {
    {u"-", u"t tā", 5, 3},          {u"-", u"c tara|s tama", 5, 5}, {u"-", u"t tta ttana", 7, 3},
    {u"-", u"j maya mayā", 3, 3},   {u"-", u"j vant mant", 6, 3},   {u"-", u"w ka kā", 7, 3},
    {u"a", u"s iṭṭha|c iya", 7, 3}, {u"a ā", u"j in", 6, 3},        {u"a i", u"j ika ikā iya", 7, 4},
    {u"aka", u"f ikā", 3},          {u"in ī i a", u"f inī", 5},     {u"a", u"f ī", 6, 3},
    {u"i", u"f ānī", 6, 3},
};

constexpr PaliEndings SmallWords[] = {
    // Pronouns, numerals, and verbs that are short or of several roots.
    {u"ahaṃ amha mayaṃ asmad asma",
     u"n1 ahaṃ|a1 maṃ mamaṃ|i1 mayā|g1 me mama mayhaṃ mamaṃ amhaṃ|l1 mayi|n2 mayaṃ amhe|a2 amhe asme|i2 amhehi no|g2 "
     u"amhākaṃ asmākaṃ|l2 amhesu",
     1},
    {u"ta so taṃ tad sa",
     u"n1 so sa sā tad|a1 taṃ naṃ|i1 tena tāya|g1 tassa tassā tissā tāya tissāya tassāya|b1 tasmā tamhā|l1 tasmiṃ "
     u"tamhi tāsaṃ tassaṃ tissaṃ tāyaṃ|n2 te tā tāni tāyo|i2 tehi tāhi tebhi|g2 tesaṃ tesānaṃ tāsaṃ tāsānaṃ|l2 tesu "
     u"tāsu",
     1},
    {u"tvaṃ tumha tumhe tuvaṃ tumhad",
     u"n1 tvaṃ tuvaṃ|a1 taṃ tavaṃ|i1 tayā tvayā|g1 te tava tuyhaṃ tavaṃ tumhaṃ|l1 tayi tvayi|n2 tumhe|i2 tumhehi|g2 "
     u"tumhākaṃ vo|l2 tumhesu",
     1},
    {u"eta eso etaṃ etad esa",
     u"n1 eso esa esā etad|a1 etaṃ enaṃ|i1 etena etāya|g1 etassa etassā etissā etāya etissāya|b1 etasmā etamhā|l1 "
     u"etasmiṃ etamhi etissaṃ etāyaṃ|n2 ete etā etāni etāyo|i2 etehi etāhi|g2 etesaṃ etesānaṃ etāsaṃ|l2 etesu etāsu",
     1},
    {u"ima ayaṃ idaṃ imaṃ",
     u"n1 ayaṃ idaṃ|a1 imaṃ|i1 iminā anena imāya|g1 imassa assa imissā imāya imissāya|b1 imasmā imamhā|l1 imasmiṃ "
     u"imamhi imissaṃ imāyaṃ|n2 ime imā imāni imāyo|i2 imehi imāhi|g2 imesaṃ imesānaṃ imāsaṃ|l2 imesu imāsu",
     1},
    {u"amu asu aduṃ amuka",
     u"n1 asu amu aduṃ|a1 amuṃ|i1 amunā amuyā|g1 amussa amussā amuyā|b1 amusmā amumhā|l1 amusmiṃ amumhi amussaṃ|n2 amū "
     u"amūni amuyo|i2 amūhi|g2 amūsaṃ amūsānaṃ|l2 amūsu",
     1},
    {u"ya yo yaṃ yad",
     u"n1 yo yā yad|a1 yaṃ|i1 yena yāya|g1 yassa yassā yāya|b1 yasmā yamhā|l1 yasmiṃ yamhi yassaṃ yāyaṃ|n2 ye yā "
     u"yāni yāyo|i2 yehi yāhi|g2 yesaṃ yesānaṃ yāsaṃ|l2 yesu yāsu",
     1},
    {u"ka ko kiṃ kad",
     u"n1 ko kā kiṃ|a1 kaṃ|i1 kena kāya|g1 kassa kissa kassā kāya|b1 kasmā kamhā kismā|l1 kasmiṃ kamhi kismiṃ kimhi "
     u"kassaṃ|n2 ke kā kāni kāyo|i2 kehi kāhi|g2 kesaṃ kesānaṃ kāsaṃ|l2 kesu kāsu",
     1},
    {u"koci kaci kiñci",
     u"n1 koci kāci kiñci|a1 kañci kiñci kiñcana|i1 kenaci kāyaci|g1 kassaci kassāci|b1 kasmāci|l1 kasmiñci kismiñci "
     u"kimhici|n2 keci kāci kānici|i2 kehici|g2 kesañci kāsañci|l2 kesuci",
     1},
    {u"eka",
     u"n1 eko ekā ekaṃ|i1 ekena ekāya|g1 ekassa ekissā ekissāya|b1 ekasmā ekamhā|l1 ekasmiṃ ekamhi ekissaṃ|n2 eke", 1},
    {u"dvi dve dvā dvaya", u"n2 dve duve dvāni|i2 dvīhi|g2 dvinnaṃ duvinnaṃ|l2 dvīsu", 1},
    {u"ubha ubho ubhaya", u"n2 ubho ubhe|i2 ubhohi ubhehi|g2 ubhinnaṃ|l2 ubhosu ubhesu", 1},
    {u"ti tayo tīṇi", u"n2 tayo tīṇi tisso tayas|i2 tīhi|g2 tiṇṇaṃ tiṇṇannaṃ tissannaṃ|l2 tīsu", 1},
    {u"catu cattāro catur catta cattāri",
     u"n2 cattāro caturo cattāri catasso|i2 catūhi catuhi catubbhi|g2 catunnaṃ catassannaṃ|l2 catūsu catusu", 1},
    {u"pañca", u"n2 pañca|i2 pañcahi|g2 pañcannaṃ|l2 pañcasu", 1},
    {u"cha chaḷ", u"n2 cha|i2 chahi|g2 channaṃ|l2 chasu", 1},
    {u"satta", u"i2 sattahi|g2 sattannaṃ|l2 sattasu", 1},
    {u"aṭṭha", u"i2 aṭṭhahi|g2 aṭṭhannaṃ|l2 aṭṭhasu", 1},
    {u"nava", u"i2 navahi|g2 navannaṃ|l2 navasu", 1},
    {u"dasa", u"n2 dasa|i2 dasahi|g2 dasannaṃ|l2 dasasu", 1},
    {u"ekādasa", u"i2 ekādasahi|g2 ekādasannaṃ|l2 ekādasasu", 1},
    {u"dvādasa bārasa", u"i2 dvādasahi bārasahi|g2 dvādasannaṃ|l2 dvādasasu", 1},
    {u"terasa", u"i2 terasahi|g2 terasannaṃ|l2 terasasu", 1},
    {u"kati", u"n2 kati|i2 katihi katīhi|g2 katinaṃ katīnaṃ|l2 katisu katīsu", 1},
    {u"atthi", u"AP asmi amhi|BP asi|FP santi|CO siyā assa|CR āsi|CM atthu", 1},
    {u"āha brūti", u"CK āha|FK āhu āhaṃsu", 1},
    {u"hoti bhavati",
     u"FP honti|AP homi|BP hosi|DP homa|EP hotha|CM hotu|FM hontu|BM hohi|CO heyya huveyya|CR ahosi ahū ahu ahud|FR "
     u"ahesuṃ ahuṃ|AR ahosiṃ ahuṃ|DR ahumha ahumhā ahosimha|CU hessati hehiti hohiti heti|BU hehisi hohisi|AU hessāmi "
     u"hessaṃ|FU hessanti hehinti|T hutvā hutvāna|I hotuṃ|CN abhavissa abhavissā",
     1},
    {u"eti", u"FP enti yanti|AP emi|BP esi|DP ema|EP etha|BM ehi|CM etu|EM etha|T ecca", 1},
    {u"brūti", u"AP brūmi|BP brūsi|BM brūhi|DP brūma|EP brūtha|CR abravi|FR abravuṃ", 1},
};

constexpr PaliEndings ClosedWords[] = {
    {u"atthi",
     u"DP amha asma amhā|EP attha|FO siyuṃ siyaṃsu assu assuṃ|AO siyaṃ assaṃ|DO assāma|EO assatha|FR āsuṃ āsiṃsu|AR "
     u"āsiṃ|DR āsimha āsimhā|Q samāno samānā samānaṃ samānassa samāne",
     1},
    {u"mātar mātu", u"e mātito", 1},
    {u"pitar pitu", u"e pitito", 1},
    {u"ima ayaṃ idaṃ imaṃ", u"i1 aminā|g1 assā|b1 asmā|l1 asmiṃ assaṃ|i2 ehi|g2 esaṃ āsaṃ|l2 esu", 2},
    {u"ta so taṃ tad sa", u"n2 ne nāni|i1 nena|g1 nassa|b1 nasmā|l1 nasmiṃ|i2 nehi|g2 nesaṃ|l2 nesu", 2},
    {u"attan atta attā", u"n1 attā|a1 attānaṃ attaṃ|i1 attanā|g1 attano|l1 attani|n2 attāno", 1},
    {u"sabba", u"n2 sabbe|g2 sabbesaṃ sabbāsaṃ", 1},
    {u"añña", u"n2 aññe|g2 aññesaṃ|g1 aññissā|l1 aññissaṃ", 1},
    {u"aññamañña", u"a1 aññamaññaṃ|g1 aññamaññassa", 1},
    {u"tuma", u"n1 tumo|g1 tumassa", 1},
    {u"bhavant bhavantu bhavaṃ bho bhonta bhavanta",
     u"n1 bhavaṃ bhotī|a1 bhavantaṃ bhotiṃ|i1 bhotā bhotiyā|g1 bhoto|v1 bho bhante|n2 bhonto bhavanto|a2 bhavante|g2 "
     u"bhavataṃ",
     1},
    {u"mahant mahantu mahanta mahā mahat",
     u"n1 mahā mahaṃ|i1 mahatā|g1 mahato|l1 mahati|n2 mahanto|g2 mahataṃ|f mahatī mahatiṃ mahatiyā mahatiyo", 1},
    {u"arahant arahantu arahanta arahaṃ arahat arahā",
     u"n1 arahaṃ arahā|a1 arahantaṃ|i1 arahatā|g1 arahato|l1 arahati|n2 arahanto|g2 arahataṃ", 1},
    {u"sant santa sa", u"n1 santo|i1 satā|g1 sato|l1 sati|g2 sataṃ|i2 sabbhi", 2},
    {u"go gāvī gava gāva", u"n2 gāvo gāvā|a1 gāvaṃ gavaṃ|a2 gāve gāvo|g1 gavassa|g2 gunnaṃ gonaṃ gavaṃ|i2 gohi|l2 gosu",
     1},
    {u"sakhi sakha sakhā sakhin",
     u"n1 sakhā|a1 sakhāraṃ sakhāyaṃ|i1 sakhinā|g1 sakhino|n2 sakhāyo sakhāro|g2 sakhīnaṃ sakhānaṃ", 1},
    {u"puma puman pumā", u"n1 pumā|a1 pumaṃ|n2 pumāno|i1 pumunā", 1},
    {u"brahma brahman brahmā",
     u"n1 brahmā|a1 brahmaṃ brahmānaṃ|i1 brahmunā|g1 brahmuno|v1 brahme|l1 brahmani|n2 brahmāno", 1},
    {u"kamma kamman", u"i1 kammunā kammanā|g1 kammuno|l1 kammani", 1},
    {u"addha addhan addhāna addhā", u"n1 addhā|a1 addhānaṃ|i1 addhunā|g1 addhuno|l1 addhani", 1},
    {u"āyasmant āyasmantu āyasmat āyasmā āyasmanta", u"n1 āyasmā|n2 āyasmantā āyasmanto", 1},
    {u"jāti", u"i1 jaccā|l1 jaccaṃ", 1},
    {u"ratti", u"i1 ratyā|n2 ratto", 1},
    {u"nadī", u"i1 najjā nadiyā|n2 najjo", 1},
    {u"itthī itthi thī", u"n1 itthī|a1 itthiṃ itthiyaṃ|i1 itthiyā|n2 itthiyo thiyo|g2 itthīnaṃ thīnaṃ", 1},
};

constexpr char16_t Particles[] =
    u"na no ca pi api ti iti va eva iva yeva vā hi ce sace kho pana nu su ssu tu atha idha tatra yatra tattha yattha "
    u"ettha "
    u"kattha atthi kuhiṃ kahaṃ kva evaṃ yathā tathā seyyathā kathaṃ yadi yāva tāva puna handa kacci sammā nūna nanu "
    u"aho alaṃ mā "
    u"saha vinā anto bahi upari heṭṭhā pure pacchā saddhiṃ sakkā labbhā ajja suve hiyyo idāni dāni tadā yadā kadā sadā "
    u"yato tato ito kuto sabbattha aññatra addhā kira khalu āvuso bhante bhikkhave are ambho iṅgha natthi ve have "
    u"āma iha nānā tena yena tasmā yasmā kasmā ekato ubhato sāmaṃ sayaṃ musā divā raho āvi pātu namo svāhaṃ antarā "
    u"tiro";

} // namespace

std::span<const PaliEndings> PaliCases()
{
    return Cases;
}

std::span<const PaliEndings> PaliPossessorCases()
{
    return PossessorCases;
}

std::span<const PaliEndings> PaliNounStems()
{
    return NounStems;
}

std::span<const PaliEndings> PaliSmallWords()
{
    return SmallWords;
}

std::span<const PaliEndings> PaliClosedWords()
{
    return ClosedWords;
}

QStringView PaliParticles()
{
    return Particles;
}
