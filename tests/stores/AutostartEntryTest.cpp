#include "stores/AutostartEntry.h"

#include <gmock/gmock.h>

#include <QStringList>

#include <string>

namespace {

QByteArray Line(const QByteArray &file, const QByteArray &key)
{
    const QList<QByteArray> lines = file.split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(key + '='))
            return line.mid(key.size() + 1);
    }
    return QByteArrayLiteral("(none)");
}

TEST(AutostartFile, GivesTheCommandBackExactly)
{
    const QStringList commands{QStringLiteral("\"/opt/Lumivara/Lumivara\""),
                               QStringLiteral("\"/home/a b/Kinh điển/Lumivara\""),
                               QStringLiteral("\"/tmp/a\"b'c`d$e\\f%g/Lumivara\""),
                               QStringLiteral("/opt/Lumivara/Lumivara"),
                               QStringLiteral("  \"x\" --y  "),
                               QStringLiteral("\"C:\\Program Files\\Lumivara.exe\""),
                               QStringLiteral("a\nb\r\tc=d;[e]#"),
                               QStringLiteral("%41%%"),
                               QStringLiteral("\""),
                               QStringLiteral("\"\"")};
    for (const QString &command : commands) {
        for (const QString &launcher :
             {QString(), QStringLiteral("/usr/bin/lumivara"), QStringLiteral("/a\\b 50%\"/l")}) {
            const AutostartEntry entry =
                ReadAutostartFile(AutostartFileOf(QStringLiteral("Kelora"), {command, false, launcher}));
            EXPECT_EQ(entry.command, command) << command.toStdString();
            EXPECT_EQ(entry.launcher, launcher) << command.toStdString();
            EXPECT_FALSE(entry.isExpandable);
        }
    }
    EXPECT_TRUE(ReadAutostartFile(AutostartFileOf(QStringLiteral("K"), {QStringLiteral("x"), true, {}})).isExpandable);
}

TEST(AutostartFile, RunsTheFileBetweenTheQuotes)
{
    const struct
    {
        QString command;
        QByteArray exec;
    } cases[] = {{QStringLiteral("\"/opt/a b/L\""), "\"/opt/a b/L\""},
                 {QStringLiteral("\"/opt/50%/L\""), "\"/opt/50%%/L\""},
                 // A backslash for the argument, and each of them once more for the line.
                 {QStringLiteral("\"/a\"b$c/L\""), "\"/a\\\\\"b\\\\$c/L\""},
                 {QStringLiteral("\"/a\\b\""), "\"/a\\\\\\\\b\""},
                 {QStringLiteral("/opt/L --quiet"), "\"/opt/L\" \"--quiet\""}};
    for (const auto &row : cases)
        EXPECT_EQ(Line(AutostartFileOf(QStringLiteral("Kelora"), {row.command, false, {}}), "Exec"), row.exec);

    const QByteArray packaged = AutostartFileOf(QStringLiteral("Kelora"),
                                                {QStringLiteral("\"/home/u/L\""), false, QStringLiteral("/usr/bin/l")});
    EXPECT_EQ(Line(packaged, "TryExec"), "/usr/bin/l");
    EXPECT_EQ(Line(packaged, "Exec"), "\"/usr/bin/l\"");
}

TEST(AutostartFile, LauncherStandsInANoteBesideTheProgram)
{
    EXPECT_EQ(LauncherNoteOf(QStringLiteral("\"/home/a \"b/L\"")), QStringLiteral("/home/a \"b/launcher"));
    for (const QString &command :
         {QStringLiteral("/opt/L"), QStringLiteral("\"L\""), QStringLiteral("\"C:\\L.exe\""), QString()})
        EXPECT_EQ(LauncherNoteOf(command), QString()) << command.toStdString();
    EXPECT_EQ(ReadLauncherNote("/usr/bin/lumivara\n"), QStringLiteral("/usr/bin/lumivara"));
    for (const char *note : {"", "\n", "lumivara", "/usr/bin/lumivara\nHidden=true\n"})
        EXPECT_EQ(ReadLauncherNote(note), QString()) << note;
}

TEST(AutostartFile, OfAnEmptyCommandIsHiddenAndStartsNothing)
{
    const QByteArray file = AutostartFileOf(QStringLiteral("Kelora"), {QString(), false, {}});
    EXPECT_EQ(Line(file, "Hidden"), "true");
    EXPECT_EQ(Line(file, "Exec"), "(none)");
    EXPECT_TRUE(ReadAutostartFile(file).command.isEmpty());
}

struct ForeignCase
{
    const char *rule;
    QByteArray file;
    QString command;
};

class ForeignTable : public testing::TestWithParam<ForeignCase>
{};

TEST_P(ForeignTable, IsReadSensibly)
{
    EXPECT_EQ(ReadAutostartFile(GetParam().file).command, GetParam().command);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, ForeignTable,
    testing::Values(
        ForeignCase{"PlainPath", "[Desktop Entry]\nExec=/opt/L\n", QStringLiteral("/opt/L")},
        ForeignCase{"QuotedPath", "[Desktop Entry]\nExec=\"/opt/a b/L\"\n", QStringLiteral("\"/opt/a b/L\"")},
        ForeignCase{"EscapesAreUndone", "[Desktop Entry]\nExec=\"/a\\\\\"b\\\\$c/50%%/L\"\n",
                    QStringLiteral("\"/a\"b$c/50%/L\"")},
        ForeignCase{"PlaceholdersGo", "[Desktop Entry]\nExec=/opt/L %U\n", QStringLiteral("/opt/L")},
        ForeignCase{"BlanksAndReturnsAroundCountNot", "[Desktop Entry]\r\n Exec = /opt/L \r\n",
                    QStringLiteral("/opt/L")},
        ForeignCase{"OtherGroupsCountNot", "[Desktop Action x]\nExec=/no\n[Desktop Entry]\nExec=/yes\n[X]\nExec=/no\n",
                    QStringLiteral("/yes")},
        ForeignCase{"CommentsCountNot", "[Desktop Entry]\n#Exec=/no\n", QString()},
        ForeignCase{"HiddenIsOff", "[Desktop Entry]\nExec=/opt/L\nHidden=true\n", QString()},
        ForeignCase{"SwitchedOffByTheDesktop", "[Desktop Entry]\nExec=/opt/L\nX-GNOME-Autostart-enabled=false\n",
                    QString()},
        ForeignCase{"ChangedExecWins", "[Desktop Entry]\nExec=/new\nX-Lumivara-Command=/old\n", QStringLiteral("/new")},
        ForeignCase{"ChangedExecWinsOverALauncher",
                    "[Desktop Entry]\nTryExec=/usr/bin/l\nExec=/new\nX-Lumivara-Command=/old\n",
                    QStringLiteral("/new")},
        ForeignCase{"NoGroup", "Exec=/opt/L\n", QString()}, ForeignCase{"Empty", "", QString()},
        ForeignCase{"Random", QByteArray("\0\xFF[\n=\n", 7), QString()},
        ForeignCase{"EndsInABackslash", "[Desktop Entry]\nExec=\"a\\", QStringLiteral("\"a\\")}),
    [](const auto &row) { return std::string(row.param.rule); });

} // namespace
