#include "lumivara-data/files/TimeMade.h"

#include "common/Tool.h"
#include "lumivara-data/files/UnfinishedFile.h"

#include <QFile>

#include <cstddef>

using namespace Qt::StringLiterals;

namespace {

/// A header page of the structure 12, as far as the time, in the machine's own byte order.
struct HeaderPage
{
    quint8 type;
    quint8 others[15];
    quint16 pageBytes;
    quint16 version;
    quint8 more[24];
    qint32 day;      // since 17 November 1858
    quint32 instant; // of the day, in tenths of milliseconds
};
static_assert(offsetof(HeaderPage, day) == 44 && sizeof(HeaderPage) == 52);

constexpr quint8 HeaderType = 1;
constexpr quint16 StructureVersion = 12 | 0x8000; // the high bit says Firebird
constexpr qint64 DayZero = 2400001;               // Julian day of 17 November 1858
constexpr quint32 InstantsPerMillisecond = 10;

} // namespace

std::optional<QDateTime> WantedTimeMade()
{
    bool isNumber = false;
    const qint64 seconds = qgetenv("SOURCE_DATE_EPOCH").toLongLong(&isNumber);
    return isNumber ? std::optional(QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC)) : std::nullopt;
}

void SetTimeMade(const QString &path, const QDateTime &time)
{
    QFile file(path);
    HeaderPage header{};
    const auto fail = [&file] { throw ToolError(u"%1: %2"_s.arg(file.fileName(), WriteFault(file))); };
    // Unbuffered: an error of the write is told by it.
    if (!file.open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        fail();
    if (file.read(reinterpret_cast<char *>(&header), sizeof header) != sizeof header || header.type != HeaderType ||
        header.version != StructureVersion)
        return;
    const QDateTime utc = time.toUTC();
    header.day = static_cast<qint32>(utc.date().toJulianDay() - DayZero);
    header.instant = static_cast<quint32>(utc.time().msecsSinceStartOfDay()) * InstantsPerMillisecond;
    if (!file.seek(0) || file.write(reinterpret_cast<const char *>(&header), sizeof header) != sizeof header)
        fail();
}
