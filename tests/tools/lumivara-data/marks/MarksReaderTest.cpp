#include "lumivara-data/marks/MarksReader.h"

#include "common/Console.h"
#include "common/Report.h"
#include "common/Tool.h"

#include <QBuffer>
#include <QStringEncoder>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using namespace std::string_literals;
using testing::HasSubstr;

namespace {

const QByteArray Header = "NIK_SUT,NIC_SUT,NAME_FOC,KEYWORD_FOC,PRIORITY_FOC,DESC_FOC,TEXT_FOC,DATETIME_FOC\r\n";
const QByteArray Good = "6,1101,good,,2,,x,2024-02-29T23:59:58\r\n";

/// What was read, "title|note" a mark, and what was told, "line: fault", a line each.
std::string Read(QByteArray bytes)
{
    Console console(u"test"_s);
    Report report(console);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    std::string marks, failure;
    testing::internal::CaptureStdout();
    try {
        CsvMarks source(buffer, u"f"_s, report);
        for (MarkAtLine mark; source.Next(mark);)
            marks += (mark.mark.title + u'|' + mark.mark.note + u'\n').toStdString();
    } catch (const ToolError &error) {
        failure = "! "s + error.what() + '\n';
    }
    return marks + failure + testing::internal::GetCapturedStdout();
}

TEST(MarksReader, OneBadRecordIsToldAndTheOthersAreRead)
{
    const std::pair<QByteArray, const char *> cases[] = {
        {"6,1101,bad,,5,,x,\r\n", "f:3: the priority is 5, not 1 to 4"},
        {"6,0,bad,,2,,x,\r\n", "f:3: text 0 of collection 6: there is no such text"},
        {"6,99999999999,bad,,2,,x,\r\n", "f:3: NIC_SUT is no number: \"99999999999\""},
        {"6,1101,bad,,2,,x,2023-02-29T00:00:00\r\n",
         "f:3: DATETIME_FOC is no date such as 2024-02-29T23:59:58: \"2023-02-29T00:00:00\""},
        {"6,1101," + QByteArray(128, 'a') + ",,2,,x,\r\n", "f:3: the title is longer than 127 characters"},
        {"6,1101,bad,,2," + QByteArray(2048, 'n') + ",x,\r\n", "f:3: the note is longer than 2047 characters"},
        {"6,1101,\"bad\"x,,2,,x,\r\n", "f:3: a quote stands where none belongs, or is not doubled"},
        {"6,1101,\"bad,,2,,x,\r\n", "f:3: a quote is not closed"},
        {"6,1101,\"bad\nx\",,\"2\",,\"x\"y\"\n,\",\r\n",
         "f:3: a quote stands where none belongs, or is not doubled; nothing of the lines 3 to 5 is taken"},
        {"6,1101,\xED\xA0\x80,,2,,x,\r\n", "f:3: the text is not UTF-8"},
    };
    for (const auto &[record, told] : cases)
        EXPECT_EQ(Read(Header + Good + record + Good), "good|\ngood|\n"s + told + '\n') << record.constData();
    EXPECT_THAT(Read(Header + "6,1101," + QByteArray(2 * MarksReader::LargestMark + 9, 'x') + "\n" + Good),
                HasSubstr("good|\n"));
    EXPECT_LT(Read(Header + "6,1101,\"" + QByteArray(TextLines::MostBytes / 4, '\n') + "\"\n").size(), 200U);
}

TEST(MarksReader, ColumnsMayStandInAnyOrderButMustBeThere)
{
    const std::pair<QByteArray, const char *> rows[]{
        {"TEXT,DESC_FOC,Mine,PRIORITY_FOC,NAME_FOC,NIC_SUT,KEYWORD_FOC,NIK_SUT\n\"a\nb\",\"one, "
         "\"\"two\"\"\",,2,t,1101,,6",
         "t|one, \"two\"\n"},
        {"\xEF\xBB\xBF", "! f: the file is empty\n"},
        {"NIK_SUT,NIC_SUT,NIK_SUT\n", "! f:1: the column NIK_SUT stands twice\n"},
        {"a;b\n", "missing columns: NIK_SUT, NIC_SUT, NAME_FOC, KEYWORD_FOC, PRIORITY_FOC, DESC_FOC, TEXT_FOC"}};
    for (const auto &[file, told] : rows)
        EXPECT_THAT(Read(file), HasSubstr(told));
}

TEST(MarksReader, Utf16IsConvertedAndHalfPairsAreTold)
{
    const QString text = QString::fromUtf8(Header + "6,1101,\"Ngày \U0001F600\",,2,,x,\r\n") + u"6,1101,"_s +
                         QString(70000, u'ạ') + u",,2,,x,\r\n6,1101,half "_s + QChar(0xD83D) + u",,2,,x,\r\n"_s;
    for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
        QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
        EXPECT_EQ(Read(encoder.encode(text)),
                  "Ngày \U0001F600|\nf: converted from UTF-16\nf:3: the title is longer than 127 characters\n"
                  "f:4: the text is not UTF-8\n");
    }
}

} // namespace
