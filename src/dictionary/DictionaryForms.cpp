#include "dictionary/DictionaryForms.h"

#include "stores/engine/DatabaseError.h"
#include "stores/engine/RowStore.h"
#include "stores/engine/Statement.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype MostBrought = 12; ///< more words than a form can have

} // namespace

DictionaryForms::DictionaryForms(TpFIBDatabase &database, TpFIBTransaction &transaction)
    : m_database(database), m_transaction(transaction), m_words(database, transaction)
{}

DictionaryForms::~DictionaryForms() = default;

Statement &DictionaryForms::Prepared(std::unique_ptr<Statement> &statement, const QString &sql)
{
    if (!statement || !statement->BelongsTo(m_database.Attachment()))
        statement = std::make_unique<Statement>(m_database.Attachment(), m_transaction.Native(), sql);
    return *statement;
}

QStringList DictionaryForms::FormsBrought(int kind, const QString &form)
{
    QStringList words;
    if (!m_bringsForms)
        return words;
    try {
        Prepared(m_forms, u"select f.WORD from SP_GET_FORMS(:TYPE_DICT, :A_FORM) f"_s);
    } catch (const DatabaseError &) {
        m_bringsForms = false;
        return words;
    }
    if (!m_forms->OpenCursor(m_transaction.Native(), {kind, form}))
        return words;
    while (words.size() < MostBrought && m_forms->Fetch()) {
        RowStore row;
        row.Clear(m_forms->Columns());
        row.Append(m_forms->Message());
        words.append(row.Value(0, 0).toString());
    }
    m_forms->CloseCursor();
    return words;
}

bool DictionaryForms::HasEntry(int kind, const QString &word)
{
    Statement &statement = Prepared(
        m_entry,
        u"select E.WORD_CONTENT, E.WORD_CONTENT_2 from SP_GET_WORD_CONTENT(:DICT_TYPE, :WORD_NAME, :MULTI_DICT) E"_s);
    bool hasEntry = false;
    if (statement.OpenCursor(m_transaction.Native(), {kind, word, 0}) && statement.Fetch()) {
        RowStore row;
        row.Clear(statement.Columns());
        row.Append(statement.Message());
        hasEntry = !row.IsNull(0, 0);
    }
    statement.CloseCursor();
    return hasEntry;
}

QString DictionaryForms::AsWritten(int kind, const QString &word)
{
    for (const QString &way : WithCapitals(word)) {
        if (HasEntry(kind, way))
            return way;
    }
    return word;
}
