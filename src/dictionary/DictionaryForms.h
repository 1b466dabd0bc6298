#pragma once

#include "dictionary/DictionaryWords.h"
#include "dictionary/FormSearch.h"

#include <memory>

class Statement;

/// What the open dictionary tells about forms, through its procedures. SP_GET_FORMS, which not every dictionary has,
/// gives the words for a form; how a word is written shows by the entry that it has. Borrows the database and the
/// transaction, which must be open and outlive it. Main thread only.
class DictionaryForms : public FormSource
{
public:
    DictionaryForms(TpFIBDatabase &database, TpFIBTransaction &transaction);
    ~DictionaryForms() override;

    /// Each throws DatabaseError.
    QList<bool> Have(int kind, const QStringList &words) override { return m_words.Have(kind, words); }
    QStringList FormsBrought(int kind, const QString &form) override;
    QString AsWritten(int kind, const QString &word) override;

private:
    /// The statement, prepared for the connection that is open.
    Statement &Prepared(std::unique_ptr<Statement> &statement, const QString &sql);
    bool HasEntry(int kind, const QString &word);

    TpFIBDatabase &m_database;
    TpFIBTransaction &m_transaction;
    DictionaryWords m_words;
    std::unique_ptr<Statement> m_forms, m_entry;
    bool m_bringsForms = true; ///< until a dictionary without the procedure has shown that it does not
};
