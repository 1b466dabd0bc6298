#pragma once

#include "stores/engine/PreparedStatement.h"

#include <QByteArrayView>

#include <memory>
#include <vector>

/// One statement that is run very many times, with "?" for each parameter. Values are written straight into Firebird's
/// message, which takes half the time of a Statement for a narrow row. Places count from 0, keep their values from run
/// to run, and are never null. Every call may throw DatabaseError.
class RepeatedStatement
{
public:
    RepeatedStatement(const std::shared_ptr<TpFIBDatabase::Handle> &database,
                      const std::shared_ptr<TpFIBTransaction::Handle> &transaction, const QString &sql);
    Q_DISABLE_COPY_MOVE(RepeatedStatement)

    /// An integer of 32 bits.
    void SetNumber(unsigned place, qint32 number);
    /// UTF-8. Throws if the text is longer than its place.
    void SetText(unsigned place, QByteArrayView utf8);
    /// Stores the bytes as a new blob.
    void SetBlob(unsigned place, QByteArrayView bytes);
    /// Runs the statement with the current values of the places.
    void Run();

private:
    struct Place
    {
        unsigned offset;
        unsigned size;
    };

    std::shared_ptr<TpFIBDatabase::Handle> m_database;
    std::shared_ptr<TpFIBTransaction::Handle> m_transaction;
    PreparedStatement m_statement;
    std::unique_ptr<Firebird::IMessageMetadata, EngineReleaser<Firebird::IMessageMetadata>> m_layout;
    std::vector<Place> m_places;
    std::vector<unsigned char> m_message;
};
