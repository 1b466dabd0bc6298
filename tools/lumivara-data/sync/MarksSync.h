#pragma once

#include "lumivara-data/marks/TextsOfMarks.h"
#include "lumivara-data/sync/SyncFile.h"
#include "lumivara-data/sync/SyncPlan.h"
#include "lumivara-data/sync/SyncTables.h"

#include <QDir>
#include <QFile>

#include <memory>

class Console;
class DataFile;
class FileInTheMaking;
class Report;

/// Brings an open file of marks, which the program may have open, too, and the files of other machines in a folder to
/// the same: all that is in the folder comes into the file, or nothing, and then all of the file into its own file in
/// the folder.
class MarksSync
{
public:
    /// All outlive this. With `canonTexts` a list without a text of the Kelora gets all of them. With `isTrial` nothing
    /// is written.
    MarksSync(DataFile &file, const QString &path, const QDir &folder, const QList<KeloraText> &canonTexts,
              bool isTrial, Report &report, Console &console);
    ~MarksSync();

    /// Tells what it has done and left out. Throws ToolError, with nothing written, where it can't be done.
    void Run();

private:
    /// A file in the folder.
    struct Other
    {
        QString name;
        std::unique_ptr<QFile> file;
        std::unique_ptr<SyncFileReader> reader;
    };

    void ReadFolder();
    void RunOnce();
    void Begin();
    std::vector<SyncRow> ReadRows();
    bool Travels(const Mark &mark) const { return SyncFile::CanTake(mark); }
    void Make();
    void WriteSteps(std::vector<std::pair<SyncId, int>> &placed);
    void Retime(const SyncStep &step, int key);
    /// Writes the machine's own file. Gives its checksum.
    QByteArray WriteOwn(const QString &path);
    Mark ContentOf(const SyncId &version) const;
    QString TitleOf(const SyncId &version) const;
    void Tell();

    DataFile &m_file;
    QString m_path;
    QDir m_folder;
    QList<KeloraText> m_canonTexts;
    bool m_isTrial;
    Report &m_report;
    Console &m_console;
    std::vector<Other> m_others;
    QString m_ownName; ///< in the folder

    // Of one try:
    SyncMemory m_before, m_after;
    SyncPlan m_plan;
    std::map<int, QString> m_titles; ///< of rows
    QStringList m_staying;           ///< marks that no file in the folder can hold
    qsizetype m_textCount = 0;
    QList<std::pair<QString, QString>> m_notes;
};
