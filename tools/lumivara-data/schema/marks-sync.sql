/* What "sync" remembers, for itself alone: each version of a mark that it has met. ID_FOC is the row that shows a version
   that stands, and what follows it is what that row held; the past has neither. */
create table MARK_SYNC (
    VERSION_SYN varchar(32) character set UNICODE_FSS not null,
    MARK_SYN varchar(32) character set UNICODE_FSS,
    ID_FOC integer,
    FACE_SYN varchar(32) character set UNICODE_FSS,
    TIME_SYN varchar(24) character set UNICODE_FSS,
    EXCERPT_SYN varchar(32) character set UNICODE_FSS,
    TRAITS_SYN varchar(40) character set UNICODE_FSS,
    constraint PK_MARK_SYNC primary key (VERSION_SYN)
);

/* The file's own name among all. */
create table MARK_SYNC_FILE (
    NAME_SYF varchar(32) character set UNICODE_FSS not null,
    constraint PK_MARK_SYNC_FILE primary key (NAME_SYF)
);

COMMIT WORK;
