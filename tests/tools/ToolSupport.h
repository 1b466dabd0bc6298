#pragma once

#include "stores/data/FIBDataSet.h"
#include "stores/engine/Database.h"
#include "support/TestSupport.h"

#include <QByteArray>
#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <gmock/gmock.h>

/// What a run of the tool left: exit code (-1 if it crashed or hung) and both streams.
struct ToolRun
{
    int exitCode = -1;
    QString output;
    QString errors;
};

/// Runs lumivara-data to its end.
ToolRun RunDataTool(const QStringList &arguments);

/// "windows": a copy of their descriptions and tables and of the language files; "data": sources of the samples.
QString BesideTests(const QString &name);
/// The folder whose folder "lock" is this process's: here a database can be open in this process and in a tool.
QString LiveFolder();
QByteArray BytesOf(const QString &path);
/// Writes a file, its folder included.
void WriteFile(const QString &path, const QByteArray &bytes);

/// A database opened for a test's own questions.
class OpenedDatabase
{
public:
    explicit OpenedDatabase(const QString &path);
    /// All rows of a select, values as the fields give them.
    QList<QList<QVariant>> Rows(const QString &select);
    /// The same as text: "value,null|value,value".
    std::string Text(const std::string &select);
    void Execute(const QString &statement) { RunScript(statement + QChar(u';')); }
    /// Statements as the scripter takes them, committed.
    void RunScript(const QString &script);
    /// A statement whose effect is invisible to others before Commit().
    void Hold(const QString &statement);
    void Commit() { m_transaction.Commit(); }

private:
    TpFIBDatabase m_database;
    TpFIBTransaction m_transaction;
};

/// A folder of its own, in which a tool of the product is run by words as one types them, parted by blanks.
class ToolTest : public testing::Test
{
protected:
    explicit ToolTest(const QString &tool = QStringLiteral("lumivara-data")) : m_tool(tool) {}
    QString Path(const QString &name = {}) const { return m_scratch.Path(name); }
    void Put(const QString &name, const QByteArray &bytes) const { WriteFile(Path(name), bytes); }
    QByteArray Bytes(const QString &name) const { return BytesOf(Path(name)); }
    /// What the tool says on its output, and on its errors too if it has to fail (2). It must end with `exitCode`.
    std::string Run(int exitCode, const std::string &words, const QStringList &more = {},
                    const QByteArray &input = {}) const;
    void Start(QProcess &process, const std::string &words, const QStringList &more = {}) const;
    /// Stops the tool, or kills it, once its errors tell of `stage`, and gives them.
    std::string Stopped(bool isKilled, const std::string &stage, const std::string &words) const;
    std::string Ask(const QString &file, const std::string &select) const
    {
        return OpenedDatabase(Path(file)).Text(select);
    }
    /// What stands in the folder or one below, hidden things included.
    QStringList Names(const QString &folder = {}) const
    {
        return QDir(Path(folder)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    /// What unfinished work has left in the folder.
    QStringList Unfinished() const { return Names().filter(QRegularExpression(uR"(\.part|^\.lumivara)"_qs)); }

    QStringList m_environment; ///< instead of this process's own, if there are any
    ScratchFolder m_scratch;

private:
    QString m_tool;
};

/// Each of the parts must be in the text.
void ExpectParts(const std::string &text, const std::vector<std::string> &parts);
