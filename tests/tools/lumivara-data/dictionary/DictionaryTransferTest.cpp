#include "support/FullDisk.h"
#include "tools/ToolSupport.h"
#include "tools/lumivara-data/dictionary/StarDictSample.h"

#include <QFile>
#include <QStringEncoder>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

const QString File = u"P.FDB"_s;

/// A place for sources, and a dictionary file.
class DictionaryTransfer : public ToolTest
{
protected:
    std::string Import(int exitCode, const std::string &source, const std::string &options = "--kind 5") const
    {
        return Run(exitCode, "import dictionary --into P.FDB --quiet " + options + ' ' + source);
    }
    /// Words and entries of a kind as the program sees them.
    std::string WordsOf(const std::string &kind) const
    {
        return Ask(File, "select L.WORD_NAME, E.WORD_CONTENT from SP_GET_LIST_WORDS(" + kind +
                             ") L left join SP_GET_WORD_CONTENT(" + kind + ", L.WORD_NAME, 0) E on 1 = 1");
    }
    /// The file with one word of kind 8.
    QByteArray FileBefore() const
    {
        Put(u"first.tsv"_s, "dhamma\t@dhamma\\n- teaching\ndhammo\t@dhamma\\n- teaching\n");
        Import(0, "first.tsv", "--kind 8");
        return Bytes(File);
    }
};

TEST_F(DictionaryTransfer, EachFormOfExportComesBackAsTheSameRows)
{
    QFile::copy(ProductFolder() + u"PALIDICT.FDB"_s, Path(File));
    // What each of the forms has signs of its own for, forms of a word, and names out of the order of the letters.
    Put(u"s.tsv"_s, "\xEF\xBB\xBF%\t% a\\n\\\\n\\\\\nZoo\t <b>x</b> \\n\nzoo\t\\n\\na\\r\\nb\\tc\r\ncôté\tx\ncote\tx\n"
                    "\xF0\x9F\x98\x80\tdictionary 5\\n# no\ntwo\ta\\n \\nb\\n\\n\nthree\t\\\\% a\n");
    Import(0, "s.tsv", "--kind 3 --replace");
    const auto everything = [&](const std::string &kind) {
        return WordsOf(kind) + // forms share their entry
               Ask(File, "select count(distinct W.ID_ENTRY) from DICTIONARY_WORD W where W.DICT_TYPE = " + kind);
    };
    for (const auto &[kind, out] : std::initializer_list<std::pair<std::string, std::string>>{
             {"3", "out.tsv"}, {"3", "out.txt"}, {"3", "out.ifo"}, {"5", "out.ifo"}}) {
        const std::string before = everything(kind);
        EXPECT_GT(before.size(), 40U);
        Run(0, "export dictionary --file P.FDB --quiet --kind " + kind + " --out " + out);
        // More of its words share an entry than not.
        Import(0, out, "--replace --kind " + kind + (out == "out.ifo" ? " --syn list" : ""));
        EXPECT_EQ(everything(kind), before) << out;
    }
    Run(0, "check P.FDB");
}

TEST_F(DictionaryTransfer, LettersOfADictionaryInAnotherCharacterSetComeOutWhole)
{
    Run(0, "build marks --out .");
    OpenedDatabase(Path(u"TARUNECLIENT.FDB"_s)).RunScript(uR"(SET TERM ^ ;
create procedure SP_GET_LIST_WORDS (A integer)
returns (WORD_NAME varchar(63) character set UTF8, DICT_TYPE integer) as begin
    WORD_NAME = _UTF8 x'F09F9880'; DICT_TYPE = A; suspend;
end^
create procedure SP_GET_WORD_CONTENT (K integer, W varchar(63) character set UTF8, M smallint)
returns (WORD_CONTENT blob sub_type text character set UTF8, WORD_CONTENT_2 blob sub_type 0) as begin
    WORD_CONTENT = _UTF8 x'E1B9ADF09F9881'; suspend;
end^
SET TERM ; ^
)"_s);
    Run(0, "export dictionary --file TARUNECLIENT.FDB --kind 5 --quiet --out w.tsv");
    EXPECT_EQ(Bytes(u"w.tsv"_s), "\U0001F600\t\u1E6D\U0001F601\n");
}

