#pragma once

#include "stores/examination/ExaminedFiles.h"

#include <QLatin1StringView>

class Console;

/// Keys of what the task "examine" tells, see Abilities.
namespace Ability {
inline constexpr QLatin1StringView Dynamic("dynamic");
inline constexpr QLatin1StringView ForeignCode("foreign code");
inline constexpr QLatin1StringView Outside("outside");
inline constexpr QLatin1StringView AtConnection("at connection");
} // namespace Ability

/// How a database beside the program may be opened: what is remembered of it, else by an examination in a sealed
/// process, which is remembered then. With `mayBeCopied` a file that can do more than keep rows becomes a private copy
/// in the folder of `memory`; without, it is refused. Never throws but for an interrupt: what can't be examined is
/// refused.
Verdict VerdictOn(const QString &path, bool mayBeCopied, ExaminedFiles &memory, Console &console);

/// The path under which a verb of the tool may open a database that anybody may have made: the file's own, or that of
/// its private copy. Throws ToolError, with the reason, where it may not be opened.
QString OpenablePath(const QString &path, bool mayBeCopied, Console &console);
