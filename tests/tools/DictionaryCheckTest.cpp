#include "lumivara-data/DictionaryCheck.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

TEST(TagFaults, AreNamed)
{
    const std::tuple<const char *, const char *, const char *> rows[]{
        {"Balanced", "- <b>a <i>b</i></b>\n=<a href=\"x>y\">c</a>", ""},
        {"CaseDoesNotCount", "<B>a</b>", ""},
        {"NoEndNeeded", "a<br>b<img src=x><hr/>c", ""},
        {"EndMayBeMissing", "<ul><li>a<li>b</ul><p>c", ""},
        {"SelfClosed", "<span/>a", ""},
        {"NotATag", "a < b, 1 <2, <- c", ""},
        {"InAComment", "a<!-- <b> -->", ""},
        {"NotClosed", "<b>a <i>b</i>", "<b> is not closed"},
        {"NotOpened", "a</i>", "</i> closes nothing"},
        {"Crossed", "<b><i>a</b></i>", "</b> comes before </i>"},
        {"NoEndOfTheTag", "a <b", "the tag <b has no end"}};
    for (const auto &[rule, html, fault] : rows)
        EXPECT_EQ(TagFault(html).toStdString(), fault) << rule;
}

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
