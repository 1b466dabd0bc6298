#pragma once

#include "stores/engine/Statement.h"

/// Reads a blob's stored bytes into `bytes` and reuses its memory if it suffices. Throws DatabaseError.
void ReadBlob(const Statement::DatabaseHandle &database, const Statement::TransactionHandle &transaction,
              const BlobId &id, QByteArray &bytes);
/// Stores bytes as a new blob, which is orphaned until a statement stores its id. Throws DatabaseError.
BlobId WriteBlob(const Statement::DatabaseHandle &database, const Statement::TransactionHandle &transaction,
                 QByteArrayView bytes);
