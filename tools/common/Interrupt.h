#pragma once

/// From now on SIGINT, SIGTERM, SIGHUP and SIGQUIT wait for a thread that records them. The work then has a moment to
/// end by itself, at ThrowIfInterrupted(); if it does not, because the engine is busy or waits for another process, or
/// if a second signal comes, what Leftover knows of is removed and the process ends with code 2. A signal that the
/// process was started to ignore stays ignored, and so is SIGPIPE: a write that fails tells as much. The thread also
/// tells which lock file the work has been waiting for. A tool calls this first of all, before it has other threads.
void NoteInterrupts();
/// Undoes that in a child process, between fork and exec; only calls what is safe there.
void LetInterruptsThrough();
/// True once one was noted.
bool WasInterrupted();
/// Throws ToolError once an interrupt was noted. Every long work calls it between two rows; Console::Progress does.
void ThrowIfInterrupted();
/// True for the first caller alone, who is to tell how the process ends.
bool TakeLastWord();
