#include "support/SkinSupport.h"
#include "support/TestSupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <array>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// An installed tree with scripts for programs, and a home beside it. The scripts tell which file runs.
class Installed : public testing::Test
{
protected:
    void SetUp() override
    {
        if (::getuid() == 0)
            GTEST_SKIP() << "the launcher refuses root";
        QDir().mkpath(At(u"bin"_s));
        QFile::copy(QCoreApplication::applicationDirPath() + u"/packaging/lumivara"_s, At(u"bin/lumivara"_s));
        QFile::link(u"lumivara"_s, At(u"bin/lumivara-data"_s));
        Put(Program(u"Lumivara"_s), Script + "# 1\n");
        Put(Program(u"lumivara-data"_s), Script);
        Put(Program(u"first-settings"_s), "#!/bin/sh\n[ -e \"$1/KELORA.FDB\" ] && echo settings\n");
        for (const QString &name : {u"firebird/firebird.conf"_s, u"libfbclient.so.2"_s})
            Put(Program(name), "1");
        for (const QString &name : {u"KELORA.FDB"_s, u"TARUNECLIENT.FDB"_s, u"English.lng"_s})
            Put(Data(name), "1");
        for (const QString &variable : {u"XDG_DATA_HOME"_s, u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s})
            environment.remove(variable);
        environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
        environment.insert(u"HOME"_s, Home());
    }

