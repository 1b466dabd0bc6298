#include "fuzz/ToolInput.h"

#include "lumivara-data/sync/SyncFile.h"

#include <QBuffer>
#include <QCryptographicHash>

namespace {

const QString Name = QStringLiteral("marks.sync");

/// As whoever can write the file can make it.
QByteArray WithChecksum(const QByteArray &lines)
{
    const QByteArray sum = QCryptographicHash::hash(lines, QCryptographicHash::Sha256).toHex();
    return lines + "{\"sha256\":\"" + sum + "\"}\n";
}

QByteArray Written(const SyncFileReader &source)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    SyncFileWriter writer(device, Name);
    const SyncState &state = source.State();
    writer.Head(state.live.size(), state.past.size());
    for (const auto &[name, version] : state.live) {
        const Mark mark = source.Read(name);
        REQUIRE(SyncFile::CanTake(mark) && FactsOf(mark) == version.facts);
        writer.Put(name, version.mark, mark);
    }
    writer.Finish(state.past);
    return device.data();
}

} // namespace

FUZZ_TARGET(SyncFile)
{
    ReadOrRefuse(Name, [&] {
        QByteArray bytes = WithChecksum(input);
        QBuffer device(&bytes);
        device.open(QIODevice::ReadOnly);
        const SyncFileReader source(device, Name);
        QByteArray again = Written(source);
        QBuffer copy(&again);
        copy.open(QIODevice::ReadOnly);
        const SyncFileReader read(copy, Name);
        REQUIRE(read.State().past == source.State().past && read.State().live.size() == source.State().live.size());
        for (const auto &[name, version] : source.State().live)
            REQUIRE(read.State().live.at(name).mark == version.mark &&
                    read.Read(name).title == source.Read(name).title);
    });
}
