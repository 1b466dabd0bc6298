#include "fuzz/ToolInput.h"

FUZZ_TARGET(StarDictDescription)
{
    ImportStarDict(".ifo", input);
}
