#include "lumivara-data/sample/SampleWriter.h"

#include "common/Console.h"
#include "lumivara-data/canon/CanonWriter.h"
#include "lumivara-data/dictionary/DictionaryWriter.h"
#include "lumivara-data/files/DataFile.h"
#include "stores/Schema.h"

using namespace Qt::StringLiterals;

namespace {

QVariant TextOrNull(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

QVariant BytesOrNull(const QByteArray &bytes)
{
    return bytes.isEmpty() ? QVariant() : QVariant(bytes);
}

} // namespace

void WriteCanon(const SampleCanon &source, const QString &path, Console &console)
{
    DataFile file;
    file.Create(path);
    file.RunSchema(u"canon"_s);
    {
        RowWriter groups(file, Table::KeloraTree, GroupColumns());
        for (const CanonGroup &group : source.groups) {
            groups.Append({group.idVit, group.parent, TextOrNull(group.nameVietnamese), TextOrNull(group.namePali),
                           TextOrNull(group.nameEnglish)});
        }
    }
    {
        RowWriter texts(file, Table::KeloraContent, TextColumns());
        qsizetype done = 0;
        for (const SampleText &text : source.texts) {
            const TextPages pages = ComposePages(source, text);
            texts.Append({text.idVit, text.idVic, text.number, TextOrNull(text.nameVietnamese),
                          TextOrNull(text.namePali), TextOrNull(text.nameEnglish), BytesOrNull(pages.pali),
                          BytesOrNull(pages.english), BytesOrNull(pages.vietnamese), BytesOrNull(pages.parallel)});
            console.Progress(DatabaseFile::Canon, ++done, source.texts.size());
        }
    }
    console.EndProgress();
    file.Finish(true);
}

void WriteDictionary(const QList<SampleEntry> &entries, const QString &path, Console &console)
{
    DictionaryWriter writer(path);
    for (const SampleEntry &entry : entries) {
        const int number = writer.AddEntry(entry.content);
        for (const QString &word : QStringList{entry.word} + entry.forms)
            writer.AddWord(entry.kind, word, number);
    }
    writer.Finish(console, nullptr);
}
