#pragma once

#include "stores/data/FIBDataSet.h"

#include "stores/engine/RowStore.h"
#include "stores/engine/Statement.h"

#include <cstring>
#include <exception>

/// Prefix of a parameter that takes a field's value as it was read.
inline constexpr QLatin1StringView OldPrefix("OLD_");

/// The statements of a dataset and the rows that it has fetched.
struct TpFIBDataSet::Cursor
{
    std::unique_ptr<Statement> select;
    std::map<QString, std::unique_ptr<Statement>> changes;
    RowStore rows;
    Statement::TransactionHandle transaction;
    Statement::DatabaseHandle database;
    std::vector<Column> columns; ///< of the rows that are kept
    std::vector<int> columnOfField;
    QList<QVariant> boundValues;
    int signs = 0; ///< in this piece
    size_t declaredFields = 0;
    bool hasDynamicFields = false;
    std::vector<unsigned char> messages; ///< buffer for the rows fetched at once
    std::exception_ptr failure;          ///< thrown after the rows that were fetched before it

    /// The statement of that text, prepared now if necessary.
    Statement &Prepared(const QString &sql)
    {
        std::unique_ptr<Statement> &place = changes[sql];
        if (!place || !place->BelongsTo(database)) {
            place.reset();
            place = std::make_unique<Statement>(database, transaction, sql);
        }
        return *place;
    }

    bool IsSearchedInPieces() const { return columns.size() < select->Columns().size(); }
    /// False for a row that only shows that the search goes on.
    bool Belongs(const unsigned char *message) const
    {
        if (!IsSearchedInPieces())
            return true;
        ISC_LONG number = 0;
        std::memcpy(&number, message + select->Columns().back().offset, sizeof number);
        return number != 0;
    }
};
