#pragma once

#include "stores/engine/Database.h"
#include "stores/engine/FirebirdClient.h"

#include <vector>

/// Which file of the system a path leads to, whatever its name.
struct FileIdentity
{
    quint64 device = 0, number = 0;
    bool operator==(const FileIdentity &) const = default;
    /// All zero if there is none.
    static FileIdentity Of(const QString &path);
};

/// The engine's side of a connection. Shared with the transactions and statements made on it, so that they can tell in
/// any order of destruction whether it is still there.
struct TpFIBDatabase::Handle
{
    Firebird::IAttachment *attachment = nullptr; ///< null once detached
    int dialect = 3;
    FileIdentity file; ///< what the path led to just before the attach
    std::vector<TpFIBTransaction::Handle *> transactions;

    ~Handle();
    /// Rolls back what is open and detaches. Throws DatabaseError; the attachment is gone all the same.
    void Detach();
};

/// The engine's side of a transaction.
struct TpFIBTransaction::Handle
{
    std::shared_ptr<TpFIBDatabase::Handle> database;
    Firebird::ITransaction *transaction = nullptr; ///< null once ended

    explicit Handle(std::shared_ptr<TpFIBDatabase::Handle> owner, const QStringList &words);
    ~Handle();
    void Rollback();
    void Commit();
    /// Takes note that the engine has ended and freed the transaction.
    void Ended();
};
