#pragma once

#include "stores/engine/Statement.h"

#include <deque>
#include <memory>
#include <string_view>
#include <vector>

/// The fetched rows of a cursor, packed: each value takes the bytes that it uses and is decoded only when asked for.
/// They lie in chunks that are never moved, so that a long list grows without copying.
/// A replaced or removed row's old bytes stay until Clear().
class RowStore
{
public:
    /// Forgets all rows; the columns are those of the rows to come and must outlive them.
    void Clear(const std::vector<Column> &columns);
    int Count() const { return m_count; }

    /// Each takes the row in Firebird's message.
    void Append(const unsigned char *message);
    void Replace(int row, const unsigned char *message);
    /// Each takes one value per column, blobs as bytes or BlobId.
    void Append(const QList<QVariant> &values);
    void Replace(int row, const QList<QVariant> &values);
    void Remove(int row);

    bool IsNull(int row, int column) const;
    /// Bytes of a text, or of a blob that was posted from here; valid until Clear(). Empty for null.
    std::string_view Text(int row, int column) const;
    /// A number, null or not (0).
    qint64 Number(int row, int column) const;
    /// int, qint64, QString, QDateTime, BlobId or QByteArray; null QVariant for null.
    QVariant Value(int row, int column) const;

private:
    const char *Find(int row, int column) const;
    void Encode(const unsigned char *message);
    void Encode(const QList<QVariant> &values);
    void EncodeValue(const Column &column, const QVariant &value);
    void Put(const void *bytes, size_t size);
    void PutText(const void *text, quint16 size);
    void PutNumber(qint64 number);
    void PutPlain(const void *eightBytes);
    /// Copies the encoded row into the last chunk and returns its place.
    quint32 KeepRow();
    void AppendRow();
    void ReplaceRow(int row);
    quint32 Start(int row) const;
    /// From then on rows need not be contiguous.
    void KeepEveryStart();

    struct Chunk
    {
        std::unique_ptr<char[]> bytes;
        size_t capacity;
        size_t used = 0;
    };

    const std::vector<Column> *m_columns = nullptr;
    std::vector<char> m_row; ///< the row being encoded
    std::vector<Chunk> m_chunks;
    std::deque<quint32> m_starts;
    int m_rowsOfStart = 1;
    int m_count = 0;
};
