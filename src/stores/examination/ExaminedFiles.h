#pragma once

#include "stores/engine/FileStamp.h"

#include <QJsonObject>
#include <QString>

#include <optional>

/// How a database may be opened that anybody may have made.
struct Verdict
{
    enum class Manner {
        AsItIs, ///< it can do nothing but keep rows
        AsCopy, ///< read-only, so that what it can do comes to nothing
        NotAtAll
    };
    Manner manner = Manner::NotAtAll;
    QString copy = {};    ///< of AsCopy: the private copy
    QString reason = {};  ///< of the others than AsItIs: why, a sentence
    FileStamp stamp = {}; ///< of the file when it was examined; all zero if there was none

    /// The form in which a verdict is remembered and passed between processes.
    QJsonObject ToJson() const;
    /// None for what is no verdict, or one of an examination that looked for less.
    static std::optional<Verdict> FromJson(const QJsonObject &json);
};

/// Remembers the verdicts on files that were examined, in a folder of the user's own, where the private copies are,
/// too. A file that has changed since then is not known any more. Two processes may use it; the last one to write wins,
/// and what is lost is examined again.
class ExaminedFiles
{
public:
    /// The folder is made, for this user alone, when something is to be kept.
    explicit ExaminedFiles(const QString &folder) : m_folder(folder) {}
    /// In the user's cache.
    static QString UsualFolder();

    const QString &Folder() const { return m_folder; }
    std::optional<Verdict> Find(const QString &path) const;
    /// Replaces what was known of the path, and deletes its copy. Silent where it can't be kept.
    void Remember(const QString &path, const Verdict &verdict);
    /// Makes the folder; false if it can't be had for this user alone.
    bool MakeFolder() const;

private:
    QString MemoryPath() const;
    QJsonObject Read() const;

    QString m_folder;
};
