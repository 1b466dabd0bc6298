#include "stores/settings/AutostartEntry.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

/// The value of a line; "(none)" without one.
QByteArray Line(const QByteArray &file, const QByteArray &key)
{
    const qsizetype at = file.indexOf('\n' + key + '=') + key.size() + 2;
    return file.contains('\n' + key + '=') ? file.mid(at, file.indexOf('\n', at) - at) : "(none)"_ba;
}

TEST(AutostartFile, RunsTheFileBetweenTheQuotes)
{
    const std::pair<QString, QByteArray> cases[]{
        {u"\"/opt/a b/L\""_s, "\"/opt/a b/L\""},
        {u"\"/opt/50%/L\""_s, "\"/opt/50%%/L\""},
        // A backslash for the argument, and each of them once more for the line.
        {u"\"/a\"b$c/L\""_s, "\"/a\\\\\"b\\\\$c/L\""},
        {u"\"/a\\b\""_s, "\"/a\\\\\\\\b\""},
        {u"/opt/L --quiet"_s, "\"/opt/L\" \"--quiet\""}};
    for (const auto &[command, exec] : cases)
        EXPECT_EQ(Line(AutostartFileOf(u"Kelora"_s, {command, false, {}}), "Exec"), exec);

    const QByteArray hidden = AutostartFileOf(u"Kelora"_s, {QString(), false, {}});
    EXPECT_EQ(Line(hidden, "Hidden"), "true");
    EXPECT_EQ(Line(hidden, "Exec"), "(none)");
    EXPECT_TRUE(ReadAutostartFile(hidden).command.isEmpty());
}

TEST(AutostartFile, LauncherStandsInANoteBesideTheProgram)
{
    EXPECT_EQ(LauncherNoteOf(u"\"/home/a \"b/L\""_s), u"/home/a \"b/launcher"_s);
    for (const QString &command : {u"/opt/L"_s, u"\"L\""_s, u"\"C:\\L.exe\""_s, QString()})
        EXPECT_EQ(LauncherNoteOf(command), QString()) << command.toStdString();
    EXPECT_EQ(ReadLauncherNote("/usr/bin/lumivara\n"), u"/usr/bin/lumivara"_s);
    for (const char *note : {"", "\n", "lumivara", "/usr/bin/lumivara\nHidden=true\n"})
        EXPECT_EQ(ReadLauncherNote(note), QString()) << note;
}

TEST(AutostartFile, OfOthersIsReadSensibly)
{
    const std::pair<QByteArray, QString> rows[]{
        {"[Desktop Entry]\nExec=/opt/L %U\n", u"/opt/L"_s},
        {"[Desktop Entry]\r\n Exec = /opt/L \r\n", u"/opt/L"_s},
        {"[Desktop Entry]\nExec=\"/a\\\\\"b\\\\$c/50%%/L\"\n", u"\"/a\"b$c/50%/L\""_s},
        {"[Desktop Action x]\nExec=/no\n[Desktop Entry]\nExec=/yes\n[X]\nExec=/no\n", u"/yes"_s},
        {"[Desktop Entry]\nExec=/opt/L\nHidden=true\n", {}},
        {"[Desktop Entry]\nExec=/opt/L\nX-GNOME-Autostart-enabled=false\n", {}},
        {"[Desktop Entry]\nTryExec=/usr/bin/l\nExec=/new\nX-Lumivara-Command=/old\n", u"/new"_s},
        {"Exec=/opt/L\n", {}},
        {"[Desktop Entry]\nExec=\"a\\", u"\"a\\"_s}};
    for (const auto &[file, command] : rows)
        EXPECT_EQ(ReadAutostartFile(file).command, command) << file.constData();
}

} // namespace
