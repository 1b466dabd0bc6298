#include "fuzz/ToolInput.h"

#include "dictionary/EntryFormatter.h"
#include "lumivara-data/dictionary/DictionaryCheck.h"
#include "lumivara-data/dictionary/EntryMarkup.h"

namespace {

void CheckEntry(const QByteArray &entry, const QByteArray &input)
{
    REQUIRE(entry.isEmpty() || entry.startsWith('@'));
    REQUIRE(TagFault(entry).isEmpty());
    REQUIRE(entry.isValidUtf8() || !input.isValidUtf8());
}

} // namespace

FUZZ_TARGET(EntryMarkup)
{
    const auto [word, text] = FuzzedPair(input);
    for (const auto dialect : {TagDialect::Html, TagDialect::Pango, TagDialect::Xdxf}) {
        EntryMarkup entry(word);
        entry.AddTagged(text, dialect);
        CheckEntry(entry.Take(), input);
    }
    EntryMarkup entry(word);
    entry.AddSound(word, '/', '/');
    entry.AddPlain(text);
    CheckEntry(entry.Take(), input);
}
