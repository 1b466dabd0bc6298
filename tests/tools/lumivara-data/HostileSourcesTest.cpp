#include "common/Console.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/canon/CanonTable.h"
#include "lumivara-data/canon/ImportedPage.h"
#include "lumivara-data/canon/SegmentedText.h"
#include "lumivara-data/files/TagReader.h"
#include "lumivara-data/marks/MarksReader.h"

#include <QBuffer>

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <optional>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

/// Sources made to take more time or memory than their bytes are worth. Each stands just behind a limit.
using Read = std::function<void(const QByteArray &source, Report &report)>;

template <typename Source>
void ReadMarks(QByteArray bytes, Report &report)
{
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    KnownTexts texts;
    texts.Add(6, 1101, {u"one"_s});
    std::optional<Source> source;
    if constexpr (std::is_same_v<Source, CsvMarks>)
        source.emplace(device, u"f"_s, report);
    else
        source.emplace(device, u"f"_s, report, texts);
    for (MarkAtLine mark; source->Next(mark);) {
    }
}

void ReadTable(const QByteArray &bytes, Report &report)
{
    CanonTable::Read(bytes, u"f.csv"_s, report);
}

void ReadJsonTable(const QByteArray &bytes, Report &report)
{
    CanonTable::Read(bytes, u"f.json"_s, report);
}

void AlignTwice(const QByteArray &json, Report &)
{
    Alignment alignment;
    std::vector<QByteArray> repeated;
    alignment.AddText(0, ParseSegments(json), repeated);
    alignment.AddText(1, ParseSegments(QByteArray(json).replace("a:", "b:")), repeated);
}

template <auto Make>
void MakePage(const QByteArray &bytes, Report &)
{
    CleaningCounts counts;
    if constexpr (std::is_invocable_v<decltype(Make), QByteArray, QByteArray, Language>)
        Make(bytes, "t", Language::Pali);
    else
        Make(bytes, "t", Language::Pali, counts);
}

QByteArray Segments(size_t count)
{
    QByteArray json = "{\n";
    for (size_t i = 0; i < count; ++i)
        json += "\"a:" + QByteArray::number(qulonglong(i)) + "\":\"\",";
    json.back() = '}';
    return json;
}

/// What is told, be it a finding or a failure.
std::string Told(const Read &read, const QByteArray &source)
{
    Console console(u"tool"_s);
    Report report(console);
    std::string failure;
    testing::internal::CaptureStdout();
    try {
        read(source, report);
    } catch (const PageFault &fault) {
        failure = (fault.Place(u"f"_s) + u": "_s + fault.Fault()).toStdString();
    } catch (const SegmentFault &fault) {
        failure = (QString::number(fault.Line()) + u": "_s + fault.Fault()).toStdString();
    } catch (const ToolError &error) {
        failure = error.what();
    }
    return testing::internal::GetCapturedStdout() + failure;
}

