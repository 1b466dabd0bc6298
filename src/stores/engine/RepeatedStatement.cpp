#include "stores/engine/RepeatedStatement.h"

#include "stores/engine/Blobs.h"

#include <cstring>

using namespace Qt::StringLiterals;

namespace {

EngineStatus *Status()
{
    return FirebirdClient::Instance().Status();
}

} // namespace

RepeatedStatement::RepeatedStatement(const std::shared_ptr<TpFIBDatabase::Handle> &database,
                                     const std::shared_ptr<TpFIBTransaction::Handle> &transaction, const QString &sql)
    : m_database(database), m_transaction(transaction), m_statement(Prepare(database, transaction, sql)),
      m_layout(m_statement->getInputMetadata(Status()))
{
    for (unsigned place = 0; place < m_layout->getCount(Status()); ++place)
        m_places.push_back({m_layout->getOffset(Status(), place), m_layout->getLength(Status(), place)});
    // Zeroed: no place is null.
    m_message.resize(m_layout->getMessageLength(Status()));
}

void RepeatedStatement::SetNumber(unsigned place, qint32 number)
{
    std::memcpy(m_message.data() + m_places[place].offset, &number, sizeof number);
}

void RepeatedStatement::SetText(unsigned place, QByteArrayView utf8)
{
    if (utf8.size() > static_cast<qsizetype>(m_places[place].size))
        throw DatabaseError(u"A text is longer than its column"_s);
    const auto size = static_cast<unsigned short>(utf8.size());
    unsigned char *at = m_message.data() + m_places[place].offset;
    std::memcpy(at, &size, sizeof size);
    std::memcpy(at + sizeof size, utf8.data(), size);
}

void RepeatedStatement::SetBlob(unsigned place, QByteArrayView bytes)
{
    const BlobId id = WriteBlob(m_database, m_transaction, bytes);
    std::memcpy(m_message.data() + m_places[place].offset, &id.quad, sizeof id.quad);
}

void RepeatedStatement::Run()
{
    m_statement->execute(Status(), m_transaction->transaction, m_layout.get(), m_message.data(), nullptr, nullptr);
}
