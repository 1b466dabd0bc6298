#include "stores/engine/PreparedStatement.h"

void StatementReleaser::operator()(Firebird::IStatement *statement) const noexcept
{
    try {
        if (database->attachment) {
            statement->free(FirebirdClient::Instance().Status());
            return;
        }
    } catch (const std::exception &) {
        // The end of the attachment frees it, too.
    }
    statement->release();
}

PreparedStatement Prepare(const std::shared_ptr<TpFIBDatabase::Handle> &database,
                          const std::shared_ptr<TpFIBTransaction::Handle> &transaction, const QString &sql)
{
    const QByteArray text = sql.toUtf8();
    return {database->attachment->prepare(FirebirdClient::Instance().Status(), transaction->transaction,
                                          static_cast<unsigned>(text.size()), text.constData(),
                                          static_cast<unsigned>(database->dialect),
                                          Firebird::IStatement::PREPARE_PREFETCH_METADATA),
            StatementReleaser{database}};
}
