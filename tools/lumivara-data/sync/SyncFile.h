#pragma once

#include "lumivara-data/marks/MarksForms.h"
#include "lumivara-data/sync/SyncState.h"

#include <QCryptographicHash>
#include <QJsonObject>

class QIODevice;

/// The file that a machine puts into the folder: all that it knows, as lines, and their checksum in the last one.
namespace SyncFile {
inline constexpr qsizetype MostMarks = 200'000;
inline constexpr qsizetype MostPast = 2'000'000;
/// Bytes of a line that is no excerpt.
inline constexpr qsizetype LongestLine = 64 << 10;

/// True if the file can take a mark: on a text, within the lengths of the columns, no excerpt beyond what is read.
bool CanTake(const Mark &mark);
} // namespace SyncFile

/// Writes one, in this order: the head, each mark, the past.
class SyncFileWriter
{
public:
    /// `device` is open and outlives this; `name` is told where it can't be written.
    SyncFileWriter(QIODevice &device, const QString &name);

    /// How many of each come.
    void Head(size_t marks, size_t past);
    void Put(const SyncId &version, const SyncId &name, const Mark &mark);
    /// Ends the file. Gives its checksum. Throws ToolError, as the others do.
    QByteArray Finish(const std::set<SyncId> &past);

private:
    void Line(const QByteArray &line);

    QIODevice &m_device;
    QString m_name;
    QCryptographicHash m_hash{QCryptographicHash::Sha256};
};

/// Reads one that anybody may have made. Its marks stay in the file until they are asked for.
class SyncFileReader
{
public:
    /// `device` is open, can be read at any place and outlives this. Throws ToolError, which begins with `name`, unless
    /// the file is whole and what its head says.
    SyncFileReader(QIODevice &device, const QString &name);

    const SyncState &State() const { return m_state; }
    const QByteArray &Checksum() const { return m_checksum; }
    /// True if a character of its marks is above U+FFFF.
    bool HasPairs() const { return m_hasPairs; }
    /// One of the versions that stand, without a key. Throws ToolError if the file changes while it is read.
    Mark Read(const SyncId &version) const;

private:
    struct Entry
    {
        SyncId version, name;
        Mark mark;
    };

    void ReadAll();
    void ReadHead();
    void TakeMark(const QJsonObject &line, qint64 place);
    void TakePast(const QByteArray &names);
    /// The mark that begins with such a line; what follows that is read.
    Entry EntryOf(const QJsonObject &line) const;
    QByteArray NextLine(qsizetype longest) const;
    QJsonObject NextObject() const;
    [[noreturn]] void Fail(const QString &why) const;

    QIODevice &m_device;
    QString m_name;
    SyncState m_state;
    std::map<SyncId, qint64> m_places; ///< of the lines where marks begin
    QByteArray m_checksum;
    qint64 m_markCount = 0, m_pastCount = 0; ///< that the head tells
    bool m_hasPairs = false;
    mutable QCryptographicHash m_hash{QCryptographicHash::Sha256}; ///< of the lines so far
};
