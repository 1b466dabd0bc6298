#include "common/Terminal.h"

#include <unistd.h>

bool ErrorsGoToATerminal()
{
    return ::isatty(STDERR_FILENO) != 0;
}

bool OutputGoesToATerminal()
{
    return ::isatty(STDOUT_FILENO) != 0;
}
