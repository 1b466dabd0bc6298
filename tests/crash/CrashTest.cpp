#include "crash/CrashRun.h"

#include "support/TestSupport.h"

#include <QRandomGenerator>
#include <QThread>

#include <cstdio>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// A file of marks with its list of texts, and the processes that work on it.
class Crash : public testing::Test
{
protected:
    void SetUp() override { MakeMarks(Folder(), true); }
    QString Folder() const { return m_scratch.Path(u""_s); }
    /// A copy at work: "work" without end and with a pause of so many milliseconds, "add" so many rows.
    std::unique_ptr<QProcess> Start(const QString &verb, char owner, qint64 firstId, int amount)
    {
        auto process = std::make_unique<QProcess>();
        process->start(WorkerPath(), {Folder(), verb, QString(QChar::fromLatin1(owner)), QString::number(firstId),
                                      QString::number(amount)});
        EXPECT_TRUE(process->waitForStarted());
        return process;
    }
    /// What a copy has said until it acknowledged something, or for too long nothing.
    static QByteArray FirstWords(QProcess &copy)
    {
        QByteArray said;
        while (!said.contains("end") && copy.waitForReadyRead(StallMilliseconds))
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

TEST_F(Crash, AKillLosesNothingThatWasAcknowledged)
{
    const int kills = Amount("LUMIVARA_KILLS", 10);
    constexpr qint64 idsPerRound = 1000000;
    constexpr quint32 longestLifeMicroseconds = 250000;
    QRandomGenerator random(static_cast<quint32>(kills));
    Ledger killed('k'), slow('s');
    int stalls = 0, inside = 0;
    const auto startSlow = [&](int round) { return Start(u"work"_s, 's', round * idsPerRound, 20); };
    auto slowCopy = startSlow(0);
    for (int round = 1; round <= kills && !HasFailure(); ++round) {
        const auto victim = Start(u"work"_s, 'k', round * idsPerRound, 0);
        QByteArray said = FirstWords(*victim);
        const bool stalled = !said.contains("end");
        QThread::usleep(random.bounded(longestLifeMicroseconds));
        EXPECT_EQ(victim->state(), QProcess::Running) << victim->readAllStandardError().constData();
        said += Kill(*victim);
        killed.Hear(said);
        inside += killed.IsPending() ? 1 : 0;

        auto stored = ReadStored(Folder());
        if (stalled || !stored) {
            // The engine cannot mend every state that a kill leaves in the lock table. Once nobody has the file open,
            // the table is made anew, and nothing is lost.
            ++stalls;
            slow.Hear(Kill(*slowCopy));
            stored = ReadStored(Folder());
            EXPECT_TRUE(stored.has_value());
            slow.Prove(stored.value_or(StoredRows()));
            slowCopy = startSlow(round);
        }
        killed.Prove(stored.value_or(StoredRows()));
        slowCopy->waitForReadyRead(0); // so that its pipe does not fill
    }
    EXPECT_EQ(slowCopy->state(), QProcess::Running) << slowCopy->readAllStandardError().constData();
    slow.Hear(Kill(*slowCopy));
    slow.Prove(ReadStored(Folder()).value_or(StoredRows()));

    std::printf("%d of %d kills inside an operation; %d times nobody got on until all were closed\n", inside, kills,
                stalls);
    EXPECT_GE(inside, 0.3 * kills);
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
    const StoredRows stored = ReadStored(Folder()).value_or(StoredRows());
    for (Ledger &ledger : ledgers)
        ledger.Prove(stored);
}

} // namespace
