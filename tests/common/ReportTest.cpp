#include "common/Report.h"

#include "common/Console.h"
#include "common/Interrupt.h"
#include "common/Tool.h"

#include <QCommandLineParser>
#include <QJsonDocument>

#include <gmock/gmock.h>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

/// What a verb that reports writes to both streams, and its exit code.
struct Written
{
    std::string output, errors;
    int code = -1;
};

Written Reported(const QStringList &options, const std::function<int(Report &, Console &)> &verb)
{
    Console console(u"tool"_s);
    Report report(console);
    QCommandLineParser parser;
    Report::AddOptions(parser);
    parser.parse(QStringList{u"tool"_s} + options);
    report.TakeOptions(parser);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    Written written;
    written.code = verb(report, console);
    written.output = testing::internal::GetCapturedStdout();
    written.errors = testing::internal::GetCapturedStderr();
    return written;
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
    const Written plain = Reported({}, Work), quiet = Reported({u"--quiet"_s}, Work),
                  json = Reported({u"--json"_s}, Work);
    for (const Written *written : {&plain, &quiet, &json})
        EXPECT_EQ(written->code, 1);
    EXPECT_EQ(plain.output, "begun\na.csv: converted\na.csv:3: is \"bad\"\n5 texts, 0 words: done\n");
    EXPECT_EQ(plain.errors, "reading: 2 rows\n") << "a work is named once, and not on the output";
    EXPECT_EQ(quiet.output, "a.csv:3: is \"bad\"\n");
    EXPECT_EQ(quiet.errors + json.errors, "");
    EXPECT_EQ(QJsonDocument::fromJson(QByteArray::fromStdString(json.output)),
              QJsonDocument::fromJson(R"({"file": "Đích.FDB", "counts": {"texts": 5, "words": 0},
        "findingCount": 2, "findings": [{"place": "a.csv:3", "fault": "is \"bad\""}],
        "noteCount": 1, "notes": [{"place": "a.csv", "change": "converted"}]})"))
        << json.output;
}

TEST(Report, OnlyWhatIsWrongChangesTheExitCode)
{
    const Written noted = Reported({u"--quiet"_s}, [](Report &report, Console &) {
        report.Note(u"a"_s, u"changed"_s);
        report.Count(u"left out"_s, 4);
        return report.Finish();
    });
    EXPECT_EQ(noted.output, "");
    EXPECT_EQ(noted.code, 0);
    const auto untold = [](Report &report, Console &) {
        report.AddUntold(1);
        return report.Finish();
    };
    EXPECT_EQ(Reported({}, untold).code, 1);
}

TEST(Report, AMillionFaultsStayReadable)
{
    for (const char16_t *option : {u"--quiet", u"--json"}) {
        const Written written = Reported({QString::fromUtf16(option)}, [](Report &report, Console &) {
            for (int i = 0; i < 1000000; ++i)
                report.Find(u"f:%1"_s.arg(i), u"bad"_s);
            return report.Finish();
        });
        EXPECT_LT(written.output.size(), 100000U);
        EXPECT_NE(written.output.find("f:999"), std::string::npos);
        EXPECT_EQ(written.output.find("f:1000"), std::string::npos);
        EXPECT_TRUE(written.output.find("… and 999000 more") != std::string::npos ||
                    written.output.find("\"findingCount\": 1000000") != std::string::npos);
    }
}

TEST(Tool, AFailureEndsAVerbWithItsMessage)
{
    static constexpr Verb verbs[] = {
        {u"fail", u"fails", [](const QStringList &, Console &) -> int { throw ToolError(u"Đích.FDB: is full"_s); }},
        {u"break", u"breaks", [](const QStringList &, Console &) -> int { throw std::bad_alloc(); }},
        {u"a-long-verb", u"ends", [](const QStringList &, Console &) { return 0; }},
    };
    const auto run = [](const QStringList &words) {
        return Reported({}, [&](Report &, Console &console) { return RunTool(verbs, words, console); });
    };
    EXPECT_EQ(run({u"fail"_s}).code, 2);
    EXPECT_EQ(run({u"fail"_s}).errors, "tool: Đích.FDB: is full\n");
    EXPECT_EQ(run({u"break"_s}).code, 2);
    EXPECT_EQ(run({u"a-long-verb"_s}).code, 0);
    EXPECT_EQ(run({u"none"_s}).code, 2);
    EXPECT_EQ(run({}).code, 2);
    const Written help = run({u"--help"_s});
    EXPECT_EQ(help.code, 0);
    EXPECT_NE(help.output.find("  fail         fails\n  break        breaks\n  a-long-verb  ends\n"), std::string::npos)
        << help.output;
}

/// Each in a process of its own, because an interrupt is remembered.
TEST(Interrupt, TheFirstOneLetsTheWorkEndInOrderAndTheSecondOneKills)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        EXPECT_EXIT(
            {
                NoteInterrupts();
                ThrowIfInterrupted(); // not yet
                std::raise(signal);
                try {
                    Console(u"tool"_s).Progress(u"work"_s, 0, 1);
                } catch (const ToolError &error) {
                    std::fputs(error.what(), stderr);
                    std::_Exit(7);
                }
            },
            testing::ExitedWithCode(7), "interrupted");
        EXPECT_EXIT(
            {
                NoteInterrupts();
                std::raise(signal);
                std::raise(signal);
            },
            testing::KilledBySignal(signal), "");
    }
}

} // namespace
