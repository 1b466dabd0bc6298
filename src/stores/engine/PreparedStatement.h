#pragma once

#include "stores/engine/DatabaseHandles.h"

#include <memory>

/// Gives a statement back to the engine, before or after the end of its connection. Never throws.
struct StatementReleaser
{
    std::shared_ptr<TpFIBDatabase::Handle> database;
    void operator()(Firebird::IStatement *statement) const noexcept;
};

using PreparedStatement = std::unique_ptr<Firebird::IStatement, StatementReleaser>;

/// Has the engine prepare a statement with its places marked by "?". Throws DatabaseError.
PreparedStatement Prepare(const std::shared_ptr<TpFIBDatabase::Handle> &database,
                          const std::shared_ptr<TpFIBTransaction::Handle> &transaction, const QString &sql);
