/* One table of words for each kind, stored in dictionary order and holding nothing but the words: the list walks them in
   the order of storage, which needs neither an index nor a sort. Whoever adds words makes the tables anew. */
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

create procedure SP_GET_LIST_WORDS (A_DICT integer)
returns (WORD_NAME varchar(63) character set UNICODE_FSS, DICT_TYPE integer)
as
begin
    DICT_TYPE = A_DICT;
    if (A_DICT = 1) then for select WORD_NAME from DICTIONARY_LIST_1 into :WORD_NAME do suspend;
    if (A_DICT = 2) then for select WORD_NAME from DICTIONARY_LIST_2 into :WORD_NAME do suspend;
    if (A_DICT = 3) then for select WORD_NAME from DICTIONARY_LIST_3 into :WORD_NAME do suspend;
    if (A_DICT = 4) then for select WORD_NAME from DICTIONARY_LIST_4 into :WORD_NAME do suspend;
    if (A_DICT = 5) then for select WORD_NAME from DICTIONARY_LIST_5 into :WORD_NAME do suspend;
    if (A_DICT = 6) then for select WORD_NAME from DICTIONARY_LIST_6 into :WORD_NAME do suspend;
    if (A_DICT = 7) then for select WORD_NAME from DICTIONARY_LIST_7 into :WORD_NAME do suspend;
    if (A_DICT = 8) then for select WORD_NAME from DICTIONARY_LIST_8 into :WORD_NAME do suspend;
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

SET TERM ; ^

COMMIT WORK;