TEST_F(DictionaryTransfer, KeepsTheOtherKindsAndServesWhoHasTheOldFileOpen)
{
    FileBefore();
    OpenedDatabase inUse(Path(File));
    const std::string kept = WordsOf("8");
    Put(u"m.txt"_s,
        "# mine\r\ndictionary 7\r\n\r\n% gāma\r\n@gāma\r\n- làng\r\n\r\n% Gotama\r\nx\r\n% gAMa\r\n@other\r\n");
    Import(0, "m.txt");
    EXPECT_EQ(inUse.Text("select * from SP_GET_LIST_WORDS(5)"), "");
    EXPECT_EQ(WordsOf("8"), kept);
    // One of them is brought into reach of the search.
    EXPECT_EQ(WordsOf("5"), "gama,@other|gāma,@gāma\n- làng|Gotama,x");
    Run(0, "check P.FDB");
}

using Packing = StarDictSample::Packing;
const StarDictSample::Word A{"a", "A+"}, B{"b", "x"};

TEST_F(DictionaryTransfer, StarDictIsTakenAsFarAsItIsSound)
{
    const std::string a = "a,@a\nA+<br />", b = "|b,@b\nx<br />";
    const struct
    {
        StarDictSample source;
        std::string told; ///< what the report says; behind "~" it is no fault
        std::string words;
    } rows[]{
        {{.words = {{"b", "làng"}, A}, .forms = {{"ā", 1}, {"bo", 0}}, .packing = Packing::Chunks, .chunkSize = 2},
         "~",
         a + "|ā,@a\nA+<br />|b,@b\nlàng<br />|bo,@b\nlàng<br />"},
        {{.words = {B, A}, .packing = Packing::Gzip, .offsetBits = 64, .hasPackedIndex = true}, "~", a + b},
        {{.words = {{"a", QByteArray("ə\0\0\0\0\3wav<i>x</i>", 18)}}, .types = "tWh"},
         "d.dict: 1 texts of type \"W\" were left out",
         "a,@a /ə/\n<i>x</i><br />"},
        {{.words = {{"a", QByteArray("mx\0yka\0", 7)}, {"b", "l\xE9"}}, .types = ""},
         "whose encoding is not known, were left out",
         "a,@a [ka]\nx<br />"},
        {{.words = {A, {"b", "", 0, 2}}}, "~", a + "|b,@a\nA+<br />"},
        {{.words = {A, {"a", "B"}}}, "~has 2 entries, joined", a + "\n\n@a\nB<br />"},
        {{.words = {A, {"b", "", 1, 1}}}, "~d.idx:2: the entry overlaps another", a + "|b,@b\n+<br />"},
        {{.words = {A, {"b", "B", 3, 4}}}, "d.idx:2: the entry lies beyond the end", a},
        {{.words = {A, {"b", "B", 0, 0xFFFFFFFFLL}}, .packing = Packing::Chunks},
         "d.idx:2: the entry has 4294967295 bytes, more than 1048576",
         a},
        {{.words = {A, {QByteArray(64, 'x'), "B"}}}, "has 64 characters, more than 63", a},
        {{.words = {A, {"", "B"}, {" ", "C"}}}, "d.idx:2: the word is empty", a},
        {{.words = {A, {"\xE9", "B"}, {"c", "\xE9"}}}, "d.idx:3: the entry is not UTF-8 at byte 3", a},
        {{.words = {A, {"\xE9", "x"}, {"b", "", 2, 1}}}, "d.idx:2: the word is not UTF-8", a + b},
        {{.words = {A, {"b", "\xE9"}, {"c", "", 2, 1}}}, "d.idx:3: has the entry of another word that was left out", a},
        {{.words = {{"a\x01", "A+\x02"}}}, "~control characters", a},
        {{.words = {A}, .forms = {{"c", 7}}}, "d.syn:1: there is no word 8", a},
        {{.words = {A}, .moreDescription = "wordcount=3\n"}, "has 1 words where the description tells 3", a},
        {{.words = {A}, .moreDescription = "wordcount=1000000000000\n"}, "1 words where the description tells 1000", a},
        {{.words = {A, B}, .moreDescription = "idxfilesize=9\n"}, "d.idx: has 20 bytes where the description", a + b},
        {{.words = {A}, .moreDescription = "idxfilesize=x\n"}, "d.ifo: idxfilesize is no number: \"x\"", a},
        {{.words = {A}, .forms = {{"b", 0}}, .moreDescription = "synwordcount=-1\n"},
         "d.ifo: synwordcount is no number",
         a + "|b,@a\nA+<br />"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.told);
        QDir(Path(u"s"_s)).removeRecursively();
        QFile::remove(Path(File));
        row.source.Write(Path(u"s/d"_s));
        const bool isSound = row.told.starts_with('~');
        EXPECT_THAT(Run(isSound ? 0 : 1, "import dictionary s/d.ifo --kind 5 --into P.FDB"),
                    HasSubstr(row.told.substr(isSound ? 1 : 0)));
        EXPECT_EQ(WordsOf("5"), row.words);
        Run(0, "check P.FDB");
    }
}

