#pragma once

#include <QByteArray>
#include <QString>

/// One command of the start list as a desktop entry of the autostart folder. No disk.
/// The command is what Windows keeps in its list: a path in double quotes, or a command line; empty switches it off.
struct AutostartEntry
{
    QString command;
    bool isExpandable = false;
    /// Full path of the installed program that starts the command's program in its stead, and without which nothing
    /// starts; empty where the command runs as it is.
    QString launcher;
};

/// The text of the entry's file. The desktop runs the command at log-in; an empty one is hidden from it.
QByteArray AutostartFileOf(const QString &name, const AutostartEntry &entry);

/// The file that names the launcher of a command's program; empty unless the command is a full path in double quotes.
/// It stands beside the program, and its only line is the launcher's path.
QString LauncherNoteOf(const QString &command);
/// The launcher that such a file names; empty if it names none.
QString ReadLauncherNote(const QByteArray &bytes);

/// What a file says, also one that another program wrote: the command exactly as it was handed to AutostartFileOf as
/// long as the file still runs that, else its own Exec line; empty when the file is switched off or is no desktop
/// entry.
AutostartEntry ReadAutostartFile(const QByteArray &bytes);
