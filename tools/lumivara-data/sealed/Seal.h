#pragma once

#include <QString>

/// Confines this process for the rest of its life, so that a database that takes over the engine reaches nothing: it
/// writes below `folder` alone, has no network and starts no program. What the kernel lacks is left out. The process
/// ends with its parent. REQUIRES: one thread.
void SealProcess(const QString &folder);

/// The memory that a process has in use, in bytes; 0 if it is unknown.
quint64 MemoryOf(qint64 process);
