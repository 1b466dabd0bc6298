#include "stores/settings/AutostartEntry.h"
#include "tools/ToolSupport.h"

#include <QDirIterator>

using namespace Qt::StringLiterals;

namespace {

const QString Own = u"data/lumivara/Lumivara/"_s, StartEntry = u"config/autostart/Kelora.desktop"_s;

QByteArray StartFile(const QString &command)
{
    AutostartEntry entry;
    entry.command = command;
    return AutostartFileOf(u"Kelora"_s, entry);
}

/// A home in which the installed program has run.
class ForgetMe : public ToolTest
{
protected:
    void SetUp() override
    {
        for (const QString &name :
             {Own + u"Lumivara"_s, Own + u"launcher"_s, Own + u"Français.lng"_s, Own + u"tmpfocus.html"_s,
              Own + u"PALIDICT.FDB"_s, Own + u"backup/TARUNECLIENT-2024-02-29.fbk"_s, Own + u"my marks.csv"_s,
              Own + u"TARUNECLIENT old.FDB"_s, u"data/lumivara/.new-x1Y2z3/Lumivara"_s, u"usr/KELORA.FDB"_s,
              u"config/lumivara/registry.json"_s, u"config/lumivara/registry.lock"_s, u"config/other/registry.json"_s,
              u"config/lumivara/registry.damaged-20240229-000000.json"_s, u"config/autostart/other.desktop"_s,
              u"cache/Lumivara 1.0/x"_s, u"cache/other/x"_s})
            Put(name, "x");
        EXPECT_TRUE(QDir().mkpath(Path(Own + u"lock"_s)));
        EXPECT_TRUE(QFile::link(Path(u"usr/KELORA.FDB"_s), Path(Own + u"KELORA.FDB"_s)));
        EXPECT_TRUE(QFile::link(Path(u"usr"_s), Path(Own + u"firebird"_s)));
        Run(0, "build marks --out data/lumivara/Lumivara");
        m_environment = QProcess::systemEnvironment();
        for (const QString &kind : {u"config"_s, u"data"_s, u"cache"_s})
            m_environment.append(u"XDG_%1_HOME=%2"_s.arg(kind.toUpper(), Path(kind)));
    }
    /// Without the engine's lock files, which come and go with the look whether the marks are open.
    QStringList Left() const
    {
        QStringList left;
        for (QDirIterator files(Path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories); files.hasNext();)
            left.append(QDir(Path()).relativeFilePath(files.next()));
        left.removeIf([](const QString &name) { return name.startsWith(Own + u"lock/"_s); });
        left.sort();
        return left;
    }
};

TEST_F(ForgetMe, RemovesWhatIsTheProgramsAndNothingElse)
{
    Put(StartEntry, StartFile(u'"' + Path(Own + u"Lumivara\""_s)));
    const QStringList before = Left();
    for (const char *answer : {"", "y\n", "no\n"}) {
        ExpectParts(Run(2, "forget-me", {}, answer), {"Type \"yes\"", "nothing was removed"});
        EXPECT_EQ(Left(), before);
    }
    ExpectParts(Run(0, "forget-me", {}, "yes\n"), {"my marks.csv: is not the program's: kept\n", "14 removed\n"});
    EXPECT_EQ(Left(), (QStringList{u"cache/other/x"_s, u"config/autostart/other.desktop"_s,
                                   u"config/other/registry.json"_s, Own + u"TARUNECLIENT old.FDB"_s,
                                   Own + u"TARUNECLIENT.FDB"_s, Own + u"backup/TARUNECLIENT-2024-02-29.fbk"_s,
                                   Own + u"my marks.csv"_s, u"usr/KELORA.FDB"_s}))
        << qPrintable(Left().join(u'\n'));
    EXPECT_FALSE(Names(u"config"_s).contains(u"lumivara"_s));
}

TEST_F(ForgetMe, StartEntriesOfOthersStay)
{
    for (const auto &[bytes, goes] :
         {std::pair(StartFile(u"\"/gone/Lumivara\""_s), true),
          {StartFile({}), true},
          {StartFile(u"\"/bin/sh\""_s), false},
          {"[Desktop Entry]\nType=Application\nName=Kelora\nExec=\"/gone/kelora\"\n", false}}) {
        Put(StartEntry, bytes);
        Run(0, "forget-me --yes");
        EXPECT_EQ(QFile::exists(Path(StartEntry)), !goes) << bytes.constData();
    }
}

TEST_F(ForgetMe, NothingGoesWhileTheMarksAreOpen)
{
    const QStringList before = Left();
    const QString marks = LiveFolder() + u"/TARUNECLIENT.FDB"_s;
    QFile::remove(marks);
    EXPECT_TRUE(QFile::copy(Path(Own + u"TARUNECLIENT.FDB"_s), marks));
    OpenedDatabase program(marks);
    EXPECT_THAT(Run(2, "forget-me --yes --folder", {LiveFolder()}), testing::HasSubstr("is open"));
    Run(2, "forget-me --yes --folder usr"); // no folder of the program
    EXPECT_EQ(Left(), before);
}

} // namespace
