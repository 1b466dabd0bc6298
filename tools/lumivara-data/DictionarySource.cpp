#include "lumivara-data/DictionarySource.h"

#include "lumivara-data/CanonSource.h"
#include "lumivara-data/DictionaryOrder.h"
#include "lumivara-data/Verbs.h"

#include <QDir>
#include <QSet>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype LongestWord = 63;

}

QList<DictionaryEntry> ParseDictionary(const QString &source, const QString &fileName)
{
    QList<DictionaryEntry> entries;
    QSet<QString> words;
    int kind = 0;
    int number = 0;
    const auto fail = [&](const QString &message) {
        throw ToolError(u"%1:%2: %3"_s.arg(fileName).arg(number).arg(message));
    };
    for (const QString &line : source.split(u'\n')) {
        ++number;
        if (line.startsWith(u"% "_s)) {
            const QString word = line.mid(2).trimmed();
            if (kind == 0)
                fail(u"a word before \"dictionary KIND\""_s);
            if (word.isEmpty() || word.size() > LongestWord)
                fail(u"a word has 1 to %1 characters"_s.arg(LongestWord));
            if (words.contains(word))
                fail(u"\"%1\" comes twice"_s.arg(word));
            words.insert(word);
            entries.append({kind, word, {}});
        } else if (!entries.isEmpty()) {
            entries.last().content += line.toUtf8() + '\n';
        } else if (line.startsWith(u"dictionary "_s)) {
            kind = line.mid(11).trimmed().toInt();
            if (kind < 1 || kind > 8)
                fail(u"the kind is a number from 1 to 8"_s);
        } else if (!line.trimmed().isEmpty() && !line.startsWith(u'#')) {
            fail(u"text before the first word"_s);
        }
    }
    for (DictionaryEntry &entry : entries)
        entry.content = entry.content.trimmed();
    return entries;
}

QList<DictionaryEntry> ReadDictionarySources(const QString &folder)
{
    const QDir dir(folder);
    if (!dir.exists())
        throw ToolError(u"%1: there is no such folder"_s.arg(folder));
    QList<DictionaryEntry> entries;
    for (const QString &name : dir.entryList({u"*.txt"_s}, QDir::Files, QDir::Name))
        entries += ParseDictionary(ReadTextFile(dir.filePath(name)), dir.filePath(name));
    std::stable_sort(entries.begin(), entries.end(), [](const DictionaryEntry &a, const DictionaryEntry &b) {
        return std::tuple(a.kind, DictionarySortKey(a.kind, a.word), a.word) <
               std::tuple(b.kind, DictionarySortKey(b.kind, b.word), b.word);
    });
    return entries;
}
