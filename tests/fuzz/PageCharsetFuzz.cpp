#include "fuzz/ToolInput.h"

#include "lumivara-data/canon/CanonCopy.h"
#include "lumivara-data/files/PageFacts.h"

FUZZ_TARGET(PageCharset)
{
    const PageFacts facts = InspectPage(input);
    REQUIRE(facts.firstBadByte < input.size() && (facts.firstBadByte < 0) == input.isValidUtf8());
    const QByteArray mended = WithCharset(input);
    REQUIRE(InspectPage(mended).charset == "utf-8" && mended.isValidUtf8() == input.isValidUtf8());
}
