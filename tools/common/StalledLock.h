#pragma once

#include <QElapsedTimer>
#include <QString>

/// The database engine's lock file that some thread of this process is waiting for right now; empty if none is. The
/// engine waits without an end, and cannot be asked. Linux.
QString LockWaitedFor();

/// Notices a wait that lasts.
class StalledLock
{
public:
    /// Called several times a second. Gives the file once a wait has lasted five seconds, once for each wait.
    QString Look();

private:
    QString m_file;
    QElapsedTimer m_since;
    bool m_isTold = false;
};
