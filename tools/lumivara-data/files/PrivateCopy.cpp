#include "lumivara-data/files/PrivateCopy.h"

#include "common/Interrupt.h"
#include "common/Tool.h"
#include "lumivara-data/files/UnfinishedFile.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

PrivateCopy::PrivateCopy(const QString &path, const QString &copyPath) : m_path(copyPath)
{
    // The copy has to go at the end.
    NoteInterrupts();
    RemoveStale(m_path);
    try {
        Copy(path);
    } catch (...) {
        QFile::remove(m_path);
        throw;
    }
}

PrivateCopy::~PrivateCopy()
{
    QFile::remove(m_path);
}

void PrivateCopy::Copy(const QString &path) const
{
    const QFileInfo info(path);
    if (!info.exists())
        throw ToolError(u"%1: there is no such file"_s.arg(path));
    if (!info.isFile())
        throw ToolError(u"%1: not a file"_s.arg(path));
    QFile original(path);
    QFile copy(m_path);
    if (!copy.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw ToolError(u"%1: there is no place for a temporary copy, %2: %3"_s.arg(path, m_path, copy.errorString()));
    if (!original.open(QIODevice::ReadOnly))
        throw ToolError(u"%1: %2"_s.arg(path, original.errorString()));
    constexpr qint64 chunk = 1 << 20;
    while (!original.atEnd()) {
        ThrowIfInterrupted();
        const QByteArray bytes = original.read(chunk);
        if (bytes.isEmpty())
            throw ToolError(u"%1: %2"_s.arg(path, original.errorString()));
        if (copy.write(bytes) != bytes.size())
            throw ToolError(u"%1: there is no room for a temporary copy, %2: %3"_s.arg(path, m_path, WriteFault(copy)));
    }
    if (!copy.flush())
        throw ToolError(u"%1: there is no room for a temporary copy, %2: %3"_s.arg(path, m_path, WriteFault(copy)));
}
