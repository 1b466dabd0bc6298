#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

class Report;

/// The largest file that an import reads, in bytes.
inline constexpr qint64 LargestSourceFile = 64LL * 1024 * 1024;

/// A folder of foreign files. Only regular files that are really inside it are read: names that lead out of it, links
/// to other places, devices and pipes are reported and rejected.
class SourceFolder
{
public:
    /// Throws ToolError unless `path` is a folder.
    explicit SourceFolder(const QString &path);

    const QString &Path() const { return m_path; }
    /// The folder's own name.
    QString Name() const;
    /// True if it holds a folder of that name.
    bool HasFolder(const QString &name) const;
    /// Names of the folders in it, without hidden ones and links.
    QStringList Folders() const;
    /// Every file below one of its folders, as names relative to this one, in no order. Hidden ones are passed over;
    /// what is no file in the folder is told.
    QStringList FilesBelow(const QString &folder, Report &report) const;
    /// A file's bytes, 0 where there is no such file.
    qint64 SizeOf(const QString &name) const;
    /// A file's bytes as they stand; nothing, and told, where it can't be read or is larger than LargestSourceFile.
    std::optional<QByteArray> Read(const QString &name, Report &report) const;
    /// A file's text as UTF-8 without a byte order mark. UTF-16 with a mark is converted and told; what is neither is
    /// told and not read.
    std::optional<QByteArray> ReadText(const QString &name, Report &report) const;

private:
    void Collect(const QString &folder, int depth, QStringList &names, Report &report) const;
    bool IsInside(const QString &path) const;

    QString m_path;
    QString m_canonicalPath;
};

/// Bytes of a text as UTF-8, as ReadText gives them; `place` is told where they are none or others.
std::optional<QByteArray> TextAsUtf8(const QByteArray &bytes, const QString &place, Report &report);

/// Order of names by letters without regard to case, runs of digits by their value: "dn2" before "dn10".
bool NaturalLess(const QString &a, const QString &b);