    struct Run
    {
        int code;
        QString output, errors;
    };
    void Begin(QProcess &process, const QString &program, const QStringList &arguments = {}) const
    {
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
    }
    Run Launch(const QString &name = u"lumivara"_s, const QStringList &arguments = {}) const
    {
        QProcess process;
        Begin(process, At(u"bin/"_s + name), arguments);
        EXPECT_TRUE(process.waitForFinished());
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    /// A path of the installed tree, of the home, of the user's program folder.
    QString At(const QString &path) const { return m_scratch.Path(u"usr dir/"_s + path); }
    QString Program(const QString &name) const { return At(u"lib/lumivara/"_s + name); }
    QString Data(const QString &name) const { return At(u"share/lumivara/"_s + name); }
    QString Home() const { return m_scratch.Path(u"Người đọc 1"_s); }
    QString Own(const QString &name = {}) const { return Home() + u"/.local/share/lumivara/Lumivara/"_s + name; }

    static QStringList NamesIn(const QString &folder)
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    static void Put(const QString &path, const QByteArray &bytes)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile::remove(path);
        EXPECT_TRUE(WriteBytes(path, bytes)) << qPrintable(path);
        QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner);
    }
    QByteArray Read(const QString &name) const
    {
        QFile file(Own(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : "(missing)";
    }

    static inline const QByteArray Script = "#!/bin/sh\necho \"$0\" \"$@\"\nexit 7\n";
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();

private:
    ScratchFolder m_scratch;
};

TEST_F(Installed, FirstStartMakesTheFolderAndTheSettings)
{
    const Run run = Launch(u"lumivara"_s, {u"--argument"_s});
    EXPECT_EQ(run.code, 7);
    EXPECT_EQ(run.output + run.errors, u"settings\n"_s + Own(u"Lumivara\n"_s));
    EXPECT_EQ(Read(u"launcher"_s), At(u"bin/lumivara\n"_s).toUtf8());
    QString names; // links are marked
    for (const QString &name : NamesIn(Own()))
        names += name + (QFileInfo(Own(name)).isSymLink() ? u"* "_s : u" "_s);
    EXPECT_EQ(names, u"English.lng* KELORA.FDB* Lumivara TARUNECLIENT.FDB firebird* launcher libfbclient.so.2* "
                     "lumivara-data "_s);
    EXPECT_EQ(QFileInfo(Own(u"KELORA.FDB"_s)).symLinkTarget(), Data(u"KELORA.FDB"_s));
}

TEST_F(Installed, ManyFirstStartsAtOnceMakeOneFolder)
{
    std::array<QProcess, 8> starts;
    for (QProcess &start : starts)
        Begin(start, At(u"bin/lumivara"_s));
    for (QProcess &start : starts)
        EXPECT_TRUE(start.waitForFinished() && start.exitCode() == 7) << start.readAllStandardError().constData();
    EXPECT_EQ(NamesIn(Own(u".."_s)), QStringList{u"Lumivara"_s});
    EXPECT_EQ(NamesIn(Own()).size(), 8);
}

TEST_F(Installed, UpdateRenewsWhatIsThePackagesAndKeepsWhatIsTheUsers)
{
    EXPECT_EQ(Launch(u"lumivara-data"_s).code, 7);
    Put(Own(u"TARUNECLIENT.FDB"_s), "marks");
    Put(Own(u"KELORA.FDB"_s), "own canon");
    Put(Own(u"Mine.lng"_s), "own language");
    QFile::remove(Own(u"libfbclient.so.2"_s));
    QFile::link(u"/nowhere/lib/lumivara/libfbclient.so.2"_s, Own(u"libfbclient.so.2"_s));

    Put(Program(u"Lumivara"_s), Script + "# 2\n");
    Put(Data(u"Pali.lng"_s), "new");
    Put(Data(u"TARUNECLIENT.FDB"_s), "2");
    Put(Data(u"KELORA.FDB"_s), "2");
    QFile::remove(Data(u"English.lng"_s));
    const Run run = Launch(u"lumivara-data"_s, {u"export"_s, u"a b"_s});
    EXPECT_EQ(run.output, Own(u"lumivara-data export a b\n"_s));
    EXPECT_TRUE(run.errors.endsWith(u"as your own: KELORA.FDB\n"_s)) << qPrintable(run.errors);

    QByteArrayList contents;
    for (const QString &name : {u"Lumivara"_s, u"TARUNECLIENT.FDB"_s, u"KELORA.FDB"_s, u"Mine.lng"_s, u"Pali.lng"_s})
        contents.append(Read(name));
    EXPECT_EQ(contents, (QByteArrayList{Script + "# 2\n", "marks", "own canon", "own language", "new"}));
    EXPECT_FALSE(QFileInfo(Own(u"English.lng"_s)).isSymLink());
    EXPECT_EQ(QFileInfo(Own(u"libfbclient.so.2"_s)).symLinkTarget(), Program(u"libfbclient.so.2"_s));

    // Said once; and an own file that goes makes room for the package's.
    QFile::remove(Own(u"KELORA.FDB"_s));
    EXPECT_EQ(Launch(u"lumivara-data"_s).errors, QString());
    EXPECT_EQ(Read(u"KELORA.FDB"_s), "2");
}

TEST_F(Installed, AUsersOwnLinkStaysWhereverItLeads)
{
    EXPECT_EQ(Launch(u"lumivara-data"_s).code, 7);
    const QString elsewhere = Home() + u"/share/lumivara/"_s;
    Put(elsewhere + u"KELORA.FDB"_s, "own canon");
    const QString before = u"/opt/before"_s;
    Put(Own(u"launcher"_s), (before + u"/bin/lumivara\n"_s).toUtf8());
    const std::tuple<QString, QString, QString> links[]{
        {u"KELORA.FDB"_s, elsewhere + u"KELORA.FDB"_s, elsewhere + u"KELORA.FDB"_s},
        {u"Stick.lng"_s, u"/media/stick/share/lumivara/Stick.lng"_s, u"/media/stick/share/lumivara/Stick.lng"_s},
        {u"Mine.lng"_s, Data(u"Gone.lng"_s), Data(u"Gone.lng"_s)},
        {u"Gone.lng"_s, Data(u"Gone.lng"_s), QString()},
        {u"Older.lng"_s, before + u"/share/lumivara/Older.lng"_s, QString()},
        {u"firebird"_s, before + u"/lib/lumivara/firebird"_s, Program(u"firebird"_s)}};
    for (const auto &[name, target, after] : links) {
        QFile::remove(Own(name));
        QFile::link(target, Own(name));
    }
    EXPECT_EQ(Launch(u"lumivara-data"_s).errors, QString());
    for (const auto &[name, target, after] : links)
        EXPECT_EQ(QFileInfo(Own(name)).symLinkTarget(), after) << qPrintable(name);
}

/// As on a stick or a share: neither links nor modes.
TEST_F(Installed, FirstSettingsAreWrittenWhereThereAreNoHardLinks)
{
    for (const QString &command : {u"ln"_s, u"chmod"_s})
        Put(At(u"poor/"_s + command), "#!/bin/sh\nexit 1\n");
    environment.insert(u"PATH"_s, At(u"poor:"_s) + environment.value(u"PATH"_s));
    environment.insert(u"XDG_CONFIG_HOME"_s, Home());
    const QString settings = Home() + u"/lumivara/registry.json"_s;
    const auto write = [&] {
        QProcess script;
        Begin(script, QCoreApplication::applicationDirPath() + u"/packaging/first-settings"_s, {Home()});
        return script.waitForFinished() ? script.exitCode() : -1;
    };
    EXPECT_EQ(write(), 0);
    EXPECT_TRUE(QFileInfo(settings).size() > 100);
    EXPECT_EQ(NamesIn(Home() + u"/lumivara"_s), QStringList{u"registry.json"_s});
    Put(settings, "mine");
    EXPECT_EQ(write(), 0);
    EXPECT_EQ(QFileInfo(settings).size(), 4);
}

TEST_F(Installed, HelpOfAToolAndWhatClearsTheFolderMakeNone)
{
    for (const QStringList &arguments : {QStringList{u"check"_s, u"--help"_s}, QStringList{u"forget-me"_s, u"--yes"_s}})
        EXPECT_EQ(Launch(u"lumivara-data"_s, arguments).output,
                  Program(u"lumivara-data "_s) + arguments.join(u' ') + u'\n');
    EXPECT_FALSE(QFileInfo::exists(Home()));
}

/// Killed at any of its steps a first start leaves no folder, and the next start finds its way.
TEST_F(Installed, FirstStartsThatAreKilledLeaveNothingHalf)
{
    // In front of the commands that change something stands a script that kills the launcher at one of them, and a
    // copy in the middle.
    for (const QString &command : {u"mkdir"_s, u"cp"_s, u"ln"_s, u"mv"_s, u"chmod"_s})
        Put(At(u"cut/"_s + command), "#!/bin/sh\necho >>\"$STEPS\"\nif [ $(wc -l <\"$STEPS\") -eq $LAST ]; then\n"
                                     "[ ${0##*/} = cp ] && head -c 9 \"$3\" >\"$4\"\nkill -KILL 0\nfi\n"
                                     "PATH=${PATH#*:}\nexec ${0##*/} \"$@\"\n");
    environment.insert(u"PATH"_s, At(u"cut:"_s) + environment.value(u"PATH"_s));
    environment.insert(u"STEPS"_s, At(u"steps"_s));
    int steps = 0;
    for (bool isCut = true; isCut; ++steps) {
        Put(At(u"steps"_s), "");
        environment.insert(u"LAST"_s, QString::number(steps + 1));
        QProcess start;
        Begin(start, u"setsid"_s, {At(u"bin/lumivara-data"_s)}); // a group of its own
        EXPECT_TRUE(start.waitForFinished());
        isCut = start.exitStatus() == QProcess::CrashExit;
        EXPECT_EQ(QFileInfo::exists(Own()), !isCut) << steps;
    }
    EXPECT_GT(steps, 10);
    EXPECT_EQ(NamesIn(Own()).size(), 8);
    EXPECT_EQ(QDir(Own(u".."_s)).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList{u"Lumivara"_s});
}

TEST_F(Installed, PlaceThatCannotBeUsedIsNamed)
{
    Put(Home() + u"/file"_s, "");
    Put(Home() + u"/taken/lumivara/Lumivara"_s, "");
    // A relative folder is ignored.
    const std::tuple<QString, QString, QString> cases[]{{Home() + u"/file/data"_s, Home(), u"Not a directory"_s},
                                                        {Home() + u"/taken"_s, Home(), u"not a folder"_s},
                                                        {u"data"_s, QString(), u"no home folder"_s}};
    for (const auto &[dataHome, home, words] : cases) {
        environment.insert(u"XDG_DATA_HOME"_s, dataHome);
        environment.insert(u"HOME"_s, home);
        const Run run = Launch(u"lumivara-data"_s);
        EXPECT_TRUE(run.code == 2 && run.output.isEmpty() && run.errors.contains(words)) << qPrintable(run.errors);
    }
}

TEST_F(Installed, UpdateThatFailsLeavesTheOlderCopyRunning)
{
    EXPECT_EQ(Launch().code, 7);
    Put(Program(u"Lumivara"_s), Script + "# 2\n");
    QFile::setPermissions(Own(), QFile::ReadOwner | QFile::ExeOwner);
    const Run run = Launch();
    QFile::setPermissions(Own(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_TRUE(run.code == 7 && run.errors.contains(u"the older copy runs: "_s)) << qPrintable(run.errors);
    EXPECT_EQ(Read(u"Lumivara"_s), Script + "# 1\n");
}

} // namespace
