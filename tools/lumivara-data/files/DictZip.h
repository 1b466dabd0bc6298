#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <list>
#include <memory>
#include <vector>

/// Compressed files that grow by more than this are bombs: dictionaries grow about four times, and tables of
/// inflections twenty times.
inline constexpr quint64 MostTimesPacked = 32;
/// Bytes that a compressed file of so many bytes may grow to.
constexpr quint64 MostExpanded(quint64 packedBytes)
{
    constexpr quint64 alwaysAllowed = 1 << 20;
    return MostTimesPacked * packedBytes + alwaysAllowed;
}
/// What is said of one that grows more.
QString GrowsTooMuch(const QString &path);

/// The texts of a StarDict dictionary: a plain file, one compressed in chunks with a table in its header (dictzip), or
/// one compressed as a whole, which is expanded into a temporary file. Throws ToolError with the file's name for any
/// other.
class DictTexts
{
public:
    virtual ~DictTexts() = default;

    /// Bytes that the texts have at most.
    virtual quint64 Size() const = 0;
    /// False, with the fault, if there are not so many bytes.
    virtual bool Read(quint64 offset, qsizetype size, QByteArray &bytes, QString &fault) = 0;

    /// Opens a file whose name ends in ".dz" if it is compressed. Throws ToolError too for one that grows to more than
    /// MostExpanded() bytes.
    static std::unique_ptr<DictTexts> Open(const QString &path);
};
