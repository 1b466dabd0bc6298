#include "dictionary/DictionaryWords.h"

#include "dictionary/WordRules.h"
#include "stores/engine/RowStore.h"
#include "stores/engine/Statement.h"

using namespace Qt::StringLiterals;

namespace {

/// Words of one run. More save little, and what is left over is asked as empty words.
constexpr qsizetype WordsAtOnce = 24;

QString Question(qsizetype number)
{
    QStringList columns;
    for (qsizetype i = 0; i < number; ++i)
        columns.append(u"(select sp.result from sp_check_word(:TYPE_DICT, :A_WORD) sp)"_s);
    return u"select "_s + columns.join(u", "_s) + u" from rdb$database"_s;
}

/// Without its lowest bit, and never 0. Two words of one hash would need some billions of words.
quint64 HashOf(int kind, const QString &word)
{
    quint64 hash = 0xcbf29ce484222325 ^ static_cast<quint64>(kind);
    for (const QChar letter : word) {
        hash = (hash ^ letter.unicode()) * 0x9e3779b97f4a7c15;
        hash ^= hash >> 29;
    }
    hash *= 0xbf58476d1ce4e5b9;
    return ((hash ^ hash >> 32) | 2) & ~quint64(1);
}

/// The answers of the row that the statement stands on.
QList<bool> AnswersOf(const Statement &statement)
{
    RowStore row;
    row.Clear(statement.Columns());
    row.Append(statement.Message());
    QList<bool> answers;
    for (int column = 0; column < static_cast<int>(statement.Columns().size()); ++column)
        answers.append(row.Value(0, column).toInt() == 1);
    return answers;
}

} // namespace

DictionaryWords::DictionaryWords(TpFIBDatabase &database, TpFIBTransaction &transaction)
    : m_database(database), m_transaction(transaction), m_memory(MemoryBytes / sizeof(quint64))
{}

DictionaryWords::~DictionaryWords() = default;

QList<bool> DictionaryWords::Have(int kind, const QStringList &words)
{
    QList<bool> answers(words.size(), false);
    QList<qsizetype> places;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const quint64 hash = HashOf(kind, words[i]);
        const quint64 known = m_memory[hash / 2 % m_memory.size()];
        if ((known & ~quint64(1)) == hash)
            answers[i] = known & 1;
        else
            places.append(i);
        if (places.size() == WordsAtOnce || (i + 1 == words.size() && !places.isEmpty())) {
            AskFor(kind, places, words, answers);
            places.clear();
        }
    }
    return answers;
}

void DictionaryWords::AskFor(int kind, const QList<qsizetype> &places, const QStringList &words, QList<bool> &answers)
{
    const auto remember = [&](qsizetype place) {
        const quint64 hash = HashOf(kind, words[place]);
        m_memory[hash / 2 % m_memory.size()] = hash | (answers[place] ? 1 : 0);
    };
    // Few words are asked one by one: a place of the statement that is not needed costs as much as one that is.
    if (places.size() > WordsAtOnce / 3) {
        if (!m_many || !m_many->BelongsTo(m_database.Attachment()))
            m_many =
                std::make_unique<Statement>(m_database.Attachment(), m_transaction.Native(), Question(WordsAtOnce));
        QList<QVariant> values;
        for (qsizetype i = 0; i < WordsAtOnce; ++i) {
            values.append(kind);
            values.append(i < places.size() ? QVariant(TestedForm(kind, words[places[i]])) : QVariant(u""_s));
        }
        if (m_many->OpenCursor(m_transaction.Native(), values) && m_many->Fetch()) {
            const QList<bool> told = AnswersOf(*m_many);
            for (qsizetype i = 0; i < places.size(); ++i) {
                answers[places[i]] = told[i];
                remember(places[i]);
            }
            m_many->CloseCursor();
            return;
        }
        // One of them is too long for this dictionary.
    }
    for (const qsizetype place : places) {
        answers[place] = AskForOne(kind, TestedForm(kind, words[place]));
        remember(place);
    }
}

bool DictionaryWords::AskForOne(int kind, const QString &form)
{
    if (!m_one || !m_one->BelongsTo(m_database.Attachment()))
        m_one = std::make_unique<Statement>(m_database.Attachment(), m_transaction.Native(), Question(1));
    const bool isYes =
        m_one->OpenCursor(m_transaction.Native(), {kind, form}) && m_one->Fetch() && AnswersOf(*m_one).first();
    m_one->CloseCursor();
    return isYes;
}
