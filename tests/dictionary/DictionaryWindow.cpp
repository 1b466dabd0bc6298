#include "dictionary/DictionaryWindow.h"

#include "stores/engine/Scripter.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

const char dictionaryScript[] = R"(
create table WORDS (KIND integer, NUM integer, NAME varchar(63) character set unicode_fss, CONTENT blob sub_type 0);
create exception BAD_WORD 'the entry is broken';
commit work;
set term ^ ;
create procedure SP_GET_LIST_WORDS (A_DICT integer)
returns (WORD_NAME varchar(63) character set unicode_fss, DICT_TYPE integer) as begin
    for select NAME, KIND from WORDS where KIND = :A_DICT order by NUM into :WORD_NAME, :DICT_TYPE do suspend;
    if (A_DICT = 4) then exception BAD_WORD;
end^
create procedure SP_GET_WORD_CONTENT (DICT_TYPE integer, WORD_NAME varchar(63) character set unicode_fss,
    MULTI_DICT integer)
returns (WORD_CONTENT blob sub_type 0, WORD_CONTENT_2 blob sub_type 0) as begin
    if (WORD_NAME = 'bad') then exception BAD_WORD;
    if (WORD_NAME = 'gone') then exit;
    select CONTENT from WORDS where KIND = :DICT_TYPE and NAME = :WORD_NAME into :WORD_CONTENT;
    if (WORD_NAME = 'huge') then
        select list(rpad('', 10000, 'word '), ascii_char(10)) from (select first 1100 1 X from RDB$FIELDS A, RDB$FIELDS B)
        into :WORD_CONTENT;
    if (MULTI_DICT = 1) then WORD_CONTENT = WORD_CONTENT || ascii_char(10) || '# partner';
    suspend;
end^
create procedure SP_CHECK_WORD (TYPE_DICT integer, A_WORD varchar(63) character set unicode_fss)
returns (RESULT smallint) as begin
    if (upper(A_WORD) = 'NONE') then exit;
    if (upper(A_WORD) = 'BAD') then exception BAD_WORD;
    RESULT = 0;
    if (upper(A_WORD) = 'NULL') then RESULT = null;
    if (exists(select 1 from WORDS where KIND = :TYPE_DICT
               and iif(KIND = 1, lower(NAME), upper(NAME)) = :A_WORD)) then RESULT = 1;
    suspend;
end^
execute block as declare variable N integer = 0; begin
    while (N < 60) do begin
        insert into WORDS values (5, 100 + :N, 'v' || :N, '- sense of v' || :N);
        N = N + 1;
    end
end^
set term ; ^
insert into WORDS values (0, 1, 'zero', '- of none');
insert into WORDS values (1, 1, 'dog', '@dog <a id=a href="https://example.org/dog">link</a>');
insert into WORDS values (1, 2, 'dogma', '- belief'); insert into WORDS values (1, 3, 'english', '- Anh');
insert into WORDS values (2, 1, 'bus', '- xe'); insert into WORDS values (2, 2, 'chó', '- dog');
insert into WORDS values (2, 3, 'đạo', '- path'); insert into WORDS values (2, 4, 'Đạo Phật', '- teaching');
insert into WORDS values (3, 1, 'chien', '- con chó'); insert into WORDS values (4, 1, 'chó', '- chien');
insert into WORDS values (5, 1, 'dhamma', '- pháp');
insert into WORDS values (5, 2, 'nibbāna', '- tịch tịnh');
insert into WORDS values (5, 3, 'Nibbānapura', '- thành phố'); insert into WORDS values (5, 4, 'nil', null);
insert into WORDS values (5, 5, 'gone', '- unread'); insert into WORDS values (5, 6, 'bad', '- unread');
insert into WORDS values (5, 7, 'huge', '- unread'); insert into WORDS values (5, 8, 'pali', '- tiếng pali');
insert into WORDS values (6, 1, 'giới', '- sīla'); insert into WORDS values (6, 2, 'viet', '- bhāsā');
insert into WORDS values (7, 1, 'law', '- dhamma'); insert into WORDS values (8, 1, 'dhamma', '- law');
insert into WORDS values (8, 2, 'sīla', '- virtue');
commit work;
)";

/// Made once and copied for each test.
QString TheDictionary(const QString &program)
{
    static const ScratchFolder folder;
    const QString path = folder.Path(u"PALIDICT.FDB"_s);
    if (!QFile::exists(path))
        MakeDatabase(path, program, dictionaryScript);
    return path;
}

} // namespace

DictionaryWindow::~DictionaryWindow()
{
    End();
    QFile::remove(Beside(u"PALIDICT.FDB"_s));
    DictionaryKind = 0;
    MultiDictionary = false;
    LastWord.clear();
}

void DictionaryWindow::StartReader(int languageSutta, int interfaceLang)
{
    QFile::copy(TheDictionary(program), Beside(u"PALIDICT.FDB"_s));
    StartOn(1101, languageSutta, interfaceLang);
    InterfaceLang = interfaceLang;
    MultiDictionary = false;
    ASSERT_TRUE(WaitPage());
}

void DictionaryWindow::RunScript(const QString &script)
{
    TpFIBScripter scripter;
    scripter.SetDatabase(&dictionary->dbDictionary);
    scripter.Script() = script.split(u'\n');
    scripter.ExecuteScript();
}

void DictionaryWindow::OpenOn(int kind)
{
    DictionaryKind = kind;
    Trigger("acDictionary");
    FindDictionary();
}

void DictionaryWindow::FindDictionary()
{
    form = qobject_cast<TfrmDictionary *>(FindForm(u"frmDictionary"_s));
    ASSERT_TRUE(form);
}

QStringList DictionaryWindow::Words()
{
    QStringList words;
    if (form->qryWords.Active())
        form->qryWords.FetchAll();
    for (int row = 0; form->qryWords.Active() && row < form->qryWords.RecordCount(); ++row)
        words.append(form->qryWords.TextAt(row, 0));
    return words;
}

bool DictionaryWindow::EntryShows(const QString &text)
{
    if (WaitFor([&] { return form && Entry().IsComplete() && Entry().Source().contains(text.toUtf8()); }, 60000))
        return true;
    ADD_FAILURE() << "the entry is " << (form && Entry().IsComplete() ? "complete" : "not complete") << ": "
                  << (form ? Entry().Source().right(200).toStdString() : "");
    return false;
}
