#pragma once

/// True if somebody may see the error stream as it is written.
bool ErrorsGoToATerminal();
bool OutputGoesToATerminal();
