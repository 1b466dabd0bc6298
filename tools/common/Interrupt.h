#pragma once

/// From now on SIGINT and SIGTERM are only recorded, so that a long operation can clean up its files first. A second
/// one ends the process at once.
void NoteInterrupts();
/// True once one was noted.
bool WasInterrupted();
/// Throws ToolError once an interrupt was noted. Every long work calls it between two rows; Console::Progress does.
void ThrowIfInterrupted();
