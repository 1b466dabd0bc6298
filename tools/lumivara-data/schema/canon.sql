/* The collection: groups and texts. Blobs are binary to the engine, so that pages come back byte for byte. */
create table KELORA_TREE (
    ID_VIT integer not null,
    P_ID_VIT integer not null,
    NAME_VIT_VIE varchar(127) character set UNICODE_FSS,
    NAME_VIT_PAL varchar(127) character set UNICODE_FSS,
    NAME_VIT_ENG varchar(127) character set UNICODE_FSS,
    constraint PK_KELORA_TREE primary key (ID_VIT)
);

create table KELORA_CONTENT (
    ID_VIT integer not null,
    ID_VIC integer not null,
    NAME_VIC_PAL varchar(127) character set UNICODE_FSS,
    NAME_VIC_ENG varchar(127) character set UNICODE_FSS,
    NAME_VIC_VIE varchar(127) character set UNICODE_FSS,
    NUMBER_VIC integer,
    CONTENT_VIC_PAL blob sub_type 0 segment size 16384,
    CONTENT_VIC_ENG blob sub_type 0 segment size 16384,
    CONTENT_VIC_VIE blob sub_type 0 segment size 16384,
    CONTENT_VIC_PAL_VIE blob sub_type 0 segment size 16384,
    constraint PK_KELORA_CONTENT primary key (ID_VIT, ID_VIC)
);

create index IDX_KELORA_CONTENT_VIC on KELORA_CONTENT (ID_VIC);

/* Where imported texts came from: by that they keep their numbers in the next import, and texts that are gone leave
   theirs to nobody. The program does not read it. */
create table KELORA_SOURCE (
    ID_VIC integer not null,
    ID_SOURCE varchar(255) character set UNICODE_FSS not null
);

COMMIT WORK;
