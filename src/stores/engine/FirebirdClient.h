#pragma once

#include "stores/engine/DatabaseError.h"

#include <QByteArrayView>
#include <QString>

#include <firebird/Interface.h>

#include <functional>

/// The status object passed to every Firebird call: a failing call throws DatabaseError with Firebird's own text.
class EngineStatus : public Firebird::BaseStatusWrapper<EngineStatus>
{
public:
    explicit EngineStatus(Firebird::IStatus *status) : BaseStatusWrapper(status) {}
    static void checkException(EngineStatus *status);
};

/// The one door to Firebird's client library. It is loaded once per process, by full path, and only the symbol
/// fb_get_master_interface is looked up. Main thread only.
///
/// Firebird reads three environment variables at its first call, so they are set here, before it:
/// FIREBIRD      the folder "firebird" beside the library: plug-ins, messages and firebird.conf.
/// FIREBIRD_LOCK the lock folder, see PrepareLockFolder().
/// FIREBIRD_TMP  the system's temporary folder.
class FirebirdClient
{
public:
    /// The loaded library. Throws DatabaseError before Load().
    static FirebirdClient &Instance();
    /// Loads the library at `libraryPath` unless one is loaded; `databasePath` is the database about to be opened.
    /// Throws DatabaseError with the loader's text.
    static FirebirdClient &Load(const QString &libraryPath, const QString &databasePath);
    /// Replaces the lock folder beside the first opened database; one that exists keeps its mode, so that a folder of
    /// the caller's own keeps others out. No effect once the library is loaded.
    static void SetLockFolder(const QString &folder);

    Firebird::IUtil *Util() const { return m_util; }
    Firebird::IProvider *Provider() const { return m_provider; }
    EngineStatus *Status() { return &m_status; }
    /// Passes the instructions of a compiled body, line by line and in words, to `take`. False if it can't be read.
    bool PrintBody(const QByteArray &body, const std::function<void(QByteArrayView line)> &take) const;

    /// True if the lock folder is the one beside the databases, common to all processes. Without it a database that can
    /// be written must not be attached: two processes with different lock folders lose each other's rows.
    bool LocksAreShared() const { return m_locksAreShared; }
    /// Without trailing separator.
    const QString &LockFolder() const { return m_lockFolder; }
    /// Makes sure, before an attach, that the lock folder exists, holds no traps and has room for Firebird's lock
    /// files. Throws DatabaseError.
    void PrepareLockFolder();
    /// Opens the lock files to every user and allocates them in full, after an attach. Throws when the disk is full.
    void SettleLockFiles();

private:
    FirebirdClient(void *library, Firebird::IMaster *master, const QString &lockFolder, bool shared);

    void *m_library;
    Firebird::IMaster *m_master;
    Firebird::IUtil *m_util;
    Firebird::IProvider *m_provider;
    EngineStatus m_status;
    QString m_lockFolder;
    bool m_locksAreShared;
};

/// Disposes of a Firebird object that is not reference counted.
template <typename Object>
struct EngineDisposer
{
    void operator()(Object *object) const { object->dispose(); }
};

/// Releases a reference-counted Firebird object.
template <typename Object>
struct EngineReleaser
{
    void operator()(Object *object) const { object->release(); }
};
