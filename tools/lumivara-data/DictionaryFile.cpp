#include "lumivara-data/DictionaryFile.h"

#include "common/Console.h"
#include "dictionary/WordRules.h"
#include "lumivara-data/DataFile.h"
#include "lumivara-data/DictionaryOrder.h"
#include "lumivara-data/Verbs.h"
#include "stores/DatabaseError.h"
#include "stores/FIBDataSet.h"

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr int LastKind = 8;
/// The engine keeps a number of pages in memory: small ones, because a walk through a list uses each only once.
constexpr int PageSize = 4096;
constexpr char16_t ListProcedure[] = u"SP_GET_LIST_WORDS";
constexpr char16_t ContentProcedure[] = u"SP_GET_WORD_CONTENT";
constexpr char16_t CheckProcedure[] = u"SP_CHECK_WORD";

/// A row of the word tables.
struct WordRow
{
    int kind;
    QByteArray sortKey;
    QString word;
    int entry;
};

QList<WordRow> InDictionaryOrder(const QList<DictionaryEntry> &entries)
{
    QList<WordRow> rows;
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const DictionaryEntry &entry = entries[i];
        for (const QString &word : QStringList{entry.word} + entry.forms)
            rows.append({entry.kind, DictionarySortKey(entry.kind, word), word, int(i + 1)});
    }
    std::sort(rows.begin(), rows.end(), [](const WordRow &a, const WordRow &b) {
        return std::tie(a.kind, a.sortKey, a.word) < std::tie(b.kind, b.sortKey, b.word);
    });
    const auto twice = std::adjacent_find(rows.cbegin(), rows.cend(), [](const WordRow &a, const WordRow &b) {
        return a.kind == b.kind && a.word == b.word;
    });
    if (twice != rows.cend())
        throw ToolError(u"\"%1\" has two entries in dictionary %2"_s.arg(twice->word).arg(twice->kind));
    return rows;
}

/// A select on one of the procedures, prepared once and run for many words.
class Question : public TpFIBDataSet
{
public:
    Question(DataFile &file, const QString &sql)
    {
        SetDatabase(&file.Database());
        SetTransaction(&file.Transaction());
        SelectSQL() = {sql};
    }
};

QStringList ListedWords(DataFile &file, int kind)
{
    Question list(file, u"select e.WORD_NAME, e.DICT_TYPE from SP_GET_LIST_WORDS(:A_DICT) e"_s);
    list.ParamByName(u"A_DICT"_s).SetAsInteger(kind);
    QStringList words;
    for (list.Open(); !list.Eof(); list.Next()) {
        if (const int told = list.FieldByName(u"DICT_TYPE"_s).AsInteger(); told != kind)
            throw DatabaseError(u"row %1 says that it is of dictionary %2"_s.arg(words.size() + 1).arg(told));
        words.append(list.FieldByName(u"WORD_NAME"_s).AsString());
    }
    return words;
}

/// The natural order of the list tables is the order of storing; should an engine ever store otherwise, no file is
/// made.
void ProveOrder(DataFile &file, const QList<WordRow> &rows)
{
    auto expected = rows.cbegin();
    for (int kind = 1; kind <= LastKind; ++kind) {
        for (const QString &word : ListedWords(file, kind)) {
            if (expected == rows.cend() || expected->kind != kind || expected->word != word)
                throw ToolError(u"the engine has not kept the order of dictionary %1 at \"%2\""_s.arg(kind).arg(word));
            ++expected;
        }
    }
}

class KindCheck
{
public:
    KindCheck(DataFile &file, int kind, Console &console)
        : m_checker(kind), m_console(console), m_kind(kind), m_file(file),
          m_content(file, u"select E.WORD_CONTENT, E.WORD_CONTENT_2 "
                          "from SP_GET_WORD_CONTENT(:DICT_TYPE, :WORD_NAME, :MULTI_DICT) E"_s),
          m_check(file, u"select sp.result from sp_check_word(:TYPE_DICT, :A_WORD) sp"_s)
    {}

