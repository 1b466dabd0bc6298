/* Words in narrow rows, in the order of the primary key; entries apart, so that a walk over the words never reads them. */
create table DICTIONARY_WORD (
    DICT_TYPE integer not null,
    SORT_KEY varchar(190) character set ASCII not null,
    WORD_NAME varchar(63) character set UNICODE_FSS not null,
    WORD_FORM varchar(63) character set UNICODE_FSS not null,
    ID_ENTRY integer not null,
    constraint PK_DICTIONARY_WORD primary key (DICT_TYPE, SORT_KEY, WORD_NAME)
);

create table DICTIONARY_ENTRY (
    ID_ENTRY integer not null,
    WORD_CONTENT blob sub_type 0 segment size 4096,
    constraint PK_DICTIONARY_ENTRY primary key (ID_ENTRY)
);

create index IDX_DICTIONARY_WORD_NAME on DICTIONARY_WORD (DICT_TYPE, WORD_NAME);
create index IDX_DICTIONARY_WORD_FORM on DICTIONARY_WORD (DICT_TYPE, WORD_FORM);

SET TERM ^ ;

create procedure SP_GET_LIST_WORDS (A_DICT integer)
returns (WORD_NAME varchar(63) character set UNICODE_FSS, DICT_TYPE integer)
as
begin
    for select W.WORD_NAME, W.DICT_TYPE from DICTIONARY_WORD W
        where W.DICT_TYPE = :A_DICT
        order by W.DICT_TYPE, W.SORT_KEY, W.WORD_NAME
        into :WORD_NAME, :DICT_TYPE
    do
        suspend;
end^

/* The partner of a kind is the one that reads the same language into the other: 1 and 7, 2 and 6, 5 and 8. */
create procedure SP_GET_WORD_CONTENT (
    DICT_TYPE integer, WORD_NAME varchar(63) character set UNICODE_FSS, MULTI_DICT integer)
returns (WORD_CONTENT blob sub_type 0, WORD_CONTENT_2 blob sub_type 0)
as
declare variable PARTNER integer;
begin
    WORD_CONTENT = null;
    WORD_CONTENT_2 = null;
    for select first 1 E.WORD_CONTENT
        from DICTIONARY_WORD W join DICTIONARY_ENTRY E on E.ID_ENTRY = W.ID_ENTRY
        where W.DICT_TYPE = :DICT_TYPE and W.WORD_NAME = :WORD_NAME
        into :WORD_CONTENT
    do begin
        if (MULTI_DICT = 1) then begin
            PARTNER = case DICT_TYPE when 1 then 7 when 7 then 1 when 2 then 6 when 6 then 2 when 5 then 8 when 8 then 5 end;
            for select first 1 E.WORD_CONTENT
                from DICTIONARY_WORD W join DICTIONARY_ENTRY E on E.ID_ENTRY = W.ID_ENTRY
                where W.DICT_TYPE = :PARTNER and W.WORD_NAME = :WORD_NAME
                into :WORD_CONTENT_2
            do
                WORD_CONTENT = WORD_CONTENT || ascii_char(10) || WORD_CONTENT_2;
        end
        suspend;
    end
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
