#include "fuzz/Fuzz.h"

#include "common/Tool.h"
#include "lumivara-data/DictionarySource.h"
#include "lumivara-data/Passage.h"

namespace {

/// A fault in a source is an error that names it, and nothing else.
template <typename Parse>
void Try(const Parse &parse)
{
    try {
        parse();
    } catch (const ToolError &error) {
        REQUIRE(error.Text().contains(QLatin1StringView("source.txt")));
    }
}

} // namespace

FUZZ_TARGET(Sources)
{
    const QString text = QString::fromUtf8(input), name = QStringLiteral("source.txt");
    Try([&] { ParsePassages(text, name); });
    Try([&] {
        for (const DictionaryEntry &entry : ParseDictionary(text, name))
            REQUIRE(entry.kind >= 1 && entry.kind <= 8 && entry.word.size() <= 63 && !entry.content.isEmpty());
    });
    Try([&] {
        QList<DictionaryEntry> entries = ParseDictionary(QStringLiteral("dictionary 5\n% gata\ngone\n"), name);
        AddForms(entries, text, name);
        REQUIRE(entries.size() == 1);
    });
}
