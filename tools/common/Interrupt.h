#pragma once

/// From now on Ctrl+C and the system's wish that the process end are only noted, so that a long work can put its files
/// in order first. A second one ends the process at once.
void NoteInterrupts();
/// True once one was noted.
bool WasInterrupted();
/// Throws ToolError once an interrupt was noted. Every long work calls it between two rows; Console::Progress does.
void ThrowIfInterrupted();
