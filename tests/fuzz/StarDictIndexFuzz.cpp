#include "fuzz/ToolInput.h"

FUZZ_TARGET(StarDictIndex)
{
    ImportStarDict(".idx", input);
}
