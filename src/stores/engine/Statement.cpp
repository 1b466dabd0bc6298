#include "stores/engine/Statement.h"

#include "stores/engine/Blobs.h"

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

using Builder = std::unique_ptr<Firebird::IMetadataBuilder, EngineReleaser<Firebird::IMetadataBuilder>>;
using Metadata = std::unique_ptr<Firebird::IMessageMetadata, EngineReleaser<Firebird::IMessageMetadata>>;

/// Wide enough for any number or time as text.
constexpr unsigned ConvertedTextBytes = 64;
/// The most bytes that a text parameter can take.
constexpr qsizetype LongestText = 32765;
constexpr unsigned TenthsOfMillisecond = 10;

EngineStatus *Status()
{
    return FirebirdClient::Instance().Status();
}

qint64 EngineEpoch()
{
    static const qint64 day = QDate(1858, 11, 17).toJulianDay();
    return day;
}

/// Bytes that Firebird counts for each declared character of a text, by its character set.
int BytesPerCharacter(unsigned charSet)
{
    constexpr unsigned unicodeFss = 3, utf8 = 4;
    switch (charSet & 0xFF) {
    case unicodeFss:
        return 3;
    case utf8:
        return 4;
    default:
        return 1;
    }
}

bool IsText(unsigned type)
{
    return type == SQL_VARYING || type == SQL_TEXT;
}

bool IsTime(unsigned type)
{
    return type == SQL_TIMESTAMP || type == SQL_TYPE_DATE || type == SQL_TYPE_TIME;
}

/// The parameters of one run: their declarations and their bytes.
class InputMessage
{
public:
    InputMessage(Firebird::IMessageMetadata *declared, const Statement::DatabaseHandle &database,
                 const Statement::TransactionHandle &transaction, const QList<QVariant> &values)
        : m_declared(declared), m_database(database), m_transaction(transaction), m_values(values)
    {
        if (values.isEmpty())
            return;
        Builder builder(declared->getBuilder(Status()));
        for (unsigned i = 0; i < Count(); ++i)
            Declare(builder.get(), i);
        m_metadata.reset(builder->getMetadata(Status()));
        m_bytes.resize(m_metadata->getMessageLength(Status()));
        if (!m_textIsTooLong) {
            for (unsigned i = 0; i < Count(); ++i)
                Fill(i);
        }
    }

    bool TextIsTooLong() const { return m_textIsTooLong; }
    /// True if a text has more characters than its parameter, but no more bytes. Whether that is too long depends on
    /// Firebird's conversion, for example into a procedure's parameter.
    bool TextHasTooManyCharacters() const { return m_textHasTooManyCharacters; }
    Firebird::IMessageMetadata *Layout() const { return m_metadata.get(); }
    void *Bytes() { return m_bytes.empty() ? nullptr : m_bytes.data(); }

private:
    unsigned Count() const { return static_cast<unsigned>(m_values.size()); }

    void Declare(Firebird::IMetadataBuilder *builder, unsigned i)
    {
        const QVariant &value = m_values.at(static_cast<int>(i));
        const unsigned type = m_declared->getType(Status(), i) & ~1U;
        unsigned sent = SQL_INT64;
        QByteArray text;
        if (!value.isValid() || type == SQL_BLOB || type == SQL_BOOLEAN) {
            sent = type;
        } else if (IsTime(type) && value.typeId() == QMetaType::QDateTime) {
            sent = SQL_TIMESTAMP;
        } else if (value.typeId() == QMetaType::Double) {
            sent = SQL_DOUBLE;
        } else if (IsText(type) || value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QByteArray) {
            sent = SQL_VARYING;
            text = value.typeId() == QMetaType::QByteArray ? value.toByteArray() : value.toString().toUtf8();
            const qsizetype most = IsText(type) ? m_declared->getLength(Status(), i) : LongestText;
            m_textIsTooLong |= text.size() > most;
            m_textHasTooManyCharacters |=
                IsText(type) &&
                QString::fromUtf8(text).toUcs4().size() > most / BytesPerCharacter(m_declared->getCharSet(Status(), i));
        }
        m_texts.append(text);
        m_sent.push_back(sent);
        if (sent == type && sent != SQL_VARYING)
            return;
        builder->setType(Status(), i, sent | 1U);
        builder->setScale(Status(), i, 0);
        switch (sent) {
        case SQL_VARYING:
            builder->setLength(Status(), i, static_cast<unsigned>(std::clamp<qsizetype>(text.size(), 1, LongestText)));
            break;
        case SQL_TIMESTAMP:
            builder->setLength(Status(), i, sizeof(ISC_TIMESTAMP));
            break;
        default:
            builder->setLength(Status(), i, 8);
        }
    }

