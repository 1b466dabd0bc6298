#pragma once

#include "dictionary/FormFinder.h"
#include "stores/engine/Statement.h"

#include <memory>

class DataFile;

/// The words that a dictionary itself gives for a form, through the procedure SP_GET_FORMS, which a file may lack.
class BroughtForms
{
public:
    /// The file is open and outlives this. Throws DatabaseError.
    explicit BroughtForms(DataFile &file);

    /// True if the file has the procedure.
    static bool AreIn(DataFile &file);
    /// The words of a form in lower case, as the dictionary writes them and in its order; none without the procedure.
    QStringList WordsOf(int kind, const QString &form);

private:
    DataFile &m_file;
    std::unique_ptr<Statement> m_statement;
};

/// What is known of a form, best first: the words that dictionaries bring, then those that grammar has found; each
/// once, at most FormFinder::MostWords. A word that both have is given as grammar has found it, in the preferred kind.
QList<FoundWord> BroughtFirst(const QList<FoundWord> &brought, const QList<FoundWord> &found);
