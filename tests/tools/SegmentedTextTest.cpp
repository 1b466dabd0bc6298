#include "lumivara-data/SegmentedText.h"

#include "common/Console.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/CanonTable.h"
#include "lumivara-data/HtmlCleaner.h"

#include <QCommandLineParser>

#include <gmock/gmock.h>

#include <random>

using namespace Qt::StringLiterals;

namespace {

/// "id=value" of each segment, parted by "|", or the line and the fault.
QByteArray Parsed(const QByteArray &json)
{
    QByteArray parsed;
    try {
        for (const TextSegment &segment : ParseSegments(json))
            parsed += (parsed.isEmpty() ? "" : "|") + segment.id + '=' + segment.value;
    } catch (const SegmentFault &fault) {
        return QByteArray::number(fault.Line()) + ": " + fault.Fault().toUtf8();
    }
    return parsed;
}

TEST(SegmentedText, ReadsFlatObjectsInTheirOrderAndNamesTheLineOfAFault)
{
    const struct
    {
        QByteArray json, parsed;
    } rows[] = {
        {"{}", ""},
        {"\r\n{ \"k:10\" : \"một\" ,\n\"k:2\":\"\"}\n", "k:10=một|k:2="},
        {R"({"k:1":"a\"\\\/\n\t\u1e6d\ud83d\ude00"})", "k:1=a\"\\/\n\tṭ\xF0\x9F\x98\x80"},
        {R"({"k:1":"a","k:1":"b"})", "k:1=a|k:1=b"},
        {"", "1: the file ends early"},
        {"[]", "1: a JSON object is expected"},
        {"{\n\"k:1\":{\"a\":1}}", "2: the value of \"k:1\" is no text"},
        {"{\"k:1\":" + QByteArray(100000, '['), "1: the value of \"k:1\" is no text"},
        {"{\"k:1\":\"a\"\n\n\"k:2\":\"b\"}", "3: a comma or the end of the object is expected"},
        {"{\"k:1\":\"a\",}", "1: a segment id in quotes is expected"},
        {"{\"k:1\":\"a", "1: a string has no end"},
        {"{\"k:1\":\"a\nb\"}", "1: a control character stands in a string"},
        {R"({"k:1":"\x"})", "1: a backslash stands before something that it does not escape"},
        {R"({"k:1":"\u12-4"})", "1: \\u wants four hexadecimal digits"},
        {R"({"k:1":"\ud83d."})", "1: half a surrogate pair"},
        {"{} x", "1: something follows the object"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Parsed(row.json), row.parsed) << row.json.left(80).constData();
}

TEST(SegmentedText, FilesAreAlignedByIdAndKeepTheOrderOfTheFirst)
{
    Alignment alignment;
    std::vector<QByteArray> repeated;
    alignment.AddText(0, ParseSegments(R"({"a":"p1","c":"p2","b":"p3"})"), repeated);
    alignment.AddText(2, ParseSegments(R"({"new":"e0","a":"e1","x":"e2","y":"e3","b":"e4","a":"again"})"), repeated);
    alignment.AddMarkup(ParseSegments(R"({"b":"<b>{}</b>","end":"</p>"})"), repeated);
    QByteArray all;
    for (const AlignedSegment &segment : alignment.Take())
        all += segment.id + '=' + segment.text[0] + ',' + segment.text[2] + ',' + segment.markup + ' ';
    EXPECT_EQ(all, "new=,e0, a=p1,e1, x=,e2, y=,e3, c=p2,, b=p3,e4,<b>{}</b> end=,,</p> ");
    EXPECT_THAT(repeated, testing::ElementsAre(QByteArray("a")));
}

TEST(HtmlCleaner, TakesOutWhatLeadsOutAndLeavesTheRest)
{
    const struct
    {
        QByteArray html, cleaned;
    } rows[] = {
        {"<p class=\"a\">x &amp; <b>y</b><br/></p>", "<p class=\"a\">x &amp; <b>y</b><br/></p>"},
        {"a<ScRiPt src=x>if (a<b) </b></sCript >b", "ab"},
        {"<script>never closed <p>x", ""},
        {"<p onclick='a()' title='>' ONload=b>x", "<p title='>'>x"},
        {"<img src=\"data:image/png;base64,AA\"><img src=//x.org/a.png alt=a>",
         "<img src=\"data:image/png;base64,AA\"><img alt=a>"},
        {"<a href=\"https://a.org/\">a</a><a href=#n>b</a><a href=x.html>c</a>",
         "<a href=\"https://a.org/\">a</a><a href=#n>b</a><a href=x.html>c</a>"},
        {"<a href=' java\tscript:x'>a</a><a href='jav&#97;script:x'>b</a><a href=data:text/html,x>c</a>",
         "<a>a</a><a>b</a><a>c</a>"},
        {"<iframe src=x>a<p></iframe>b<form action=x><input value=y>c</form><object data=x>d</object>", "bcd"},
        {"<meta charset=big5><meta http-equiv=refresh content='0;url=x'><meta name=a content=b>",
         "<meta name=a content=b>"},
        {"<base href=x><link rel=stylesheet href=x>a<!-- b --><!-->c", "ac"},
        {"<style>@import 'x'; p{color:red;background:url( http://x )}</style>",
         "<style><!--p{color:red;background:none}--></style>"},
        {"<style>p{background:u\\72l(x)}</style><style>a>b{c:d}</style>",
         "<style><!----></style><style>a>b{c:d}</style>"},
        {"<p style='background:url(http://x)'>a<p style='color:red'>b", "<p>a<p style='color:red'>b"},
        {"<title><img src=x onerror=y></title>", "<title>&lt;img src=x onerror=y></title>"},
        {"<svg><style><img src=x onerror=y></style></svg>", "<svg><style>img src=x onerror=y></style></svg>"},
        {"<a b href/=javascript:x onx/>a</a><p a= onx>b", "<a b href>a</a><p a= onx>b"},
        {"<!DOCTYPE html><?xml x?></ x>1 < 2 <p a=\"unfinished", "<!DOCTYPE html>1 &lt; 2 "},
    };
    for (const auto &row : rows) {
        CleaningCounts counts;
        EXPECT_EQ(CleanHtml(row.html, counts).html.toStdString(), row.cleaned.toStdString()) << row.html.constData();
    }
}

