#include "lumivara-data/files/BackupChecksum.h"

#include "common/Tool.h"
#include "lumivara-data/files/UnfinishedFile.h"

#include <QCryptographicHash>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

const QByteArray Start("\nlumivara-sha256 ");
constexpr qint64 DigestLetters = 64;

qint64 LineBytes()
{
    return Start.size() + DigestLetters + 1;
}

/// Of the first `length` bytes.
QByteArray DigestLine(QFile &file, qint64 length)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    constexpr qint64 chunk = 1 << 20;
    file.seek(0);
    for (qint64 left = length; left > 0;) {
        const QByteArray bytes = file.read(qMin(chunk, left));
        if (bytes.isEmpty())
            throw ToolError(u"%1: %2"_s.arg(file.fileName(), file.errorString()));
        hash.addData(bytes);
        left -= bytes.size();
    }
    return Start + hash.result().toHex() + '\n';
}

void Open(QFile &file)
{
    if (!file.open(QIODevice::ReadWrite))
        throw ToolError(u"%1: %2"_s.arg(file.fileName(), file.errorString()));
}

} // namespace

void BackupChecksum::Append(const QString &backup)
{
    QFile file(backup);
    Open(file);
    const qint64 length = file.size();
    const QByteArray line = DigestLine(file, length);
    if (!file.seek(length) || file.write(line) != line.size() || !file.flush())
        throw ToolError(u"%1: %2"_s.arg(backup, WriteFault(file)));
}

BackupChecksum::State BackupChecksum::TakeOff(const QString &copy)
{
    QFile file(copy);
    Open(file);
    const qint64 length = file.size() - LineBytes();
    if (length < 0 || !file.seek(length))
        return State::None;
    const QByteArray line = file.read(LineBytes());
    if (!line.startsWith(Start))
        return State::None;
    const bool isRight = line == DigestLine(file, length);
    if (!file.resize(length))
        throw ToolError(u"%1: %2"_s.arg(copy, file.errorString()));
    return isRight ? State::Right : State::Wrong;
}
