#pragma once

#include "stores/Statement.h"

/// A blob's bytes as stored. Throws DatabaseError.
QByteArray ReadBlob(const Statement::DatabaseHandle &database, const Statement::TransactionHandle &transaction,
                    const BlobId &id);
/// Stores bytes as a new blob, which belongs to nothing until a statement takes its id. Throws DatabaseError.
BlobId WriteBlob(const Statement::DatabaseHandle &database, const Statement::TransactionHandle &transaction,
                 const QByteArray &bytes);
