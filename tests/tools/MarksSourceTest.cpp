#include "lumivara-data/MarksSource.h"

#include "common/Console.h"
#include "common/Report.h"
#include "common/Tool.h"

#include <QBuffer>
#include <QCommandLineParser>
#include <QStringEncoder>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray Header = "NIK_SUT,NIC_SUT,NAME_FOC,KEYWORD_FOC,PRIORITY_FOC,DESC_FOC,TEXT_FOC,DATETIME_FOC\r\n";
const QByteArray Good = "6,1101,good,,2,,x,2024-02-29T23:59:58\r\n";

/// What was read, "title|note" a mark, and what was told, "line: fault".
struct Reading
{
    QStringList marks;
    QStringList told;
};

Reading Read(const QByteArray &bytes, bool isMarkdown = false)
{
    Console console(u"test"_s);
    Report report(console);
    QCommandLineParser parser;
    Report::AddOptions(parser);
    parser.parse({u"test"_s, u"--quiet"_s});
    report.TakeOptions(parser);
    QByteArray file = bytes;
    QBuffer buffer(&file);
    buffer.open(QIODevice::ReadOnly);
    KnownTexts texts;
    texts.Add(6, 1101, {u"Một"_s, u"Eka"_s});
    Reading reading;
    testing::internal::CaptureStdout();
    try {
        std::unique_ptr<MarksSource> source;
        if (isMarkdown)
            source = std::make_unique<MarkdownMarks>(buffer, u"f"_s, report, texts);
        else
            source = std::make_unique<CsvMarks>(buffer, u"f"_s, report);
        for (SourceMark mark; source->Next(mark);)
            reading.marks.append(mark.mark.title + u'|' + mark.mark.note);
    } catch (const ToolError &error) {
        reading.told.append(u"! "_s + error.Text());
    }
    const QString told = QString::fromStdString(testing::internal::GetCapturedStdout());
    reading.told += told.split(u'\n', Qt::SkipEmptyParts);
    return reading;
}

TEST(MarksSource, OneBadRecordIsToldAndTheOthersAreRead)
{
    const QByteArray longText(128, 'a');
    const std::pair<QByteArray, const char *> cases[] = {
        {"6,1101,bad,,5,,x,\r\n", "f:3: the priority is 5, not 1 to 4"},
        {"6,1101,bad,,high,,x,\r\n", "f:3: PRIORITY_FOC is no number: \"high\""},
        {"6,0,bad,,2,,x,\r\n", "f:3: text 0 of collection 6: there is no such text"},
        {"6,99999999999,bad,,2,,x,\r\n", "f:3: NIC_SUT is no number: \"99999999999\""},
        {"6,1101,bad,,2,,x,2023-02-29T00:00:00\r\n",
         "f:3: DATETIME_FOC is no date such as 2024-02-29T23:59:58: \"2023-02-29T00:00:00\""},
        {"6,1101," + longText + ",,2,,x,\r\n", "f:3: the title is longer than 127 characters"},
        {"6,1101,bad,,2," + QByteArray(2048, 'n') + ",x,\r\n", "f:3: the note is longer than 2047 characters"},
        {"6,1101,bad,,2,,x\r\n", "f:3: 7 cells where 8 columns are"},
        {"6,1101,b\"a\"d,,2,,x,\r\n", "f:3: a quote stands where none belongs, or is not doubled"},
        {"6,1101,\"bad\"x,,2,,x,\r\n", "f:3: a quote stands where none belongs, or is not doubled"},
        {"6,1101,\"bad,,2,,x,\r\n", "f:3: a quote is not closed"},
        {"6,1101,\"bad\nx\",,\"2\",,\"x\"y\"\n,\",\r\n",
         "f:3: a quote stands where none belongs, or is not doubled; nothing of the lines 3 to 5 is taken"},
        {"6,1101,b\xE1"
         "d,,2,,x,\r\n",
         "f:3: the text is not UTF-8"},
        {"6,1101,\xED\xA0\x80,,2,,x,\r\n", "f:3: the text is not UTF-8"},
    };
    for (const auto &[record, told] : cases) {
        const Reading reading = Read(Header + Good + record + Good);
        EXPECT_EQ(reading.marks, (QStringList{u"good|"_s, u"good|"_s})) << record.constData();
        EXPECT_EQ(reading.told, QStringList{QString::fromUtf8(told)}) << qPrintable(reading.told.join(u'\n'));
    }
    EXPECT_EQ(Read(Header + "6,1101," + QByteArray(TextLines::MostBytes + 9, 'x') + "\n" + Good).marks.size(), 1);
    EXPECT_EQ(Read(Header + "6,1101,\"" + QByteArray(TextLines::MostBytes / 4, '\n') + "\"\n").told.size(), 1);
}

TEST(MarksSource, ColumnsMayStandInAnyOrderButMustBeThere)
{
    EXPECT_EQ(Read("TEXT,DESC_FOC,Mine,PRIORITY_FOC,NAME_FOC,NIC_SUT,KEYWORD_FOC,NIK_SUT\n"
                   "\"a\nb\",\"one, \"\"two\"\"\",,2,t,1101,,6")
                  .marks,
              QStringList{u"t|one, \"two\""_s});
    for (const auto &[file, told] :
         {std::pair<QByteArray, const char *>{"", "! f: the file is empty"},
          {"\xEF\xBB\xBF", "! f: the file is empty"},
          {"NIK_SUT,NIC_SUT,NIK_SUT\n", "! f:1: the column NIK_SUT stands twice"},
          {"a;b\n", "missing columns: NIK_SUT, NIC_SUT, NAME_FOC, KEYWORD_FOC, PRIORITY_FOC, "
                    "DESC_FOC, TEXT_FOC"},
          {"\"open\n", "! f:1: a quote is not closed"},
          {QByteArray("N\0I", 3), "missing columns"}}) {
        const Reading reading = Read(file);
        EXPECT_TRUE(reading.marks.isEmpty());
        EXPECT_EQ(reading.told.size(), 1);
        EXPECT_TRUE(reading.told.value(0).contains(QString::fromUtf8(told))) << qPrintable(reading.told.value(0));
    }
}

TEST(MarksSource, Utf16IsConvertedAndHalfPairsAreTold)
{
    QString text = QString::fromUtf8(Header + "6,1101,\"Ngày \U0001F600\",,2,,x,\r\n");
    text +=
        u"6,1101,"_s + QString(70000, u'\U00001EA1') + u",,2,,x,\r\n6,1101,half "_s + QChar(0xD83D) + u",,2,,x,\r\n"_s;
    for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
        QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
        QByteArray bytes = encoder.encode(text);
        const Reading reading = Read(bytes);
        EXPECT_EQ(reading.marks, QStringList{u"Ngày \U0001F600|"_s});
        EXPECT_EQ(reading.told,
                  (QStringList{u"f:3: the title is longer than 127 characters"_s, u"f:4: the text is not UTF-8"_s}))
            << qPrintable(reading.told.join(u'\n'));
    }
}

} // namespace
