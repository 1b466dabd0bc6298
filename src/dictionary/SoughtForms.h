#pragma once

#include "stores/engine/Database.h"

#include <QString>

#include <memory>

class Statement;

/// Tells the procedure of the word list what the next opening of the list is filtered by, through two variables of the
/// transaction, SEARCHTEXT and SEARCHTEXT_MIXER. A procedure that looks at them may leave out what the filter would
/// drop anyway; any other one is not disturbed. Borrows database and transaction, which outlive it. Main thread only.
class SoughtForms
{
public:
    SoughtForms(TpFIBDatabase &database, TpFIBTransaction &transaction);
    ~SoughtForms();

    /// Sets both forms; null for both where no words are sought, and where one is longer than a word of the list.
    /// Does nothing without a connection. Throws DatabaseError.
    void Tell(const QString &lowerForm, const QString &mixedForm);

private:
    TpFIBDatabase &m_database;
    TpFIBTransaction &m_transaction;
    std::unique_ptr<Statement> m_statement;
};
