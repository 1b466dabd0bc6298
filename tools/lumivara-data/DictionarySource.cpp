#include "lumivara-data/DictionarySource.h"

#include "lumivara-data/CanonSource.h"
#include "lumivara-data/Verbs.h"

#include <QDir>
#include <QHash>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype LongestWord = 63;
const QString FormsHeading = u"forms "_s;

/// Where in a source a fault stands.
class Place
{
public:
    explicit Place(const QString &fileName) : m_fileName(fileName) {}
    void NextLine() { ++m_number; }
    [[noreturn]] void Fail(const QString &message) const
    {
        throw ToolError(u"%1:%2: %3"_s.arg(m_fileName).arg(m_number).arg(message));
    }
    int KindOf(const QString &text) const
    {
        const int kind = text.trimmed().toInt();
        if (kind < 1 || kind > 8)
            Fail(u"the kind is a number from 1 to 8"_s);
        return kind;
    }
    void CheckWord(const QString &word) const
    {
        if (word.isEmpty() || word.size() > LongestWord)
            Fail(u"a word has 1 to %1 characters"_s.arg(LongestWord));
    }

private:
    QString m_fileName;
    int m_number = 0;
};

bool IsComment(const QString &line)
{
    return line.trimmed().isEmpty() || line.startsWith(u'#');
}

} // namespace

QList<DictionaryEntry> ParseDictionary(const QString &source, const QString &fileName)
{
    QList<DictionaryEntry> entries;
    QSet<QString> words;
    int kind = 0;
    Place place(fileName);
    const auto finishEntry = [&] {
        if (entries.isEmpty())
            return;
        entries.last().content = entries.last().content.trimmed();
        if (entries.last().content.isEmpty())
            place.Fail(u"\"%1\" has no entry"_s.arg(entries.last().word));
    };
    for (const QString &line : source.split(u'\n')) {
        place.NextLine();
        if (line.startsWith(u"% "_s)) {
            finishEntry();
            const QString word = line.mid(2).trimmed();
            if (kind == 0)
                place.Fail(u"a word before \"dictionary KIND\""_s);
            place.CheckWord(word);
            if (words.contains(word))
                place.Fail(u"\"%1\" comes twice"_s.arg(word));
            words.insert(word);
            entries.append({kind, word, {}, {}});
        } else if (!entries.isEmpty()) {
            entries.last().content += line.toUtf8() + '\n';
        } else if (line.startsWith(u"dictionary "_s)) {
            kind = place.KindOf(line.mid(11));
        } else if (!IsComment(line)) {
            place.Fail(u"text before the first word"_s);
        }
    }
    finishEntry();
    return entries;
}

void AddForms(QList<DictionaryEntry> &entries, const QString &source, const QString &fileName)
{
    QHash<std::pair<int, QString>, qsizetype> words;
    for (qsizetype i = 0; i < entries.size(); ++i)
        words.insert({entries[i].kind, entries[i].word}, i);

    Place place(fileName);
    QList<int> kinds;
    for (const QString &line : source.split(u'\n')) {
        place.NextLine();
        if (IsComment(line))
            continue;
        if (line.startsWith(FormsHeading)) {
            for (const QString &kind : line.mid(FormsHeading.size()).split(u' ', Qt::SkipEmptyParts))
                kinds.append(place.KindOf(kind));
            continue;
        }
        const QString word = line.section(u':', 0, 0).trimmed();
        const QStringList forms = line.section(u':', 1).split(u' ', Qt::SkipEmptyParts);
        bool found = false;
        for (const int kind : kinds) {
            const qsizetype entry = words.value({kind, word}, -1);
            if (entry < 0)
                continue;
            found = true;
            for (const QString &form : forms) {
                place.CheckWord(form);
                if (words.contains({kind, form}))
                    place.Fail(u"the form \"%1\" is a word already"_s.arg(form));
                words.insert({kind, form}, entry);
                entries[entry].forms.append(form);
            }
        }
        if (!found)
            place.Fail(u"no dictionary has the word \"%1\""_s.arg(word));
    }
}

QList<DictionaryEntry> ReadDictionarySources(const QString &folder)
{
    const QDir dir(folder);
    if (!dir.exists())
        throw ToolError(u"%1: there is no such folder"_s.arg(folder));
    QList<DictionaryEntry> entries;
    QList<std::pair<QString, QString>> forms;
    for (const QString &name : dir.entryList({u"*.txt"_s}, QDir::Files, QDir::Name)) {
        const QString path = dir.filePath(name);
        const QString source = ReadTextFile(path);
        if (source.startsWith(FormsHeading) || source.contains(u'\n' + FormsHeading))
            forms.append({source, path});
        else
            entries += ParseDictionary(source, path);
    }
    for (const auto &[source, path] : forms)
        AddForms(entries, source, path);
    return entries;
}