    void Fill(unsigned i)
    {
        const QVariant &value = m_values.at(static_cast<int>(i));
        const short isNull = value.isValid() ? 0 : -1;
        std::memcpy(m_bytes.data() + m_metadata->getNullOffset(Status(), i), &isNull, sizeof isNull);
        if (isNull)
            return;
        unsigned char *place = m_bytes.data() + m_metadata->getOffset(Status(), i);
        switch (m_sent[i]) {
        case SQL_VARYING: {
            const QByteArray &text = m_texts.at(static_cast<int>(i));
            const auto size = static_cast<unsigned short>(text.size());
            std::memcpy(place, &size, sizeof size);
            std::memcpy(place + sizeof size, text.constData(), size);
            break;
        }
        case SQL_TIMESTAMP: {
            const ISC_TIMESTAMP moment = ToEngineMoment(value.toDateTime());
            std::memcpy(place, &moment, sizeof moment);
            break;
        }
        case SQL_BLOB: {
            const BlobId id = value.canConvert<BlobId>() ? value.value<BlobId>()
                                                         : WriteBlob(m_database, m_transaction, BytesOf(value));
            std::memcpy(place, &id.quad, sizeof id.quad);
            break;
        }
        case SQL_BOOLEAN:
            *place = value.toBool() ? 1 : 0;
            break;
        case SQL_DOUBLE: {
            const double number = value.toDouble();
            std::memcpy(place, &number, sizeof number);
            break;
        }
        default: {
            const qint64 number = value.toLongLong();
            std::memcpy(place, &number, sizeof number);
        }
        }
    }

    static QByteArray BytesOf(const QVariant &value)
    {
        return value.typeId() == QMetaType::QByteArray ? value.toByteArray() : ValueText(value).toUtf8();
    }

    Firebird::IMessageMetadata *m_declared;
    const Statement::DatabaseHandle &m_database;
    const Statement::TransactionHandle &m_transaction;
    const QList<QVariant> &m_values;
    Metadata m_metadata;
    QList<QByteArray> m_texts;
    std::vector<unsigned> m_sent;
    std::vector<unsigned char> m_bytes;
    bool m_textIsTooLong = false;
    bool m_textHasTooManyCharacters = false;
};

struct Shape
{
    ColumnKind kind;
    FieldType fieldType;
};

/// Makes Firebird return one column in a form that ColumnKind has.
Shape Coerce(Firebird::IMessageMetadata *native, Firebird::IMetadataBuilder *builder, unsigned i)
{
    const unsigned type = native->getType(Status(), i) & ~1U;
    const bool whole = native->getScale(Status(), i) == 0;
    switch (type) {
    case SQL_SHORT:
        if (whole)
            return {ColumnKind::Small, FieldType::SmallInt};
        break;
    case SQL_LONG:
        if (whole)
            return {ColumnKind::Long, FieldType::Integer};
        break;
    case SQL_INT64:
        if (whole)
            return {ColumnKind::Big, FieldType::Integer};
        break;
    case SQL_BOOLEAN:
        return {ColumnKind::Boolean, FieldType::Integer};
    case SQL_BLOB:
        return {ColumnKind::Blob, FieldType::Blob};
    case SQL_TYPE_DATE:
        builder->setType(Status(), i, SQL_TIMESTAMP | 1U);
        builder->setLength(Status(), i, sizeof(ISC_TIMESTAMP));
        return {ColumnKind::Moment, FieldType::DateTime};
    case SQL_TIMESTAMP:
        return {ColumnKind::Moment, FieldType::DateTime};
    default:
        break;
    }
    builder->setType(Status(), i, SQL_VARYING | 1U);
    builder->setLength(Status(), i, IsText(type) ? native->getLength(Status(), i) : ConvertedTextBytes);
    builder->setScale(Status(), i, 0);
    return {ColumnKind::Text, FieldType::WideString};
}

} // namespace

QDateTime FromEngineMoment(const ISC_TIMESTAMP &moment)
{
    return QDateTime(QDate::fromJulianDay(EngineEpoch() + moment.timestamp_date),
                     QTime::fromMSecsSinceStartOfDay(static_cast<int>(moment.timestamp_time / TenthsOfMillisecond)));
}

ISC_TIMESTAMP ToEngineMoment(const QDateTime &moment)
{
    ISC_TIMESTAMP result;
    result.timestamp_date = static_cast<ISC_DATE>(moment.date().toJulianDay() - EngineEpoch());
    result.timestamp_time = static_cast<ISC_TIME>(moment.time().msecsSinceStartOfDay()) * TenthsOfMillisecond;
    return result;
}

