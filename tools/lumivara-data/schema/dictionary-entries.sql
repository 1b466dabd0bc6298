/* Once the entries of the sources are in: what two of them say on one word is then found by its number. */
alter table DICTIONARY_ENTRY add constraint PK_DICTIONARY_ENTRY primary key (ID_ENTRY);

COMMIT WORK;
