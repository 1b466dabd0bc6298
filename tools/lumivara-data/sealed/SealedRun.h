#pragma once

#include "lumivara-data/files/PrivateFolder.h"
#include "lumivara-data/sealed/Frames.h"
#include "stores/examination/StoredFile.h"

#include <QString>

#include <functional>

class Console;
class Report;

/// What is done to a stranger's file: by another process of this tool, which is confined to a private folder with a
/// copy of the file, and watched. Whatever the file does there, it ends with that process.
class SealedRun
{
public:
    /// Copies the file into a private folder below `base`, the system's temporary folder if that is empty. A file that
    /// changes meanwhile is copied anew. Throws ToolError.
    explicit SealedRun(const QString &source, Console &console, const QString &base = {});
    ~SealedRun();
    Q_DISABLE_COPY_MOVE(SealedRun)

    const QString &CopyPath() const { return m_copy; }
    /// For a database: makes the copy read-only and unties it from other files. Returns what the file was like before.
    /// Throws ToolError for what Firebird must not open.
    StoredFile PrepareDatabase();
    /// Runs the task with the copy's path and further words. What it finds goes to the report, its rows to `takeRow`,
    /// its values to `takeValue`. Throws ToolError with the source's name, where the task fails, crashes, takes too
    /// much memory, or says nothing for too long.
    void Run(const QString &task, const QStringList &words, Report &report);
    std::function<void(const QString &table, const QList<QVariant> &row)> takeRow;
    std::function<void(const QString &key, const QString &value)> takeValue;

private:
    void Take(const Frame &frame, Report &report);
    void Copy();
    [[noreturn]] void Fail(const QString &why) const;

    QString m_source;
    Console &m_console;
    PrivateFolder m_folder;
    QString m_copy;
    QString m_place; ///< where the task was last
    QString m_failure;
    bool m_isDone = false;
};
