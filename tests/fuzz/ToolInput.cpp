#include "fuzz/ToolInput.h"

#include "lumivara-data/dictionary/DictionaryOrder.h"
#include "lumivara-data/dictionary/StarDictReader.h"
#include "stores/Schema.h"
#include "tools/lumivara-data/dictionary/StarDictSample.h"

#include <QFile>
#include <QSet>
#include <QTemporaryDir>

namespace {

StarDictSample Sample()
{
    return {.words = {{"abandon", "m@abandon /x/\n* verb\n- leave+go", -1, -1},
                      {"dhamma", QByteArray("tə\0h<p>a <b>law</b><ul><li>x &amp; y</ul>", 42), -1, -1},
                      {"gāma", "x<k>gāma</k>\n<ex>a</ex>", -1, -1},
                      {"Gotama", QByteArray("W\0\0\0\2abg<i>name</i>", 19), -1, -1}},
            .forms = {{"abandons", 0}, {"dhammo", 1}, {"gāmo", 2}},
            .types = "",
            .packing = StarDictSample::Packing::Chunks,
            .chunkSize = 32,
            .offsetBits = 64};
}

} // namespace

QString ScratchPath(const QString &name)
{
    static const QTemporaryDir folder;
    return folder.filePath(name);
}

QString ScratchFileWith(const QString &name, const QByteArray &bytes)
{
    QFile file(ScratchPath(name));
    REQUIRE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    return file.fileName();
}

QList<QByteArray> FuzzedFiles(const QByteArray &input, qsizetype count)
{
    static const QByteArray parting = "\n====\n";
    QList<QByteArray> files;
    qsizetype from = 0;
    while (files.size() < count) {
        const qsizetype end = files.size() + 1 < count ? input.indexOf(parting, from) : -1;
        files.append(input.mid(from, end < 0 ? -1 : end - from));
        from = end < 0 ? input.size() : end + parting.size();
    }
    return files;
}

int StrictWords::AddEntry(const QByteArray &content)
{
    REQUIRE(!content.trimmed().isEmpty() && content.size() <= 1 << 20 && content.isValidUtf8());
    return ++m_entries;
}

void StrictWords::RequireWord(int kind, const QString &word)
{
    REQUIRE(kind == Kind);
    REQUIRE(!word.isEmpty() && word.size() <= Length::Word && word == word.trimmed());
    for (const int order : DictKind::All) {
        const QByteArray key = DictionarySortKey(order, word);
        REQUIRE(key.size() <= 190);
        for (const char c : key)
            REQUIRE(c >= ' ' && c < '\x7F');
    }
}

void StrictWords::AddWord(int kind, const QString &word, int entry)
{
    REQUIRE(entry >= 1 && entry <= m_entries);
    RequireWord(kind, word);
}

void StrictWords::AddForm(int kind, const QString &form, const QString &word)
{
    REQUIRE(!form.isEmpty() && form.size() <= Length::Word && form == form.toLower());
    RequireWord(kind, word);
}

void ImportStarDict(const char *ending, const QByteArray &input)
{
    const QString name = QStringLiteral("words") + QLatin1StringView(ending), path = ScratchPath(name);
    if (static QSet<QString> made; !made.contains(name)) {
        Sample().Write(path);
        made.insert(name);
    }
    ScratchFileWith(name + QLatin1StringView(ending), input);
    for (const FormPlace forms : {FormPlace::List, FormPlace::Beside}) {
        SilentReport silent;
        StrictWords words;
        EntryIntake intake(StrictWords::Kind, words, silent.report);
        ReadOrRefuse(path, [&] {
            StarDictReader(path + QStringLiteral(".ifo"), silent.report).TakeAll(intake, silent.console, forms);
        });
    }
}
