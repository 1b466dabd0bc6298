#pragma once

#include "stores/engine/DatabaseHandles.h"

#include <memory>

/// Frees a statement, before or after the end of its connection. Never throws.
struct StatementReleaser
{
    std::shared_ptr<TpFIBDatabase::Handle> database;
    void operator()(Firebird::IStatement *statement) const noexcept;
};

using PreparedStatement = std::unique_ptr<Firebird::IStatement, StatementReleaser>;

/// Prepares a statement with "?" for each parameter. Throws DatabaseError.
PreparedStatement Prepare(const std::shared_ptr<TpFIBDatabase::Handle> &database,
                          const std::shared_ptr<TpFIBTransaction::Handle> &transaction, const QString &sql);
