#pragma once

#include "stores/Statement.h"

#include <string_view>

/// The fetched rows of a cursor, packed: each value takes the bytes that it uses and is decoded only when asked for.
/// A replaced row's old bytes stay until Clear().
class RowStore
{
public:
    /// Forgets all rows; the columns are those of the rows to come and must outlive them.
    void Clear(const std::vector<Column> &columns);
    int Count() const { return static_cast<int>(m_starts.size()); }

    /// Each takes the row that stands in the engine's message.
    void Append(const unsigned char *message);
    void Replace(int row, const unsigned char *message);
    /// Each takes one value per column, blobs as bytes or BlobId.
    void Append(const QList<QVariant> &values);
    void Replace(int row, const QList<QVariant> &values);
    void Remove(int row);

    bool IsNull(int row, int column) const;
    /// Bytes of a text, or of a blob that was posted from here; valid until the next change. Empty for null.
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

    const std::vector<Column> *m_columns = nullptr;
    std::vector<char> m_bytes;
    std::vector<size_t> m_starts;
};
