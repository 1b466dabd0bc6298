#pragma once

#include "stores/engine/PreparedStatement.h"
#include "stores/engine/SqlParameters.h"
#include "stores/engine/Values.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QVariant>

#include <memory>
#include <vector>

/// The id of a blob in its database, as a parameter value and in stored rows.
struct BlobId
{
    ISC_QUAD quad;
};
Q_DECLARE_METATYPE(BlobId)

/// The form of a column in Firebird's message.
enum class ColumnKind { Text, Small, Long, Big, Boolean, Moment, Blob };

struct Column
{
    QString name;
    QString relation;
    QString baseField;
    ColumnKind kind;
    FieldType fieldType;
    int size;    ///< characters of a text, else 0
    bool isText; ///< a blob of characters
    bool padded; ///< a text that Firebird pads with blanks to its size
    unsigned offset;
    unsigned nullOffset;
};

/// One prepared statement with named parameters, and its cursor if it is a select. Blobs go in as bytes and come out as
/// BlobId. Every call that reaches Firebird may throw DatabaseError.
class Statement
{
public:
    using DatabaseHandle = std::shared_ptr<TpFIBDatabase::Handle>;
    using TransactionHandle = std::shared_ptr<TpFIBTransaction::Handle>;

    Statement(const DatabaseHandle &database, const TransactionHandle &transaction, const QString &sql);
    ~Statement();
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    const QString &Sql() const { return m_sql; }
    /// True if it was prepared on this connection and that is still open.
    bool BelongsTo(const DatabaseHandle &database) const { return m_database == database && database->attachment; }
    /// In upper case, one for each "?".
    const QStringList &ParameterNames() const { return m_names; }
    const std::vector<Column> &Columns() const { return m_columns; }

    /// Opens the cursor with a value for each "?". False, and no cursor, if a text is longer than its parameter;
    /// Firebird may report that only at the first fetch, which then finds no row.
    bool OpenCursor(const TransactionHandle &transaction, const QList<QVariant> &values);
    /// Fetches one row into Message(); false at the end, after which the cursor is closed.
    bool Fetch() { return Fetch(m_message.data()); }
    /// The same into another buffer of MessageSize() bytes.
    bool Fetch(unsigned char *message);
    qsizetype MessageSize() const { return static_cast<qsizetype>(m_message.size()); }
    const unsigned char *Message() const { return m_message.data(); }
    void CloseCursor();

    /// Runs a statement without a cursor and returns the number of rows that it changed. Throws if a text is longer
    /// than its parameter.
    quint64 Execute(const TransactionHandle &transaction, const QList<QVariant> &values);

private:
    void DescribeColumns();
    /// Runs a call on the cursor; false if Firebird rejects a text as too long.
    template <typename Call>
    bool TakesTexts(const Call &call) const;

    DatabaseHandle m_database;
    TransactionHandle m_cursorTransaction;
    bool m_hasLongText = false; ///< the cursor was opened with a text that may be too long, and has returned no row yet
    QString m_sql;
    QStringList m_names;
    PreparedStatement m_statement;
    Firebird::IResultSet *m_cursor = nullptr;
    std::unique_ptr<Firebird::IMessageMetadata, EngineReleaser<Firebird::IMessageMetadata>> m_input, m_output;
    std::vector<Column> m_columns;
    std::vector<unsigned char> m_message;
};

QDateTime FromEngineMoment(const ISC_TIMESTAMP &moment);
ISC_TIMESTAMP ToEngineMoment(const QDateTime &moment);