/// Bytes changed, cut, doubled and mixed with pieces that parsers stumble over.
class Mutations
{
public:
    explicit Mutations(QList<QByteArray> pieces) : m_pieces(std::move(pieces)) {}
    QByteArray Of(QByteArray bytes)
    {
        for (int changes = Number(6); changes >= 0; --changes) {
            const int at = Number(int(bytes.size()) + 1), length = Number(20);
            switch (Number(5)) {
            case 0:
                bytes.insert(at, m_pieces[Number(int(m_pieces.size()))]);
                break;
            case 1:
                bytes.remove(at, length);
                break;
            case 2:
                bytes.insert(at, bytes.mid(Number(int(bytes.size()) + 1), length));
                break;
            case 3:
                bytes.insert(at, char(Number(256)));
                break;
            default:
                bytes.truncate(bytes.size() - Number(4));
            }
        }
        return bytes;
    }

private:
    int Number(int below) { return int(m_random() % unsigned(below)); }
    std::mt19937 m_random{20240229};
    QList<QByteArray> m_pieces;
};

constexpr int MutationCount = 10000;

TEST(Mutated, SegmentsAreReadOrRefused)
{
    Mutations mutations({"\"", "{", "}", "[[[[", "\\u", "\\ud800", ":", ",", "\\", "null", "1e999", "\n", "{}"});
    const QByteArray text = "{\"k1:0.1\": \"Suttaṃ \\u1e6d\",\n\"k1:1.1\": \"a \\\"b\\\"\", \"k1:1.2\": \"<p>{}</p>\"}";
    int readable = 0;
    for (int i = 0; i < MutationCount; ++i) {
        try {
            const auto segments = ParseSegments(mutations.Of(text));
            Alignment alignment;
            std::vector<QByteArray> repeated;
            alignment.AddText(0, segments, repeated);
            EXPECT_EQ(alignment.Take().size() + repeated.size(), segments.size());
            ++readable;
        } catch (const SegmentFault &fault) {
            EXPECT_GT(fault.Line(), 0);
        }
    }
    EXPECT_GT(readable, MutationCount / 100);
    EXPECT_LT(readable, MutationCount);
}

TEST(Mutated, TablesAreReadOrRefused)
{
    const QByteArray tables[] = {"kind,key,group,number,pali,page_pali\ngroup,1,-1,,\"Vaggo, \"\"a\"\"\",\n"
                                 "text,20,1,1,Suttaṃ,a/b.html\n",
                                 R"({"groups":[{"key":1,"pali":"Vaggo"}],"texts":[{"group":1,"page_pali":"a.md"}]})"};
    Mutations mutations(
        {"\"", "\"\"", ",", "\n", "\r", "group,", "99999999999", "[[[[", "{\"key\":", "null", "1e300", "}"});
    Console console(u"test"_s);
    QCommandLineParser quiet;
    Report::AddOptions(quiet);
    quiet.parse({u"test"_s, u"--quiet"_s});
    for (int i = 0; i < MutationCount; ++i) {
        Report report(console);
        report.TakeOptions(quiet);
        report.AddUntold(1000); // so that no finding is printed
        const int form = i % 2;
        try {
            for (const CanonTableRow &row :
                 CanonTable::Read(mutations.Of(tables[form]), form == 0 ? u"t.csv"_s : u"t.json"_s, report)) {
                // What is written is read again as it was.
                if (row.isFinished || row.pali.contains(QChar::ReplacementCharacter))
                    continue;
                const auto again = CanonTable::Read(CanonTable::Header() + CanonTable::Line(row), u"t.csv"_s, report);
                EXPECT_EQ(again.size(), 1);
                EXPECT_EQ(again.value(0).pali, row.pali);
                EXPECT_EQ(again.value(0).key, row.key);
            }
        } catch (const ToolError &error) {
            EXPECT_TRUE(error.Text().startsWith(u"t."_s)) << qPrintable(error.Text());
        }
    }
}

TEST(Mutated, CleanedPagesHaveNothingLeftToTakeOut)
{
    Mutations mutations({"<script>", "</script", "<!--",      "-->",     "<style>",  "</style>",   "\"",
                         "'",        "=",        " onload=x", "<",       ">",        "/",          "url(",
                         "@import",  "\\75",     "<svg>",     "<title>", "</title>", "<textarea>", "&#58;"});
    const QByteArray page = "<html><head><style>p{background:url(a)}</style></head><body onload=\"a\"><p style='x:y'>"
                            "<a href=\"javascript:x\">a</a><img src='http://x'><form><input></form></p></body></html>";
    for (int i = 0; i < MutationCount; ++i) {
        const QByteArray mutated = mutations.Of(page);
        CleaningCounts first, second;
        const QByteArray once = CleanHtml(mutated, first).html;
        const QByteArray twice = CleanHtml(once, second).html;
        EXPECT_EQ(second.scripts + second.handlers + second.references + second.frames + second.forms, 0)
            << mutated.constData() << "\n"
            << once.constData();
        EXPECT_EQ(twice.size(), once.size()) << mutated.constData();
    }
}

} // namespace
