#pragma once

#include <QByteArray>
#include <QString>

/// The work file of the last excerpt, "tmpfocus.html" beside the program, shared by all copies of the program. Saving
/// takes an exclusive lock that lasts as long as this object; a killed process releases it. The file is written under
/// another name and renamed, so that it is the new one or the old one, and a link in its place is not followed.
/// Throws std::runtime_error with a text in the interface's language (UTF-8) that says what to do and names the cause.
class ExcerptFile
{
public:
    /// `folder` ends in a separator.
    explicit ExcerptFile(const QString &folder);
    ~ExcerptFile();
    ExcerptFile(const ExcerptFile &) = delete;
    ExcerptFile &operator=(const ExcerptFile &) = delete;

    /// Also throws if another copy has the lock; the file is then unchanged.
    void Save(const QByteArray &bytes);
    QByteArray Load() const;

private:
    void Hold();

    QString m_folder;
    int m_held = -1; ///< the folder, locked
};