/// The forms of a kind in their table, each with its word.
const std::string AllForms = "select F.FORM_NAME, F.WORD_NAME from DICTIONARY_FORM F where F.DICT_TYPE = 5";

TEST_F(DictionaryTransfer, MoreFormsThanWordsStandBesideTheList)
{
    const std::string a = "a,@a\nA+<br />", b = "|b,@b\nx<br />";
    const struct
    {
        QList<StarDictSample::Form> forms;
        std::string options; ///< beside the kind
        std::string words, formsBeside;
    } rows[]{
        {{{"ā", 1}, {"bo", 0}}, "", "a,@a\nA+<br />|ā,@a\nA+<br />|b,@b\nx<br />|bo,@b\nx<br />", ""},
        {{{"ā", 1}, {"bo", 0}}, "--syn forms", a + b, "bo,b|ā,a"},
        {{{"Aṁ", 1}, {"an", 1}, {"an", 0}, {"an", 1}}, "", a + b, "an,b|an,a|aṃ,a"},
        {{{"c", 1}, {"d", 1}, {"e", 0}}, "--syn list", a + "|e,@b\nx<br />|c,@a\nA+<br />|d,@a\nA+<br />" + b, ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.options + row.formsBeside);
        QDir(Path(u"s"_s)).removeRecursively();
        StarDictSample{.words = {B, A}, .forms = row.forms}.Write(Path(u"s/d"_s));
        QFile::remove(Path(File));
        Import(0, "s", "--kind 5 " + row.options);
        EXPECT_EQ(WordsOf("5"), row.words);
        EXPECT_EQ(Ask(File, AllForms), row.formsBeside);
        Run(0, "check P.FDB");
    }
    StarDictSample{.words = {A, {"", "B"}}, .forms = {{"x", 0}, {"y", 1}, {"z", 2}, {"\xE9", 0}}}.Write(Path(u"t/d"_s));
    ExpectParts(Import(1, "t", "--kind 5 --replace"),
                {"d.syn:2: the word 2 was left out, and so is this form\n", "d.syn:3: there is no word 3; left out\n",
                 "d.syn:4: the form is not UTF-8; left out\n"});
    EXPECT_EQ(Ask(File, AllForms), "x,a");
}

