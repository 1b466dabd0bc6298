#include "lumivara-data/DictionaryFile.h"

#include "common/Console.h"
#include "lumivara-data/DataFile.h"
#include "lumivara-data/DictionaryOrder.h"

using namespace Qt::StringLiterals;

void WriteDictionary(const QList<DictionaryEntry> &entries, const QString &path, Console &console)
{
    DataFile file;
    file.Create(path);
    file.RunSchema(u"dictionary"_s);
    {
        RowWriter words(file, u"DICTIONARY_WORD"_s,
                        {u"DICT_TYPE"_s, u"SORT_KEY"_s, u"WORD_NAME"_s, u"WORD_FORM"_s, u"ID_ENTRY"_s});
        for (qsizetype i = 0; i < entries.size(); ++i) {
            const DictionaryEntry &entry = entries[i];
            words.Append({entry.kind, QString::fromLatin1(DictionarySortKey(entry.kind, entry.word)), entry.word,
                          DictionaryWordForm(entry.kind, entry.word), int(i + 1)});
        }
    }
    {
        RowWriter contents(file, u"DICTIONARY_ENTRY"_s, {u"ID_ENTRY"_s, u"WORD_CONTENT"_s});
        for (qsizetype i = 0; i < entries.size(); ++i) {
            contents.Append({int(i + 1), entries[i].content});
            console.Progress(u"PALIDICT.FDB"_s, i + 1, entries.size());
        }
    }
    console.EndProgress();
    file.Finish(true);
}
