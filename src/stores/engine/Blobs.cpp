#include "stores/engine/Blobs.h"

#include <algorithm>

namespace {

/// The largest segment. With segments of 80 bytes reading takes twenty times as long.
constexpr qsizetype SegmentSize = 65535;

/// Closes a blob at the end of a block; an unfinished one is cancelled.
class OpenBlob
{
public:
    explicit OpenBlob(Firebird::IBlob *blob) : m_blob(blob) {}
    OpenBlob(const OpenBlob &) = delete;
    OpenBlob &operator=(const OpenBlob &) = delete;
    ~OpenBlob()
    {
        if (!m_blob)
            return;
        try {
            m_blob->cancel(FirebirdClient::Instance().Status());
        } catch (const std::exception &) {
            m_blob->release();
        }
    }
    Firebird::IBlob *operator->() const { return m_blob; }
    void Close()
    {
        m_blob->close(FirebirdClient::Instance().Status());
        m_blob = nullptr;
    }

private:
    Firebird::IBlob *m_blob;
};

qsizetype TotalLength(const OpenBlob &blob)
{
    const unsigned char items[] = {isc_info_blob_total_length};
    unsigned char answer[32] = {};
    blob->getInfo(FirebirdClient::Instance().Status(), sizeof items, items, sizeof answer, answer);
    if (answer[0] != isc_info_blob_total_length)
        return 0;
    // Item, length of two bytes, value, least byte first.
    const int bytes = std::min<int>(answer[1] | answer[2] << 8, 8);
    quint64 length = 0;
    for (int i = 0; i < bytes; ++i)
        length |= static_cast<quint64>(answer[3 + i]) << (8 * i);
    return static_cast<qsizetype>(length);
}

} // namespace

void ReadBlob(const Statement::DatabaseHandle &database, const Statement::TransactionHandle &transaction,
              const BlobId &id, QByteArray &bytes)
{
    EngineStatus *status = FirebirdClient::Instance().Status();
    ISC_QUAD quad = id.quad;
    OpenBlob blob(database->attachment->openBlob(status, transaction->transaction, &quad, 0, nullptr));
    bytes.resize(TotalLength(blob));
    qsizetype filled = 0;
    while (filled < bytes.size()) {
        unsigned got = 0;
        const auto room = static_cast<unsigned>(std::min(SegmentSize, bytes.size() - filled));
        if (blob->getSegment(status, room, bytes.data() + filled, &got) == Firebird::IStatus::RESULT_NO_DATA)
            break;
        filled += got;
    }
    blob.Close();
    bytes.truncate(filled);
}

BlobId WriteBlob(const Statement::DatabaseHandle &database, const Statement::TransactionHandle &transaction,
                 QByteArrayView bytes)
{
    EngineStatus *status = FirebirdClient::Instance().Status();
    BlobId id{};
    OpenBlob blob(database->attachment->createBlob(status, transaction->transaction, &id.quad, 0, nullptr));
    for (qsizetype at = 0; at < bytes.size(); at += SegmentSize) {
        const auto size = static_cast<unsigned>(std::min(SegmentSize, bytes.size() - at));
        blob->putSegment(status, size, bytes.data() + at);
    }
    blob.Close();
    return id;
}
