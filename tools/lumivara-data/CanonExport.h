#pragma once

#include "lumivara-data/CanonTable.h"

#include <QLockFile>

class CanonRows;
class Console;

/// A folder that is written under another name and takes its own once it is whole, in place of an older export of the
/// same name. Throws ToolError where something else stands there.
class ExportFolder
{
public:
    explicit ExportFolder(const QString &target);
    ~ExportFolder();
    Q_DISABLE_COPY_MOVE(ExportFolder)

    /// Writes a file, its folders included. `name` is relative.
    void Write(const QString &name, const QByteArray &bytes);
    void Finish();

private:
    QString m_target;
    QString m_path;
    QString m_lastFolder;
    QLockFile m_lock;
};

/// Writes a canon as a folder of its pages, byte for byte, with the table that an import reads. With `withSegments`
/// each text stands there as segmented JSON too, for other programs.
void WriteCanonFolder(CanonRows &rows, ExportFolder &folder, bool withSegments, Report &report, Console &console);
