#pragma once

#include <QString>

/// The folder of Firebird's lock files, which every user of the databases may write. So whatever stands in it may be
/// another user's trap: files are opened in the folder as it was first found, without following links, and their modes
/// are set by descriptor. Firebird itself opens them by path and sets modes and owners by path; its calls are led
/// through the same door once a folder is in use. Main thread only; for Firebird's own threads only the door.
namespace LockFolder {

enum class Users {
    All,    ///< made with mode 0777, set again if the folder is the caller's own
    Chosen, ///< like All if it has to be made; one that exists keeps its mode
    Self,   ///< mode 0700, and the caller's own
};

/// Makes the folder unless it exists. False if it can't be made or used, or is a link, a file, or, for Self, another
/// user's.
bool Make(const QString &folder, Users users);

/// Makes Firebird's opens of files in that folder safe from now on, and takes the fb* entries out of it that can't be
/// lock files: links, pipes. Also what killed processes have left there. Throws DatabaseError for what can't be taken
/// out, and for a lock file with a second name, which can only be removed while no program is using it.
void Guard(const QString &folder);

/// Opens the lock files to every user and allocates them in full. Throws DatabaseError when the disk is full.
void Settle(const QString &folder);

/// Throws DatabaseError if the disk has no room for Firebird's lock files.
void RequireRoom(const QString &folder);

} // namespace LockFolder
