#include "fuzz/ToolInput.h"

FUZZ_TARGET(StarDictForms)
{
    ImportStarDict(".syn", input);
}