TEST_F(DictionaryTransfer, ATableOfFormsGoesInAndOutBesideTheWords)
{
    Put(u"w.tsv"_s, "dhamma\tx\nGotama\ty\n\U0001D11E\tz\n");
    Put(u"f.tsv"_s, "\xEF\xBB\xBF"
                    "dhammānaṁ\tdhamma\r\ndhammā\tGotama\ndhammā\tdhamma\ndhammā\tGotama\n\n"
                    "DHAMMO\tdhamma\nx\\ty\t\U0001D11E\n");
    const std::string all = "dhammo,dhamma|dhammā,Gotama|dhammā,dhamma|dhammānaṃ,dhamma|x y,\U0001D11E";
    Import(0, "w.tsv", "--kind 5 --forms f.tsv");
    EXPECT_EQ(Ask(File, AllForms), all);
    EXPECT_EQ(Ask(File, "select WORD from SP_GET_FORMS(5, 'dhammā')"), "Gotama|dhamma") << "in their order";
    EXPECT_EQ(Ask(File, "select WORD from SP_GET_FORMS(5, 'dhammānaṁ')"), "dhamma") << "with either sign of the letter";
    EXPECT_EQ(Ask(File, "select WORD from SP_GET_FORMS(8, 'dhammā')"), "") << "each kind for itself";
    EXPECT_EQ(Ask(File, "select count(*) from SP_GET_LIST_WORDS(5)"), "3");
    EXPECT_THAT(Run(0, "check P.FDB"), HasSubstr("3 words, 5 forms"));

    // Another kind leaves them alone, and an export brings them back.
    Import(0, "w.tsv", "--kind 8");
    EXPECT_EQ(Ask(File, AllForms), all);
    EXPECT_THAT(Run(0, "export dictionary --file P.FDB --kind 5 --out o.tsv"), HasSubstr("has 5 forms"));
    Run(0, "export dictionary --file P.FDB --kind 5 --out o.tsv --forms of.tsv --quiet");
    Import(0, "o.tsv", "--kind 5 --replace");
    EXPECT_EQ(Ask(File, AllForms), "");
    Import(0, "", "--kind 5 --forms of.tsv");
    EXPECT_EQ(Ask(File, AllForms), all);

    // Words stay where only forms come; of those the user says what becomes.
    Put(u"g.tsv"_s, "dhammā\tdhamma\ngotamo\tGotama\nbuddho\tbuddha\nnothing\n\U0001D11Ey\tdhamma\n");
    EXPECT_THAT(Import(2, "", "--kind 5 --forms g.tsv"), HasSubstr("dictionary 5 has forms already; --replace"));
    EXPECT_EQ(Import(1, "", "--kind 5 --forms g.tsv --replace"),
              "g.tsv:4: there is no tab between form and word; left out\n"
              "g.tsv:5: \"\U0001D11Ey\" is no form that a look-up asks for; left out\n"
              "dictionary 5, form \"buddho\": there is no word \"buddha\"; left out\n");
    EXPECT_EQ(Ask(File, AllForms), "dhammā,dhamma|gotamo,Gotama");
    Import(0, "", "--kind 5 --forms of.tsv --add");
    EXPECT_EQ(Ask(File, "select WORD from SP_GET_FORMS(5, 'dhammā')"), "dhamma|Gotama");
    Import(0, "o.tsv", "--kind 5 --add");
    EXPECT_EQ(Ask(File, "select count(*) from DICTIONARY_FORM"), "6");
    EXPECT_EQ(Ask(File, "select count(*) from SP_GET_LIST_WORDS(5)"), "3");
    EXPECT_THAT(Run(2, "import dictionary --kind 5 --into none.FDB --forms f.tsv"), HasSubstr("there is no such file"));
}

