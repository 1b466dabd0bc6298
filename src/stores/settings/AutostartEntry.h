#pragma once

#include <QByteArray>
#include <QString>

/// One command of the start list as a desktop entry of the autostart folder. Does not access the disk.
/// The command is as in Windows' list: a path in double quotes, or a command line; empty switches it off.
struct AutostartEntry
{
    QString command;
    bool isExpandable = false;
    /// Full path of the launcher that is started instead of the command, and without which nothing starts; empty if the
    /// command itself runs.
    QString launcher;
};

/// The text of the entry's file. The desktop runs the command at log-in; an empty one is hidden from it.
QByteArray AutostartFileOf(const QString &name, const AutostartEntry &entry);

/// The file that names the launcher of a command's program; empty unless the command is a full path in double quotes.
/// The file is beside the program, and its only line is the launcher's path.
QString LauncherNoteOf(const QString &command);
/// The launcher that such a file names; empty if it names none.
QString ReadLauncherNote(const QByteArray &bytes);

/// The entry in a file, even one that another program wrote: the command exactly as passed to AutostartFileOf as long
/// as the file still runs that, else its Exec line; empty if the file is switched off or not a desktop entry.
AutostartEntry ReadAutostartFile(const QByteArray &bytes);
