#include "fuzz/Fuzz.h"

#include "base/Windows1252.h"
#include "marks/Excerpt.h"

FUZZ_TARGET(Excerpt)
{
    REQUIRE(ToWindows1252(FromWindows1252(input)) == input);
    REQUIRE(DefaultTitle(input).size() <= DefaultTitleSize);

    const QString page = ExcerptPage(QString::fromUtf8(input));
    for (qsizetype at = page.indexOf(u'\n'); at >= 0; at = page.indexOf(u'\n', at + 1))
        REQUIRE(at > 0 && page[at - 1] == u'\r');
    REQUIRE(page.count(u'\r') == page.count(u'\n'));
}
