#pragma once

#include <QString>

/// How a finished file gets its name: made under another one, brought to the disk, renamed. So an interruption, be it a
/// power cut, leaves the old state or the new one. Failures are thrown as ToolError.

/// The other name.
QString UnfinishedName(const QString &path);
/// Removes what an interrupted run has left under a name.
void RemoveStale(const QString &path);
/// Brings a file's bytes to the disk and lets every user read it.
void Settle(const QString &path);
/// Renames over what has the name.
void Replace(const QString &from, const QString &to);
/// Renames and refuses, `from` being gone, if the name is taken.
void PutInPlace(const QString &from, const QString &to);
