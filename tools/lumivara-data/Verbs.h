#pragma once

#include "common/Tool.h"

/// The verbs of the tool.
std::span<const Verb> DataVerbs();

/// The verbs. `arguments` is what follows the verb's name; failures are thrown as ToolError or DatabaseError.
int RunBuild(const QStringList &arguments, Console &console);
int RunCheck(const QStringList &arguments, Console &console);
int RunBackup(const QStringList &arguments, Console &console);
int RunRestore(const QStringList &arguments, Console &console);
int RunImport(const QStringList &arguments, Console &console);
int RunExport(const QStringList &arguments, Console &console);
int RunForgetMe(const QStringList &arguments, Console &console);

/// Import and export of each thing; `arguments` follow its name.
int ImportCanon(const QStringList &arguments, Console &console);
int ImportDictionary(const QStringList &arguments, Console &console);
int ImportMarks(const QStringList &arguments, Console &console);
int ExportCanon(const QStringList &arguments, Console &console);
int ExportDictionary(const QStringList &arguments, Console &console);
int ExportMarks(const QStringList &arguments, Console &console);

/// The thing that a verb acts on: the word after it.
enum class Thing { None, Canon, Dictionary, Marks };
/// Removes the first of `words` and returns the thing that it names; None, and nothing removed, if it names none.
Thing TakeThing(QStringList &words);
/// The thing's name.
QString NameOf(Thing thing);
/// The words of a verb that acts on marks only, without an optional "marks".
QStringList WithoutMarksWord(const QStringList &positional);

/// KELORA.FDB, PALIDICT.FDB or TARUNECLIENT.FDB beside the tool.
QString DefaultFile(Thing thing);
