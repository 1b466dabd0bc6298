#include "dictionary/SoughtForms.h"
#include "dictionary/WordRules.h"
#include "lumivara-data/files/DataFile.h"
#include "stores/Schema.h"
#include "stores/engine/RowStore.h"
#include "stores/engine/Statement.h"
#include "tools/ToolSupport.h"

#include <map>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Words that part where forms of a search do: letters of two bytes and of three, capitals, blanks, signs that other
/// comparisons take for wildcards, and the longest that there are.
QStringList SomeWords()
{
    const QStringList starts = u"a ā ả b c đ Đ dh k kh ṃ n ñ Ng % _ ê Ệ o’ 𝄞 saṃ nib Nib"_s.split(u' ');
    const QStringList ends = u"|a|ā|n|nna| b|-b| đạo|%|_|'|ānaṃ|ng nh"_s.split(u'|');
    QStringList words;
    for (const QString &start : starts) {
        for (const QString &end : ends)
            words.append({start + end, start + u"ka"_s + end});
        words.append(start + QString(Length::Word - start.size(), u'x'));
    }
    words.removeDuplicates();
    return words;
}

/// 2,000 texts as they may be typed.
QStringList Searches()
{
    QStringList texts{u""_s,
                      u" "_s,
                      u"%"_s,
                      u"_%"_s,
                      u"\\"_s,
                      u"nowhere"_s,
                      QString(Length::Word, u'x'),
                      QString(Length::Word + 1, u'x'),
                      u"a"_s + QString(Length::Word, u'x'),
                      u"a"_s + QString(Length::Word, u' ')};
    const QStringList words = SomeWords();
    for (qsizetype length = 1; texts.size() < 2000; length = length == 4 ? Length::Word : length + 1) {
        for (const QString &word : words) {
            const QString text = word.left(length);
            for (const QString &typed : {text, MixedForm(text), text.toUpper(), text + u' ', u' ' + text}) {
                if (texts.size() < 2000)
                    texts.append(typed);
            }
        }
    }
    return texts;
}

class NarrowedList : public ToolTest
{
protected:
    static constexpr int Kinds[]{DictKind::PaliVietnamese, DictKind::VietnameseEnglish};

    NarrowedList()
    {
        QByteArray lines;
        for (const QString &word : SomeWords())
            lines += word.toUtf8() + "\tx\n";
        Put(u"w.tsv"_s, lines);
        for (const int kind : Kinds)
            Run(0, "import dictionary w.tsv --into P.FDB --quiet --kind " + std::to_string(kind));
        m_file.Open(Path(u"P.FDB"_s));
        m_forms = std::make_unique<SoughtForms>(m_file.Database(), m_file.Transaction());
    }
    ~NarrowedList() override
    {
        m_forms.reset();
        m_statements.clear();
        m_file.Close();
    }
    /// All rows one behind the other.
    QByteArrayList Rows(const QString &where, const QList<QVariant> &values)
    {
        std::unique_ptr<Statement> &statement = m_statements[where];
        if (!statement)
            statement = std::make_unique<Statement>(
                m_file.Database().Attachment(), m_file.Transaction().Native(),
                u"SELECT e.WORD_NAME, e.DICT_TYPE FROM SP_GET_LIST_WORDS(:A_DICT) e "_s + where);
        QByteArrayList rows;
        RowStore row;
        for (statement->OpenCursor(m_file.Transaction().Native(), values); statement->Fetch();) {
            row.Clear(statement->Columns());
            row.Append(statement->Message());
            rows.append(row.Value(0, 0).toString().toUtf8() + ' ' + row.Value(0, 1).toString().toUtf8());
        }
        return rows;
    }
    /// As the window lists them.
    QByteArrayList Found(int kind, const QString &text)
    {
        if (LowerForm(text).isEmpty())
            return All(kind);
        return Rows(u"WHERE (e.WORD_NAME starting with :SEARCHTEXT) or  "
                    "(e.WORD_NAME starting with :SEARCHTEXT_MIXER)"_s,
                    {kind, LowerForm(text), MixedForm(text)});
    }
    QByteArrayList All(int kind) { return Rows({}, {kind}); }
    void Tell(const QString &text)
    {
        const bool isBlank = LowerForm(text).isEmpty();
        m_forms->Tell(isBlank ? QString() : LowerForm(text), isBlank ? QString() : MixedForm(text));
    }

    DataFile m_file;
    std::unique_ptr<SoughtForms> m_forms;
    std::map<QString, std::unique_ptr<Statement>> m_statements;
};

TEST_F(NarrowedList, IsTheWholeListRowByRow)
{
    const QStringList searches = Searches();
    ASSERT_EQ(searches.size(), 2000);
    qsizetype found = 0;
    for (qsizetype i = 0; i < searches.size(); ++i) {
        const int kind = Kinds[i % 2];
        m_forms->Tell({}, {});
        const QByteArrayList whole = Found(kind, searches[i]);
        Tell(searches[i]);
        ASSERT_EQ(Found(kind, searches[i]), whole) << searches[i].toStdString();
        found += whole.isEmpty() ? 0 : 1;
    }
    EXPECT_GT(found, 1000) << "most of the searches find something";
}

TEST_F(NarrowedList, ReadsOnlyWhatIsSought)
{
    for (const int kind : Kinds) {
        for (const QString &text : {u"Nib"_s, u"đ"_s, u"ṃk"_s}) {
            Tell(text);
            EXPECT_FALSE(All(kind).isEmpty());
            EXPECT_EQ(All(kind), Found(kind, text)) << text.toStdString();
        }
        Tell(u"nowhere"_s);
        EXPECT_EQ(All(kind), QByteArrayList());
        // Blank, and longer than a word can be: the filter alone decides.
        for (const QString &text : {u" "_s, QString(Length::Word + 1, u'x')}) {
            Tell(text);
            EXPECT_EQ(All(kind).size(), SomeWords().size());
        }
    }
}

} // namespace
