#pragma once

#include <QString>

#include <memory>

class QTemporaryDir;

/// A path for Firebird, which takes what stands before a colon for the name of a server. A path with a colon is reached
/// through a link of this user's own, which exists as long as this object or a copy of it.
class PathAlias
{
public:
    PathAlias() = default;
    /// The file need not exist, but its folder. Throws DatabaseError if no link can be made.
    explicit PathAlias(const QString &path);

    /// The path to hand over.
    const QString &Path() const { return m_path; }

private:
    QString m_path;
    std::shared_ptr<QTemporaryDir> m_folder; ///< holds the link; none without a colon
};
