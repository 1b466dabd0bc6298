#include "lumivara-data/DictionaryCheck.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

struct Tags
{
    const char *rule;
    const char *html;
    const char *fault;
};

class TagFaults : public testing::TestWithParam<Tags>
{};

TEST_P(TagFaults, AreNamed)
{
    EXPECT_EQ(TagFault(GetParam().html).toStdString(), GetParam().fault);
}

INSTANTIATE_TEST_SUITE_P(Rules, TagFaults,
                         testing::Values(Tags{"Balanced", "- <b>a <i>b</i></b>\n=<a href=\"x>y\">c</a>", ""},
                                         Tags{"CaseDoesNotCount", "<B>a</b>", ""},
                                         Tags{"NoEndNeeded", "a<br>b<img src=x><hr/>c", ""},
                                         Tags{"EndMayBeMissing", "<ul><li>a<li>b</ul><p>c", ""},
                                         Tags{"SelfClosed", "<span/>a", ""}, Tags{"NotATag", "a < b, 1 <2, <- c", ""},
                                         Tags{"InAComment", "a<!-- <b> -->", ""},
                                         Tags{"NotClosed", "<b>a <i>b</i>", "<b> is not closed"},
                                         Tags{"NotOpened", "a</i>", "</i> closes nothing"},
                                         Tags{"Crossed", "<b><i>a</b></i>", "</b> comes before </i>"},
                                         Tags{"NoEndOfTheTag", "a <b", "the tag <b has no end"}),
                         [](const auto &row) { return std::string(row.param.rule); });

TEST(DictionaryCheckerTest, TellsTheFirstFaultsOfASortAndCountsTheRest)
{
    DictionaryChecker checker(5);
    for (int i = 0; i < 30; ++i) {
        const QString word = u"a"_s.repeated(i + 1);
        checker.AddWord(word);
        checker.AddEntry(word, {}, "x");
    }
    checker.AddEntry(u"a"_s, "x", {});
    checker.AddExistence(u"a"_s, false);
    DictionaryReport report;
    checker.ReportInto(report);
    EXPECT_EQ(report.wordCount, 30);
    EXPECT_EQ(report.faultCount, 32);
    ASSERT_EQ(report.findings.size(), 23);
    EXPECT_EQ(report.findings.last().fault, u"30 empty entries in all"_s);
}

} // namespace
