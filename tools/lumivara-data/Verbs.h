#pragma once

#include "common/Tool.h"

/// What the tool can do.
std::span<const Verb> DataVerbs();

/// The verbs. `arguments` is what follows the verb's name; failures are thrown as ToolError or DatabaseError.
int RunBuild(const QStringList &arguments, Console &console);
int RunCheck(const QStringList &arguments, Console &console);
int RunBackup(const QStringList &arguments, Console &console);
int RunRestore(const QStringList &arguments, Console &console);
int RunImport(const QStringList &arguments, Console &console);
int RunExport(const QStringList &arguments, Console &console);
int RunForgetMe(const QStringList &arguments, Console &console);

/// Import and export by what is meant; `arguments` is what follows that word.
int ImportCanon(const QStringList &arguments, Console &console);
int ImportDictionary(const QStringList &arguments, Console &console);
int ImportMarks(const QStringList &arguments, Console &console);
int ExportCanon(const QStringList &arguments, Console &console);
int ExportDictionary(const QStringList &arguments, Console &console);
int ExportMarks(const QStringList &arguments, Console &console);

/// What a verb is about: the word that follows it.
enum class Thing { None, Canon, Dictionary, Marks };
/// The thing that the first of `words` names, which is then taken away; None if it names none.
Thing TakeThing(QStringList &words);
/// The thing's name.
QString NameOf(Thing thing);
/// What is left of a verb's words once the marks, its only thing, may have been named.
QStringList WithoutMarksWord(const QStringList &positional);

/// KELORA.FDB, PALIDICT.FDB or TARUNECLIENT.FDB beside the tool.
QString DefaultFile(Thing thing);