TEST(HostileSources, EachLimitIsToldWithItsPlace)
{
    const QByteArray header = "NIK_SUT,NIC_SUT,NAME_FOC,KEYWORD_FOC,PRIORITY_FOC,DESC_FOC,TEXT_FOC\n";
    const Read html = MakePage<ImportedPage::FromHtml>, text = MakePage<ImportedPage::FromText>,
               markdown = MakePage<ImportedPage::FromMarkdown>;
    const struct
    {
        Read read;
        QByteArray source;
        const char *told;
    } rows[]{
        {ReadTable, "kind\n" + QByteArray("text\n").repeated(CanonTable::MostRows + 1),
         "f.csv:100002: the table has more than 100000 rows"},
        {ReadTable, QByteArray(CsvRecords::MostCells + 1, ','), "f.csv:1: more than 1000 cells"},
        {ReadJsonTable, "{\"texts\":[\n" + QByteArray("{},").repeated(CanonTable::MostRows + 1) + "{}]}",
         "f.json:2: the table has more than 100000 rows"},
        {ReadJsonTable, "{\"texts\":[" + QByteArray("7,").repeated(14 * CanonTable::MostRows) + "7]}",
         "f.json:1: the table has more than 100000 rows"},
        {html, "<p>\n<p " + QByteArray("a ").repeated(qsizetype(TagReader::MostAttributes) + 1) + ">x",
         "f:2: a tag has more than 10000 attributes"},
        {html, QByteArray(LargestPage + 1, 'x'), "f: the page has more than 16 MiB"},
        {html, "\n" + QByteArray(LargestPage / 4 + 1, '<') + "p", "f:2: the page has more than 16 MiB"},
        {text, "\r\n\n" + QByteArray(LargestPage / 5 + 1, '&'), "f:3: the page has more than 16 MiB"},
        {markdown, QByteArray(LargestPage / 6 + 1, '"'), "f: the page has more than 16 MiB"},
        {markdown, QByteArray("*a\n").repeated(ImportedPage::MostMarks / 2 + 1),
         "f:250001: the Markdown has more than 500000 signs"},
        {markdown, "a\n" + QByteArray("> 1. ").repeated(ImportedPage::DeepestMarks / 2 + 1) + "x",
         "f:2: the line begins more than 100 quotations or lists"},
        {[](const QByteArray &json, Report &) { ParseSegments(json); }, Segments(MostSegments + 1),
         "2: the text has more than 150000 segments"},
        {AlignTwice, Segments(MostSegments / 2 + 1), "0: the text has more than 150000 segments"},
        {ReadMarks<CsvMarks>, header + QByteArray("6,1101,,,2,,\n").repeated(MarksReader::MostMarks + 1),
         "f:200002: more than 200000 marks"},
        {ReadMarks<MarkdownMarks>, "# one\n## t\n> " + QByteArray(MarksReader::LargestMark, 'x') + "\n",
         "f:2: the mark is not UTF-8, or longer than 64 MiB"},
        {ReadMarks<CsvMarks>, header + "6,1101,,,2,,\"" + QByteArray(MarksReader::LargestMark, 'x') + "\"\n",
         "f:2: the mark is longer than 64 MiB"},
        {ReadMarks<CsvMarks>,
         QByteArray(header).replace("FOC\n", "FOC,TEXT\n") + "6,1101,,,2,,,\"" +
             QByteArray(MarksReader::LargestMark / 6 + 1, '&') + "\"\n",
         "f:2: the mark is longer than 64 MiB"},
        {ReadMarks<MarkdownMarks>, "# one\n## t\n> " + QByteArray(MarksReader::LargestMark / 6 + 1, '&') + "\n",
         "f:2: the mark is longer than 64 MiB"},
    };
    for (const auto &row : rows)
        EXPECT_THAT(Told(row.read, row.source), HasSubstr(row.told));
}

/// The work for these was the square of their number, hours in place of a moment.
TEST(HostileSources, ManyThatMeetAtOnePlaceAreTakenInTheirTime)
{
    constexpr int many = 200'000;
    QList<TextTraits> before(many, {0, u"a"_s, {u"a"_s, u"a"_s, u"a"_s}});
    for (int i = 0; i < many; ++i)
        before[i].key = KeyPlan::Base + many - i;
    TextKeys keys([&] { return before; });
    const QList<int> given = keys.For(QList<TextKeys::Text>(2 * many, {u"a"_s, {}}));
    EXPECT_EQ(QSet<int>(given.cbegin(), given.cend()).size(), 2 * many);
    EXPECT_EQ(keys.Recognise(before).size(), 0);

    CheckedCanon canon;
    for (int i = 1; i <= many; ++i)
        canon.groups.append({i, i == 1 ? 2 : i - 1, u"a"_s, u"a"_s, {}});
    QStringList cyclic;
    for (const Finding &finding : CheckCanon(canon))
        cyclic.append(finding.row);
    EXPECT_EQ(cyclic, (QStringList{u"group 1"_s, u"group 2"_s}));
}

} // namespace