TEST_F(DictionaryTransfer, FormsWithoutAWordAreNamedByTheCheck)
{
    Put(u"w.tsv"_s, "dhamma\tx\n");
    Run(0, "build marks --out .");
    OpenedDatabase(Path(u"TARUNECLIENT.FDB"_s)).RunScript(uR"(
create table DICTIONARY_FORM (DICT_TYPE integer, FORM_NAME varchar(63) character set UNICODE_FSS, PLACE integer,
    WORD_NAME varchar(63) character set UNICODE_FSS);
commit work;
insert into DICTIONARY_FORM values (5, 'a', 1, 'b'); insert into DICTIONARY_FORM values (5, 'gone', 2, 'c');
insert into DICTIONARY_FORM values (5, 'A', 3, 'b'); insert into DICTIONARY_FORM values (5, 'hidden', 4, 'b');
commit work;
SET TERM ^ ;
create procedure SP_GET_LIST_WORDS (A integer)
returns (WORD_NAME varchar(63) character set UNICODE_FSS, DICT_TYPE integer) as begin
    WORD_NAME = 'b'; DICT_TYPE = A; if (A = 5) then suspend;
end^
create procedure SP_GET_WORD_CONTENT (K integer, W varchar(63) character set UNICODE_FSS, M smallint)
returns (WORD_CONTENT blob sub_type 0, WORD_CONTENT_2 blob sub_type 0) as begin WORD_CONTENT = 'x'; suspend; end^
create procedure SP_CHECK_WORD (K integer, W varchar(63) character set UNICODE_FSS) returns (RESULT smallint) as begin
    RESULT = 1; suspend; end^
SET TERM ; ^
)"_s);
    Run(0, "check dictionary TARUNECLIENT.FDB"); // nobody asks for them without the procedure
    OpenedDatabase(Path(u"TARUNECLIENT.FDB"_s)).RunScript(uR"(SET TERM ^ ;
create procedure SP_GET_FORMS (K integer, F varchar(63) character set UTF8)
returns (WORD varchar(63) character set UNICODE_FSS) as begin
    for select WORD_NAME from DICTIONARY_FORM where DICT_TYPE = :K and FORM_NAME = :F and PLACE < 4 into :WORD do suspend;
end^
SET TERM ; ^
)"_s);
    const std::string form = "dictionary 5, form \"";
    ExpectParts(Run(1, "check dictionary TARUNECLIENT.FDB"),
                {form + "gone\": is of \"c\", which the list does not have\n",
                 form + "A\": is not in lower case, so no look-up asks for it\n",
                 form + "hidden\": SP_GET_FORMS does not give \"b\" for it\n", "1 words, 4 forms: 3 findings\n"});
    OpenedDatabase(Path(u"TARUNECLIENT.FDB"_s)).RunScript(uR"(drop procedure SP_GET_FORMS; drop table DICTIONARY_FORM;
commit work;
SET TERM ^ ;
create procedure SP_GET_FORMS (K integer) returns (WORD varchar(63)) as begin suspend; end^
SET TERM ; ^
)"_s);
    EXPECT_THAT(Run(1, "check dictionary TARUNECLIENT.FDB"), HasSubstr("dictionary 5, SP_GET_FORMS: "));
    QFile::rename(Path(u"TARUNECLIENT.FDB"_s), Path(u"Q.FDB"_s));
    EXPECT_THAT(Run(1, "import dictionary w.tsv --kind 8 --into Q.FDB"), HasSubstr("its forms cannot be listed"));
}

TEST_F(DictionaryTransfer, WhatWasReadIsTheSumOfWhatBecameOfIt)
{
    StarDictSample{.words = {A, A, {"a", "B"}, B, {"", "C"}, {"\xE9", "D"}}, .forms = {{"c", 0}, {"c", 1}, {"c", 9}}}
        .Write(Path(u"s/d"_s));
    EXPECT_THAT(
        Run(1, "import dictionary s --kind 5 --into P.FDB"),
        HasSubstr("9 words read, 3 words imported, 1 joined to the same word, 2 with an equal entry, 3 left out"));
    Put(u"s.tsv"_s, "a\tx\na\tx\n\nb\n");
    EXPECT_THAT(
        Run(1, "import dictionary s.tsv --kind 5 --into P.FDB --replace"),
        HasSubstr("3 words read, 1 words imported, 0 joined to the same word, 1 with an equal entry, 1 left out"));
    Put(u"more.tsv"_s, "a\tx\na\tz\nc\ty\n");
    EXPECT_THAT(
        Run(0, "import dictionary more.tsv --kind 5 --into P.FDB --add"),
        HasSubstr("3 words read, 1 words imported, 1 joined to the same word, 1 with an equal entry, 0 left out"));
}

