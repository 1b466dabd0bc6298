#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <list>
#include <memory>
#include <vector>

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

    /// Opens a file whose name ends in ".dz" if it is compressed. Of one that is compressed as a whole no more than
    /// `mostBytes` are expanded.
    static std::unique_ptr<DictTexts> Open(const QString &path, quint64 mostBytes);
};
