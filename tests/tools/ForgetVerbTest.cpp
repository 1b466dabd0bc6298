#include "stores/AutostartEntry.h"
#include "support/TestSupport.h"
#include "tools/ToolSupport.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray StartFile(const QString &command)
{
    AutostartEntry entry;
    entry.command = command;
    return AutostartFileOf(u"Kelora"_s, entry);
}

/// A home in which the installed program has run.
class ForgetMe : public testing::Test
{
protected:
    void SetUp() override
    {
        OpenedDatabase(ProductFolder() + u"KELORA.FDB"_s); // makes the locks of this process
        EXPECT_TRUE(QDir().mkpath(Own(u""_s)));
        EXPECT_TRUE(QFile::link(qEnvironmentVariable("FIREBIRD_LOCK"), Own(u"lock"_s)));
        EXPECT_EQ(RunDataTool({u"build"_s, u"marks"_s, u"--out"_s, Own(u""_s)}).exitCode, 0);
        WriteFile(m_scratch.Path(u"usr/KELORA.FDB"_s), "installed");
        EXPECT_TRUE(QFile::link(m_scratch.Path(u"usr/KELORA.FDB"_s), Own(u"KELORA.FDB"_s)));
        EXPECT_TRUE(QFile::link(m_scratch.Path(u"usr"_s), Own(u"firebird"_s)));
        for (const QString &name :
             {u"Lumivara"_s, u"launcher"_s, u"Français.lng"_s, u"tmpfocus.html"_s, u"PALIDICT.FDB"_s,
              u"backup/TARUNECLIENT-2024-02-29.fbk"_s, u"my marks.csv"_s, u"TARUNECLIENT old.FDB"_s})
            WriteFile(Own(name), "x");
        WriteFile(m_scratch.Path(u"data/lumivara/.new-x1Y2z3/Lumivara"_s), "a first start cut off");
        for (const QString &name : {u"lumivara/registry.json"_s, u"lumivara/registry.lock"_s, u"other/registry.json"_s,
                                    u"lumivara/registry.damaged-20240229-000000.json"_s, u"autostart/other.desktop"_s})
            WriteFile(m_scratch.Path(u"config/"_s + name), "x");
        WriteFile(m_scratch.Path(u"cache/Lumivara 1.0/x"_s), "x");
        WriteFile(m_scratch.Path(u"cache/other/x"_s), "x");
    }
    QString Own(const QString &name) const { return m_scratch.Path(u"data/lumivara/Lumivara/"_s + name); }
    QString StartEntry() const { return m_scratch.Path(u"config/autostart/Kelora.desktop"_s); }
    /// What the tool asks is answered by `answer`.
    ToolRun Forget(const QStringList &more = {u"--yes"_s}, const QByteArray &answer = {}) const
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString &kind : {u"config"_s, u"data"_s, u"cache"_s})
            environment.insert(u"XDG_%1_HOME"_s.arg(kind.toUpper()), m_scratch.Path(kind));
        process.setProcessEnvironment(environment);
        process.start(ToolPath(), QStringList{u"forget-me"_s} + more);
        process.write(answer);
        process.closeWriteChannel();
        EXPECT_TRUE(process.waitForFinished());
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }
    QStringList Left() const
    {
        QStringList left;
        const QString root = m_scratch.Path(u""_s);
        for (QDirIterator files(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                QDirIterator::Subdirectories);
             files.hasNext();) {
            const QFileInfo file(files.next());
            if (!file.isDir() || file.isSymLink())
                left.append(QDir(root).relativeFilePath(file.filePath()));
        }
        left.sort();
        return left;
    }

    ScratchFolder m_scratch;
};

TEST_F(ForgetMe, RemovesWhatIsTheProgramsAndNothingElse)
{
    WriteFile(StartEntry(), StartFile(u'"' + Own(u"Lumivara"_s) + u'"'));
    const QStringList before = Left();
    for (const char *answer : {"", "y\n", "no\n"}) {
        const ToolRun asked = Forget({}, answer);
        EXPECT_EQ(asked.exitCode, 2);
        EXPECT_TRUE(asked.errors.contains(u"Type \"yes\""_s) && asked.errors.contains(u"nothing was removed"_s));
        EXPECT_EQ(Left(), before);
    }
    const ToolRun run = Forget({}, "yes\n");
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.errors);
    EXPECT_EQ(Left(), (QStringList{u"cache/other/x"_s, u"config/autostart/other.desktop"_s,
                                   u"config/other/registry.json"_s, u"data/lumivara/Lumivara/TARUNECLIENT old.FDB"_s,
                                   u"data/lumivara/Lumivara/TARUNECLIENT.FDB"_s,
                                   u"data/lumivara/Lumivara/backup/TARUNECLIENT-2024-02-29.fbk"_s,
                                   u"data/lumivara/Lumivara/my marks.csv"_s, u"usr/KELORA.FDB"_s}))
        << qPrintable(Left().join(u'\n'));
    EXPECT_FALSE(QDir(m_scratch.Path(u"config/lumivara"_s)).exists());
    EXPECT_TRUE(run.output.contains(Own(u"my marks.csv: is not the program's: kept\n"_s)));
    EXPECT_TRUE(run.output.endsWith(u"14 removed\n"_s)) << qPrintable(run.output);
}

TEST_F(ForgetMe, StartEntriesOfOthersStay)
{
    const std::pair<QByteArray, bool> cases[] = {
        {StartFile(u'"' + Own(u"Lumivara"_s) + u'"'), true},
        {StartFile(u"\"/gone/Lumivara\""_s), true},
        {StartFile({}), true},
        {StartFile(u"\"/bin/sh\""_s), false},
        {"[Desktop Entry]\nType=Application\nName=Kelora\nExec=\"/gone/kelora\"\n", false},
    };
    for (const auto &[bytes, goes] : cases) {
        WriteFile(StartEntry(), bytes);
        Forget();
        EXPECT_EQ(QFileInfo::exists(StartEntry()), !goes) << bytes.constData();
    }
}

TEST_F(ForgetMe, NothingGoesWhileTheMarksAreOpen)
{
    const QStringList before = Left();
    {
        OpenedDatabase program(Own(u"TARUNECLIENT.FDB"_s));
        const ToolRun run = Forget();
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_TRUE(run.errors.contains(u"is open"_s)) << qPrintable(run.errors);
        EXPECT_EQ(Left(), before);
        EXPECT_EQ(Forget({u"--yes"_s, u"--folder"_s, m_scratch.Path(u"usr"_s)}).exitCode, 2)
            << "no folder of the program";
        EXPECT_EQ(Left(), before);
    }
    EXPECT_EQ(Forget().exitCode, 0);
    EXPECT_NE(Left(), before);
}

} // namespace
