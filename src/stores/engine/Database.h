#pragma once

#include "stores/engine/FileStamp.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class TpFIBTransaction;

/// A connection to one Firebird file by local path. Setting Connected attaches and detaches.
/// Owns the attachment; transactions and datasets borrow it. Main thread only. Every call that reaches Firebird throws
/// DatabaseError with Firebird's text.
class TpFIBDatabase : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString DBName READ DBName WRITE SetDBName)
    Q_PROPERTY(bool Connected READ Connected)
public:
    explicit TpFIBDatabase(QObject *owner = nullptr);
    ~TpFIBDatabase() override;

    QString DBName() const { return m_dbName; }
    void SetDBName(const QString &path) { m_dbName = path; }
    /// "name=value" lines handed to the connect call: lc_ctype, user_name, password.
    QStringList &DBParams() { return m_dbParams; }
    int SQLDialect() const { return m_sqlDialect; }
    void SetSQLDialect(int dialect) { m_sqlDialect = dialect; }
    /// Pages of the file that Firebird caches at most; 0 for its default of 256. Takes effect at the next connection.
    int CachePages() const { return m_cachePages; }
    void SetCachePages(int count) { m_cachePages = count; }
    /// Full path of the client library; loaded once per process.
    QString LibraryName() const { return m_libraryName; }
    void SetLibraryName(const QString &path) { m_libraryName = path; }
    QString CharSet() const { return m_charSet; }
    void SetCharSet(const QString &charSet) { m_charSet = charSet; }

    bool Connected() const;
    void SetConnected(bool connected);
    /// Makes a new file at DBName (page size in bytes) and attaches to it. Throws if the file exists. Without forced
    /// writes Firebird does not wait for the disk, which is fine for a file that is not used before it is synced as a
    /// whole. For tools and tests.
    void CreateDatabase(int pageSize = 16384, bool forcedWrites = true);
    /// Turns the attached file's read-only mode on or off; needs to be the only attachment. Its transactions
    /// end. Tools.
    void SetReadOnlyMode(bool on);

    /// Throws unless the path still leads to the attached file, and that is writable. Firebird itself goes on writing
    /// to a renamed, replaced or deleted file without an error.
    void CheckFileInPlace() const;

    /// Of the last connection, once that has ended: the file as it was left, if nobody else has changed it meanwhile.
    const std::optional<FileStamp> &StampLeft() const { return m_stampLeft; }

    TpFIBTransaction *DefaultTransaction() const;
    void SetDefaultTransaction(TpFIBTransaction *transaction);

    struct Handle;
    /// Firebird's object, for the classes of this layer. Throws DatabaseError if not connected.
    const std::shared_ptr<Handle> &Attachment() const;

    /// Replaces the lock folder ("lock" beside the first opened database) for this process; call before the first
    /// connection. All processes that open a database must use the same folder, or rows get lost.
    static void SetLockFolder(const QString &folder);

private:
    QString m_dbName;
    QStringList m_dbParams;
    QString m_libraryName;
    QString m_charSet;
    int m_sqlDialect = 3;
    int m_cachePages = 0;
    QPointer<TpFIBTransaction> m_defaultTransaction;
    std::optional<FileStamp> m_stampLeft;
    std::shared_ptr<Handle> m_handle;
};

/// A transaction of one database. Setting Active starts it; setting it false rolls back.
class TpFIBTransaction : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool Active READ Active)
public:
    enum class TimeoutActionKind { TARollback, TACommit };

    explicit TpFIBTransaction(QObject *owner = nullptr);
    ~TpFIBTransaction() override;

    void SetDefaultDatabase(TpFIBDatabase *database) { m_database = database; }
    /// Items of the parameter block: "write", "isc_tpb_nowait", "read_committed", "rec_version" (the default).
    QStringList &TRParams() { return m_trParams; }
    /// Kept for completeness: no time-out is ever set.
    TimeoutActionKind TimeoutAction = TimeoutActionKind::TARollback;

    bool Active() const;
    void SetActive(bool active);
    void Commit();
    void Rollback();
    /// Makes the changes permanent; the transaction and its open cursors stay.
    void CommitRetaining();
    void RollbackRetaining();

    struct Handle;
    /// Firebird's object, for the classes of this layer. Throws DatabaseError if not active.
    const std::shared_ptr<Handle> &Native() const;

private:
    QPointer<TpFIBDatabase> m_database;
    QStringList m_trParams;
    std::shared_ptr<Handle> m_handle;
};
