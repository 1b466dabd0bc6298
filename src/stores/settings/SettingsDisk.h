#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <chrono>
#include <memory>

/// The settings' door to the disk: the real one below, in tests one that fails at the n-th write. Paths are full.
/// Nothing throws; failures are returned with the system's message.
class SettingsDisk
{
public:
    enum class ReadResult { Read, Missing, Failed };

    /// Holds a lock until it is destroyed; the system releases it with the process, so none is ever left behind.
    class Lock
    {
    public:
        virtual ~Lock() = default;
    };

    virtual ~SettingsDisk() = default;

    /// The whole file; `bytes` stays as it was unless the result is Read.
    virtual ReadResult Read(const QString &path, QByteArray &bytes, QString &errorText) = 0;
    /// Whether a file of that name in an existing folder could be written now, by permission alone.
    virtual bool MayWrite(const QString &path, QString &errorText) = 0;
    /// Names of the plain files in a folder; none if there is no such folder.
    virtual QStringList FileNames(const QString &folder) = 0;

    /// Makes a folder and those above it; true if it exists already.
    virtual bool MakeFolder(const QString &folder, QString &errorText) = 0;
    /// Leaves the old or the new content, never a mixture, synced to the disk when it returns.
    virtual bool WriteAtomically(const QString &path, const QByteArray &bytes, QString &errorText) = 0;
    /// Never overwrites: false if `to` exists.
    virtual bool Rename(const QString &from, const QString &to, QString &errorText) = 0;

    /// Waits at most `patience` for other processes; null, with the reason, if the lock can't be taken.
    virtual std::unique_ptr<Lock> Acquire(const QString &lockFile, std::chrono::milliseconds patience,
                                          QString &errorText) = 0;
    virtual QDateTime Now() = 0;
};

/// The disk of this machine. Exists for the whole run.
SettingsDisk &RealSettingsDisk();
