#pragma once

#include "stores/Database.h"
#include "stores/FIBDataSet.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>

/// What a run of a tool left: exit code (-1 if it crashed or hung) and both streams.
struct ToolRun
{
    int exitCode = -1;
    QString output;
    QString errors;
};

/// Full path of the tool in the product folder.
QString ToolPath();
/// Runs the tool to its end, in `workingFolder` if one is given, with the variables of `environment` ("LANG=C") alone
/// if there are any.
ToolRun RunDataTool(const QStringList &arguments, const QString &workingFolder = {},
                    const QStringList &environment = {});

/// The same for lumivara-lang.
ToolRun RunLangTool(const QStringList &arguments, const QString &workingFolder = {});

/// The same for lumivara-skins.
ToolRun RunSkinsTool(const QStringList &arguments);

/// A copy of the windows' descriptions and tables and of the language files, as they stand in the project.
QString WindowSources();

/// The sources of the sample databases beside the test binaries.
QString SampleSources();

QByteArray BytesOf(const QString &path);
/// Writes a file, its folder included.
void WriteFile(const QString &path, const QByteArray &bytes);

/// Sources of a canon with two groups and two texts, and of a dictionary with one word, below `folder`.
void WriteSmallSources(const QString &folder);

/// A database opened for a test's own questions.
class OpenedDatabase
{
public:
    explicit OpenedDatabase(const QString &path);
    /// All rows of a select, values as the fields give them.
    QList<QList<QVariant>> Rows(const QString &select);
    void Execute(const QString &statement);
    /// Statements as the scripter takes them, committed.
    void RunScript(const QString &script);
    /// A statement that nobody else sees before Commit().
    void Hold(const QString &statement);
    void Commit() { m_transaction.Commit(); }

private:
    TpFIBDatabase m_database;
    TpFIBTransaction m_transaction;
};
