#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <memory>

class TpFIBTransaction;

/// A connection to one Firebird file by local path. Setting Connected attaches and detaches.
/// Owns the attachment; transactions and datasets borrow it. Main thread only. Every call that reaches the engine
/// throws DatabaseError with the engine's text.
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
    /// Pages of the file that the engine keeps in memory at most, taken as they are read; 0 leaves it to the engine,
    /// which keeps 256. Counts from the next connection on.
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
    /// writes the engine does not wait for the disk at each of them: right for a file that nobody uses before it was
    /// brought to the disk as a whole. Tools and tests.
    void CreateDatabase(int pageSize = 16384, bool forcedWrites = true);
    /// Turns the attached file's read-only mode on or off; needs to be the only attachment. Its transactions
    /// end. Tools.
    void SetReadOnlyMode(bool on);

    /// Throws unless the path still leads to the file that was attached, and that may be written. The engine itself
    /// goes on writing into a file that was renamed, replaced or deleted, and says that all is well.
    void CheckFileInPlace() const;

    TpFIBTransaction *DefaultTransaction() const;
    void SetDefaultTransaction(TpFIBTransaction *transaction);

    struct Handle;
    /// The engine's side, for the classes of this layer. Throws DatabaseError when not connected.
    const std::shared_ptr<Handle> &Attachment() const;

    /// Replaces the lock folder ("lock" beside the first database opened) for this process; call before the first
    /// connection. Every process that opens a database must use the same folder, or rows get lost.
    static void SetLockFolder(const QString &folder);

private:
    QString m_dbName;
    QStringList m_dbParams;
    QString m_libraryName;
    QString m_charSet;
    int m_sqlDialect = 3;
    int m_cachePages = 0;
    QPointer<TpFIBTransaction> m_defaultTransaction;
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

    TpFIBDatabase *DefaultDatabase() const { return m_database; }
    void SetDefaultDatabase(TpFIBDatabase *database) { m_database = database; }
    /// Words of the parameter block: "write", "isc_tpb_nowait", "read_committed", "rec_version" (the default).
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
    /// The engine's side, for the classes of this layer. Throws DatabaseError when not active.
    const std::shared_ptr<Handle> &Native() const;

private:
    QPointer<TpFIBDatabase> m_database;
    QStringList m_trParams;
    std::shared_ptr<Handle> m_handle;
};
