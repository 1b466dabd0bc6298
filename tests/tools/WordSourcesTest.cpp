#include "lumivara-data/EntryIntake.h"
#include "lumivara-data/RecordSorter.h"
#include "lumivara-data/StarDict.h"
#include "lumivara-data/WordLines.h"

#include "common/Console.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "support/TestSupport.h"
#include "tools/StarDictSample.h"
#include "tools/ToolSupport.h"

#include <QBuffer>
#include <QCommandLineParser>
#include <QRandomGenerator>

#include <gmock/gmock.h>

#include <algorithm>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

TEST(RecordSorter, SortsMoreThanItsMemoryHolds)
{
    QRandomGenerator random(1);
    RecordSorter sorter(4000);
    std::vector<QByteArray> expected;
    for (int i = 0; i < 3000; ++i) {
        // Many share their beginning, some are the beginning of others.
        QByteArray record(random.bounded(12), 'a');
        for (char &c : record)
            c = char("\0a\xFF"[random.bounded(3)]);
        sorter.Add(record);
        expected.push_back(record);
    }
    std::sort(expected.begin(), expected.end(), [](const QByteArray &a, const QByteArray &b) {
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                            [](char x, char y) { return uchar(x) < uchar(y); });
    });
    sorter.Sort();
    QByteArrayView record;
    for (const QByteArray &next : expected) {
        ASSERT_TRUE(sorter.Next(record));
        ASSERT_EQ(record.toByteArray(), next);
    }
    EXPECT_FALSE(sorter.Next(record));
}

/// Holds what must be true of all that is handed over.
class StrictStore : public WordStore
{
public:
    int AddEntry(const QByteArray &content) override
    {
        EXPECT_FALSE(content.trimmed().isEmpty());
        EXPECT_LE(content.size(), 1 << 20);
        EXPECT_EQ(QString::fromUtf8(content).toUtf8(), content);
        return ++m_entries;
    }
    void AddWord(int kind, const QString &word, int entry) override
    {
        EXPECT_EQ(kind, 5);
        EXPECT_EQ(word, word.trimmed());
        EXPECT_GE(word.size(), 1);
        EXPECT_LE(word.size(), 63);
        EXPECT_GE(entry, 1);
        EXPECT_LE(entry, m_entries);
        ++words;
    }
    qsizetype words = 0;

private:
    int m_entries = 0;
};

/// Bytes with one to four faults of the kinds that broken disks and bad intentions make.
QByteArray Mutated(QByteArray bytes, QRandomGenerator &random)
{
    static const QByteArray known[] = {"\xFF\xFF\xFF\xFF",
                                       QByteArray(4, '\0'),
                                       "=",
                                       "\n",
                                       "99999999999999999999",
                                       QByteArray("\x7F\xFF\xFF\xFF", 4),
                                       "<b",
                                       "&#",
                                       "\t",
                                       "RA"};
    for (int faults = random.bounded(1, 5); faults > 0 && !bytes.isEmpty(); --faults) {
        const qsizetype at = random.bounded(int(bytes.size()));
        switch (random.bounded(6)) {
        case 0:
            bytes[at] = char(random.bounded(256));
            break;
        case 1:
            bytes[at] = char(bytes[at] ^ (1 << random.bounded(8)));
            break;
        case 2:
            bytes.remove(at, random.bounded(1, 9));
            break;
        case 3:
            bytes.truncate(at);
            break;
        case 4:
            bytes.insert(at, bytes.mid(random.bounded(int(bytes.size())), random.bounded(40)));
            break;
        default:
            bytes.replace(at, 4, known[random.bounded(int(std::size(known)))]);
        }
    }
    return bytes;
}

StarDictSample MutationSample()
{
    return {.words = {{"abandon", "m@abandon /x/\n* verb\n- leave+go", -1, -1},
                      {"dhamma", QByteArray("tə\0h<p>a <b>law</b><ul><li>x &amp; y</ul>", 42), -1, -1},
                      {"gāma", "x<k>gāma</k>\n<ex>a</ex>", -1, -1},
                      {"Gotama",
                       QByteArray("W\0\0\0\2ab"
                                  "g<i>name</i>",
                                  19),
                       -1, -1}},
            .forms = {{"abandons", 0}, {"dhammo", 1}, {"gāmo", 2}},
            .types = "",
            .packing = StarDictSample::Packing::Chunks,
            .chunkSize = 32,
            .offsetBits = 64};
}

class Mutations : public testing::TestWithParam<const char *>
{};

TEST_P(Mutations, EndInAReportOrAMessage)
{
    constexpr int rounds = 10'000;
    constexpr long mostKilobytes = 100'000;
    const ScratchFolder scratch;
    const QString ending = QString::fromLatin1(GetParam());
    const QString path = scratch.Path(u"d"_s + ending);
    StarDictSample sample = MutationSample();
    sample.Write(scratch.Path(u"d"_s));
    WriteFile(scratch.Path(u"d.tsv"_s), "abandon\t@abandon\\n- leave\ngāma\t<b>x</b>\\t\\\\n\n\xF0\x9F\x98\x80\tx\n");
    const QByteArray sound = BytesOf(path);
    QRandomGenerator random(20'240'229);
    Console console(u"test"_s);
    QCommandLineParser parser;
    Report::AddOptions(parser);
    parser.process(QStringList{u"test"_s, u"--json"_s});
    rusage before = {};
    ::getrusage(RUSAGE_SELF, &before);
    qsizetype words = 0, refusals = 0, findings = 0;
    for (int round = 0; round < rounds; ++round) {
        const QByteArray bytes = Mutated(sound, random);
        StrictStore store;
        Report report(console);
        report.TakeOptions(parser);
        EntryIntake intake(5, store, report);
        try {
            if (ending == u".tsv") {
                QBuffer device;
                device.setData(bytes);
                device.open(QIODevice::ReadOnly);
                TakeTabbedWords(device, u"d.tsv"_s, intake, [] {});
            } else {
                WriteFile(path, bytes);
                StarDict(scratch.Path(u"d.ifo"_s), report).TakeAll(intake, console);
            }
        } catch (const ToolError &error) {
            EXPECT_FALSE(error.Text().isEmpty());
            ++refusals;
        }
        words += store.words;
        findings += report.FindingCount();
    }
    rusage after = {};
    ::getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, mostKilobytes);
    // The faults are neither all passed over nor all fatal.
    EXPECT_GT(words, rounds / 4);
    EXPECT_GT(findings + refusals, rounds / 20);
}

INSTANTIATE_TEST_SUITE_P(Files, Mutations, testing::Values(".ifo", ".idx", ".dict.dz", ".syn", ".tsv"),
                         [](const auto &row) { return QByteArray(row.param + 1).replace(".", "").toStdString(); });

} // namespace
