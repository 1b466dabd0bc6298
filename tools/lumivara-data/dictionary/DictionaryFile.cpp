#include "lumivara-data/dictionary/DictionaryFile.h"

#include "common/Console.h"
#include "dictionary/WordRules.h"
#include "lumivara-data/dictionary/DictionaryReader.h"
#include "lumivara-data/dictionary/DictionaryWriter.h"
#include "lumivara-data/files/DataFile.h"
#include "stores/data/FIBDataSet.h"
#include "stores/engine/DatabaseError.h"

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t ListProcedure[] = u"SP_GET_LIST_WORDS";
constexpr char16_t ContentProcedure[] = u"SP_GET_WORD_CONTENT";
constexpr char16_t CheckProcedure[] = u"SP_CHECK_WORD";

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
        bool contentWorks = true;
        bool checkWorks = true;
        qsizetype done = 0;
        qsizetype total = 0;
        DictionaryReader reader(m_file);
        const auto checkWord = [&](const QString &word) {
            m_checker.AddWord(word);
            // A procedure that failed would fail for every other word too.
            contentWorks = contentWorks && Try(ContentProcedure, [&] {
                               m_checker.AddEntry(word, Entry(word, false), Entry(word, true));
                           });
            checkWorks = checkWorks && Try(CheckProcedure, [&] { m_checker.AddExistence(word, Exists(word)); });
            m_console.Progress(u"dictionary %1"_s.arg(m_kind), ++done, total);
        };
        Try(ListProcedure, [&] {
            total = reader.CountWords(m_kind);
            reader.EachWord(m_kind, checkWord);
        });
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
    for (int kind = 1; kind <= DictionaryWriter::LastKind; ++kind)
        KindCheck(file, kind, console).Run().ReportInto(report);
    return report;
}
