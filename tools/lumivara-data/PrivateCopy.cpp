#include "lumivara-data/PrivateCopy.h"

#include "common/Interrupt.h"
#include "common/Tool.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

QString PrivateCopy(const QString &path, const QTemporaryDir &folder)
{
    const QFileInfo info(path);
    if (!info.exists())
        throw ToolError(u"%1: there is no such file"_s.arg(path));
    if (!info.isFile())
        throw ToolError(u"%1: not a file"_s.arg(path));
    QFile original(path);
    QFile copy(folder.filePath(u"copy.fdb"_s));
    if (!folder.isValid() || !copy.open(QIODevice::WriteOnly))
        throw ToolError(u"there is no place for a temporary copy: %1"_s.arg(folder.isValid() ? copy.errorString()
                                                                                             : folder.errorString()));
    if (!original.open(QIODevice::ReadOnly))
        throw ToolError(u"%1: %2"_s.arg(path, original.errorString()));
    constexpr qint64 chunk = 1 << 20;
    while (!original.atEnd()) {
        ThrowIfInterrupted();
        const QByteArray bytes = original.read(chunk);
        if (bytes.isEmpty())
            throw ToolError(u"%1: %2"_s.arg(path, original.errorString()));
        if (copy.write(bytes) != bytes.size())
            throw ToolError(u"there is no room for a temporary copy: %1"_s.arg(copy.errorString()));
    }
    if (!copy.flush())
        throw ToolError(u"there is no room for a temporary copy: %1"_s.arg(copy.errorString()));
    return copy.fileName();
}
