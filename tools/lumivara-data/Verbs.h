#pragma once

#include "common/Tool.h"

/// What the tool can do.
std::span<const Verb> DataVerbs();

/// The verbs. `arguments` is what follows the verb's name; failures are thrown as ToolError or DatabaseError.
int RunBuild(const QStringList &arguments, Console &console);
int RunCheck(const QStringList &arguments, Console &console);
