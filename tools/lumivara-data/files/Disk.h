#pragma once

#include <QString>

/// What the file system is asked for by name in folders that other users may write: nothing here follows a link that
/// stands in the place of the thing itself, and modes are set by descriptor.

/// Waits until a folder's names are on the disk; where it can't be done the system does so later.
void BringNamesToDisk(const QString &folder);
/// Brings a finished file's bytes to the disk, and gives it the mode, and where possible the owner and the group, of
/// the file at `replaced`; if that is none, or a link, what the umask leaves of reading and writing for all. False,
/// with errno, if it can't be done.
bool SettleFile(const QString &path, const QString &replaced);
/// The same for the mode of a finished folder.
bool SettleFolder(const QString &path, const QString &replaced);
/// Makes a folder in one that several users may write: they may then write the new one, too. True if it exists already,
/// also as a link of the caller's own or of root's; false, with errno, for another user's link.
bool MakeSharedFolder(const QString &path);
/// Renames; false, with errno, if the new name is taken.
bool RenameToNew(const QString &from, const QString &to);
/// Gives a file a second name, over one that has it; where the file system can't, the file loses the first one. False,
/// with errno, if neither can be done.
bool KeepUnder(const QString &path, const QString &name);
/// Lets two folders change names in one step. False where the file system can't.
bool ExchangeFolders(const QString &a, const QString &b);