    DictionaryChecker Run()
    {
        QStringList words;
        Try(ListProcedure, [&] { words = ListedWords(m_file, m_kind); });
        bool contentWorks = true;
        bool checkWorks = true;
        qsizetype done = 0;
        for (const QString &word : words) {
            m_checker.AddWord(word);
            // A procedure that failed would fail for every other word too.
            contentWorks = contentWorks && Try(ContentProcedure, [&] {
                               m_checker.AddEntry(word, Entry(word, false), Entry(word, true));
                           });
            checkWorks = checkWorks && Try(CheckProcedure, [&] { m_checker.AddExistence(word, Exists(word)); });
            m_console.Progress(u"dictionary %1"_s.arg(m_kind), ++done, words.size());
        }
        m_console.EndProgress();
        return m_checker;
    }

private:
    template <typename Action>
    bool Try(const char16_t *procedure, const Action &action)
    {
        try {
            action();
            return true;
        } catch (const DatabaseError &error) {
            m_checker.AddFailure(QString::fromUtf16(procedure), error.Text());
            return false;
        }
    }

    /// Null for no row or a null.
    QByteArray Entry(const QString &word, bool several)
    {
        m_content.Close();
        m_content.ParamByName(u"DICT_TYPE"_s).SetAsInteger(m_kind);
        m_content.ParamByName(u"WORD_NAME"_s).SetAsString(word);
        m_content.ParamByName(u"MULTI_DICT"_s).SetAsInteger(several ? 1 : 0);
        m_content.Open();
        return m_content.IsEmpty() ? QByteArray() : m_content.FieldByName(u"WORD_CONTENT"_s).AsBytes();
    }

    bool Exists(const QString &word)
    {
        m_check.Close();
        m_check.ParamByName(u"TYPE_DICT"_s).SetAsInteger(m_kind);
        m_check.ParamByName(u"A_WORD"_s).SetAsString(TestedForm(m_kind, word));
        m_check.Open();
        return !m_check.IsEmpty() && m_check.FieldByName(u"RESULT"_s).AsInteger() == 1;
    }

    DictionaryChecker m_checker;
    Console &m_console;
    int m_kind;
    DataFile &m_file;
    Question m_content;
    Question m_check;
};

} // namespace

void WriteDictionary(const QList<DictionaryEntry> &entries, const QString &path, Console &console)
{
    const QList<WordRow> rows = InDictionaryOrder(entries);
    DataFile file;
    file.Create(path, PageSize);
    file.RunSchema(u"dictionary"_s);
    const QString work = u"PALIDICT.FDB"_s;
    const qsizetype total = 2 * rows.size() + entries.size();
    qsizetype done = 0;
    for (auto row = rows.cbegin(); row != rows.cend();) {
        const int kind = row->kind;
        RowWriter list(file, u"DICTIONARY_LIST_%1"_s.arg(kind), {u"WORD_NAME"_s});
        for (; row != rows.cend() && row->kind == kind; ++row) {
            list.Append({row->word});
            console.Progress(work, ++done, total);
        }
    }
    RowWriter words(file, u"DICTIONARY_WORD"_s,
                    {u"DICT_TYPE"_s, u"SORT_KEY"_s, u"WORD_NAME"_s, u"WORD_FORM"_s, u"ID_ENTRY"_s});
    for (const WordRow &row : rows) {
        words.Append({row.kind, QString::fromLatin1(row.sortKey), row.word, TestedForm(row.kind, row.word), row.entry});
        console.Progress(work, ++done, total);
    }
    RowWriter contents(file, u"DICTIONARY_ENTRY"_s, {u"ID_ENTRY"_s, u"WORD_CONTENT"_s});
    for (qsizetype i = 0; i < entries.size(); ++i) {
        contents.Append({int(i + 1), entries[i].content});
        console.Progress(work, ++done, total);
    }
    console.EndProgress();
    file.Transaction().Commit();
    file.RunSchema(u"dictionary-indices"_s);
    file.Transaction().SetActive(true);
    ProveOrder(file, rows);
    file.Finish(true);
}

bool IsDictionary(DataFile &file)
{
    Question procedures(file, u"select P.RDB$PROCEDURE_ID from RDB$PROCEDURES P "
                              "where trim(P.RDB$PROCEDURE_NAME) in ('%1', '%2', '%3')"_s.arg(
                                  QString::fromUtf16(ListProcedure), QString::fromUtf16(ContentProcedure),
                                  QString::fromUtf16(CheckProcedure)));
    procedures.Open();
    return !procedures.IsEmpty();
}

DictionaryReport CheckDictionary(DataFile &file, Console &console)
{
    DictionaryReport report;
    for (int kind = 1; kind <= LastKind; ++kind)
        KindCheck(file, kind, console).Run().ReportInto(report);
    return report;
}
