#include "fuzz/Fuzz.h"

#include "dictionary/EntryFormatter.h"

FUZZ_TARGET(Entry)
{
    const auto [fontName, entry] = FuzzedPair(input);
    const QString font = QString::fromUtf8(fontName);
    const QByteArray page = FormatEntry(entry, font);
    // A byte of an entry becomes a few of the page, so that an entry of any size can be shown.
    REQUIRE(page.size() <= FormatEntry(QByteArray(), font).size() + 128 * (entry.size() + 1) &&
            page.contains("charset=utf-8"));
}
