#include "lumivara-data/sample/SampleDictionary.h"

#include "common/Tool.h"
#include "lumivara-data/dictionary/DictionaryWriter.h"
#include "lumivara-data/dictionary/WordLines.h"
#include "lumivara-data/files/TextLines.h"
#include "lumivara-data/sample/SampleCanon.h"
#include "stores/Schema.h"

#include <QBuffer>
#include <QDir>
#include <QHash>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

const QString FormsHeading = u"forms "_s;

/// Where in a source a fault stands.
class Place
{
public:
    explicit Place(const QString &fileName, qsizetype number = 0) : m_fileName(fileName), m_number(number) {}
    void NextLine() { ++m_number; }
    [[noreturn]] void Fail(const QString &message) const
    {
        throw ToolError(u"%1:%2: %3"_s.arg(m_fileName).arg(m_number).arg(message));
    }
    int KindOf(const QString &text) const
    {
        const int kind = text.trimmed().toInt();
        if (!IsOneOf(DictKind::All, kind))
            Fail(u"the kind is a number from 1 to 8"_s);
        return kind;
    }
    void CheckWord(const QString &word) const
    {
        if (word.isEmpty() || word.size() > Length::Word)
            Fail(u"a word has 1 to %1 characters"_s.arg(Length::Word));
    }

private:
    QString m_fileName;
    qsizetype m_number;
};

bool IsComment(const QString &line)
{
    return line.trimmed().isEmpty() || line.startsWith(u'#');
}

} // namespace

QList<SampleEntry> ParseDictionary(const QString &source, const QString &fileName)
{
    QByteArray bytes = source.toUtf8();
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    TextLines lines(device, fileName);
    MarkUpWords words(lines, [&](qsizetype line, const QString &fault) { Place(fileName, line).Fail(fault); });
    QList<SampleEntry> entries;
    QSet<QString> known;
    for (MarkUpWords::Word word; words.Next(word);) {
        const QString name = QString::fromUtf8(word.name);
        const Place place(fileName, word.line);
        if (words.Kind() == 0)
            place.Fail(u"a word before \"dictionary KIND\""_s);
        place.CheckWord(name);
        if (known.contains(name))
            place.Fail(u"\"%1\" comes twice"_s.arg(name));
        if (word.content.isEmpty())
            place.Fail(u"\"%1\" has no entry"_s.arg(name));
        known.insert(name);
        entries.append({words.Kind(), name, word.content, {}});
    }
    return entries;
}

void AddForms(QList<SampleEntry> &entries, const QString &source, const QString &fileName)
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

QList<SampleEntry> ReadSampleDictionary(const QString &folder)
{
    const QDir dir(folder);
    if (!dir.exists())
        throw ToolError(u"%1: there is no such folder"_s.arg(folder));
    QList<SampleEntry> entries;
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
