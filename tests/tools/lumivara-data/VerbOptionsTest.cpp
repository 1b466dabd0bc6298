#include "common/Console.h"
#include "lumivara-data/Verbs.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

/// What a verb's parser makes of words that are parted by blanks.
template <auto Parse>
auto Parsed(const char *words)
{
    Console console(u"tool"_s);
    return *Parse(QString::fromUtf8(words).split(u' ', Qt::SkipEmptyParts), console);
}

/// What it says against them; nothing if it takes them.
template <auto Parse>
std::string Fault(const char *words)
{
    try {
        Parsed<Parse>(words);
    } catch (const ToolError &error) {
        return error.what();
    }
    return {};
}

TEST(VerbOptions, WrongUsageIsTold)
{
    const struct
    {
        std::string (*faultOf)(const char *);
        const char *words;
        const char *fault;
    } rows[]{
        {Fault<ParseBuild>, "--loud", "Unknown option 'loud'."},
        {Fault<ParseBuild>, "canon all", "build does not know \"all\""},
        {Fault<ParseCheck>, "a b", "check wants one FILE"},
        {Fault<ParseCheck>, "canon a b", "check wants one FILE"},
        {Fault<ParseBackup>, "canon", "backup does not know \"canon\""},
        {Fault<ParseBackup>, "--daily --to x", "--daily names its file itself"},
        {Fault<ParseRestore>, "marks", "restore wants one BACKUP"},
        {Fault<ParseForgetMe>, "x", "forget-me does not know \"x\""},
        {Fault<ParseImportCanon>, "source", "import canon wants one SOURCE and --into FILE"},
        {Fault<ParseImportCanon>, "s --into x --format odt", "there is no format \"odt\": segmented, folder or copy"},
        {Fault<ParseImportDictionary>, "--kind 5", "import dictionary wants one SOURCE"},
        {Fault<ParseImportDictionary>, "s --kind 9", "--kind wants a number from 1 to 8"},
        {Fault<ParseImportDictionary>, "s --kind 5 --format odt", "the format \"odt\" is not known"},
        {Fault<ParseImportDictionary>, "s --kind 5 --syn all", "--syn is list or forms, not \"all\""},
        {Fault<ParseImportDictionary>, "s t --kind 5 --forms f", "import dictionary wants one SOURCE"},
        {Fault<ParseImportMarks>, "", "import marks wants one FILE"},
        {Fault<ParseImportMarks>, "marks.html", "there is no format \"html\" to import marks from"},
        {Fault<ParseExportCanon>, "", "export canon wants --out FOLDER"},
        {Fault<ParseExportCanon>, "--out x --format odt", "there is no format \"odt\": folder or segmented"},
        {Fault<ParseExportDictionary>, "--out x", "--kind wants a number from 1 to 8"},
        {Fault<ParseExportDictionary>, "--kind 1", "export dictionary wants --out FILE"},
        {Fault<ParseExportDictionary>, "--kind 1 --out x --format odt", "the format \"odt\" is not known"},
        {Fault<ParseSync>, "marks", "sync wants --with FOLDER"},
        {Fault<ParseSync>, "canon --with x", "sync does not know \"canon\""},
        {Fault<ParseUpdateList>, "x", "update-list does not know \"x\""},
        {Fault<ParseWords>, "f --kind 5,9 --out x", "--kind wants a number from 1 to 8"},
        {Fault<ParseWords>, "f --kind 5", "words wants one FILE or --text NUMBER, and --out FILE"},
        {Fault<ParseWords>, "f --text 3 --kind 5 --out x", "words wants one FILE or --text NUMBER"},
        {Fault<ParseWords>, "--text x --kind 5 --out x", "--text wants the number of a text"},
        {Fault<ParseExportMarks>, "", "export wants --format or --out"},
        {Fault<ParseExportMarks>, "--format csv --json", "--json leaves no room for marks"},
    };
    for (const auto &row : rows)
        EXPECT_THAT(row.faultOf(row.words), testing::StartsWith(row.fault)) << row.words;
}

TEST(VerbOptions, TheFileThatIsMeantAndItsFormComeOfTheWords)
{
    EXPECT_EQ(Parsed<ParseCheck>("canon").wanted, Thing::None) << "a file may be called so";
    EXPECT_EQ(Parsed<ParseCheck>("canon x.FDB").wanted, Thing::Canon);
    EXPECT_EQ(Parsed<ParseRestore>("marks x.fbk").backup, u"x.fbk"_s);
    EXPECT_EQ(Parsed<ParseBuild>("marks canon").only, (QList{Thing::Marks, Thing::Canon}));
    EXPECT_TRUE(Parsed<ParseBackup>("").file.endsWith(u"/TARUNECLIENT.FDB"_s));
    EXPECT_TRUE(Parsed<ParseImportMarks>("a.MD").isMarkdown);
    EXPECT_FALSE(Parsed<ParseImportMarks>("a.md --format csv").isMarkdown);
    EXPECT_EQ(Parsed<ParseImportCanon>("s --into x").form, std::nullopt) << "it is seen by what the source looks like";
    EXPECT_EQ(Parsed<ParseImportCanon>("s --into x --format Copy").form, CanonForm::Copy);
    for (const auto &[words, form] : {std::pair("--out a.ifo", WordForm::StarDict),
                                      {"--out a.txt", WordForm::MarkUp},
                                      {"--out a.x", WordForm::Tabbed},
                                      {"--out a.ifo --format markup", WordForm::MarkUp}})
        EXPECT_EQ(Parsed<ParseExportDictionary>((std::string("--kind 1 ") + words).c_str()).form, form) << words;
    const ReportOptions report = Parsed<ParseForgetMe>("--json").report;
    EXPECT_TRUE(report.isJson && !report.isQuiet);
}

} // namespace
