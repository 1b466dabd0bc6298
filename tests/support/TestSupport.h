#pragma once

#include <QString>
#include <QTemporaryDir>

/// The product folder beside the test binaries, with trailing separator: client library, engine and sample files.
QString ProductFolder();

/// A folder for one test, beside which Firebird keeps its locks; deleted with the object.
class ScratchFolder
{
public:
    ScratchFolder();
    /// Full path of a name in the folder.
    QString Path(const QString &name) const { return m_dir.filePath(name); }

private:
    QTemporaryDir m_dir;
};
