#include "lumivara-data/canon/Renumbering.h"

#include "common/Tool.h"
#include "tools/ToolSupport.h"

using namespace Qt::StringLiterals;

namespace {

/// A canon and marks that are no databases: what is in them is their state.
class RenumberingSteps : public testing::Test
{
protected:
    /// Ends the work where it stands, as a kill does.
    struct Killed
    {};

    void SetUp() override
    {
        for (const QString &name : m_scratchNames)
            QFile::remove(m_scratch.Path(name));
        WriteFile(Canon(), "old canon");
        WriteFile(Marks(), "1 2 2 7");
        WriteFile(Renumbering(Canon()).NextPath(), "new canon");
    }
    QString Canon() const { return m_scratch.Path(u"K.FDB"_s); }
    QString Marks() const { return m_scratch.Path(u"M.FDB"_s); }
    Renumbering::Journal Journal() const { return {Marks(), true, {{1, 11}, {2, 12}}}; }
    void ChangeMarks(const Renumbering::Journal &journal)
    {
        ++m_changes;
        QByteArrayList keys = BytesOf(journal.marks).split(' ');
        for (QByteArray &key : keys)
            key = QByteArray::number(journal.keys.value(key.toInt(), key.toInt()));
        WriteFile(journal.marks, keys.join(' '));
    }
    /// The next run; false if there was nothing to do.
    bool RunAgain(const Renumbering::StepDoor &door = [] {})
    {
        Renumbering again(Canon(), door);
        if (!again.IsUnfinished())
            return false;
        const auto found = again.Found();
        if (found)
            again.GoOn(*found, [this](const auto &journal) { ChangeMarks(journal); });
        else
            again.TakeBack();
        return true;
    }
    QStringList Files() const { return QDir(m_scratch.Path(u""_s)).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
    std::string Bytes(const QString &path) const { return BytesOf(path).toStdString(); }

    const QStringList m_scratchNames{u"K.FDB"_s,           u"M.FDB"_s,      u"K.FDB.before"_s,
                                     u"M.FDB.before"_s,    u"K.FDB.next"_s, u"K.FDB.renumbering"_s,
                                     u"K.FDB.renumbered"_s};
    ScratchFolder m_scratch;
    int m_changes = 0;
};

TEST_F(RenumberingSteps, AKillAtEachStepLeavesWhatTheNextRunEnds)
{
    int wholes = 0, takenBack = 0, kills = 0;
    // Kills at the n-th step, and then again at each step of the run that follows, until no step is left to kill.
    for (int first = 1;; ++first) {
        int passed = 0;
        for (int second = 1;; ++second) {
            SetUp();
            passed = 0;
            bool isKilled = false;
            try {
                Renumbering(Canon(), [&] {
                    if (++passed == first)
                        throw Killed();
                }).Run(Journal(), [this](const auto &journal) { ChangeMarks(journal); });
            } catch (const Killed &) {
                isKilled = true;
                ++kills;
            }
            EXPECT_TRUE(QFileInfo::exists(Canon())) << "the program has always one to open";
            int again = 0;
            bool isKilledAgain = false;
            try {
                RunAgain([&] {
                    if (++again == second)
                        throw Killed();
                });
            } catch (const Killed &) {
                isKilledAgain = true;
            }
            RunAgain();
            EXPECT_FALSE(RunAgain()) << first << ' ' << second;
            const bool isWhole = Bytes(Canon()) == "new canon";
            EXPECT_EQ(Bytes(Marks()), isWhole ? "11 12 12 7" : "1 2 2 7") << first << ' ' << second;
            if (isWhole) {
                EXPECT_EQ(Bytes(Canon() + u".before"_s), "old canon");
                EXPECT_EQ(Bytes(Marks() + u".before"_s), "1 2 2 7");
                EXPECT_EQ(Files(), (QStringList{u"K.FDB"_s, u"K.FDB.before"_s, u"K.FDB.renumbered"_s, u"M.FDB"_s,
                                                u"M.FDB.before"_s}));
            } else {
                EXPECT_EQ(Bytes(Canon()), "old canon");
                EXPECT_FALSE(Files().contains(u"K.FDB.next"_s));
            }
            (isWhole ? wholes : takenBack) += 1;
            if (!isKilledAgain || !isKilled)
                break;
        }
        if (passed < first)
            break;
    }
    EXPECT_GE(takenBack, 2) << "before the journal";
    EXPECT_GE(wholes, 10) << "behind it";
    EXPECT_GE(kills, 12);
    EXPECT_GT(m_changes, wholes) << "marks are changed again where nobody knows whether they were";
}

TEST_F(RenumberingSteps, MarksThatCannotBeChangedTakeAllBack)
{
    const auto fail = [](const Renumbering::Journal &) { throw ToolError(u"is locked"_s); };
    EXPECT_THROW(Renumbering(Canon()).Run(Journal(), fail), ToolError);
    EXPECT_EQ(Bytes(Canon()), "old canon");
    EXPECT_EQ(Bytes(Marks()), "1 2 2 7");
    EXPECT_FALSE(Renumbering(Canon()).IsUnfinished());
}

TEST_F(RenumberingSteps, AJournalComesBackAsItWasWrittenAndNonsenseIsRefused)
{
    const auto die = [](const Renumbering::Journal &) { throw Killed(); };
    EXPECT_THROW(Renumbering(Canon()).Run(Journal(), die), Killed);
    const auto found = Renumbering(Canon()).Found();
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->marks, Marks());
    EXPECT_TRUE(found->keepsNames);
    EXPECT_EQ(found->keys, Journal().keys);
    WriteFile(Canon() + u".renumbering"_s, "{}");
    EXPECT_THROW(Renumbering(Canon()).Found(), ToolError);
}

} // namespace
