#include "fuzz/ToolInput.h"

#include "lumivara-data/sample/SampleDictionary.h"
#include "lumivara-data/sample/SamplePassage.h"

FUZZ_TARGET(Sources)
{
    const QString text = QString::fromUtf8(input), name = QStringLiteral("source.txt");
    ReadOrRefuse(name, [&] { ParsePassages(text, name); });
    ReadOrRefuse(name, [&] {
        for (const SampleEntry &entry : ParseDictionary(text, name))
            REQUIRE(entry.kind >= 1 && entry.kind <= 8 && entry.word.size() <= 63 && !entry.content.isEmpty());
    });
    ReadOrRefuse(name, [&] {
        QList<SampleEntry> entries = ParseDictionary(QStringLiteral("dictionary 5\n% gata\ngone\n"), name);
        AddForms(entries, text, name);
        REQUIRE(entries.size() == 1);
    });
}