TEST_F(DictionaryTransfer, TextsAreTakenByTheirLinesAndTheirEncoding)
{
    Put(u"s.tsv"_s, QByteArray("\\\\b\tx\r\na\0b\ty\nc\tz\0\n", 18));
    EXPECT_EQ(Import(1, "s.tsv"), "s.tsv:2: holds a zero byte, so it is no UTF-8; left out\n"
                                  "s.tsv:3: holds a zero byte, so it is no UTF-8; left out\n");
    EXPECT_EQ(WordsOf("5"), "\\b,x");
    Put(u"long.tsv"_s, "d\ty\\n" + QByteArray(4096, 'x') + "\ne\t" + QByteArray(4097, 'x') + "\\ny\n");
    const std::string told = Run(0, "import dictionary long.tsv --kind 5 --into P.FDB --replace");
    EXPECT_THAT(told, HasSubstr("long.tsv:2: a line of the entry has 4097 bytes, of which the window shows the first"));
    EXPECT_THAT(told, Not(HasSubstr("long.tsv:1")));
    for (const char *const encoding : {"UTF-8", "UTF-16LE", "UTF-16BE"}) {
        QStringEncoder encode(encoding);
        Put(u"m.txt"_s, encode(u"\uFEFF% ā\r\n- x\r\n"_s));
        Import(0, "m.txt", "--kind 5 --replace");
        EXPECT_EQ(WordsOf("5"), "ā,- x") << encoding;
    }
}

