#include "fuzz/ToolInput.h"

#include "lumivara-data/dictionary/WordLines.h"

#include <QBuffer>

FUZZ_TARGET(TabbedWords)
{
    QByteArray line;
    AppendEscapedEntry(line, input);
    REQUIRE(UnescapedEntry(line) == input);
    QBuffer device;
    device.setData(input);
    device.open(QIODevice::ReadOnly);
    SilentReport silent;
    StrictWords words;
    EntryIntake intake(StrictWords::Kind, words, silent.report);
    TakeTabbedWords(device, QStringLiteral("words.tsv"), intake, [] {});
    device.seek(0);
    TakeTabbedForms(device, QStringLiteral("forms.tsv"), intake, [] {});
}
