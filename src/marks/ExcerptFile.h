#pragma once

#include <QByteArray>
#include <QString>

/// The work file of the last excerpt, "tmpfocus.html" beside the program, which all copies of the program share. Who
/// saves holds it for himself until the object dies, also when the process is killed. The file is created beside and
/// renamed over, so that it is whole or the old one, and no link that stands in its place is followed.
/// Failures are thrown as std::runtime_error, with a text in the interface's language (UTF-8) that names the cause.
class ExcerptFile
{
public:
    /// `folder` ends in a separator.
    explicit ExcerptFile(const QString &folder);
    ~ExcerptFile();
    ExcerptFile(const ExcerptFile &) = delete;
    ExcerptFile &operator=(const ExcerptFile &) = delete;

    /// Throws also when another copy holds the file; the file is then left alone.
    void Save(const QByteArray &bytes);
    QByteArray Load() const;

private:
    void Hold();

    QString m_folder;
    int m_held = -1; ///< the folder, locked
};
