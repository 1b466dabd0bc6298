#include "fuzz/ToolInput.h"

#include "lumivara-data/sample/SampleDictionary.h"
#include "lumivara-data/sample/SamplePassage.h"
#include "stores/Schema.h"

FUZZ_TARGET(Sources)
{
    const QString text = QString::fromUtf8(input), name = QStringLiteral("source.txt");
    ReadOrRefuse(name, [&] { ParsePassages(text, name); });
    ReadOrRefuse(name, [&] {
        for (const SampleEntry &entry : ParseDictionary(text, name))
            REQUIRE(IsOneOf(DictKind::All, entry.kind) && entry.word.size() <= Length::Word &&
                    !entry.content.isEmpty());
    });
    ReadOrRefuse(name, [&] {
        QList<SampleEntry> entries = ParseDictionary(QStringLiteral("dictionary 5\n% gata\ngone\n"), name);
        AddForms(entries, text, name);
        REQUIRE(entries.size() == 1);
    });
}