TEST_F(DictionaryTransfer, ARefusalLeavesTheOldFile)
{
    const QByteArray before = FileBefore();
    const auto expectRefused = [&](const std::string &message, const std::string &source,
                                   const std::string &options = "--kind 5") {
        EXPECT_THAT(Import(2, source, options), HasSubstr(message));
        EXPECT_EQ(Bytes(File), before) << message;
        EXPECT_EQ(Unfinished(), QStringList()) << message;
    };
    Put(u"w.tsv"_s, "a\tb\n");
    Put(u"w.bin"_s, "a\tb\n");
    ::mkfifo(qPrintable(Path(u"w.txt"_s)), 0600);
    expectRefused("dictionary 8 has words already; --replace", "w.tsv", "--kind 8");
    expectRefused("there is no such file", "none.tsv");
    expectRefused("which form is this?", "w.bin");
    expectRefused("is no regular file", "w.txt");

    StarDictSample sample{.words = {A}, .version = "9"};
    sample.Write(Path(u"version/d"_s));
    expectRefused("version \"9\" is not known", "version");
    sample.version = "3.0.0";
    sample.Write(Path(u"s/d"_s));
    QFile::remove(Path(u"s/d.dict"_s));
    expectRefused("d.dict: there is no such file", "s");
    EXPECT_THAT(Run(2, "import dictionary s --kind 5 --into P.FDB"), Not(HasSubstr("keeping")))
        << "before the words that are there are copied";
    QFile::link(Path(u"w.bin"_s), Path(u"s/d.dict"_s));
    expectRefused("is a link that leads out of the folder", "s");
    QFile::remove(Path(u"s/d.idx"_s));
    expectRefused("d.idx: there is no such file", "s");
    sample.words = {{"a", QByteArray(1 << 20, 'x')}};
    for (int i = 1; i < 9; ++i)
        sample.words.append({"b" + QByteArray::number(i), "", i, (1 << 20) - i});
    sample.Write(Path(u"bomb/d"_s));
    expectRefused("more than 4 times the bytes", "bomb");

    // Small files that grow.
    StarDictSample grows{.words = {{"a", QByteArray(2 << 20, 'x'), 0, 1}}, .packing = Packing::Gzip};
    grows.Write(Path(u"gzip/d"_s));
    expectRefused("gzip/d.dict.dz: grows to more than 32 times its bytes", "gzip");
    grows.packing = Packing::Chunks;
    grows.Write(Path(u"chunks/d"_s));
    expectRefused("chunks/d.dict.dz: grows to more than 32 times its bytes", "chunks");
    StarDictSample{.words = QList<StarDictSample::Word>(200'000, {"a", "", 0, 1}), .hasPackedIndex = true}.Write(
        Path(u"index/d"_s));
    Put(u"index/d.dict"_s, "x");
    expectRefused("index/d.idx.gz: grows to more than 32 times its bytes", "index");
    // Entries count as they are stored.
    StarDictSample amps{.words = {{"a", QByteArray(200'000, '&')}}};
    for (int i = 1; i < 5; ++i)
        amps.words.append({"b" + QByteArray::number(i), "", i, 200'000 - i});
    amps.Write(Path(u"amps/d"_s));
    expectRefused("more than 4 times the bytes", "amps");
}

TEST_F(DictionaryTransfer, AFewLargeEntriesAreNotJoinedInEachPair)
{
    StarDictSample sample;
    constexpr int count = 11;
    for (int i = 0; i < count; ++i) {
        sample.words.append({"w" + QByteArray::number(i), QByteArray::number(i) + QByteArray(480'000, 'x')});
        for (int j = 0; j < i; ++j) {
            for (const int one : {i, j})
                sample.forms.append({"p" + QByteArray::number(100 * i + j), quint32(one)});
        }
    }
    sample.Write(Path(u"s/d"_s));
    EXPECT_THAT(Import(1, "s", "--kind 5 --syn list"),
                HasSubstr(", \"p903\": only the first of its 2 entries is taken: the joined ones have "
                          "more than 4 times the bytes of all\n"));
    EXPECT_EQ(Ask(File, "select count(*) from SP_GET_LIST_WORDS(5)"), "66");
}

TEST_F(DictionaryTransfer, WhatDoesNotGetToItsEndLeavesTheOldFile)
{
    const QByteArray before = FileBefore();
    QByteArray words;
    for (int number = 0; number < 30000; ++number)
        words += 'w' + QByteArray::number(number) + "\tan entry of some length, " + QByteArray::number(number) + '\n';
    Put(u"w.tsv"_s, words);
    {
        // Enough for the engine's lock files and not for the words.
        const FullDisk disk(1'400'000);
        Import(2, "w.tsv");
    }
    EXPECT_EQ(Bytes(File), before);
    EXPECT_EQ(Unfinished(), QStringList());
    // A process that was killed at its begin.
    Put(u"P.FDB.part.lock"_s, "");
    for (const auto &[stage, isKilled] : {std::pair("keeping dictionary 8", false),
                                          {"storing words", false},
                                          {"keeping dictionary 8", true},
                                          {"storing words", true}}) {
        const std::string told = Stopped(isKilled, stage, "import dictionary w.tsv --kind 5 --into P.FDB");
        EXPECT_EQ(told.find("interrupted") == std::string::npos, isKilled) << stage;
        EXPECT_EQ(Bytes(File), before) << stage;
        EXPECT_EQ(Unfinished().isEmpty(), !isKilled) << stage;
    }
    Import(0, "w.tsv"); // what a killed one has left is in nobody's way
    EXPECT_EQ(Unfinished(), QStringList());
    EXPECT_EQ(Ask(File, "select count(*) from SP_GET_LIST_WORDS(5)"), "30000");
    m_environment = QProcess::systemEnvironment() + QStringList{u"TMPDIR="_s + Path()};
    Stopped(false, "dictionary 5", "check P.FDB");
    EXPECT_EQ(Names().filter(u"lumivara-data"_s), QStringList());
}

} // namespace
