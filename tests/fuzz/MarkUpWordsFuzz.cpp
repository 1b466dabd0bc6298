#include "fuzz/ToolInput.h"

#include "lumivara-data/dictionary/WordLines.h"
#include "lumivara-data/files/TextLines.h"

#include <QBuffer>

namespace {

QList<MarkUpWords::Word> WordsOf(QByteArray text)
{
    QBuffer device(&text);
    device.open(QIODevice::ReadOnly);
    TextLines lines(device, QStringLiteral("words.txt"));
    MarkUpWords reader(lines, [](qsizetype line, const QString &) { REQUIRE(line > 0); });
    QList<MarkUpWords::Word> words;
    for (MarkUpWords::Word word; reader.Next(word);)
        words.append(word);
    return words;
}

} // namespace

FUZZ_TARGET(MarkUpWords)
{
    SilentReport silent;
    StrictWords words;
    EntryIntake intake(StrictWords::Kind, words, silent.report);
    QBuffer device;
    device.setData(input);
    device.open(QIODevice::ReadOnly);
    TakeMarkUpWords(device, QStringLiteral("words.txt"), intake, [] {});

    for (const MarkUpWords::Word &word : WordsOf(input)) {
        const QList<MarkUpWords::Word> again = WordsOf("% word\n" + MarkUpWords::Written(word.content));
        REQUIRE(again.size() == 1 && again.first().content == word.content);
    }
}
