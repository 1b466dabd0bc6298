#include "common/Report.h"

#include "common/Console.h"
#include "common/Tool.h"

#include <QCommandLineParser>
#include <QJsonDocument>

#include <gmock/gmock.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// What a verb that reports writes to both streams, and its exit code.
struct Written
{
    std::string output, errors;
    int code = -1;
};

Written Reported(const QString &option, const std::function<int(Report &, Console &)> &verb)
{
    Console console(u"tool"_s);
    QCommandLineParser parser;
    Report::AddOptions(parser);
    parser.parse({u"tool"_s, option});
    Report report(console, Report::OptionsOf(parser));
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int code = verb(report, console);
    const std::string output = testing::internal::GetCapturedStdout();
    return {output, testing::internal::GetCapturedStderr(), code};
}

int Work(Report &report, Console &console)
{
    report.Say(u"begun"_s);
    console.Progress(u"reading"_s, 0, 2);
    console.Progress(u"reading"_s, 1, 2);
    report.Note(u"a.csv"_s, u"converted"_s);
    report.Find(u"a.csv:3"_s, u"is \"bad\""_s);
    report.Count(u"texts"_s, 2);
    report.Count(u"words"_s, 0);
    report.Count(u"texts"_s, 3);
    report.Tell(u"file"_s, u"Đích.FDB"_s);
    report.AddUntold(1);
    return report.Finish(u"done"_s);
}

TEST(Report, TellsAsMuchAsItIsAskedTo)
{
    const Written plain = Reported({}, Work), quiet = Reported(u"--quiet"_s, Work), json = Reported(u"--json"_s, Work);
    EXPECT_THAT((std::array{plain.code, quiet.code, json.code}), testing::Each(1));
    EXPECT_EQ(plain.output, "begun\na.csv: converted\na.csv:3: is \"bad\"\n5 texts, 0 words: done\n");
    EXPECT_EQ(plain.errors, "reading: 2 rows\n") << "and not on the output";
    EXPECT_EQ(quiet.output, "a.csv:3: is \"bad\"\n");
    EXPECT_EQ(quiet.errors + json.errors, "");
    EXPECT_EQ(QJsonDocument::fromJson(QByteArray::fromStdString(json.output)),
              QJsonDocument::fromJson(R"({"file": "Đích.FDB", "counts": {"texts": 5, "words": 0},
        "findingCount": 2, "findings": [{"place": "a.csv:3", "fault": "is \"bad\""}],
        "noteCount": 1, "notes": [{"place": "a.csv", "change": "converted"}]})"))
        << json.output;
}

TEST(Console, WhatSteersATerminalOrTheDirectionOfWritingIsShown)
{
    const std::pair<QString, std::string> rows[]{
        {u"Đích ạ\u0301 \U0001F600 a\\b\uFEFF"_s, "Đích ạ\u0301 \U0001F600 a\\b\uFEFF"},
        {u"a\x1b[2J\x1b]0;t\a"_s, "a\\u001b[2J\\u001b]0;t\\u0007"},
        {u"a\rb\tc\r\nd\0\x7f"_s, "a\\u000db\tc d\\u0000\\u007f"},
        {u"\u009b31m\u2028"_s, "\\u009b31m\\u2028"},
        {u"\u202Agpj\u202E.\u2066x\u2069\u200E\u200F\u061C"_s,
         "\\u202agpj\\u202e.\\u2066x\\u2069\\u200e\\u200f\\u061c"},
    };
    for (const auto &[text, shown] : rows) {
        const auto tell = [&text = text](Report &report, Console &console) {
            report.Find(text, u"bad"_s);
            console.Error(text);
            console.Progress(text, 0, 1);
            return report.Finish();
        };
        const Written plain = Reported(u"--quiet"_s, tell), json = Reported(u"--json"_s, tell);
        EXPECT_EQ(plain.output, shown + ": bad\n");
        const auto object = QJsonDocument::fromJson(QByteArray::fromStdString(json.output));
        EXPECT_EQ(object[u"findings"_s][0][u"place"_s].toString(), text) << json.output;
        EXPECT_FALSE(std::any_of(json.output.begin(), json.output.end(),
                                 [](char c) { return c != '\n' && (uchar(c) < ' ' || c == '\x7f'); }));
        EXPECT_THAT(plain.errors, testing::Not(testing::HasSubstr("\x1b")));
        EXPECT_EQ(Harmless(Harmless(text)), Harmless(text));
    }
}

TEST(Console, WithoutATerminalThereIsALineOfProgressInTenSecondsAtMost)
{
    qint64 now = 5000;
    const Written told = Reported({}, [&](Report &report, Console &console) {
        console.SetClock([&now] { return now; });
        for (const auto &[time, work, done] : {std::tuple(5000, u"one"_s, 0),
                                               {14999, u"one"_s, 3},
                                               {14999, u"two"_s, 0},
                                               {15000, u"two"_s, 4},
                                               {24999, u"three"_s, 1},
                                               {25000, u"four"_s, 0}}) {
            now = time;
            console.Progress(work, done, 9);
        }
        return report.Finish();
    });
    EXPECT_EQ(told.errors, "one: 9 rows\ntwo: 4 of 9 rows\nfour: 9 rows\n");
}

TEST(Report, AMillionFaultsStayReadable)
{
    const std::string output = Reported(u"--quiet"_s, [](Report &report, Console &) {
                                   for (int i = 0; i < 1000000; ++i)
                                       report.Find(u"f:%1"_s.arg(i), u"bad"_s);
                                   return report.Finish();
                               }).output;
    EXPECT_LT(output.size(), 100000U);
    EXPECT_THAT(output, testing::HasSubstr("f:999: bad\n… and 999000 more"));
}

TEST(Tool, AFailureEndsAVerbWithItsMessage)
{
    static constexpr Verb verbs[] = {
        {u"fail", u"fails", [](const QStringList &, Console &) -> int { throw ToolError(u"Đích.FDB: is full"_s); }},
        {u"report", u"fails on its way",
         [](const QStringList &arguments, Console &console) -> int {
             Report report(console, {.isJson = arguments.contains(u"--json"_s)});
             report.Find(u"a:1"_s, u"bad"_s);
             throw ToolError(u"is full"_s);
         }},
        {u"long-verb", u"ends", [](const QStringList &, Console &) -> int { throw std::bad_alloc(); }},
    };
    for (const auto &[word, code, told] :
         {std::tuple(u"fail"_s, 2, "tool: Đích.FDB: is full\n"),
          {u"long-verb"_s, 2, "tool: "},
          {u"--help"_s, 0, "  fail       fails\n  report     fails on its way\n  long-verb  ends\n"}}) {
        const Written run =
            Reported({}, [&, &word = word](Report &, Console &console) { return RunTool(verbs, {word}, console); });
        EXPECT_EQ(run.code, code) << told;
        EXPECT_THAT(run.output + run.errors, testing::HasSubstr(told));
    }
    // A failure still prints JSON, with the findings so far.
    const Written json =
        Reported({}, [&](Report &, Console &console) { return RunTool(verbs, {u"report"_s, u"--json"_s}, console); });
    const QJsonDocument told = QJsonDocument::fromJson(QByteArray::fromStdString(json.output));
    EXPECT_EQ(told[u"error"_s].toString() + told[u"findings"_s][0][u"place"_s].toString(), u"is fulla:1"_s)
        << json.output;
    EXPECT_EQ(json.errors, "tool: is full\n");
}

} // namespace
