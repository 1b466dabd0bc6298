/* After the rows, when an index is made in one sorted pass; before it, every row would be put into each. */
create unique index IDX_DICTIONARY_WORD_NAME on DICTIONARY_WORD (DICT_TYPE, WORD_NAME);
create index IDX_DICTIONARY_WORD_FORM on DICTIONARY_WORD (DICT_TYPE, WORD_FORM);

COMMIT WORK;
