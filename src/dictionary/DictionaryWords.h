#pragma once

#include "dictionary/KnownWords.h"
#include "stores/engine/Database.h"

#include <memory>
#include <vector>

class Statement;

/// Asks a dictionary's existence test, SP_CHECK_WORD, for many words at a time by one prepared statement. Answers are
/// remembered in a table of 1 MB, where a new one takes an old one's place, so memory does not grow with the questions.
/// Borrows the database and the transaction, which must be open and outlive it. Main thread only.
class DictionaryWords : public WordTest
{
public:
    /// What the answers are remembered in, in bytes.
    static constexpr size_t MemoryBytes = 1 << 20;

    DictionaryWords(TpFIBDatabase &database, TpFIBTransaction &transaction);
    ~DictionaryWords() override;

    /// Throws DatabaseError.
    QList<bool> Have(int kind, const QStringList &words) override;

private:
    /// The answers for words that are not remembered, one run of the statement for as many as it takes.
    void AskFor(int kind, const QList<qsizetype> &places, const QStringList &words, QList<bool> &answers);
    bool AskForOne(int kind, const QString &form);

    TpFIBDatabase &m_database;
    TpFIBTransaction &m_transaction;
    std::unique_ptr<Statement> m_many, m_one;
    std::vector<quint64> m_memory; ///< hashes, their lowest bit the answer; 0 for an empty place
};
