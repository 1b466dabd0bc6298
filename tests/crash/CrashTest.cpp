#include "crash/CrashRow.h"

#include "support/TestSupport.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QHash>
#include <QProcess>
#include <QRandomGenerator>
#include <QThread>

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int PatienceMilliseconds = 60000;
/// A copy that says nothing for so long will never say anything.
constexpr int StallMilliseconds = 20000;

/// How much to do: a number from the environment, else a short run.
int Amount(const char *variable, int byDefault)
{
    bool isNumber = false;
    const int amount = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber && amount > 0 ? amount : byDefault;
}

qint64 Microseconds()
{
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

/// What a worker said that it is doing or has done.
struct Operation
{
    char kind = 'a';
    CrashRow row;
    qint64 begun = 0;
};

/// What is known of the rows of one owner: the last acknowledged version of each, and what was under way.
class Ledger
{
public:
    explicit Ledger(char owner) : m_owner(owner) {}

    /// Reads all that a worker said. An operation is acknowledged by the line that follows it.
    void Hear(const QByteArray &said)
    {
        m_pending.reset();
        for (const QByteArray &line : said.split('\n')) {
            const QList<QByteArray> words = line.split(' ');
            if (words[0] == "begin" && words.size() == 5) {
                m_pending = Operation{words[1][0], {words[2].toLongLong(), words[3].toInt()}, words[4].toLongLong()};
            } else if (words[0] == "end" && words.size() == 3 && m_pending) {
                Apply(*m_pending);
                ++acknowledged;
                tries += words[1].toInt();
                longest = std::max(longest, words[2].toLongLong() - m_pending->begun);
                m_pending.reset();
            }
        }
    }
    const std::optional<Operation> &Pending() const { return m_pending; }

    /// Compares with the file: each row is as acknowledged or as the pending operation makes it, one of the two.
    void Prove(QHash<QString, QByteArray> stored)
    {
        if (m_pending) {
            const CrashRow &row = m_pending->row;
            const bool wasThere = m_rows.contains(row.id);
            const QString before = wasThere ? CrashRow{row.id, m_rows[row.id]}.Title(m_owner) : QString();
            const bool happened =
                m_pending->kind == 'd' ? !stored.contains(before) : stored.contains(row.Title(m_owner));
            if (m_pending->kind == 'e') {
                EXPECT_NE(stored.contains(before), happened) << "both or neither of " << qPrintable(before);
            }
            if (happened)
                Apply(*m_pending);
            m_pending.reset();
        }
        for (auto it = m_rows.cbegin(); it != m_rows.cend(); ++it) {
            const CrashRow row{it.key(), it.value()};
            const QByteArray digest = QCryptographicHash::hash(row.Excerpt(), QCryptographicHash::Sha256).toHex();
            EXPECT_EQ(stored.take(row.Title(m_owner)), digest) << qPrintable(row.Title(m_owner));
        }
        for (auto it = stored.cbegin(); it != stored.cend(); ++it)
            EXPECT_FALSE(it.key().startsWith(QChar::fromLatin1(m_owner))) << "nobody stored " << qPrintable(it.key());
    }

    qsizetype acknowledged = 0;
    qint64 tries = 0;
    qint64 longest = 0; ///< microseconds

private:
    void Apply(const Operation &operation)
    {
        if (operation.kind == 'd')
            m_rows.remove(operation.row.id);
        else
            m_rows[operation.row.id] = operation.row.version;
    }

    char m_owner;
    QHash<qint64, int> m_rows;
    std::optional<Operation> m_pending;
};

/// A file of marks with its list of texts, and the processes that work on it.
class Crash : public testing::Test
{
protected:
    void SetUp() override
    {
        EXPECT_EQ(Run(ProductFolder() + u"lumivara-data"_s,
                      {u"build"_s, u"--only"_s, u"marks"_s, u"--out"_s, m_scratch.Path(u""_s)}),
                  0);
        EXPECT_EQ(Run(WorkerPath(), {m_scratch.Path(u""_s), u"seed"_s}), 0);
    }
    static QString WorkerPath() { return QCoreApplication::applicationDirPath() + u"/crash_worker"_s; }
    static int Run(const QString &program, const QStringList &arguments)
    {
        QProcess process;
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished(PatienceMilliseconds));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
    /// A copy at work: "work" without end and with a pause of so many milliseconds, "add" so many rows.
    std::unique_ptr<QProcess> Start(const QString &verb, char owner, qint64 firstId, int amount)
    {
        auto process = std::make_unique<QProcess>();
        process->start(WorkerPath(), {m_scratch.Path(u""_s), verb, QString(QChar::fromLatin1(owner)),
                                      QString::number(firstId), QString::number(amount)});
        EXPECT_TRUE(process->waitForStarted());
        return process;
    }
    /// Every stored row, read by a process that has just opened the file; none if it hangs or crashes.
    std::optional<QHash<QString, QByteArray>> Stored()
    {
        QProcess reader;
        reader.start(WorkerPath(), {m_scratch.Path(u""_s), u"dump"_s});
        if (!reader.waitForFinished(StallMilliseconds)) {
            reader.kill();
            reader.waitForFinished();
            return {};
        }
        if (reader.exitStatus() != QProcess::NormalExit)
            return {};
        EXPECT_EQ(reader.exitCode(), 0) << reader.readAllStandardError().constData();
        QHash<QString, QByteArray> rows;
        for (const QByteArray &line : reader.readAllStandardOutput().split('\n')) {
            if (line.isEmpty())
                continue;
            const QString title = QString::fromUtf8(line.left(line.indexOf(' ')));
            EXPECT_FALSE(rows.contains(title)) << "twice: " << qPrintable(title);
            rows[title] = line.mid(line.indexOf(' ') + 1);
        }
        return rows;
    }
    /// What a copy has said until it acknowledged something, or for too long nothing.
    static QByteArray FirstWords(QProcess &copy)
    {
        QByteArray said;
        while (!said.contains("end ") && copy.waitForReadyRead(StallMilliseconds))
            said += copy.readAllStandardOutput();
        return said;
    }
    static QByteArray Kill(QProcess &copy)
    {
        copy.kill();
        EXPECT_TRUE(copy.waitForFinished(PatienceMilliseconds));
        return copy.readAllStandardOutput();
    }

    ScratchFolder m_scratch;
};

/// Where the kills fell: between two operations, or how long after the begin of one.
class Histogram
{
public:
    void Count(const std::optional<Operation> &pending, qint64 moment)
    {
        ++m_kills;
        if (!pending)
            return;
        ++m_inside;
        const qint64 elapsed = moment - pending->begun;
        const auto place = std::find_if(Limits.begin(), Limits.end(), [&](qint64 limit) { return elapsed < limit; });
        ++m_counts[static_cast<size_t>(place - Limits.begin())];
        ++m_kinds[pending->kind == 'a' ? 0 : pending->kind == 'e' ? 1 : 2];
    }
    double InsideShare() const { return m_kills == 0 ? 0 : static_cast<double>(m_inside) / m_kills; }
    void Print() const
    {
        std::printf("%d kills, %d between operations, %d inside one (%d adds, %d edits, %d deletes)\n", m_kills,
                    m_kills - m_inside, m_inside, m_kinds[0], m_kinds[1], m_kinds[2]);
        for (size_t i = 0; i < m_counts.size(); ++i) {
            if (i < Limits.size())
                std::printf("  under %3d ms %4d\n", static_cast<int>(Limits[i] / 1000), m_counts[i]);
            else
                std::printf("  later       %4d\n", m_counts[i]);
        }
    }

private:
    static constexpr std::array<qint64, 7> Limits{1000, 2000, 4000, 8000, 16000, 32000, 64000};
    std::array<int, Limits.size() + 1> m_counts{};
    std::array<int, 3> m_kinds{};
    int m_kills = 0, m_inside = 0;
};

TEST_F(Crash, AKillLosesNothingThatWasAcknowledged)
{
    const int kills = Amount("LUMIVARA_KILLS", 10);
    constexpr qint64 idsPerRound = 1000000;
    constexpr quint32 longestLifeMicroseconds = 250000;
    QRandomGenerator random(static_cast<quint32>(kills));
    Ledger killed('k'), slow('s');
    Histogram histogram;
    int stalls = 0;
    const auto startSlow = [&](int round) { return Start(u"work"_s, 's', round * idsPerRound, 20); };
    auto slowCopy = startSlow(0);
    for (int round = 1; round <= kills && !HasFailure(); ++round) {
        const auto victim = Start(u"work"_s, 'k', round * idsPerRound, 0);
        QByteArray said = FirstWords(*victim);
        bool stalled = !said.contains("end ");
        QThread::usleep(random.bounded(longestLifeMicroseconds));
        EXPECT_EQ(victim->state(), QProcess::Running) << victim->readAllStandardError().constData();
        const qint64 moment = Microseconds();
        said += Kill(*victim);
        killed.Hear(said);
        histogram.Count(killed.Pending(), moment);

        auto stored = Stored();
        if (stalled || !stored) {
            // The engine cannot mend every state that a kill leaves in the lock table. Once nobody has the file open,
            // the table is made anew, and nothing is lost.
            ++stalls;
            slow.Hear(Kill(*slowCopy));
            stored = Stored();
            EXPECT_TRUE(stored.has_value());
            slow.Prove(stored.value_or(QHash<QString, QByteArray>()));
            slowCopy = startSlow(round);
        }
        killed.Prove(stored.value_or(QHash<QString, QByteArray>()));
        slowCopy->waitForReadyRead(0); // so that its pipe does not fill
    }
    EXPECT_EQ(slowCopy->state(), QProcess::Running) << slowCopy->readAllStandardError().constData();
    slow.Hear(Kill(*slowCopy));
    slow.Prove(Stored().value_or(QHash<QString, QByteArray>()));

    histogram.Print();
    std::printf("%lld operations acknowledged by the killed copies; the slow copy: %lld, tried again %lld times, "
                "worst stall %lld ms; %d times nobody got on until all were closed\n",
                static_cast<long long>(killed.acknowledged), static_cast<long long>(slow.acknowledged),
                static_cast<long long>(slow.tries), static_cast<long long>(slow.longest / 1000), stalls);
    EXPECT_GE(histogram.InsideShare(), 0.3);
    EXPECT_GT(slow.acknowledged, kills);
    EXPECT_LE(stalls, 1 + kills / 100);
}

TEST_F(Crash, TwoCopiesAtOnceLoseAndDoubleNothing)
{
    const int count = Amount("LUMIVARA_ROWS", 120);
    Ledger ledgers[] = {Ledger('x'), Ledger('y')};
    const std::unique_ptr<QProcess> copies[] = {Start(u"add"_s, 'x', 1, count), Start(u"add"_s, 'y', 1, count)};
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(copies[i]->waitForFinished(10 * PatienceMilliseconds));
        EXPECT_EQ(copies[i]->exitCode(), 0) << copies[i]->readAllStandardError().constData();
        ledgers[i].Hear(copies[i]->readAllStandardOutput());
        EXPECT_EQ(ledgers[i].acknowledged, count + count / 3);
    }
    const QHash<QString, QByteArray> stored = Stored().value_or(QHash<QString, QByteArray>());
    for (Ledger &ledger : ledgers) {
        ledger.Prove(stored);
        std::printf("%lld operations, tried again %lld times, longest %lld ms\n",
                    static_cast<long long>(ledger.acknowledged), static_cast<long long>(ledger.tries),
                    static_cast<long long>(ledger.longest / 1000));
    }
}

} // namespace

int main(int argc, char **argv)
{
    testing::InitGoogleMock(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
