#pragma once

#include <QString>

/// A backup ends with a line of ours, which Firebird does not read: the checksum (SHA-256) of all before it.
namespace BackupChecksum {

/// Adds the line. Throws ToolError.
void Append(const QString &backup);

enum class State { Right, Wrong, None };
/// Compares, and takes the line away. REQUIRES: a private copy. Throws ToolError.
State TakeOff(const QString &copy);

} // namespace BackupChecksum
