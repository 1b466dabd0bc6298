#include "crash/CrashRun.h"
#include "program/ProgramRun.h"

#include <QFile>
#include <QRandomGenerator>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

/// Sends commands that must succeed.
void Expect(ProgramRun &program, const QStringList &commands)
{
    for (const QString &command : commands) {
        QString answer = program.Send(command);
        // Actions become enabled when the program is idle, which a busy machine puts off.
        for (int tries = 0; answer.contains(u"no enabled action"_s) && tries < 100; ++tries) {
            program.Send(u"pause 50"_s);
            answer = program.Send(command);
        }
        EXPECT_FALSE(answer.startsWith(u"error"_s)) << qPrintable(command + u": "_s + answer);
    }
}

/// Takes the real program to the brink of storing a mark; the digest of what is to be stored.
QByteArray BeginAdding(ProgramRun &program, const ProductCopy &product, const CrashRow &row)
{
    Expect(program, {u"trigger acSelectAll"_s, u"pause 200"_s, u"trigger acFocusHighlight"_s, u"wait frmFocusEdit"_s,
                     u"wait-page ebContentFocus"_s, u"clear edNameFocus"_s, u"type edNameFocus "_s + row.Title('k')});
    QFile excerpt(product.File(u"tmpfocus.html"_s));
    EXPECT_TRUE(excerpt.open(QIODevice::ReadOnly));
    return DigestOf(excerpt.readAll());
}

TEST(CrashOfTheProgram, AKillLosesNoMarkWhoseOKWasAcknowledged)
{
    const int kills = Amount("LUMIVARA_KILLS", 4);
    constexpr quint32 longestDelayMicroseconds = 25000;
    const ProductCopy product;
    MakeMarks(product.Folder(), false);
    QRandomGenerator random(static_cast<quint32>(kills));
    Ledger ledger('k');
    int inside = 0;
    for (int round = 1; round <= kills && !testing::Test::HasFailure(); ++round) {
        ProgramRun program(product);
        program.Open();
        Expect(program, {u"select-row 1101"_s, u"wait-page ebContent"_s});
        QByteArray said;
        for (const qint64 id : {2 * round, 2 * round + 1}) {
            ledger.digests[id] = BeginAdding(program, product, {id, 0});
            Expect(program, {u"trigger acOK"_s}); // answered just before the handler runs
            said += "begin a " + QByteArray::number(id) + " 0\n";
            // The driver takes commands in turn: the next one is answered when the handler has returned.
            if (id % 2 == 0)
                Expect(program, {u"pause 0"_s, u"wait-gone frmFocusEdit"_s});
            if (id % 2 == 0 || program.KillAfter(random.bounded(longestDelayMicroseconds), u"pause 0"_s))
                said += "end\n";
        }
        ledger.Hear(said);
        inside += ledger.IsPending() ? 1 : 0;
        const auto stored = ReadStored(product.Folder());
        EXPECT_TRUE(stored.has_value());
        ledger.Prove(stored.value_or(StoredRows()));
    }
    std::printf("%d of %d kills inside an operation\n", inside, kills);
    EXPECT_GE(inside, 0.3 * kills);
}

} // namespace
