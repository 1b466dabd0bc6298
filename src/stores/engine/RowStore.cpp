#include "stores/engine/RowStore.h"

#include "base/Texts.h"
#include "stores/engine/DatabaseError.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

// Each value begins with a head byte. A text's head is its length, if that fits; a number's is the number itself, or
// the number of bytes that follow. For times, blob ids and blob bytes the head gives the type of what follows.
constexpr uchar NullHead = 0xFF;
constexpr uchar LongTextHead = 0xFE;  ///< two bytes of length follow
constexpr uchar LargestInHead = 0xE0; ///< of the numbers from 0 on
constexpr uchar PlainHead = 0;        ///< eight bytes follow
constexpr uchar InlineBytesHead = 1;  ///< four bytes of length follow, then so many

// Only the start of every so many fetched rows is kept; the others are found from there.
constexpr int RowsOfStart = 4;

// A row's place is the number of its chunk and its offset in that.
constexpr int PlaceBits = 18;
constexpr size_t LargestChunk = size_t(1) << PlaceBits;
constexpr size_t SmallestChunk = 4096;
constexpr size_t MostChunks = size_t(1) << (32 - PlaceBits);

template <typename Number>
Number Load(const void *from)
{
    Number number;
    std::memcpy(&number, from, sizeof number);
    return number;
}

uchar Head(const char *value)
{
    return static_cast<uchar>(*value);
}

bool IsNumber(ColumnKind kind)
{
    return kind == ColumnKind::Small || kind == ColumnKind::Long || kind == ColumnKind::Big ||
           kind == ColumnKind::Boolean;
}

std::string_view StoredText(const char *value)
{
    if (Head(value) == LongTextHead)
        return {value + 1 + sizeof(quint16), Load<quint16>(value + 1)};
    return {value + 1, Head(value)};
}

std::string_view InlineBytes(const char *value)
{
    return {value + 1 + sizeof(quint32), Load<quint32>(value + 1)};
}

size_t NumberBytes(uchar head)
{
    return head <= LargestInHead ? 0 : head - LargestInHead;
}

qint64 StoredNumber(const char *value)
{
    const size_t bytes = NumberBytes(Head(value));
    if (bytes == 0)
        return Head(value);
    // Little-endian, the last byte with the sign.
    qint64 number = static_cast<signed char>(value[bytes]); // NOLINT(bugprone-signed-char-misuse): the sign counts
    for (size_t i = bytes - 1; i > 0; --i)
        number = number * 256 + static_cast<uchar>(value[i]);
    return number;
}

const char *Behind(ColumnKind kind, const char *value)
{
    const uchar head = Head(value);
    if (head == NullHead)
        return value + 1;
    if (kind == ColumnKind::Text) {
        const std::string_view text = StoredText(value);
        return text.data() + text.size();
    }
    if (IsNumber(kind))
        return value + 1 + NumberBytes(head);
    if (head == PlainHead)
        return value + 1 + sizeof(qint64);
    const std::string_view bytes = InlineBytes(value);
    return bytes.data() + bytes.size();
}

} // namespace

void RowStore::Clear(const std::vector<Column> &columns)
{
    m_columns = &columns;
    m_starts.clear();
    m_chunks.clear();
    m_count = 0;
    m_rowsOfStart = RowsOfStart;
}

void RowStore::Append(const unsigned char *message)
{
    Encode(message);
    AppendRow();
}

void RowStore::Replace(int row, const unsigned char *message)
{
    Encode(message);
    ReplaceRow(row);
}

void RowStore::Append(const QList<QVariant> &values)
{
    Encode(values);
    AppendRow();
}

void RowStore::Replace(int row, const QList<QVariant> &values)
{
    Encode(values);
    ReplaceRow(row);
}

void RowStore::AppendRow()
{
    const quint32 start = KeepRow();
    if (m_count % m_rowsOfStart == 0)
        m_starts.push_back(start);
    ++m_count;
}

void RowStore::ReplaceRow(int row)
{
    KeepEveryStart();
    m_starts[static_cast<size_t>(row)] = KeepRow();
}

