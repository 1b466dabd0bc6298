#include "stores/RowStore.h"

#include "stores/Field.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

// One byte of state before each value, then the value: a text as two bytes of length and the bytes, a number, a moment
// or a blob's id as they stand, a blob's bytes as four bytes of length and the bytes.
enum class State : char { Null, Present, Inline };

template <typename Number>
Number Load(const void *from)
{
    Number number;
    std::memcpy(&number, from, sizeof number);
    return number;
}

size_t NumberSize(ColumnKind kind)
{
    switch (kind) {
    case ColumnKind::Small:
        return sizeof(qint16);
    case ColumnKind::Long:
        return sizeof(qint32);
    case ColumnKind::Boolean:
        return 1;
    default:
        return 8; // big numbers, moments and blob ids
    }
}

/// Length of a stored value with its state byte.
size_t StoredSize(ColumnKind kind, const char *value)
{
    switch (static_cast<State>(*value)) {
    case State::Null:
        return 1;
    case State::Inline:
        return 1 + sizeof(quint32) + Load<quint32>(value + 1);
    case State::Present:
        break;
    }
    return kind == ColumnKind::Text ? 1 + sizeof(quint16) + Load<quint16>(value + 1) : 1 + NumberSize(kind);
}

} // namespace

void RowStore::Clear(const std::vector<Column> &columns)
{
    m_columns = &columns;
    m_bytes.clear();
    m_starts.clear();
}

void RowStore::Append(const unsigned char *message)
{
    m_starts.push_back(m_bytes.size());
    Encode(message);
}

void RowStore::Replace(int row, const unsigned char *message)
{
    m_starts[static_cast<size_t>(row)] = m_bytes.size();
    Encode(message);
}

void RowStore::Append(const QList<QVariant> &values)
{
    m_starts.push_back(m_bytes.size());
    Encode(values);
}

void RowStore::Replace(int row, const QList<QVariant> &values)
{
    const size_t start = m_bytes.size();
    Encode(values);
    m_starts[static_cast<size_t>(row)] = start;
}

void RowStore::Remove(int row)
{
    m_starts.erase(m_starts.begin() + row);
}

void RowStore::Put(const void *bytes, size_t size)
{
    const char *from = static_cast<const char *>(bytes);
    m_bytes.insert(m_bytes.end(), from, from + size);
}

void RowStore::Encode(const unsigned char *message)
{
    for (const Column &column : *m_columns) {
        if (Load<short>(message + column.nullOffset) != 0) {
            m_bytes.push_back(static_cast<char>(State::Null));
            continue;
        }
        m_bytes.push_back(static_cast<char>(State::Present));
        const unsigned char *value = message + column.offset;
        if (column.kind != ColumnKind::Text) {
            Put(value, NumberSize(column.kind));
            continue;
        }
        auto length = Load<quint16>(value);
        const unsigned char *text = value + sizeof length;
        while (column.padded && length > 0 && text[length - 1] == ' ')
            --length;
        Put(&length, sizeof length);
        Put(text, length);
    }
}

void RowStore::Encode(const QList<QVariant> &values)
{
    for (size_t i = 0; i < m_columns->size(); ++i)
        EncodeValue((*m_columns)[i], values.at(static_cast<int>(i)));
}

void RowStore::EncodeValue(const Column &column, const QVariant &value)
{
    if (!value.isValid()) {
        m_bytes.push_back(static_cast<char>(State::Null));
        return;
    }
    const bool bytes = column.kind == ColumnKind::Blob && !value.canConvert<BlobId>();
    m_bytes.push_back(static_cast<char>(bytes ? State::Inline : State::Present));
    const auto putNumber = [this](auto number) { Put(&number, sizeof number); };
    switch (column.kind) {
    case ColumnKind::Text: {
        const QByteArray text = FieldText(value).toUtf8();
        const auto size = static_cast<quint16>(std::min<qsizetype>(text.size(), std::numeric_limits<quint16>::max()));
        putNumber(size);
        Put(text.constData(), size);
        break;
    }
    case ColumnKind::Small:
        return putNumber(static_cast<qint16>(value.toInt()));
    case ColumnKind::Long:
        return putNumber(static_cast<qint32>(value.toInt()));
    case ColumnKind::Big:
        return putNumber(static_cast<qint64>(value.toLongLong()));
    case ColumnKind::Boolean:
        return m_bytes.push_back(value.toBool() ? 1 : 0);
    case ColumnKind::Moment:
        return putNumber(ToEngineMoment(value.toDateTime()));
    case ColumnKind::Blob:
        if (!bytes)
            return putNumber(value.value<BlobId>().quad);
        const QByteArray content = value.toByteArray();
        putNumber(static_cast<quint32>(content.size()));
        Put(content.constData(), static_cast<size_t>(content.size()));
    }
}

const char *RowStore::Find(int row, int column) const
{
    const char *value = m_bytes.data() + m_starts[static_cast<size_t>(row)];
    for (size_t i = 0; i < static_cast<size_t>(column); ++i)
        value += StoredSize((*m_columns)[i].kind, value);
    return value;
}

bool RowStore::IsNull(int row, int column) const
{
    return static_cast<State>(*Find(row, column)) == State::Null;
}

std::string_view RowStore::Text(int row, int column) const
{
    const char *value = Find(row, column);
    switch (static_cast<State>(*value)) {
    case State::Null:
        return {};
    case State::Inline:
        return {value + 1 + sizeof(quint32), Load<quint32>(value + 1)};
    case State::Present:
        break;
    }
    return {value + 1 + sizeof(quint16), Load<quint16>(value + 1)};
}

qint64 RowStore::Number(int row, int column) const
{
    const char *value = Find(row, column);
    if (static_cast<State>(*value) == State::Null)
        return 0;
    switch ((*m_columns)[static_cast<size_t>(column)].kind) {
    case ColumnKind::Small:
        return Load<qint16>(value + 1);
    case ColumnKind::Long:
        return Load<qint32>(value + 1);
    case ColumnKind::Boolean:
        return value[1];
    default:
        return Load<qint64>(value + 1);
    }
}

QVariant RowStore::Value(int row, int column) const
{
    const char *value = Find(row, column);
    if (static_cast<State>(*value) == State::Null)
        return {};
    switch ((*m_columns)[static_cast<size_t>(column)].kind) {
    case ColumnKind::Text: {
        const std::string_view text = Text(row, column);
        return FromUtf8(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    }
    case ColumnKind::Moment:
        return FromEngineMoment(Load<ISC_TIMESTAMP>(value + 1));
    case ColumnKind::Blob: {
        if (static_cast<State>(*value) == State::Present)
            return QVariant::fromValue(BlobId{Load<ISC_QUAD>(value + 1)});
        const std::string_view bytes = Text(row, column);
        return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
    }
    default:
        break;
    }
    const qint64 number = Number(row, column);
    const bool fits = number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
    return fits ? QVariant(static_cast<int>(number)) : QVariant(static_cast<qlonglong>(number));
}
