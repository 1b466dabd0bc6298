#pragma once

/// Stands between the database engine and the disk of a process that links it, or is started with it in LD_PRELOAD:
/// counts the writes to the file of marks. `number` arms it: the process ends just before the write of that number from
/// now, as by a kill; 0 disarms it. Returns how many writes there were since the last call.
extern "C" int DieAtWrite(int number);