void RowStore::Remove(int row)
{
    KeepEveryStart();
    m_starts.erase(m_starts.begin() + row);
    --m_count;
}

void RowStore::KeepEveryStart()
{
    if (m_rowsOfStart == 1)
        return;
    std::deque<quint32> starts;
    for (int row = 0; row < m_count; ++row)
        starts.push_back(Start(row));
    m_starts = std::move(starts);
    m_rowsOfStart = 1;
}

quint32 RowStore::KeepRow()
{
    if (m_chunks.empty() || m_row.size() > m_chunks.back().capacity - m_chunks.back().used) {
        if (m_chunks.size() == MostChunks)
            throw DatabaseError(QStringLiteral("The rows do not fit into memory"));
        // A few rows take little; a row longer than a chunk has one of its own.
        const size_t doublings = std::min<size_t>(m_chunks.size(), PlaceBits);
        const size_t capacity = std::max(m_row.size(), std::min(SmallestChunk << doublings, LargestChunk));
        m_chunks.push_back({std::make_unique_for_overwrite<char[]>(capacity), capacity});
    }
    Chunk &chunk = m_chunks.back();
    const size_t place = chunk.used;
    std::memcpy(chunk.bytes.get() + place, m_row.data(), m_row.size());
    chunk.used += m_row.size();
    return static_cast<quint32>((m_chunks.size() - 1) << PlaceBits | place);
}

quint32 RowStore::Start(int row) const
{
    const quint32 start = m_starts[static_cast<size_t>(row / m_rowsOfStart)];
    size_t number = start >> PlaceBits;
    size_t place = start & (LargestChunk - 1);
    for (int behind = row % m_rowsOfStart; behind > 0; --behind) {
        const char *bytes = m_chunks[number].bytes.get();
        const char *value = bytes + place;
        for (const Column &column : *m_columns)
            value = Behind(column.kind, value);
        place = static_cast<size_t>(value - bytes);
        if (place == m_chunks[number].used) {
            ++number;
            place = 0;
        }
    }
    return static_cast<quint32>(number << PlaceBits | place);
}

void RowStore::Put(const void *bytes, size_t size)
{
    const char *from = static_cast<const char *>(bytes);
    m_row.insert(m_row.end(), from, from + size);
}

void RowStore::PutText(const void *text, quint16 size)
{
    if (size < LongTextHead) {
        m_row.push_back(static_cast<char>(size));
    } else {
        m_row.push_back(static_cast<char>(LongTextHead));
        Put(&size, sizeof size);
    }
    Put(text, size);
}

void RowStore::PutNumber(qint64 number)
{
    if (number >= 0 && number <= LargestInHead) {
        m_row.push_back(static_cast<char>(number));
        return;
    }
    const size_t head = m_row.size();
    m_row.push_back(static_cast<char>(LargestInHead));
    qint64 rest = number;
    do {
        m_row.push_back(static_cast<char>(rest & 0xFF));
        rest >>= 8;
    } while (rest != (m_row.back() < 0 ? -1 : 0));
    m_row[head] = static_cast<char>(LargestInHead + m_row.size() - head - 1);
}

void RowStore::PutPlain(const void *eightBytes)
{
    m_row.push_back(static_cast<char>(PlainHead));
    Put(eightBytes, sizeof(qint64));
}

void RowStore::Encode(const unsigned char *message)
{
    m_row.clear();
    for (const Column &column : *m_columns) {
        if (Load<short>(message + column.nullOffset) != 0) {
            m_row.push_back(static_cast<char>(NullHead));
            continue;
        }
        const unsigned char *value = message + column.offset;
        switch (column.kind) {
        case ColumnKind::Text: {
            auto length = Load<quint16>(value);
            const unsigned char *text = value + sizeof length;
            while (column.padded && length > 0 && text[length - 1] == ' ')
                --length;
            if (std::memchr(text, 0xED, length)) {
                QByteArray whole(reinterpret_cast<const char *>(text), length);
                JoinSurrogates(whole);
                PutText(whole.constData(), static_cast<quint16>(whole.size()));
            } else {
                PutText(text, length);
            }
            break;
        }
        case ColumnKind::Small:
            PutNumber(Load<qint16>(value));
            break;
        case ColumnKind::Long:
            PutNumber(Load<qint32>(value));
            break;
        case ColumnKind::Big:
            PutNumber(Load<qint64>(value));
            break;
        case ColumnKind::Boolean:
            PutNumber(*value);
            break;
        case ColumnKind::Moment:
        case ColumnKind::Blob:
            PutPlain(value);
            break;
        }
    }
}

