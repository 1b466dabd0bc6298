#include "lumivara-data/dictionary/BroughtForms.h"

#include "lumivara-data/files/DataFile.h"
#include "stores/Schema.h"
#include "stores/engine/RowStore.h"

#include <algorithm>

using namespace Qt::StringLiterals;

BroughtForms::BroughtForms(DataFile &file) : m_file(file)
{
    if (AreIn(file))
        m_statement = std::make_unique<Statement>(file.Database().Attachment(), file.Transaction().Native(),
                                                  u"select f.WORD from SP_GET_FORMS(:TYPE_DICT, :A_FORM) f"_s);
}

bool BroughtForms::AreIn(DataFile &file)
{
    return !file.Rows(u"select P.RDB$PROCEDURE_ID from RDB$PROCEDURES P "
                      "where trim(P.RDB$PROCEDURE_NAME) = '%1'"_s.arg(Procedure::GetForms))
                .isEmpty();
}

QStringList BroughtForms::WordsOf(int kind, const QString &form)
{
    QStringList words;
    if (!m_statement || !m_statement->OpenCursor(m_file.Transaction().Native(), {kind, form}))
        return words;
    RowStore row;
    while (words.size() < FormFinder::MostWords && m_statement->Fetch()) {
        row.Clear(m_statement->Columns());
        row.Append(m_statement->Message());
        if (const QString word = row.Value(0, 0).toString(); !word.isEmpty())
            words.append(word);
    }
    m_statement->CloseCursor();
    return words;
}

QList<FoundWord> BroughtFirst(const QList<FoundWord> &brought, const QList<FoundWord> &found)
{
    QList<FoundWord> words;
    const auto placeOf = [](const FoundWord &word, const QList<FoundWord> &all) {
        return std::find_if(all.cbegin(), all.cend(),
                            [&word](const FoundWord &known) { return known.word.toLower() == word.word.toLower(); });
    };
    const auto append = [&](const FoundWord &word) {
        if (words.size() < FormFinder::MostWords && placeOf(word, words) == words.cend())
            words.append(word);
    };
    for (const FoundWord &word : brought) {
        const auto same = placeOf(word, found);
        append(same == found.cend() ? word : *same);
    }
    for (const FoundWord &word : found)
        append(word);
    return words;
}
