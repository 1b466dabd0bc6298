#pragma once

#include "stores/engine/Statement.h"

/// Makes `bytes` a blob's bytes as stored, in the memory that it has where that suffices. Throws DatabaseError.
void ReadBlob(const Statement::DatabaseHandle &database, const Statement::TransactionHandle &transaction,
              const BlobId &id, QByteArray &bytes);
/// Stores bytes as a new blob, which belongs to nothing until a statement takes its id. Throws DatabaseError.
BlobId WriteBlob(const Statement::DatabaseHandle &database, const Statement::TransactionHandle &transaction,
                 QByteArrayView bytes);
