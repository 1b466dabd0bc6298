#include "stores/examination/StoredFile.h"

#include "base/Messages.h"
#include "stores/engine/DatabaseError.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 LeastPage = 4096, MostPage = 16384; // bytes
constexpr quint64 LeastPages = 4;
constexpr quint16 StructureVersion = 12 | 0x8000; // the high bit says Firebird

/// Offsets of the fields in a page, in bytes.
namespace At {
constexpr int Type = 0;
// header page
constexpr int PageSize = 16, Version = 18, Sequence = 40, Flags = 42, End = 66, Buffers = 68, Items = 132;
// data page
constexpr int Relation = 20, Count = 22, Slots = 24;
} // namespace At

enum PageType : quint8 { Header = 1, Data = 5 };
enum HeaderFlag : quint16 { ShadowFile = 0x1, ReadOnly = 0x20, Encrypted = 0x40, InBackup = 0xc00 };
/// Items after the header's fields: a type, a length, bytes.
enum HeaderItem : quint8 { End = 0, NextFile = 2, LastPage = 3, DifferenceFile = 6 };

/// The relation RDB$FILES, which names shadows and further files, has the same number in every database.
constexpr quint16 FilesRelation = 10;
constexpr int SlotBytes = 4;        // offset and length of a record
constexpr qint64 StartBytes = 4096; // read of the first page; no page is shorter

quint16 Short(const QByteArray &page, int at)
{
    return qFromLittleEndian<quint16>(page.constData() + at);
}

bool NamesNextFile(const QByteArray &header)
{
    for (qsizetype at = At::Items; at + 2 <= header.size();) {
        const auto item = static_cast<quint8>(header[at]);
        if (item == HeaderItem::End)
            return false;
        if (item == NextFile || item == LastPage || item == DifferenceFile)
            return true;
        at += 2 + static_cast<quint8>(header[at + 1]);
    }
    return false;
}

QString FaultOf(const QByteArray &header, quint64 fileBytes)
{
    if (header.size() < StartBytes || header[At::Type] != PageType::Header)
        return Sentence({u"đây không phải là cơ sở dữ liệu", u"it is no database"});
    if (Short(header, At::Version) != StructureVersion)
        return Sentence({u"đây không phải là cơ sở dữ liệu của Firebird 3", u"it is no database of Firebird 3"});
    const quint64 pageBytes = Short(header, At::PageSize);
    if (pageBytes < LeastPage || pageBytes > MostPage || (pageBytes & (pageBytes - 1)) != 0)
        return Sentence({u"phần đầu ghi trang %1 byte, không thể có",
                         u"its header names pages of %1 bytes, which cannot be"})
            .arg(pageBytes);
    if (fileBytes % pageBytes != 0 || fileBytes / pageBytes < LeastPages)
        return Sentence({u"tệp kết thúc quá sớm, giữa một trang", u"it ends early, within a page"});
    const quint16 flags = Short(header, At::Flags);
    if (flags & ShadowFile)
        return Sentence({u"đây là bản bóng của một cơ sở dữ liệu khác", u"it is the shadow of another database"});
    if (flags & Encrypted)
        return Sentence({u"tệp được mã hóa", u"it is encrypted"});
    if (flags & InBackup)
        return Sentence({u"tệp bị khóa để sao lưu và giữ thay đổi trong một tệp khác",
                         u"it is locked for a backup and keeps its changes in another file"});
    if (Short(header, At::Sequence) != 0 || NamesNextFile(header))
        return Sentence(
            {u"đây là một trong nhiều tệp của một cơ sở dữ liệu", u"it is one of several files of a database"});
    return {};
}

/// Calls `take` for the start of each data page of the relation, with the page's offset; until that returns false.
template <typename Take>
void EachFilesPage(QFile &file, const StoredFile &facts, Take take)
{
    for (quint64 page = 1; page < facts.pageCount; ++page) {
        const auto at = static_cast<qint64>(page * facts.pageBytes);
        char start[At::Slots];
        if (!file.seek(at) || file.read(start, sizeof start) != sizeof start)
            return;
        if (start[At::Type] == PageType::Data && qFromLittleEndian<quint16>(start + At::Relation) == FilesRelation &&
            !take(at, qFromLittleEndian<quint16>(start + At::Count)))
            return;
    }
}

[[noreturn]] void Throw(const QFile &file)
{
    throw DatabaseError(Sentence({u"Không đọc được tệp \"%1\": %2", u"The file \"%1\" cannot be read: %2"})
                            .arg(file.fileName(), file.errorString()));
}

} // namespace

StoredFile ReadStoredFile(const QString &path)
{
    if (const QFileInfo info(path); info.exists() && !info.isFile())
        throw DatabaseError(Sentence({u"\"%1\" không phải là tệp thường", u"\"%1\" is no regular file"}).arg(path));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        Throw(file);
    StoredFile facts;
    const QByteArray header = file.read(StartBytes);
    facts.fault = FaultOf(header, static_cast<quint64>(file.size()));
    if (!facts.fault.isEmpty())
        return facts;
    facts.pageBytes = Short(header, At::PageSize);
    facts.pageCount = static_cast<quint64>(file.size()) / facts.pageBytes;
    facts.cacheBytes = qFromLittleEndian<quint32>(header.constData() + At::Buffers) * facts.pageBytes;
    facts.isReadOnly = Short(header, At::Flags) & ReadOnly;
    EachFilesPage(file, facts, [&](qint64, quint16 count) {
        facts.namesFiles = count > 0;
        return !facts.namesFiles;
    });
    return facts;
}

void MakeHarmless(const QString &copyPath)
{
    const StoredFile facts = ReadStoredFile(copyPath);
    if (!facts.fault.isEmpty())
        throw DatabaseError(u"\"%1\": %2"_s.arg(copyPath, facts.fault));
    QFile file(copyPath);
    if (!file.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        Throw(file);
    QByteArray header = file.read(StartBytes);
    qToLittleEndian<quint16>(Short(header, At::Flags) | ReadOnly, header.data() + At::Flags);
    qToLittleEndian<quint32>(0, header.data() + At::Buffers);
    bool isWritten = file.seek(0) && file.write(header) == header.size();
    EachFilesPage(file, facts, [&](qint64 at, quint16 count) {
        // Empty slots: their records are gone.
        const QByteArray none(std::min<qint64>(count * SlotBytes, static_cast<qint64>(facts.pageBytes) - At::Slots), 0);
        isWritten = file.seek(at + At::Slots) && file.write(none) == none.size() && isWritten;
        return true;
    });
    if (!isWritten || !file.flush())
        throw DatabaseError(Sentence({u"Không ghi được tệp \"%1\": %2", u"The file \"%1\" cannot be written: %2"})
                                .arg(copyPath, file.errorString()));
}
