#include "crash/CrashRun.h"
#include "program/ProgramRun.h"

#include <QFile>
#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace {

/// The real program, driven through its windows, and killed at last.
class Life
{
public:
    Life(const ProductCopy &product, Ledger &ledger)
        : m_program(product), m_ledger(ledger), m_workFile(product.File(u"tmpfocus.html"_s))
    {
        m_program.Open();
        Expect({u"select-row 1101"_s, u"wait-page ebContent"_s});
    }

    /// Each takes the window to the brink of the change. Then Finish() or Kill().
    void BeginAdding(const CrashRow &row)
    {
        Expect({u"trigger acSelectAll"_s, u"pause 200"_s, u"trigger acFocusHighlight"_s, u"wait frmFocusEdit"_s,
                u"wait-page ebContentFocus"_s});
        QFile excerpt(m_workFile);
        EXPECT_TRUE(excerpt.open(QIODevice::ReadOnly));
        m_ledger.digests[row.id] = DigestOf(excerpt.readAll());
        Expect({u"clear edNameFocus"_s, u"type edNameFocus "_s + row.Title('k')});
        Prepare('a', row, u"trigger acOK"_s, u"frmFocusEdit"_s);
    }
    void BeginEditing(const CrashRow &old)
    {
        const CrashRow row{old.id, old.version + 1};
        Find(old);
        Expect({u"clear edTitleFocus"_s, u"type edTitleFocus "_s + row.Title('k')});
        Prepare('e', row, u"trigger DataSetPost1"_s, u"frmFocusHighlight"_s);
    }
    void BeginDeleting(const CrashRow &row)
    {
        Find(row);
        Expect({u"focus edTitleFocus"_s, u"trigger DataSetDelete1"_s, u"wait msgBox"_s});
        Prepare('d', row, u"answer yes"_s, u"frmFocusHighlight"_s);
    }

    /// Does it and waits until the handler has returned.
    void Finish()
    {
        Say(u"begin %1"_s.arg(m_what));
        Expect({m_command, Acknowledgement()});
        Say(u"end 0"_s);
        if (m_window == "frmFocusHighlight"_L1)
            Expect({u"close frmFocusHighlight"_s});
        Expect({u"wait-gone "_s + m_window});
    }
    /// Does it and kills the program so many microseconds later.
    void Kill(quint32 delay, KillCount &killCount)
    {
        Expect({m_command}); // answered just before the handler runs
        Say(u"begin %1"_s.arg(m_what));
        if (m_program.KillAfter(delay, Acknowledgement()))
            Say(u"end 0"_s);
        m_ledger.Hear(m_said);
        killCount.Count(m_ledger.Pending());
    }

private:
    void Expect(const QStringList &commands)
    {
        for (const QString &command : commands) {
            QString answer = m_program.Send(command);
            // Actions become enabled when the program is idle, which a busy machine puts off.
            for (int tries = 0; answer.contains(u"no enabled action"_s) && tries < 100; ++tries) {
                m_program.Send(u"pause 50"_s);
                answer = m_program.Send(command);
            }
            EXPECT_FALSE(answer.startsWith(u"error"_s)) << qPrintable(command + u": "_s + answer);
        }
    }
    void Find(const CrashRow &row)
    {
        Expect({u"trigger acOrganization"_s, u"wait frmFocusHighlight"_s, u"type edSearch "_s + row.Title('k'),
                u"pause 100"_s});
        EXPECT_EQ(m_program.Send(u"get edTitleFocus text"_s), row.Title('k'));
    }
    void Prepare(char kind, const CrashRow &row, const QString &command, const QString &window)
    {
        m_what = u"%1 %2 %3"_s.arg(QChar::fromLatin1(kind)).arg(row.id).arg(row.version);
        m_command = command;
        m_window = window;
    }
    /// The driver takes commands in turn, so this one is answered when the handler has returned. A delete goes on after
    /// its box has closed.
    QString Acknowledgement() const { return m_what.startsWith(u'd') ? u"wait-gone msgBox"_s : u"pause 0"_s; }
    void Say(const QString &line) { m_said += line.toUtf8() + ' ' + QByteArray::number(Microseconds()) + '\n'; }

    ProgramRun m_program;
    Ledger &m_ledger;
    QString m_workFile; ///< the excerpt, byte for byte as it is to be stored
    QByteArray m_said;
    QString m_what, m_command, m_window;
};

TEST(CrashOfTheProgram, AKillLosesNothingThatWasAcknowledged)
{
    const int kills = Amount("LUMIVARA_KILLS", 4);
    constexpr quint32 longestDelayMicroseconds = 25000;
    const ProductCopy product;
    MakeMarks(product.Folder(), false);
    QRandomGenerator random(static_cast<quint32>(kills));
    Ledger ledger('k');
    KillCount killCount;
    for (int round = 1; round <= kills && !testing::Test::HasFailure(); ++round) {
        const QList<CrashRow> before = ledger.Rows();
        Life life(product, ledger);
        const CrashRow first{2 * round, 0}, second{2 * round + 1, 0};
        life.BeginAdding(first);
        const quint32 dice = random.bounded(5U);
        if (dice > 0)
            life.Finish(); // else the killed one
        if (dice == 1)
            life.BeginAdding(second);
        else if (dice == 2 || (dice > 2 && before.isEmpty()))
            life.BeginEditing(first);
        else if (dice == 3)
            life.BeginEditing(before[random.bounded(static_cast<int>(before.size()))]);
        else if (dice == 4)
            life.BeginDeleting(before[random.bounded(static_cast<int>(before.size()))]);
        life.Kill(random.bounded(longestDelayMicroseconds), killCount);
        const auto stored = ReadStored(product.Folder());
        EXPECT_TRUE(stored.has_value());
        ledger.Prove(stored.value_or(StoredRows()));
    }
    killCount.Print();
    std::printf("%lld operations acknowledged by the program\n", static_cast<long long>(ledger.acknowledged));
    EXPECT_GE(killCount.InsideShare(), 0.3);
}

} // namespace
