#include "crash/CrashRun.h"

#include "support/TestSupport.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// A file of marks with its list of texts, and the processes that work on it.
class Crash : public testing::Test
{
protected:
    void SetUp() override { MakeMarks(Folder(), true); }
    QString Folder() const { return m_scratch.Path(u""_s); }
    /// A copy at work, as told in Worker.cpp.
    std::unique_ptr<QProcess> Start(const QString &verb, char owner, qint64 firstId, int amount)
    {
        auto process = std::make_unique<QProcess>();
        process->start(WorkerPath(), {Folder(), verb, QString(QChar::fromLatin1(owner)), QString::number(firstId),
                                      QString::number(amount)});
        EXPECT_TRUE(process->waitForStarted());
        return process;
    }

    ScratchFolder m_scratch;
};

TEST_F(Crash, AKillLosesNothingThatWasAcknowledged)
{
    const int kills = Amount("LUMIVARA_KILLS", 10);
    constexpr qint64 idsPerRound = 1000000;
    constexpr int mostWrites = 12, operations = 5;
    Ledger killed('k'), other('s');
    const auto server = Start(u"serve"_s, 's', 1, 0);
    QByteArray served;
    for (int round = 0; round < kills && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        const auto victim = Start(u"die"_s, 'k', (round + 1) * idsPerRound, 1 + round % mostWrites);
        server->write(QByteArray(operations, '\n')); // works beside it
        EXPECT_TRUE(victim->waitForFinished(PatienceMilliseconds));
        EXPECT_EQ(victim->exitStatus(), QProcess::CrashExit) << victim->readAllStandardError().constData();
        killed.Hear(victim->readAllStandardOutput());
        EXPECT_TRUE(killed.IsPending());
        const auto stored = ReadStored(Folder());
        EXPECT_TRUE(stored.has_value());
        killed.Prove(stored.value_or(StoredRows()));
        const int due = (round + 1) * operations;
        while (served.count("end") < due && server->waitForReadyRead(StallMilliseconds))
            served += server->readAllStandardOutput();
        EXPECT_EQ(served.count("end"), due) << "the kill stopped the other copy";
    }
    server->closeWriteChannel();
    EXPECT_TRUE(server->waitForFinished(PatienceMilliseconds));
    other.Hear(served);
    other.Prove(ReadStored(Folder()).value_or(StoredRows()));
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
