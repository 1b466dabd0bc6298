#pragma once

#include "common/Tool.h"

/// What the tool can do.
std::span<const Verb> DataVerbs();

/// The verbs. `arguments` is what follows the verb's name; failures are thrown as ToolError or DatabaseError.
int RunBuild(const QStringList &arguments, Console &console);
int RunCheck(const QStringList &arguments, Console &console);
int RunBackup(const QStringList &arguments, Console &console);
int RunRestore(const QStringList &arguments, Console &console);
int RunExport(const QStringList &arguments, Console &console);

/// The positional arguments without the word "marks", which may stand in front to say what is meant.
QStringList WithoutMarksWord(QStringList positional);
/// TARUNECLIENT.FDB beside the tool.
QString DefaultMarksFile();
