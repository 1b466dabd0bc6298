#include "dictionary/EntryFormatter.h"

#include <gmock/gmock.h>

#include <string>

using namespace Qt::StringLiterals;

namespace {

using testing::ElementsAre;
using Lines = std::vector<std::string>;

/// The lines between head and tail of an entry's page.
Lines BodyOf(const QByteArray &entry)
{
    const QByteArray head = "<HTML>\r\n<BODY>\r\n<head>\r\n<title></title>\r\n<meta http-equiv=\"Content-Type\" "
                            "content=\"text/html; charset=utf-8\" />\r\n<font face=\"Noto Sans\">\r\n";
    const QByteArray tail = "</ul>\r\n</FONT>\r\n</BODY>\r\n</HTML>\r\n";
    QByteArray page = FormatEntry(entry, u"Noto Sans"_s);
    EXPECT_TRUE(page.startsWith(head) && page.endsWith(tail));
    page = page.mid(head.size(), page.size() - head.size() - tail.size()).replace("\r\n", "\x01");
    Lines lines;
    for (qsizetype at = 0, end; (end = page.indexOf('\x01', at)) >= 0; at = end + 1)
        lines.push_back(page.mid(at, end - at).toStdString());
    return lines;
}

TEST(EntryFormatter, LaysOutAWholeEntry)
{
    const QByteArray entry = "@quick /kwik/\r\n* adjective\n- fast+rapid\r=a quick run+a short run\n=a quick look\n"
                             "- clever\n! quick on the uptake\n- sharp\n=quick wit+ready wit\n* adverb\n- rapidly\n"
                             "#Notes\nplain <i>text</i>\n\n=a+b";
    EXPECT_THAT(BodyOf(entry),
                ElementsAre("<em>quick /kwik/<br /></em>", "<ul>", // head
                            "<li><P STYLE=\"margin-top: 0.2in\">", "<b><i> adjective<br /></b></i></P>", "<ul>",
                            "<li><font color=\"#cc0000\">", "<b> fast: rapid<br /></b></font>", "<ul>", // sense
                            "<li>", "<b>a quick run: </b>a short run<br />",                            // examples
                            "<li>", "<b>a quick look</b><br />", "</ul>",                               //
                            "<li><font color=\"#cc0000\">", "<b> clever<br /></b></font>",              // before "!"
                            "<li><font color=\"#cc0000\">", "<b><i> quick on the uptake<br /></i></b></font>", "<ul>",
                            "<li><b> sharp<br /></b>", "<ul>",                                      // in a phrase
                            "<li>", "<b>quick wit: </b>ready wit<br />", "</ul>", "</ul>", "</ul>", //
                            "<li><P STYLE=\"margin-top: 0.2in\">", "<b><i> adverb<br /></b></i></P>", "<ul>",
                            "<li><font color=\"#cc0000\">", "<b> rapidly<br /></b></font>",             //
                            "<font color=\"#004586\">", "<br><b><i><u>Notes: </u><br/></i></b></font>", // section
                            "plain <i>text</i>", "", "<li>", "<b>a+b</b><br />"));
}

TEST(EntryFormatter, OpensAndClosesListsByTheLineBehind)
{
    // "<ul>" lines less "</ul>" lines, and whether a phrase goes on behind: an example inside one has its colon even
    // without a translation.
    for (const auto &[entry, opened, inPhrase] :
         {std::tuple("*a\n*b", 1, false), {"-a\n-b", 0, false},      {"-a\n*b", 0, false},
          {"-a\n=b", 1, false},           {"-a\n!b", 0, true},       {"!a\n-b\n-c", -1, false},
          {"!a\n-b\n=c", 2, true},        {"!a\n-b\n!c", 0, false},  {"!a\n-b\n*c", 0, false},
          {"!a\n-b\n#c", -1, false},      {"!a\n*b", 0, false},      {"!a", 0, false},
          {"!a\n=b\n=c", 1, true},        {"!a\n=b\n-c", -2, false}, {"!a\n=b\n!c", -1, true},
          {"!a\n=b\n*c", -1, false},      {"=a\n-b", -1, false},     {"=a\n!b", -1, false},
          {"=a\n*b", -1, false},          {"-a\n!b\n@c", 1, true},   {"-a\n!b\nc", 0, true},
          {"!a\n\n-b", 0, false}}) {
        SCOPED_TRACE(entry);
        const Lines body = BodyOf(QByteArray(entry) + "\n\n=z");
        EXPECT_EQ(std::count(body.begin(), body.end(), "<ul>") - std::count(body.begin(), body.end(), "</ul>"), opened);
        EXPECT_EQ(body.back() == "<b>z: </b><br />", inPhrase);
    }
}

TEST(EntryFormatter, PartsALineAtItsPlus)
{
    const std::pair<const char *, std::string> rows[]{{"-abc+d", "abc+d"},
                                                      {"-abc+de", "abc: de"},
                                                      {"-abc+def+ghi", "abc"},
                                                      {"-abc+defgh+i", "abc: defgh+i"},
                                                      {"-+abc", ": abc"},
                                                      {"-+", "+"},
                                                      {"   - a +  b c\t ", " a :   b c"}};
    for (const auto &[line, shown] : rows)
        EXPECT_EQ(BodyOf(line).at(1), "<b>" + shown + "<br /></b></font>") << line;
    EXPECT_EQ(BodyOf("!p\n-a+bc").at(3), "<li><b>a+bc<br /></b>") << "no split inside a phrase";
}

TEST(EntryFormatter, ReadsLinesAsTheyAreStored)
{
    EXPECT_THAT(BodyOf(""), ElementsAre());
    EXPECT_THAT(BodyOf("\n"), ElementsAre(""));
    EXPECT_THAT(BodyOf("a\r\n\r\nb\r\r\nc\n"), ElementsAre("a", "", "b", "", "c"));
    EXPECT_THAT(BodyOf("@"), ElementsAre("<em><br /></em>", "<ul>"));
    EXPECT_THAT(BodyOf(QByteArray("\0 \x01x\0y\xFF\xC4 \0", 10)), ElementsAre(std::string("x\0y\xFF\xC4", 5)));
    // What lies behind 4096 bytes is lost, for the line and for what its neighbours see of it.
    EXPECT_EQ(BodyOf(QByteArray(5000, 'x')).at(0).size(), 4096U);
    EXPECT_EQ(BodyOf("-a\n" + QByteArray(4096, ' ') + "!b").size(), 3U);
    EXPECT_EQ(BodyOf("-" + QByteArray(4095, 'x') + "+def").at(1).find(':'), std::string::npos);
}

} // namespace
