/* One table of words for each kind, stored in dictionary order and holding nothing but the words: the list walks them in
   the order of storage, which needs no sort. Whoever adds words makes the tables anew. */
create table DICTIONARY_LIST_1 (WORD_NAME varchar(63) character set UNICODE_FSS not null);
create table DICTIONARY_LIST_2 (WORD_NAME varchar(63) character set UNICODE_FSS not null);
create table DICTIONARY_LIST_3 (WORD_NAME varchar(63) character set UNICODE_FSS not null);
create table DICTIONARY_LIST_4 (WORD_NAME varchar(63) character set UNICODE_FSS not null);
create table DICTIONARY_LIST_5 (WORD_NAME varchar(63) character set UNICODE_FSS not null);
create table DICTIONARY_LIST_6 (WORD_NAME varchar(63) character set UNICODE_FSS not null);
create table DICTIONARY_LIST_7 (WORD_NAME varchar(63) character set UNICODE_FSS not null);
create table DICTIONARY_LIST_8 (WORD_NAME varchar(63) character set UNICODE_FSS not null);

/* The same words with all that is known of them. Several may share an entry: a word and its forms. */
create table DICTIONARY_WORD (
    DICT_TYPE integer not null,
    SORT_KEY varchar(190) character set ASCII not null,
    WORD_NAME varchar(63) character set UNICODE_FSS not null,
    WORD_FORM varchar(63) character set UNICODE_FSS not null,
    ID_ENTRY integer not null
);

/* Forms that a source brings: words of the list that a form of a text comes of, in their order. */
create table DICTIONARY_FORM (
    DICT_TYPE integer not null,
    FORM_NAME varchar(63) character set UNICODE_FSS not null,
    PLACE integer not null,
    WORD_NAME varchar(63) character set UNICODE_FSS not null
);

create table DICTIONARY_ENTRY (
    ID_ENTRY integer not null,
    WORD_CONTENT blob sub_type 0 segment size 4096 not null
);

/* What a kind is called where its entry follows that of another kind, and the kind that follows its own: the one that
   reads the same language into the other. */
create table DICTIONARY_KIND (
    DICT_TYPE integer not null,
    KIND_NAME varchar(63) character set UNICODE_FSS not null,
    PARTNER integer,
    constraint PK_DICTIONARY_KIND primary key (DICT_TYPE)
);

COMMIT WORK;

insert into DICTIONARY_KIND values (1, 'Anh-Việt / English-Vietnamese', 7);
insert into DICTIONARY_KIND values (2, 'Việt-Anh / Vietnamese-English', 6);
insert into DICTIONARY_KIND values (3, 'Pháp-Việt / French-Vietnamese', null);
insert into DICTIONARY_KIND values (4, 'Việt-Pháp / Vietnamese-French', null);
insert into DICTIONARY_KIND values (5, 'Pāli-Việt / Pāli-Vietnamese', 8);
insert into DICTIONARY_KIND values (6, 'Việt-Pāli / Vietnamese-Pāli', 2);
insert into DICTIONARY_KIND values (7, 'Anh-Pāli / English-Pāli', 1);
insert into DICTIONARY_KIND values (8, 'Pāli-Anh / Pāli-English', 5);

SET TERM ^ ;

/* Who asks for words that start with one of two forms may tell them by two variables of the transaction, and need not
   wait for the others: the index tells the rows, which come in the order of storage all the same. */
