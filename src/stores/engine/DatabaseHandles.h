#pragma once

#include "stores/engine/Database.h"
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

/// Firebird's objects of a connection. Shared with its transactions and statements, so that they know in any order of
/// destruction whether it still exists.
struct TpFIBDatabase::Handle
{
    Firebird::IAttachment *attachment = nullptr; ///< null once detached
    int dialect = 3;
    FileIdentity file; ///< the file at the path just before the attach
    PathAlias alias;   ///< under which Firebird knows the file
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
