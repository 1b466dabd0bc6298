#pragma once

#include "common/Tool.h"

/// The verbs. `arguments` is what follows the verb's name; failures are thrown as ToolError.
int RunNumber(const QStringList &arguments, Console &console);
int RunList(const QStringList &arguments, Console &console);
int RunCheckLanguage(const QStringList &arguments, Console &console);
int RunFresh(const QStringList &arguments, Console &console);
int RunVerify(const QStringList &arguments, Console &console);
