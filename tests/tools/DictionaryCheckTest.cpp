#include "lumivara-data/DictionaryCheck.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(TagFaults, AreNamed)
{
    for (const auto &[html, fault] : std::initializer_list<std::pair<const char *, const char *>>{
             {"- <B>a <i>b</i></b>\n=<a href=\"x>y\">c</a> a<br>b<img src=x><hr/>c<span/> < b, 1 <2, <- c", ""},
             {"<ul><li>a<li>b</ul><p>c<!-- <b> -->", ""},
             {"<b>a <i>b</i>", "<b> is not closed"},
             {"a</i>", "</i> closes nothing"},
             {"<b><i>a</b></i>", "</b> comes before </i>"},
             {"a <b", "the tag <b has no end"}})
        EXPECT_EQ(TagFault(html).toStdString(), fault) << html;
}

TEST(DictionaryChecker, TellsTheFirstFaultsOfASortAndCountsTheRest)
{
    DictionaryChecker checker(5);
    for (int i = 0; i < 30; ++i) {
        const QString word = u"a"_s.repeated(i + 1);
        checker.AddWord(word);
        checker.AddEntry(word, {}, "x");
    }
    checker.AddExistence(u"a"_s, false);
    DictionaryReport report;
    checker.ReportInto(report);
    EXPECT_EQ(report.faultCount, 31);
    EXPECT_EQ(report.findings.size(), 22);
    EXPECT_EQ(report.findings.last().fault, u"30 empty entries in all"_s);
}
