#pragma once

#include "stores/engine/Database.h"
#include "stores/engine/FileStamp.h"
#include "stores/engine/FirebirdClient.h"
#include "stores/engine/PathAlias.h"

#include <vector>

/// Identifies the file that a path leads to, independently of its name.
struct FileIdentity
{
    quint64 device = 0, number = 0;
    bool operator==(const FileIdentity &) const = default;
    /// All zero if there is none.
    static FileIdentity Of(const QString &path);
};

/// Tells whether a file was changed by this connection alone.
class OwnChanges
{
public:
    /// Notes the file as it is after a change of ours.
    void After(const QString &path) { m_last = FileStamp::Of(path); }
    /// Looks, before one, whether somebody else has changed it.
    void Before(const QString &path) { m_areAll = m_areAll && FileStamp::Of(path) == m_last; }
    bool AreAll() const { return m_areAll; }

private:
    FileStamp m_last;
    bool m_areAll = true;
};

/// Firebird's objects of a connection. Shared with its transactions and statements, so that they know in any order of
/// destruction whether it still exists.
struct TpFIBDatabase::Handle
{
    Firebird::IAttachment *attachment = nullptr; ///< null once detached
    int dialect = 3;
    FileIdentity file; ///< the file at the path just before the attach
    PathAlias alias;   ///< under which Firebird knows the file
    OwnChanges changes;
    std::vector<TpFIBTransaction::Handle *> transactions;

    ~Handle();
    /// Rolls back open transactions and detaches. May throw DatabaseError; the attachment is gone anyway.
    void Detach();
};

/// Firebird's object of a transaction.
struct TpFIBTransaction::Handle
{
    std::shared_ptr<TpFIBDatabase::Handle> database;
    Firebird::ITransaction *transaction = nullptr; ///< null once ended

    explicit Handle(std::shared_ptr<TpFIBDatabase::Handle> owner, const QStringList &words);
    ~Handle();
    void Rollback();
    void Commit();
    /// Records that Firebird has ended and freed the transaction.
    void Ended();
};
