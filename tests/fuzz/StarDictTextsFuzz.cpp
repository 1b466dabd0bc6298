#include "fuzz/ToolInput.h"

FUZZ_TARGET(StarDictTexts)
{
    ImportStarDict(".dict.dz", input);
}