create procedure SP_GET_LIST_WORDS (A_DICT integer)
returns (WORD_NAME varchar(63) character set UNICODE_FSS, DICT_TYPE integer)
as
declare variable LOWER_FORM varchar(63) character set UNICODE_FSS;
declare variable MIXED_FORM varchar(63) character set UNICODE_FSS;
begin
    DICT_TYPE = A_DICT;
    LOWER_FORM = rdb$get_context('USER_TRANSACTION', 'SEARCHTEXT');
    MIXED_FORM = rdb$get_context('USER_TRANSACTION', 'SEARCHTEXT_MIXER');
    if (LOWER_FORM is null or MIXED_FORM is null) then begin
        if (A_DICT = 1) then for select WORD_NAME from DICTIONARY_LIST_1 into :WORD_NAME do suspend;
        if (A_DICT = 2) then for select WORD_NAME from DICTIONARY_LIST_2 into :WORD_NAME do suspend;
        if (A_DICT = 3) then for select WORD_NAME from DICTIONARY_LIST_3 into :WORD_NAME do suspend;
        if (A_DICT = 4) then for select WORD_NAME from DICTIONARY_LIST_4 into :WORD_NAME do suspend;
        if (A_DICT = 5) then for select WORD_NAME from DICTIONARY_LIST_5 into :WORD_NAME do suspend;
        if (A_DICT = 6) then for select WORD_NAME from DICTIONARY_LIST_6 into :WORD_NAME do suspend;
        if (A_DICT = 7) then for select WORD_NAME from DICTIONARY_LIST_7 into :WORD_NAME do suspend;
        if (A_DICT = 8) then for select WORD_NAME from DICTIONARY_LIST_8 into :WORD_NAME do suspend;
    end else begin
        if (A_DICT = 1) then for select WORD_NAME from DICTIONARY_LIST_1
            where WORD_NAME starting with :LOWER_FORM or WORD_NAME starting with :MIXED_FORM into :WORD_NAME do suspend;
        if (A_DICT = 2) then for select WORD_NAME from DICTIONARY_LIST_2
            where WORD_NAME starting with :LOWER_FORM or WORD_NAME starting with :MIXED_FORM into :WORD_NAME do suspend;
        if (A_DICT = 3) then for select WORD_NAME from DICTIONARY_LIST_3
            where WORD_NAME starting with :LOWER_FORM or WORD_NAME starting with :MIXED_FORM into :WORD_NAME do suspend;
        if (A_DICT = 4) then for select WORD_NAME from DICTIONARY_LIST_4
            where WORD_NAME starting with :LOWER_FORM or WORD_NAME starting with :MIXED_FORM into :WORD_NAME do suspend;
        if (A_DICT = 5) then for select WORD_NAME from DICTIONARY_LIST_5
            where WORD_NAME starting with :LOWER_FORM or WORD_NAME starting with :MIXED_FORM into :WORD_NAME do suspend;
        if (A_DICT = 6) then for select WORD_NAME from DICTIONARY_LIST_6
            where WORD_NAME starting with :LOWER_FORM or WORD_NAME starting with :MIXED_FORM into :WORD_NAME do suspend;
        if (A_DICT = 7) then for select WORD_NAME from DICTIONARY_LIST_7
            where WORD_NAME starting with :LOWER_FORM or WORD_NAME starting with :MIXED_FORM into :WORD_NAME do suspend;
        if (A_DICT = 8) then for select WORD_NAME from DICTIONARY_LIST_8
            where WORD_NAME starting with :LOWER_FORM or WORD_NAME starting with :MIXED_FORM into :WORD_NAME do suspend;
    end
end^

/* No row if neither dictionary has the word, else one whose WORD_CONTENT is not null. */
create procedure SP_GET_WORD_CONTENT (
    DICT_TYPE integer, WORD_NAME varchar(63) character set UNICODE_FSS, MULTI_DICT integer)
returns (WORD_CONTENT blob sub_type 0, WORD_CONTENT_2 blob sub_type 0)
as
declare variable PARTNER integer;
declare variable PARTNER_NAME varchar(63) character set UNICODE_FSS;
begin
    select E.WORD_CONTENT
        from DICTIONARY_WORD W join DICTIONARY_ENTRY E on E.ID_ENTRY = W.ID_ENTRY
        where W.DICT_TYPE = :DICT_TYPE and W.WORD_NAME = :WORD_NAME
        into :WORD_CONTENT;
    if (MULTI_DICT = 1) then begin
        select P.DICT_TYPE, P.KIND_NAME
            from DICTIONARY_KIND K join DICTIONARY_KIND P on P.DICT_TYPE = K.PARTNER
            where K.DICT_TYPE = :DICT_TYPE
            into :PARTNER, :PARTNER_NAME;
        select E.WORD_CONTENT
            from DICTIONARY_WORD W join DICTIONARY_ENTRY E on E.ID_ENTRY = W.ID_ENTRY
            where W.DICT_TYPE = :PARTNER and W.WORD_NAME = :WORD_NAME
            into :WORD_CONTENT_2;
        if (WORD_CONTENT_2 is not null) then
            WORD_CONTENT = coalesce(WORD_CONTENT || ascii_char(10), '') || '# ' || PARTNER_NAME || ascii_char(10) || WORD_CONTENT_2;
    end
    if (WORD_CONTENT is not null) then suspend;
end^

create procedure SP_CHECK_WORD (TYPE_DICT integer, A_WORD varchar(63) character set UNICODE_FSS)
returns (RESULT smallint)
as
begin
    RESULT = 0;
    if (exists(select 1 from DICTIONARY_WORD W where W.DICT_TYPE = :TYPE_DICT and W.WORD_FORM = :A_WORD)) then
        RESULT = 1;
    suspend;
end^

/* The form is in lower case. In Pali the signs of one letter are one. Its own variable, because an index serves only
   texts of its character set. */
create procedure SP_GET_FORMS (TYPE_DICT integer, A_FORM varchar(63) character set UTF8)
returns (WORD varchar(63) character set UNICODE_FSS)
as
declare variable FORM varchar(63) character set UNICODE_FSS;
begin
    FORM = A_FORM;
    if (TYPE_DICT in (5, 8)) then
        FORM = replace(replace(replace(FORM, 'ṁ', 'ṃ'), 'ŋ', 'ṃ'), '''', '’');
    for select F.WORD_NAME from DICTIONARY_FORM F
        where F.DICT_TYPE = :TYPE_DICT and F.FORM_NAME = :FORM
        order by F.PLACE into :WORD do suspend;
end^

SET TERM ; ^

COMMIT WORK;
