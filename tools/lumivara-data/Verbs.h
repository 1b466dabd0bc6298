#pragma once

#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/ImportManner.h"
#include "lumivara-data/dictionary/StarDictReader.h"
#include "lumivara-data/marks/MarksForms.h"

#include <optional>
#include <string_view>

/// The verbs of the tool.
std::span<const Verb> DataVerbs();

/// What a verb is about: the word that follows it.
enum class Thing { None, Canon, Dictionary, Marks };
/// Removes the first of `words` and returns the thing that it names; None, and nothing removed, if it names none.
Thing TakeThing(QStringList &words);
/// The thing's name.
QString NameOf(Thing thing);
/// The words of a verb that acts on marks only, without an optional "marks".
QStringList WithoutMarksWord(const QStringList &positional);

/// The forms of words, and of a canon.
enum class WordForm { StarDict, Tabbed, MarkUp };
enum class CanonForm { Segmented, Folder, Copy };
/// "stardict", "tsv" or "markup".
std::optional<WordForm> WordFormNamed(const QString &name);
/// A kind of words, 1 to 8. Throws ToolError for anything else.
int KindNamed(const QString &text);

/// KELORA.FDB, PALIDICT.FDB or TARUNECLIENT.FDB beside the tool.
QString DefaultFile(Thing thing);

// A verb in two steps: its words become options, and the options work. A parser is given what follows the verb and, of
// import and export, the thing. It throws ToolError for wrong usage, and gives nothing where only help was asked for,
// which is then told. Run() gives the exit code; it throws ToolError or DatabaseError.

struct BuildOptions
{
    QList<Thing> only; ///< all if empty
    QString data, out;
    bool isForced = false;
    ReportOptions report;
};

struct CheckOptions
{
    QString file;
    Thing wanted = Thing::None; ///< what the file must hold; None if anything will do
    ReportOptions report;
};

struct BackupOptions
{
    QString file;
    QString to; ///< empty for a name by the date
    bool isDaily = false;
    ReportOptions report;
};

struct RestoreOptions
{
    QString backup, to;
    bool drops = false; ///< what is no mark
    ReportOptions report;
};

struct ForgetMeOptions
{
    QString folder;
    bool isFolderNamed = false; ///< by the user
    bool isSure = false;        ///< is not asked
    ReportOptions report;
};

struct ImportCanonOptions
{
    QString source, into;
    std::optional<CanonForm> form; ///< by what the source looks like if there is none
    QString table;                 ///< of Folder
    QStringList authors;           ///< of Segmented
    QString names;                 ///< of Segmented and Folder: a table of names; may be empty
    QString client;                ///< marks whose list gets the texts; may be empty
    bool keepsNames = false;       ///< of that list
    bool renumbers = false;        ///< of Segmented and Folder
    bool isMended = false;         ///< of Copy
    bool adds = false;             ///< to the texts that are there
    ImportManner manner;
    ReportOptions report;
};

struct ImportDictionaryOptions
{
    QString source;                           ///< empty where only forms are brought
    QString forms;                            ///< a table of forms; may be empty
    FormPlace formPlace = FormPlace::Fitting; ///< of StarDict
    int kind = 0;
    QString into;
    std::optional<WordForm> form; ///< by what the source looks like if there is none
    bool replaces = false;        ///< the words of that kind; its forms where only forms are brought
    bool adds = false;            ///< to them
    ImportManner manner;
    ReportOptions report;
};

struct ImportMarksOptions
{
    QString file, into;
    QString canon;           ///< of the list's texts; the one beside the tool, if there is one, if empty
    bool isMarkdown = false; ///< CSV else
    ReportOptions report;
};

struct SyncOptions
{
    QString folder;
    QString file, canon;  ///< the canon as of ImportMarksOptions
    bool isTrial = false; ///< writes nothing
    ReportOptions report;
};

struct UpdateListOptions
{
    QString file, canon;
    bool writes = false; ///< only tells what differs else
    ReportOptions report;
};

struct ExportCanonOptions
{
    QString file, out;
    bool isSegmented = false; ///< too
    ReportOptions report;
};

struct ExportDictionaryOptions
{
    QString file;
    int kind = 0;
    QString out;
    QString forms; ///< where the forms go; may be empty
    WordForm form = WordForm::Tabbed;
    ReportOptions report;
};

struct WordsOptions
{
    QString source; ///< empty for a text of the canon
    int text = 0;   ///< its number
    QList<int> kinds;
    QString out, canon, dictionary;
    ReportOptions report;
};

struct ExportMarksOptions
{
    QString file;
    QString canon; ///< of the references; the one beside the tool, if there is one, if empty
    QString out;   ///< the standard output if empty
    MarksForm form;
    ReportOptions report;
};

std::optional<BuildOptions> ParseBuild(const QStringList &arguments, Console &console);
std::optional<CheckOptions> ParseCheck(const QStringList &arguments, Console &console);
std::optional<BackupOptions> ParseBackup(const QStringList &arguments, Console &console);
std::optional<RestoreOptions> ParseRestore(const QStringList &arguments, Console &console);
std::optional<ForgetMeOptions> ParseForgetMe(const QStringList &arguments, Console &console);
std::optional<ImportCanonOptions> ParseImportCanon(const QStringList &arguments, Console &console);
std::optional<ImportDictionaryOptions> ParseImportDictionary(const QStringList &arguments, Console &console);
std::optional<ImportMarksOptions> ParseImportMarks(const QStringList &arguments, Console &console);
std::optional<SyncOptions> ParseSync(const QStringList &arguments, Console &console);
std::optional<UpdateListOptions> ParseUpdateList(const QStringList &arguments, Console &console);
std::optional<ExportCanonOptions> ParseExportCanon(const QStringList &arguments, Console &console);
std::optional<ExportDictionaryOptions> ParseExportDictionary(const QStringList &arguments, Console &console);
std::optional<WordsOptions> ParseWords(const QStringList &arguments, Console &console);
std::optional<ExportMarksOptions> ParseExportMarks(const QStringList &arguments, Console &console);

int Run(const BuildOptions &options, Console &console);
int Run(const CheckOptions &options, Console &console);
int Run(const BackupOptions &options, Console &console);
int Run(const RestoreOptions &options, Console &console);
int Run(const ForgetMeOptions &options, Console &console);
int Run(const ImportCanonOptions &options, Console &console);
int Run(const ImportDictionaryOptions &options, Console &console);
int Run(const ImportMarksOptions &options, Console &console);
int Run(const SyncOptions &options, Console &console);
int Run(const UpdateListOptions &options, Console &console);
int Run(const ExportCanonOptions &options, Console &console);
int Run(const ExportDictionaryOptions &options, Console &console);
int Run(const WordsOptions &options, Console &console);
int Run(const ExportMarksOptions &options, Console &console);

/// The task of a process that SealedRun has started, and the verb's name.
inline constexpr std::string_view SealedVerb = "sealed";
int RunSealed(const QStringList &arguments, Console &console);
/// What the program starts to learn, of each of the files, how it may be opened: a verdict as JSON on a line each.
int RunScout(const QStringList &files, Console &console);

/// A verb, both steps of it. Throws as they do.
template <auto Parse>
int ParseAndRun(const QStringList &arguments, Console &console)
{
    const auto options = Parse(arguments, console);
    return options ? Run(*options, console) : ExitCode::Clean;
}
