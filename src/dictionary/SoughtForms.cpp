#include "dictionary/SoughtForms.h"

#include "stores/Schema.h"
#include "stores/engine/Statement.h"

using namespace Qt::StringLiterals;

SoughtForms::SoughtForms(TpFIBDatabase &database, TpFIBTransaction &transaction)
    : m_database(database), m_transaction(transaction)
{}

SoughtForms::~SoughtForms() = default;

void SoughtForms::Tell(const QString &lowerForm, const QString &mixedForm)
{
    if (!m_database.Connected() || !m_transaction.Active())
        return;
    // A variable keeps bytes, at most 255, without their character set: UTF-8, as the procedure's own variables are.
    if (!m_statement || !m_statement->BelongsTo(m_database.Attachment()))
        m_statement = std::make_unique<Statement>(
            m_database.Attachment(), m_transaction.Native(),
            u"select rdb$set_context('USER_TRANSACTION', 'SEARCHTEXT', :SEARCHTEXT), "
            "rdb$set_context('USER_TRANSACTION', 'SEARCHTEXT_MIXER', :SEARCHTEXT_MIXER) from rdb$database"_s);
    const bool isTold = !lowerForm.isEmpty() && !mixedForm.isEmpty() && lowerForm.size() <= Length::Word &&
                        mixedForm.size() <= Length::Word;
    const auto value = [isTold](const QString &form) { return isTold ? QVariant(form.toUtf8()) : QVariant(); };
    m_statement->OpenCursor(m_transaction.Native(), {value(lowerForm), value(mixedForm)});
    m_statement->Fetch();
    m_statement->CloseCursor();
}
