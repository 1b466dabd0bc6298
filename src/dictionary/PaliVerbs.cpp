#include "base/Messages.h"
#include "dictionary/PaliTables.h"

#include <QStringList>

namespace {

constexpr PaliEndings VerbForms[] = {
    // Present and imperative, by the vowel of the present stem.
    {u"ati", u"FP anti|BP asi|AP āmi|EP atha|DP āma|CM atu|FM antu|BM āhi", 2},
    {u"āti", u"FP anti|BP āsi|AP āmi|EP ātha|DP āma|CM ātu|FM antu|BM āhi", 2, 1},
    {u"eti", u"FP enti|AP emi|EP etha|DP ema|CM etu|FM entu|BM ehi", 2, 1},
    {u"oti", u"FP onti|BP osi|AP omi|EP otha|DP oma|CM otu|FM ontu|BM ohi", 2, 1},
    {u"oti", u"FP anti|AP āmi|DP āma|CM atu|BM āhi a", 4, 1},
    {u"ati", u"CPW ate|FPW ante are|BPW ase|EPW avhe|DPW āmhe āmahe|DM āmase|BMW assu|EMW avho", 3},
    {u"ati", u"CMW ataṃ|FMW antaṃ", 4},
    {u"eti", u"BMW essu|BM aya", 3, 1},
    {u"ati āti", u"BM a", 4, 1},
    // Optative.
    {u"ati eti āti oti", u"CO eyya eyyā|FO eyyuṃ|BO eyyāsi|EO eyyātha|AO eyyaṃ eyyāmi|DO eyyāma", 2, 1},
    {u"ati āti oti", u"CO etha ethā|FO eraṃ|DO emu emasi|BO esi", 4},
    {u"ati oti", u"CO e|AP e", 5},
    {u"ati", u"CO aye", 5},
    {u"āti", u"CO iyā aññā", 5, 1},
    // Future.
    {u"ati āti oti eti", u"CU issati|FU issanti|BU issasi|EU issatha|AU issāmi issaṃ|DU issāma|CUW issate|FUW issare",
     2},
    {u"eti", u"CU essati|FU essanti|BU essasi|EU essatha|AU essāmi essaṃ|DU essāma", 2, 1},
    {u"āti oti", u"U assati* ossati*", 4, 1},
    {u"ati eti", u"CU ihiti ehiti", 5},
    // Absolutive and infinitive.
    {u"ati āti eti oti", u"T itvā itvāna itūna", 2},
    {u"eti", u"T etvā etvāna etūna", 2, 1},
    {u"āti oti", u"T atvā ātvā otvā āya", 4, 1},
    {u"ati āti eti", u"T iya iyāna", 4},
    {u"ati", u"T a", 5},
    {u"dati jati jjati", u"T jja", 4},
    {u"cati eti", u"T cca", 4},
    {u"mati", u"T mma", 4},
    {u"bhati", u"T bbha", 4},
    {u"hati", u"T yha", 4},
    {u"sati", u"T ssa", 4},
    {u"pati", u"T ppa", 4},
    // The participle whose nominative has lost its stem.
    {u"ati āti oti", u"Q aṃ atā ato ati ataṃ", 4},
    {u"eti", u"Q entaṃ ento", 3, 1},
    // Roots that change.
    {u"karoti",
     u"CU karissati|FU karissanti|BU karissasi|EU karissatha|AU karissāmi karissaṃ|DU karissāma|CO kareyya|FO "
     u"kareyyuṃ|AO kareyyaṃ kareyyāmi|BO kareyyāsi|EO kareyyātha|DO kareyyāma|T karitvā "
     u"karitvāna",
     1, 0},
    {u"karoti",
     u"T katvā katvāna kattūna kariya|O kayirā kare kuriyā kubbetha|U kāhati* kassāmi kassaṃ kassati|P kubbati kurute "
     u"kubbanti|V kayirati kariyati karīyati kiriyati karīyanti kariyanti kayiranti",
     2, 0},
    {u"deti dadāti",
     u"T datvā datvāna daditvā|U dassati*|O dadeyya dajjā dajjaṃ dajjeyya dajjuṃ dade dadeyyuṃ dadeyyaṃ dadeyyāma "
     u"dadeyyāsi dadeyyātha|M dehi dadāhi detu detha dentu dada|P dammi damma dadanti dadāmi dadāma dadāsi dadāti demi "
     u"dema denti desi|V dīyati diyyati dīyanti diyyanti",
     2, 0},
    {u"ādāti ādiyati ādadāti", u"T ādāya ādiya", 2, 0},
    {u"dāti diyati", u"T dāya", 3},
    {u"tiṭṭhati ṭhāti ṭhahati", u"T ṭhatvā ṭhatvāna ṭhahitvā ṭhāya|U ṭhassati*|M ṭhātu|O ṭhaheyya", 2, 0},
    {u"tiṭṭhati", u"T ṭṭhahitvā ṭṭhāya|U ṭṭhassati*|O ṭṭhaheyya", 3},
    {u"jānāti", u"T ñatvā ñatvāna ñāya ññāya|U ñassati* ññassati*|O jaññā|V ñāyati ñāyanti", 2, 0},
    {u"suṇāti suṇoti", u"T sutvā sutvāna|U sossati*|M suṇohi suṇotha suṇātu suṇoma suṇoti|V suyyati sūyati suyyanti", 2,
     0},
    {u"passati dissati", u"T disvā disvāna|U dakkhati* dakkhiti dakkhisi dakkhinti dakkhissati*|V dissati dissanti", 2,
     0},
    {u"vadati vatti vacati", u"T vatvā vatvāna|U vakkhati*|O vajjā vajjaṃ vajjeyya vajjuṃ|M vadehi|V vuccati vuccanti",
     2, 0},
    {u"gacchati", u"T gantvā gantvāna gamma|U gamissati*|V gamyati", 2, 0},
    {u"āgacchati", u"T āgamma|M āgamehi", 2, 0},
    {u"hanati hanti", u"T hantvā hantvāna|V haññati haññanti", 2, 0},
    {u"labhati", u"T laddhā laddhāna|U lacchati*|V labbhati labbhanti|G labbhā", 2, 0},
    {u"dahati dhāti dheti dheyyati", u"T dhāya|V dhīyati", 2, 0},
    {u"jahati jahāti", u"T hitvā hitvāna hāya|U hassati*|V hīyati hāyati", 2, 0},
    {u"pivati", u"T pitvā", 2, 0},
    {u"pāpuṇāti pappoti", u"T patvā", 2, 0},
    {u"gaṇhāti gaṇhati", u"T gahetvā gahetvāna gayha ggayha|U gahessati* ggahessati*|M gaṇha gaṇhāhi gaṇhatha", 2, 0},
    {u"sīdati sādeti", u"T sajja", 4, 1},
    {u"āmeti", u"T amma", 4},
    {u"indati", u"T ijja", 4},
    {u"ājānāti jānāti", u"T aññāya", 2, 0},
    {u"hanati", u"T hacca", 3, 0},
    {u"jayati jeti jināti", u"T jetvā jitvā", 2, 0},
    {u"ti", u"T icca ecca", 4},
    {u"eti", u"T icca ecca eyya|U essati* ehiti ehisi|M ehi", 3, 0},
    {u"yāti", u"U yassati*|P yanti", 3, 0},
    {u"pahiṇāti pahiṇati", u"T pahiṇitvā", 2, 0},
    {u"bhindati", u"T bhetvā bhetvāna|U bhecchati*|V bhijjati", 2, 0},
    {u"chindati", u"T chetvā chetvāna|U checchati*|V chijjati", 2, 0},
    {u"muñcati muccati", u"T mutvā|U mokkhati*", 3, 0},
    {u"bhuñjati", u"T bhutvā bhutvāna|U bhokkhati*", 2, 0},
    {u"sakkoti sakkuṇāti", u"U sakkhissati* sakkhati sakkhiti|O sakkuṇeyya", 2, 0},
    {u"vasati", u"T vutthāna|U vacchati*", 3, 0},
    {u"vatti vadati", u"M vada", 4, 0},
    {u"ruhati rohati", u"T ruyha", 2, 0},
    {u"ṭhāti ṭhahati", u"BM ṭhehi ṭhāhi", 3},
    // Infinitives, which look like agents.
    {u"ati āti eti oti", u"I ituṃ itave", 0},
    {u"eti", u"I etuṃ etave", 0, 1},
    {u"āti oti", u"I ātuṃ otuṃ", 0, 1},
    {u"karoti", u"I karituṃ", 0, 0},
    {u"karoti", u"I kātuṃ kattuṃ kātave", 0, 0},
    {u"deti dadāti", u"I dātuṃ", 0, 0},
    {u"ādāti ādiyati ādadāti", u"I ādātuṃ", 0, 0},
    {u"tiṭṭhati ṭhāti ṭhahati", u"I ṭhātuṃ", 0, 0},
    {u"tiṭṭhati", u"I ṭṭhātuṃ", 0},
    {u"jānāti", u"I ñātuṃ ññātuṃ", 0, 0},
    {u"suṇāti suṇoti", u"I sotuṃ", 0, 0},
    {u"passati dissati", u"I daṭṭhuṃ dassituṃ", 0, 0},
    {u"vadati vatti vacati", u"I vattuṃ", 0, 0},
    {u"gacchati", u"I gantuṃ gantave", 0, 0},
    {u"hanati hanti", u"I hantuṃ", 0, 0},
    {u"labhati", u"I laddhuṃ", 0, 0},
    {u"dahati dhāti dheti dheyyati", u"I dhātuṃ", 0, 0},
    {u"jahati jahāti", u"I hātuṃ hātave", 0, 0},
    {u"pivati", u"I pātuṃ", 0, 0},
    {u"pāpuṇāti pappoti", u"I pattuṃ", 0, 0},
    {u"gaṇhāti gaṇhati", u"I gahetuṃ", 0, 0},
    {u"jayati jeti jināti", u"I jetuṃ", 0, 0},
    {u"bujjhati", u"I boddhuṃ", 0, 0},
    {u"bhindati", u"I bhettuṃ", 0, 0},
    {u"chindati", u"I chettuṃ", 0, 0},
    {u"muñcati muccati", u"I mottuṃ", 0, 0},
    {u"bhuñjati", u"I bhottuṃ", 0, 0},
    {u"vasati", u"I vatthuṃ", 3, 0},
    {u"harati", u"I haṭṭhuṃ hattuṃ", 0, 0},
};

constexpr PaliEndings PastForms[] = {
    {u"ati āti", u"CR i ī|FR iṃsu uṃ isuṃ|AR iṃ isaṃ|DR imha imhā|ER ittha itthā", 3},
    {u"eti", u"CR esi|FR esuṃ ayiṃsu ayuṃ|AR esiṃ ayiṃ|DR esimha esimhā|CR ayi", 2},
    {u"āti", u"R āsi*|FR aṃsu|ER attha", 3},
    {u"oti āti", u"R osi* i", 5},
    {u"ati āti eti oti", u"CN issa issā|FN issaṃsu|AN issaṃ|DN issamhā issāma|BN issasi|EN issatha", 6},
    {u"karoti", u"R kāsi*|FR akaṃsu akaruṃ|ER akattha|CR akā akari akarā|R kari*", 2, 0},
    {u"deti dadāti", u"R adāsi* dāsi*|FR adaṃsu|AR adaṃ|CR adā ada|DR adamhā adamha", 2, 0},
    {u"tiṭṭhati ṭhāti ṭhahati", u"R aṭṭhāsi* ṭhāsi*|FR aṭṭhaṃsu ṭhaṃsu|CR aṭṭhā", 2, 0},
    {u"tiṭṭhati", u"R ṭṭhāsi*|FR ṭṭhaṃsu", 3},
    {u"ṭhāti ṭhahati", u"R ṭhāsi*", 2},
    {u"jānāti", u"R aññāsi* ññāsi* ñāsi* jāni*|FR aññiṃsu aññaṃsu ññiṃsu", 2, 0},
    {u"suṇāti suṇoti", u"R assosi* sosi* suṇi*", 2, 0},
    {u"passati dissati",
     u"R addasāsi* addakkhi*|CR addasa addasā addā|FR addasaṃsu addasuṃ addaṃsu|AR addasaṃ|DR addasāma", 2, 0},
    {u"vadati vatti vacati",
     u"CR avoca avaca avacāsi avocāsi avacā|FR avocuṃ avacuṃ|AR avocaṃ avacaṃ|DR avocumha avocumhā|ER avacuttha "
     u"avocuttha|BR avaca|CR voca|FR vocuṃ",
     2, 0},
    {u"gacchati", u"R agamāsi* gamāsi* agami* gami* agañchi* gañchi*|CR agamā agacchi|FR agamaṃsu agamuṃ gamaṃsu", 2,
     0},
    {u"labhati", u"CR alattha alabhittha|AR alatthaṃ|FR alatthuṃ", 2, 0},
    {u"gaṇhāti gaṇhati", u"R aggahesi* gahesi* aggahi* ggahesi*|FR aggahuṃ", 2, 0},
    {u"jahati jahāti", u"R ahāsi* hāsi*", 3, 0},
    {u"pajjati", u"R pādi*", 3, 0},
    {u"uppajjati", u"R udapādi*|FR udapāduṃ", 2, 0},
    {u"yāti", u"R yāsi*|FR yaṃsu yiṃsu", 3, 0},
    {u"pahiṇāti pahiṇati", u"R pāhesi* pahesi*", 2, 0},
    {u"sakkoti sakkuṇāti", u"R asakkhi* sakkhi*", 2, 0},
    {u"kkamati", u"R kkāmi*|FR kkamuṃ", 2, 0},
    {u"pivati", u"R apāyi* apāsi*", 2, 0},
    {u"bhavati hoti", u"R ahosi* hosi*|CR bhavi|K babhūva", 2, 0},
    {u"viharati", u"R vihāsi*", 2, 0},
    {u"harati", u"R ahāsi* hāsi* ahari*", 3, 0},
    {u"eti", u"R agā", 4},
    {u"jayati jināti", u"R ajesi* ajini*", 3, 0},
    {u"hanati hanti", u"R avadhi* vadhi*", 4, 0},
    {u"abhijānāti", u"R abbhaññāsi*|FR abbhaññaṃsu", 2, 0},
    {u"pātubhavati pātuhoti", u"R pāturahosi*|FR pāturahesuṃ", 1, 0},
};

constexpr PaliEndings VerbStems[] = {
    {u"ati āti eti oti", u"G itabba anīya aneyya", 3},
    {u"eti", u"G etabba|Q enta entī", 3},
    {u"ati āti", u"Q anta antī amāna", 3},
    {u"oti", u"Q onta ontī|G otabba", 3},
    {u"ati", u"Q atī", 5},
    {u"ati āti oti", u"Q āna", 6, 3},
    {u"ati eti āti", u"S ita", 3},
    {u"ati eti āti", u"S itāvin itāvī itavant", 5},
    {u"ati eti āti", u"k itar itā aka ikā", 6, 3},
    {u"eti", u"k etar etā", 6, 3},
    {u"ati eti āti", u"o ana anā", 6, 3},
    {u"āti oti", u"G ātabba ātabba", 3},
    // Roots that change.
    {u"karoti",
     u"S kata kkata kaṭa|G kātabba kattabba kicca karaṇīya kāriya|Q kubbanta kubbamāna kurumāna kayiramāna kariyamāna "
     u"karāna|k kāraka kāra kārin",
     2, 0},
    {u"gacchati", u"S gata ggata|G gantabba|o gamana|k gāmin gāmī", 2, 0},
    {u"deti dadāti", u"S dinna dattā datta|G dātabba deyya|Q dadanta dadamāna denta diyyamāna dīyamāna|k dāyaka", 2, 0},
    {u"ādāti ādiyati", u"S ātta ādinna|G ādātabba|Q ādiyanta", 3, 0},
    {u"tiṭṭhati ṭhāti ṭhahati", u"S ṭhita|G ṭhātabba", 2, 0},
    {u"tiṭṭhati", u"S ṭṭhita|G ṭṭhātabba", 3},
    {u"ṭhāti ṭhahati", u"S ṭhita|G ṭhātabba", 2},
    {u"jānāti", u"S ñāta ññāta|G ñātabba ñeyya ññeyya", 2, 0},
    {u"suṇāti suṇoti", u"S suta ssuta|G sotabba|Q suyyamāna", 2, 0},
    {u"passati dissati", u"S diṭṭha|G daṭṭhabba|o dassana|Q dissamāna", 2, 0},
    {u"vadati vatti vacati", u"S vutta|G vattabba vacanīya|Q vuccamāna", 2, 0},
    {u"hanati hanti", u"S hata ghāta|G hantabba|Q haññamāna", 2, 0},
    {u"labhati", u"S laddha|G laddhabba|Q labbhamāna", 2, 0},
    {u"dahati dhāti dheti", u"S hita|G dhātabba dahātabba|o dhāna", 3, 0},
    {u"jahati jahāti hāyati", u"S hīna hita|G hātabba|o hāna", 3, 0},
    {u"pivati", u"S pīta|G pātabba", 3, 0},
    {u"pāpuṇāti pappoti", u"S patta|G pattabba", 3, 0},
    {u"gaṇhāti gaṇhati", u"S gahita ggahita gahīta ggahīta|G gahetabba ggahetabba|o ggaha gaha ggahaṇa gahaṇa", 2, 0},
    {u"sīdati", u"S sinna sanna", 3},
    {u"pajjati", u"S panna", 2},
    {u"bhindati bhijjati", u"S bhinna|G bhinditabba", 3, 0},
    {u"chindati chijjati", u"S chinna", 3, 0},
    {u"muñcati muccati", u"S mutta", 3, 0},
    {u"yuñjati", u"S yutta", 3, 0},
    {u"bhuñjati", u"S bhutta bhuttāvin bhuttāvī|G bhottabba", 3, 0},
    {u"bandhati bajjhati", u"S baddha", 3, 0},
    {u"bujjhati", u"S buddha", 3, 0},
    {u"vasati", u"S vusita vuttha vuṭṭha|G vatthabba", 2, 0},
    {u"jāyati", u"S jāta", 3, 0},
    {u"marati mīyati", u"S mata", 3, 0},
    {u"pucchati", u"S puṭṭha pucchita", 3, 0},
    {u"khipati", u"S khitta kkhitta", 3, 0},
    {u"neti nayati", u"S nīta|G netabba", 2, 0},
    {u"bhavati hoti", u"S bhūta|G bhavitabba hotabba", 3, 0},
    {u"visati", u"S viṭṭha", 3},
    {u"disati", u"S diṭṭha", 3},
    {u"phusati", u"S phuṭṭha", 3, 0},
    {u"kamati", u"S kanta kkanta", 3},
    {u"kkamati", u"S kkanta", 3},
    {u"sajjati sajati", u"S saṭṭha satta", 4},
    {u"tarati", u"S tiṇṇa", 3},
    {u"nassati", u"S naṭṭha", 3, 0},
    {u"ruhati rohati", u"S ruḷha rūḷha", 3},
    {u"muyhati", u"S mūḷha", 3, 0},
    {u"sambhati", u"S ssaddha", 3, 0},
    {u"passambhati", u"S passaddha", 3, 0},
    {u"ramati", u"S rata", 4, 0},
    {u"namati", u"S nata", 4},
    {u"eti", u"S ita eta", 4},
    {u"yāti", u"S yāta", 4, 0},
    {u"pavāreti", u"S pavārita", 3, 0},
    {u"sampajjati", u"S sampanna", 2, 0},
    {u"vipajjati", u"S vipanna", 2, 0},
    {u"dussati", u"S duṭṭha", 4, 0},
    {u"kujjhati", u"S kuddha", 4, 0},
    {u"tussati", u"S tuṭṭha", 4, 0},
    {u"sicati siñcati", u"S sitta", 4},
    {u"pati", u"S tta", 5, 3},
    {u"jjati jati cati", u"S tta", 5, 3},
    {u"hati", u"S ḷha", 5, 3},
    {u"rati", u"S ṇṇa", 5, 3},
};

constexpr PaliEndings DerivedVerbs[] = {
    {u"ati eti āti oti", u"Z āpeti āpayati", 5, 1},
    {u"ati eti āti", u"V īyati iyati iyyati", 5},
    {u"a ā", u"m āyati īyati", 6, 3},
    {u"āyati", u"Z āpeti", 5},
    {u"gaṇhāti", u"V gayhati", 5, 0},
    {u"bhaṇati", u"V bhaññati", 5, 0},
    {u"vahati", u"V vuyhati", 5, 0},
    {u"pivati", u"V pīyati", 5, 0},
    {u"neti", u"V nīyati", 5, 0},
    {u"pajjati", u"Z pādeti", 5, 1},
    {u"visati", u"Z veseti", 5, 1},
    {u"bhindati", u"Z bhedeti", 5, 0},
    {u"chindati", u"Z chedeti", 5, 0},
    {u"bhuñjati", u"Z bhojeti", 5, 0},
    {u"muñcati", u"Z moceti", 5, 0},
    {u"yuñjati", u"Z yojeti", 5, 0},
    {u"bujjhati", u"Z bodheti", 5, 0},
    {u"dussati", u"Z dūseti", 5, 0},
    {u"gaṇhāti", u"Z gāheti", 5, 0},
    {u"suṇāti", u"Z sāveti", 5, 0},
    {u"pivati", u"Z pāyeti", 5, 0},
    {u"hanati", u"Z ghāteti", 5, 0},
    {u"passati", u"Z dasseti", 5, 0},
    {u"jānāti", u"Z ñāpeti ññāpeti", 5, 0},
    {u"tiṭṭhati", u"Z ṭhapeti ṭhāpeti", 5, 0},
};

struct Term
{
    char16_t letter;
    Message text;
};

constexpr Term Terms[] = {
    {u'n', {u"chủ cách", u"nominative"}},
    {u'a', {u"đối cách", u"accusative"}},
    {u'i', {u"sở dụng cách", u"instrumental"}},
    {u'd', {u"chỉ định cách", u"dative"}},
    {u'b', {u"xuất xứ cách", u"ablative"}},
    {u'g', {u"sở hữu cách", u"genitive"}},
    {u'l', {u"định sở cách", u"locative"}},
    {u'v', {u"hô cách", u"vocative"}},
    {u'1', {u"số ít", u"singular"}},
    {u'2', {u"số nhiều", u"plural"}},
    {u'A', {u"ngôi thứ nhất số ít", u"first person singular"}},
    {u'B', {u"ngôi thứ hai số ít", u"second person singular"}},
    {u'C', {u"ngôi thứ ba số ít", u"third person singular"}},
    {u'D', {u"ngôi thứ nhất số nhiều", u"first person plural"}},
    {u'E', {u"ngôi thứ hai số nhiều", u"second person plural"}},
    {u'F', {u"ngôi thứ ba số nhiều", u"third person plural"}},
    {u'P', {u"hiện tại", u"present"}},
    {u'M', {u"mệnh lệnh cách", u"imperative"}},
    {u'O', {u"khả năng cách", u"optative"}},
    {u'R', {u"bất định quá khứ", u"aorist"}},
    {u'U', {u"vị lai", u"future"}},
    {u'N', {u"điều kiện cách", u"conditional"}},
    {u'K', {u"hoàn thành", u"perfect"}},
    {u'W', {u"trung thái", u"middle"}},
    {u'T', {u"động từ bất biến", u"absolutive"}},
    {u'I', {u"vị biến cách", u"infinitive"}},
    {u'Q', {u"hiện tại phân từ", u"present participle"}},
    {u'S', {u"quá khứ phân từ", u"past participle"}},
    {u'G', {u"khả năng phân từ", u"future passive participle"}},
    {u'Z', {u"sai khiến", u"causative"}},
    {u'V', {u"thụ động", u"passive"}},
    {u'm', {u"động từ phái sinh từ danh từ", u"denominative"}},
    {u'k', {u"danh từ tác nhân", u"agent noun"}},
    {u'o', {u"danh từ hành động", u"action noun"}},
    {u't', {u"danh từ trừu tượng", u"abstract noun"}},
    {u'c', {u"so sánh hơn", u"comparative"}},
    {u's', {u"so sánh nhất", u"superlative"}},
    {u'j', {u"tính từ phái sinh", u"derived adjective"}},
    {u'w', {u"từ phái sinh", u"derived word"}},
    {u'f', {u"giống cái", u"feminine"}},
    {u'e', {u"trạng từ", u"adverb"}},
};

} // namespace

std::span<const PaliEndings> PaliVerbForms()
{
    return VerbForms;
}

std::span<const PaliEndings> PaliPastForms()
{
    return PastForms;
}

std::span<const PaliEndings> PaliVerbStems()
{
    return VerbStems;
}

std::span<const PaliEndings> PaliDerivedVerbs()
{
    return DerivedVerbs;
}

QString PaliTerms(QStringView letters, int language)
{
    QStringList words;
    for (const QChar letter : letters) {
        for (const Term &term : Terms) {
            if (letter == term.letter)
                words.append(TextOrEnglish(term.text, language));
        }
    }
    return words.join(u' ');
}