Statement::Statement(const DatabaseHandle &database, const TransactionHandle &transaction, const QString &sql)
    : m_database(database), m_sql(sql)
{
    if (sql.trimmed().isEmpty())
        throw DatabaseError(u"The statement is empty"_s);
    const PositionalSql positional = ToPositional(sql);
    m_names = positional.names;
    m_statement = Prepare(database, transaction, positional.sql);
    m_input.reset(m_statement->getInputMetadata(Status()));
    DescribeColumns();
}

Statement::~Statement()
{
    CloseCursor();
}

void Statement::DescribeColumns()
{
    Metadata native(m_statement->getOutputMetadata(Status()));
    const unsigned count = native ? native->getCount(Status()) : 0;
    if (count == 0)
        return;
    Builder builder(native->getBuilder(Status()));
    std::vector<Shape> shapes;
    for (unsigned i = 0; i < count; ++i)
        shapes.push_back(Coerce(native.get(), builder.get(), i));
    m_output.reset(builder->getMetadata(Status()));
    for (unsigned i = 0; i < count; ++i) {
        Column column;
        column.name = QString::fromUtf8(native->getAlias(Status(), i));
        column.relation = QString::fromUtf8(native->getRelation(Status(), i));
        column.baseField = QString::fromUtf8(native->getField(Status(), i));
        column.kind = shapes[i].kind;
        column.fieldType = shapes[i].fieldType;
        const unsigned length = m_output->getLength(Status(), i);
        column.size = column.kind == ColumnKind::Text
                          ? static_cast<int>(length) / BytesPerCharacter(native->getCharSet(Status(), i))
                          : 0;
        column.isText = column.kind == ColumnKind::Blob && native->getSubType(Status(), i) == isc_blob_text;
        column.padded = (native->getType(Status(), i) & ~1U) == SQL_TEXT;
        column.offset = m_output->getOffset(Status(), i);
        column.nullOffset = m_output->getNullOffset(Status(), i);
        m_columns.push_back(column);
    }
    m_message.resize(m_output->getMessageLength(Status()));
}

bool Statement::OpenCursor(const TransactionHandle &transaction, const QList<QVariant> &values)
{
    CloseCursor();
    InputMessage input(m_input.get(), m_database, transaction, values);
    if (input.TextIsTooLong())
        return false;
    m_hasLongText = input.TextHasTooManyCharacters();
    const bool isOpen = TakesTexts([&] {
        m_cursor = m_statement->openCursor(Status(), transaction->transaction, input.Layout(), input.Bytes(),
                                           m_output.get(), 0);
    });
    if (isOpen)
        m_cursorTransaction = transaction;
    return isOpen;
}

template <typename Call>
bool Statement::TakesTexts(const Call &call) const
{
    try {
        call();
        return true;
    } catch (const DatabaseError &error) {
        if (!m_hasLongText || error.EngineCode() != isc_arith_except)
            throw;
        return false;
    }
}

bool Statement::Fetch(unsigned char *message)
{
    if (!m_cursor)
        return false;
    if (!m_cursorTransaction->transaction)
        throw DatabaseError(u"The transaction of the open cursor has ended"_s);
    bool isThere = false;
    const bool isTaken =
        TakesTexts([&] { isThere = m_cursor->fetchNext(Status(), message) == Firebird::IStatus::RESULT_OK; });
    m_hasLongText = false;
    if (isTaken && isThere)
        return true;
    CloseCursor();
    return false;
}

void Statement::CloseCursor()
{
    Firebird::IResultSet *cursor = std::exchange(m_cursor, nullptr);
    if (!cursor)
        return;
    const TransactionHandle transaction = std::exchange(m_cursorTransaction, nullptr);
    try {
        // The end of a transaction has closed its cursors.
        if (transaction->transaction) {
            cursor->close(Status());
            return;
        }
    } catch (const std::exception &) {
    }
    cursor->release();
}

quint64 Statement::Execute(const TransactionHandle &transaction, const QList<QVariant> &values)
{
    InputMessage input(m_input.get(), m_database, transaction, values);
    if (input.TextIsTooLong())
        throw DatabaseError(u"A text is longer than its column"_s, static_cast<int>(isc_arith_except));
    Firebird::ITransaction *after =
        m_statement->execute(Status(), transaction->transaction, input.Layout(), input.Bytes(), m_output.get(),
                             m_message.empty() ? nullptr : m_message.data());
    // Only a statement that ends or starts a transaction returns another one; none is run here.
    if (after && after != transaction->transaction)
        after->release();
    return m_statement->getAffectedRecords(Status());
}
