/* What the reader adds: the list of texts that passages refer to, and the marked passages. */
create table SUTTA_LIST (
    NIK_SUT integer not null,
    NIC_SUT integer not null,
    NAME_SUT_VIE varchar(127) character set UNICODE_FSS,
    NAME_SUT_PAL varchar(127) character set UNICODE_FSS,
    NAME_SUT_ENG varchar(127) character set UNICODE_FSS,
    FAVOURITE_SUT smallint,
    constraint PK_SUTTA_LIST primary key (NIK_SUT, NIC_SUT)
);

create table SUTTA_TEXT_FOCUS (
    ID_FOC integer not null,
    NAME_FOC varchar(127) character set UNICODE_FSS,
    TEXT_FOC blob sub_type 0 segment size 16384,
    PRIORITY_FOC integer,
    DESC_FOC varchar(2047) character set UNICODE_FSS,
    NIK_SUT integer,
    NIC_SUT integer,
    DATETIME_FOC timestamp,
    KEYWORD_FOC varchar(127) character set UNICODE_FSS,
    constraint PK_SUTTA_TEXT_FOCUS primary key (ID_FOC)
);

/* The next key is max(ID_FOC) + 1, asked at each post. */
create descending index IDX_SUTTA_TEXT_FOCUS_LAST on SUTTA_TEXT_FOCUS (ID_FOC);
create index IDX_SUTTA_TEXT_FOCUS_TEXT on SUTTA_TEXT_FOCUS (NIK_SUT, NIC_SUT);

COMMIT WORK;
