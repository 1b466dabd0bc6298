#include "crash/CrashRun.h"
#include "program/ProgramRun.h"

#include <QCoreApplication>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

/// Takes the real program to the brink of storing a mark; the digest of what is to be stored.
QByteArray BeginAdding(ProgramRun &program, const ProductCopy &product, const CrashRow &row)
{
    program.Do({u"trigger acSelectAll"_s, u"trigger acFocusHighlight"_s, u"wait frmFocusEdit"_s,
                u"wait-page ebContentFocus"_s, u"clear edNameFocus"_s, u"type edNameFocus "_s + row.Title('k')});
    QFile excerpt(product.File(u"tmpfocus.html"_s));
    EXPECT_TRUE(excerpt.open(QIODevice::ReadOnly));
    return DigestOf(excerpt.readAll());
}

TEST(CrashOfTheProgram, AKillLosesNoMarkWhoseOKWasAcknowledged)
{
    const int kills = Amount("LUMIVARA_KILLS", 4);
    const ProductCopy product;
    MakeMarks(product.Folder(), false);
    Ledger ledger('k');
    int writes = 1, inside = 0;
    for (int round = 0; round < kills && !testing::Test::HasFailure(); ++round) {
        SCOPED_TRACE(round);
        ProgramRun program(product);
        program.environment.insert(u"LD_PRELOAD"_s, QCoreApplication::applicationDirPath() + u"/libdie_at_write.so"_s);
        program.environment.insert(u"ASAN_OPTIONS"_s,
                                   program.environment.value(u"ASAN_OPTIONS"_s) + u":verify_asan_link_order=0"_s);
        program.Open();
        program.Do({u"select-row 1101"_s, u"wait-page ebContent"_s});
        QByteArray said;
        for (const bool isToDie : {false, true}) {
            const CrashRow row{2 * round + (isToDie ? 1 : 0), 0};
            ledger.digests[row.id] = BeginAdding(program, product, row);
            // The kills are spread evenly over the writes of one OK.
            const int deadly = isToDie ? 1 + round * writes / kills : 0;
            EXPECT_FALSE(program.Send(u"die-at-write %1"_s.arg(deadly)).startsWith(u"error"_s));
            said += "begin a " + QByteArray::number(row.id) + " 0\n";
            // Answered just before the handler runs; the next command is answered when that has returned.
            program.Do({u"trigger acOK"_s});
            const bool isDone = program.Send(u"wait-gone frmFocusEdit"_s).isEmpty();
            EXPECT_TRUE(isDone || isToDie);
            said += isDone ? "end\n" : "";
            if (!isToDie)
                writes = std::max(1, program.Send(u"die-at-write 0"_s).toInt());
        }
        ledger.Hear(said);
        inside += ledger.IsPending() ? 1 : 0;
        const auto stored = ReadStored(product.Folder());
        EXPECT_TRUE(stored.has_value());
        ledger.Prove(stored.value_or(StoredRows()));
    }
    EXPECT_GT(inside, 0) << "an OK writes once at least";
}

} // namespace
