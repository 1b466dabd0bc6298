#include "lumivara-data/canon/SegmentedText.h"

#include "lumivara-data/files/HtmlCleaner.h"

#include <gmock/gmock.h>

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
    const std::pair<QByteArray, QByteArray> rows[] = {
        {"\r\n{ \"k:10\" : \"một\" ,\n\"k:2\":\"\"}\n", "k:10=một|k:2="},
        {R"({"k:1":"a\"\\\/\n\t\u1e6d\ud83d\ude00"})", "k:1=a\"\\/\n\tṭ\xF0\x9F\x98\x80"},
        {R"({"k:1":"a","k:1":"b"})", "k:1=a|k:1=b"},
        {"{\n\"k:1\":" + QByteArray(100000, '['), "2: the value of \"k:1\" is no text"},
        {"{\"k:1\":\"a\"\n\n\"k:2\":\"b\"}", "3: a comma or the end of the object is expected"},
        {"{\"k:1\":\"a\",}", "1: a segment id in quotes is expected"},
        {"{\"k:1\":\"a", "1: a string has no end"},
        {"{\"k:1\":\"a\nb\"}", "1: a control character stands in a string"},
        {R"({"k:1":"\x"})", "1: a backslash stands before something that it does not escape"},
        {R"({"k:1":"\u12-4"})", "1: \\u wants four hexadecimal digits"},
        {R"({"k:1":"\ud83d."})", "1: half a surrogate pair"},
        {"{} x", "1: something follows the object"},
    };
    for (const auto &[json, parsed] : rows)
        EXPECT_EQ(Parsed(json), parsed) << json.left(80).constData();
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
    const std::pair<QByteArray, const char *> rows[] = {
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
    CleaningCounts counts;
    for (const auto &[html, cleaned] : rows)
        EXPECT_EQ(CleanHtml(html, counts).html.toStdString(), cleaned);
}

} // namespace
