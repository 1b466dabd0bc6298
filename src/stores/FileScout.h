#pragma once

#include "stores/engine/Database.h"
#include "stores/examination/ExaminedFiles.h"

#include <QProcess>
#include <QStringList>

#include <functional>
#include <map>

/// A process that goes ahead of the program: it examines the database files and connects to each once, before the
/// program does. So a stranger's file does nothing to the program, and one that does not answer does not stop it.
class FileScout
{
public:
    /// Starts the process for files in the order in which they will be asked for. `tool` is lumivara-data.
    FileScout(const QString &tool, const QStringList &files);
    /// Ends the process.
    ~FileScout();

    /// The verdict on a file. While it is not known, `isPatient` is called after every few seconds, with the device on
    /// which the answer will come; where that returns false, the file counts as refused. Without the tool nothing is
    /// known of any file, and it is judged by its pages alone. A file that has come in the place of one that is known
    /// is examined anew.
    Verdict VerdictOn(const QString &file, const std::function<bool(QIODevice &answers)> &isPatient);

    /// Call once the connection has ended: a file that nobody but the program has changed stays known.
    static void RememberLeft(const TpFIBDatabase &database);

    static constexpr int PatienceMilliseconds = 5000;

private:
    void Start(const QStringList &files);
    /// Takes the next line of the process; false at its end, or when the time is over.
    bool TakeLine(int milliseconds);

    QString m_tool;
    QProcess m_process;
    QStringList m_files;
    std::map<QString, Verdict> m_verdicts;
    qsizetype m_taken = 0;
};
