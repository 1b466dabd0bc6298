#include "lumivara-data/sync/SyncFile.h"

#include "common/Tool.h"

#include <QBuffer>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using namespace std::string_literals;

namespace {

SyncId Id(char digit)
{
    return *SyncId::FromHex(QByteArray(SyncId::HexLength, digit));
}

Mark FullMark()
{
    Mark mark;
    mark.collection = 6;
    mark.text = 1101;
    mark.nameVietnamese = u"Chương"_s;
    mark.title = u"\uFEFFmột\u0000 \U0001F600\u202E"_s;
    mark.keywords = u""_s;
    mark.priority = 2;
    mark.time = u"2024-02-29 23:59:58.1234"_s;
    mark.excerpt = QByteArray("\xEF\xBB\xBF<p>\0\xFF\r\n", 9);
    return mark;
}

QByteArray Written(const std::map<SyncId, Mark> &marks, const std::set<SyncId> &past = {})
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    SyncFileWriter writer(device, u"f"_s);
    writer.Head(marks.size(), past.size());
    for (const auto &[version, mark] : marks)
        writer.Put(version, Id('e'), mark);
    writer.Finish(past);
    return device.data();
}

/// Why it is no file of a sync; nothing if it is one.
std::string Fault(QByteArray bytes)
{
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    try {
        SyncFileReader(device, u"f"_s);
    } catch (const ToolError &error) {
        return error.what();
    }
    return {};
}

TEST(SyncFile, EveryMarkComesBackAsItWas)
{
    Mark bare;
    bare.collection = 2;
    bare.text = 9;
    Mark empty = bare;
    empty.title = u""_s;
    empty.excerpt = QByteArray("");
    Mark large = bare;
    large.excerpt = QByteArray(200'000, '\n');
    const std::map<SyncId, Mark> marks{{Id('0'), FullMark()}, {Id('1'), bare}, {Id('2'), empty}, {Id('3'), large}};
    std::set<SyncId> past;
    for (int i = 0; i < 2500; ++i)
        past.insert(SyncId::Of({QByteArray::number(i)}));
    QByteArray bytes = Written(marks, past);
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    const SyncFileReader reader(device, u"f"_s);
    EXPECT_EQ(reader.State().past, past);
    EXPECT_TRUE(reader.HasPairs());
    for (const auto &[version, mark] : marks) {
        const Mark read = reader.Read(version);
        const auto all = [](const Mark &m) {
            return std::tuple(m.collection, m.text, m.nameVietnamese, m.title, m.title.isNull(), m.keywords,
                              m.keywords.isNull(), m.note.isNull(), m.priority, m.time, m.excerpt, m.excerpt.isNull());
        };
        EXPECT_EQ(all(read), all(mark));
        EXPECT_EQ(reader.State().live.at(version).facts, FactsOf(mark));
    }
}

TEST(SyncFile, WhatIsNotWholeOrNotOursIsRefused)
{
    const QByteArray whole = Written({{Id('0'), FullMark()}}, {Id('7')});
    EXPECT_EQ(Fault(whole), "");
    // Whatever is missing at its end, and whichever byte is another one.
    for (qsizetype size = 0; size < whole.size(); ++size)
        EXPECT_NE(Fault(whole.left(size)), "") << size;
    for (qsizetype at = 0; at < whole.size(); ++at) {
        QByteArray changed = whole;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        EXPECT_NE(Fault(changed), "") << at;
    }
    const QByteArray head = "{\"lumivara-marks\":1,\"marks\":0,\"past\":0}\n";
    const std::pair<QByteArray, const char *> rows[]{
        {whole + "\n", "f: is damaged, its checksum is another one"},
        {"{\"lumivara-marks\":2}\n", "f: was made by a later version of this tool"},
        {"{\"lumivara-marks\":1,\"marks\":200001,\"past\":0}\n", "f: has more marks than are taken"},
        {"{\"lumivara-marks\":1,\"marks\":-1,\"past\":0}\n", "f: has more marks than are taken"},
        {"[]\n", "f: has a line that is none of such a file"},
        {QByteArray(SyncFile::LongestLine + 9, ' '), "f: has a line that is too long"},
        {head + QByteArray(5000, '[') + '\n', "f: has a line that is none of such a file"},
        {head + "{\"past\":\"" + QByteArray(32, '0') + "\"}\n", "f: does not hold what it says"},
        {head + "{\"version\":\"x\"}\n", "f: has a mark without a name"},
    };
    for (const auto &[bytes, fault] : rows)
        EXPECT_EQ(Fault(bytes), fault) << bytes.left(100).constData();
}

TEST(SyncFile, OneVersionIsNotBothStandingAndPast)
{
    EXPECT_EQ(Fault(Written({{Id('0'), FullMark()}}, {Id('0')})), "f: does not hold what it says");
}

TEST(SyncFile, AMarkThatNoFileCanHoldIsNotTaken)
{
    const auto with = [](auto change) {
        Mark mark = FullMark();
        change(mark);
        EXPECT_FALSE(SyncFile::CanTake(mark));
        return Fault(Written({{Id('0'), mark}}));
    };
    const std::string fault = "f: has a mark that no file of marks can hold";
    EXPECT_EQ(with([](Mark &mark) { mark.title = QString(128, u'x'); }), fault);
    EXPECT_EQ(with([](Mark &mark) { mark.note = QString(2048, u'x'); }), fault);
    EXPECT_EQ(with([](Mark &mark) { mark.nameEnglish = QString(128, u'x'); }), fault);
    for (const QString &time : {u"2024-02-30 00:00:00.0000"_s, u"2024-02-29 24:00:00.0000"_s, u"2024-02-29 23:59:58"_s,
                                u"now"_s, u"2024-02-29 23:59:58.1234\n"_s})
        EXPECT_EQ(with([&time](Mark &mark) { mark.time = time; }), fault) << qPrintable(time);
    EXPECT_EQ(with([](Mark &mark) { mark.text = 0; }), "f: has a mark with a number that cannot be");
}

} // namespace
