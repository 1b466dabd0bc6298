#include "stores/examination/CompiledBodies.h"

#include "stores/engine/Blobs.h"
#include "stores/engine/FirebirdClient.h"
#include "stores/engine/RowStore.h"
#include "stores/engine/Statement.h"

#include <ibase.h>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

/// A select of two columns: a thing's name, and a blob with a body.
struct Bodies
{
    QStringView kind;
    QStringView select;
    bool isPacked = false; ///< not a body alone, but a record in which bodies stand
};

constexpr Bodies AllBodies[] = {
    {u"procedure", u"select RDB$PROCEDURE_NAME, RDB$PROCEDURE_BLR from RDB$PROCEDURES"},
    {u"function", u"select RDB$FUNCTION_NAME, RDB$FUNCTION_BLR from RDB$FUNCTIONS"},
    {u"trigger", u"select RDB$TRIGGER_NAME, RDB$TRIGGER_BLR from RDB$TRIGGERS"},
    {u"view", u"select RDB$RELATION_NAME, RDB$VIEW_BLR from RDB$RELATIONS"},
    {u"table", u"select RDB$RELATION_NAME, RDB$RUNTIME from RDB$RELATIONS", true},
    {u"computed column of type", u"select RDB$FIELD_NAME, RDB$COMPUTED_BLR from RDB$FIELDS"},
    {u"default of type", u"select RDB$FIELD_NAME, RDB$DEFAULT_VALUE from RDB$FIELDS"},
    {u"check of type", u"select RDB$FIELD_NAME, RDB$VALIDATION_BLR from RDB$FIELDS"},
    {u"missing value of type", u"select RDB$FIELD_NAME, RDB$MISSING_VALUE from RDB$FIELDS"},
    {u"default of column", u"select RDB$FIELD_NAME, RDB$DEFAULT_VALUE from RDB$RELATION_FIELDS"},
    {u"default of parameter", u"select RDB$PARAMETER_NAME, RDB$DEFAULT_VALUE from RDB$PROCEDURE_PARAMETERS"},
    {u"default of argument", u"select RDB$FUNCTION_NAME, RDB$DEFAULT_VALUE from RDB$FUNCTION_ARGUMENTS"},
    {u"index", u"select RDB$INDEX_NAME, RDB$EXPRESSION_BLR from RDB$INDICES"},
};

/// A select of names of things that reach outside.
struct Names
{
    QStringView kind;
    QStringView select;
};

constexpr Names ForeignCode[] = {
    {u"procedure", u"select RDB$PROCEDURE_NAME from RDB$PROCEDURES where RDB$ENGINE_NAME is not null"},
    {u"function", u"select RDB$FUNCTION_NAME from RDB$FUNCTIONS where RDB$ENGINE_NAME is not null"},
    {u"trigger", u"select RDB$TRIGGER_NAME from RDB$TRIGGERS where RDB$ENGINE_NAME is not null"},
};

constexpr Names OutsideThings[] = {
    {u"function", u"select RDB$FUNCTION_NAME from RDB$FUNCTIONS where coalesce(RDB$SYSTEM_FLAG, 0) = 0 and "
                  u"RDB$MODULE_NAME is not null"},
    {u"table", u"select RDB$RELATION_NAME from RDB$RELATIONS where RDB$EXTERNAL_FILE is not null"},
};

// Types from 8192 on are of the database, not of a table.
constexpr Names ConnectionTriggers[] = {
    {u"trigger", u"select RDB$TRIGGER_NAME from RDB$TRIGGERS where RDB$TRIGGER_TYPE between 8192 and 16383"},
};

class Reader
{
public:
    Reader(TpFIBDatabase &database, TpFIBTransaction &transaction)
        : m_database(database.Attachment()), m_transaction(transaction.Native())
    {}

    /// Calls `take` for each row with a value in the last column.
    template <typename Take>
    void Each(QStringView select, Take take)
    {
        Statement statement(m_database, m_transaction, select.toString());
        statement.OpenCursor(m_transaction, {});
        RowStore row;
        while (statement.Fetch()) {
            row.Clear(statement.Columns());
            row.Append(statement.Message());
            take(row);
        }
    }
    QByteArray Blob(const RowStore &row, int column) const
    {
        QByteArray bytes;
        if (!row.IsNull(0, column))
            ReadBlob(m_database, m_transaction, row.Value(0, column).value<BlobId>(), bytes);
        return bytes;
    }
    static QString Name(const RowStore &row) { return row.Value(0, 0).toString().trimmed(); }

private:
    Statement::DatabaseHandle m_database;
    Statement::TransactionHandle m_transaction;
};

/// The instructions that run a composed statement, by the names that Firebird prints and by their codes.
constexpr QByteArrayView DynamicVerbs[] = {"blr_exec_stmt", "blr_exec_into", "blr_exec_sql"};
constexpr quint8 DynamicCodes[] = {blr_exec_stmt, blr_exec_into, blr_exec_sql};

bool IsDynamic(const QByteArray &body, bool isPacked)
{
    if (isPacked) {
        // Names and numbers stand between the bodies, so any byte that may be such an instruction counts.
        return std::any_of(body.begin(), body.end(), [](char byte) {
            return std::find(std::begin(DynamicCodes), std::end(DynamicCodes), static_cast<quint8>(byte)) !=
                   std::end(DynamicCodes);
        });
    }
    // Letters of names and texts are printed one by one, so that a name of these can only be an instruction.
    bool found = false;
    const bool isReadable = FirebirdClient::Instance().PrintBody(body, [&found](QByteArrayView line) {
        for (const QByteArrayView verb : DynamicVerbs)
            found = found || line.contains(verb);
    });
    return found || !isReadable;
}

} // namespace

Abilities AbilitiesOf(TpFIBDatabase &database, TpFIBTransaction &transaction)
{
    Abilities found;
    Reader reader(database, transaction);
    for (const Bodies &bodies : AllBodies) {
        reader.Each(bodies.select, [&](const RowStore &row) {
            const QByteArray body = reader.Blob(row, 1);
            if (!body.isEmpty() && IsDynamic(body, bodies.isPacked))
                found.dynamic.append(bodies.kind.toString() + u' ' + Reader::Name(row));
        });
    }
    const auto collect = [&reader](const auto &things, QStringList &names) {
        for (const Names &thing : things)
            reader.Each(thing.select,
                        [&](const RowStore &row) { names.append(thing.kind.toString() + u' ' + Reader::Name(row)); });
    };
    collect(ForeignCode, found.foreignCode);
    collect(OutsideThings, found.outside);
    collect(ConnectionTriggers, found.atConnection);
    return found;
}