void RowStore::Encode(const QList<QVariant> &values)
{
    m_row.clear();
    for (size_t i = 0; i < m_columns->size(); ++i)
        EncodeValue((*m_columns)[i], values.at(static_cast<int>(i)));
}

void RowStore::EncodeValue(const Column &column, const QVariant &value)
{
    if (!value.isValid()) {
        m_row.push_back(static_cast<char>(NullHead));
        return;
    }
    switch (column.kind) {
    case ColumnKind::Text: {
        const QByteArray text = ValueText(value).toUtf8();
        return PutText(text.constData(),
                       static_cast<quint16>(std::min<qsizetype>(text.size(), std::numeric_limits<quint16>::max())));
    }
    case ColumnKind::Small:
        return PutNumber(static_cast<qint16>(value.toInt()));
    case ColumnKind::Long:
        return PutNumber(value.toInt());
    case ColumnKind::Big:
        return PutNumber(value.toLongLong());
    case ColumnKind::Boolean:
        return PutNumber(value.toBool() ? 1 : 0);
    case ColumnKind::Moment: {
        const ISC_TIMESTAMP moment = ToEngineMoment(value.toDateTime());
        return PutPlain(&moment);
    }
    case ColumnKind::Blob:
        if (value.canConvert<BlobId>()) {
            const BlobId id = value.value<BlobId>();
            return PutPlain(&id.quad);
        }
        const QByteArray content = value.toByteArray();
        const auto size = static_cast<quint32>(content.size());
        m_row.push_back(static_cast<char>(InlineBytesHead));
        Put(&size, sizeof size);
        Put(content.constData(), size);
    }
}

const char *RowStore::Find(int row, int column) const
{
    const quint32 start = Start(row);
    const char *value = m_chunks[start >> PlaceBits].bytes.get() + (start & (LargestChunk - 1));
    for (size_t i = 0; i < static_cast<size_t>(column); ++i)
        value = Behind((*m_columns)[i].kind, value);
    return value;
}

bool RowStore::IsNull(int row, int column) const
{
    return Head(Find(row, column)) == NullHead;
}

std::string_view RowStore::Text(int row, int column) const
{
    const char *value = Find(row, column);
    if (Head(value) == NullHead)
        return {};
    return (*m_columns)[static_cast<size_t>(column)].kind == ColumnKind::Text ? StoredText(value) : InlineBytes(value);
}

qint64 RowStore::Number(int row, int column) const
{
    const char *value = Find(row, column);
    if (Head(value) == NullHead)
        return 0;
    return IsNumber((*m_columns)[static_cast<size_t>(column)].kind) ? StoredNumber(value) : Load<qint64>(value + 1);
}

QVariant RowStore::Value(int row, int column) const
{
    const char *value = Find(row, column);
    if (Head(value) == NullHead)
        return {};
    switch ((*m_columns)[static_cast<size_t>(column)].kind) {
    case ColumnKind::Text: {
        const std::string_view text = StoredText(value);
        return FromUtf8(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    }
    case ColumnKind::Moment:
        return FromEngineMoment(Load<ISC_TIMESTAMP>(value + 1));
    case ColumnKind::Blob: {
        if (Head(value) == PlainHead)
            return QVariant::fromValue(BlobId{Load<ISC_QUAD>(value + 1)});
        const std::string_view bytes = InlineBytes(value);
        return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
    }
    default:
        break;
    }
    const qint64 number = StoredNumber(value);
    const bool fits = number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
    return fits ? QVariant(static_cast<int>(number)) : QVariant(static_cast<qlonglong>(number));
}
