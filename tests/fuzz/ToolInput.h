#pragma once

#include "fuzz/Fuzz.h"

#include "common/Console.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/dictionary/EntryIntake.h"

#include <QList>

/// What the parsers of the tools want beside their bytes.

/// A report that prints nothing, and the console of a work that shows no progress.
struct SilentReport
{
    SilentReport() { console.SetShowsProgress(false); }

    Console console{QStringLiteral("fuzz")};
    Report report;
};

/// A folder of this process alone; it goes when the process ends.
QString ScratchPath(const QString &name);
/// The same, with the bytes in it.
QString ScratchFileWith(const QString &name, const QByteArray &bytes);

/// An input as several files, parted by lines "===="; those that are missing are empty.
QList<QByteArray> FuzzedFiles(const QByteArray &input, qsizetype count);

/// A fault in a source ends as an error that begins with the source's name, and in no other way.
template <typename Parse>
void ReadOrRefuse(const QString &source, const Parse &parse)
{
    try {
        parse();
    } catch (const ToolError &error) {
        REQUIRE(error.Text().startsWith(source));
    }
}

/// Checks that a reader of words passes on only what a dictionary accepts.
class StrictWords : public WordStore
{
public:
    static constexpr int Kind = 5;

    int AddEntry(const QByteArray &content) override;
    void AddWord(int kind, const QString &word, int entry) override;
    void AddForm(int kind, const QString &form, const QString &word) override;

private:
    static void RequireWord(int kind, const QString &word);

    int m_entries = 0;
};

/// Imports a small dictionary in the StarDict form, of whose sound files the one of that ending is the input, with its
/// forms in the list and beside it.
void ImportStarDict(const char *ending, const QByteArray &input);
