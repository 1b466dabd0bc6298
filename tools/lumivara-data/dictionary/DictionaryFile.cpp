#include "lumivara-data/dictionary/DictionaryFile.h"

#include "common/Console.h"
#include "dictionary/WordRules.h"
#include "lumivara-data/dictionary/BroughtForms.h"
#include "lumivara-data/dictionary/DictionaryReader.h"
#include "lumivara-data/files/DataFile.h"
#include "stores/Schema.h"
#include "stores/data/FIBDataSet.h"
#include "stores/engine/DatabaseError.h"

using namespace Qt::StringLiterals;

namespace {

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
            contentWorks = contentWorks && Try(Procedure::GetWordContent, [&] {
                               m_checker.AddEntry(word, Entry(word, false), Entry(word, true));
                           });
            checkWorks = checkWorks && Try(Procedure::CheckWord, [&] { m_checker.AddExistence(word, Exists(word)); });
            m_console.Progress(u"dictionary %1"_s.arg(m_kind), ++done, total);
        };
        Try(Procedure::GetListWords, [&] {
            total = reader.CountWords(m_kind);
            reader.EachWord(m_kind, checkWord);
        });
        Try(Procedure::GetForms, [&] { CheckForms(reader); });
        m_console.EndProgress();
        return m_checker;
    }

private:
    /// Where the file tells no forms, the procedure is only asked once.
    void CheckForms(DictionaryReader &reader)
    {
        if (!BroughtForms::AreIn(m_file))
            return;
        qsizetype done = 0;
        const auto checkForm = [&](const QString &form, const QString &word, bool isGiven) {
            m_checker.AddForm(form, word, isGiven);
            ++done;
            m_console.Progress(u"forms of dictionary %1"_s.arg(m_kind), done, done, u"forms"_s);
        };
        if (reader.HasForms())
            reader.ProveForms(m_kind, checkForm);
        else
            BroughtForms(m_file).WordsOf(m_kind, u"a"_s);
    }

    template <typename Action>
    bool Try(const QString &procedure, const Action &action)
    {
        try {
            action();
            return true;
        } catch (const DatabaseError &error) {
            m_checker.AddFailure(procedure, error.Text());
            return false;
        }
    }

    /// Null for no row or a null.
    QByteArray Entry(const QString &word, bool several)
    {
        m_content.Close();
        m_content.ParamByName(Field::DictType).SetAsInteger(m_kind);
        m_content.ParamByName(Field::WordName).SetAsString(word);
        m_content.ParamByName(Parameter::MultiDict).SetAsInteger(several ? 1 : 0);
        m_content.Open();
        return m_content.IsEmpty() ? QByteArray() : m_content.FieldByName(Field::WordContent).AsBytes();
    }

    bool Exists(const QString &word)
    {
        m_check.Close();
        m_check.ParamByName(Parameter::TypeDict).SetAsInteger(m_kind);
        m_check.ParamByName(Parameter::AWord).SetAsString(TestedForm(m_kind, word));
        m_check.Open();
        return !m_check.IsEmpty() && m_check.FieldByName(Field::Result).AsInteger() == 1;
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
                                  Procedure::GetListWords, Procedure::GetWordContent, Procedure::CheckWord));
    procedures.Open();
    return !procedures.IsEmpty();
}

DictionaryReport CheckDictionary(DataFile &file, Console &console)
{
    DictionaryReport report;
    for (const int kind : DictKind::All)
        KindCheck(file, kind, console).Run().ReportInto(report);
    return report;
}
