#include "lumivara-data/files/PrivateCopy.h"

#include "base/Messages.h"
#include "common/Interrupt.h"
#include "common/Tool.h"
#include "lumivara-data/files/UnfinishedFile.h"
#include "stores/examination/StoredFile.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

void Copy(const QString &path, const QString &target)
{
    const QFileInfo info(path);
    if (!info.exists())
        throw ToolError(Sentence({u"%1: không có tệp này", u"%1: there is no such file"}).arg(path));
    if (!info.isFile())
        throw ToolError(Sentence({u"%1: không phải là tệp", u"%1: not a file"}).arg(path));
    QFile original(path);
    QFile copy(target);
    constexpr QFile::Permissions mine = QFile::ReadOwner | QFile::WriteOwner;
    if (!copy.open(QIODevice::WriteOnly | QIODevice::NewOnly, mine))
        throw ToolError(Sentence({u"%1: không có chỗ cho bản sao tạm, %2: %3",
                                  u"%1: there is no place for a temporary copy, %2: %3"})
                            .arg(path, target, copy.errorString()));
    if (!original.open(QIODevice::ReadOnly))
        throw ToolError(u"%1: %2"_s.arg(path, original.errorString()));
    constexpr qint64 chunk = 1 << 20;
    while (!original.atEnd()) {
        ThrowIfInterrupted();
        const QByteArray bytes = original.read(chunk);
        if (bytes.isEmpty())
            throw ToolError(u"%1: %2"_s.arg(path, original.errorString()));
        if (copy.write(bytes) != bytes.size())
            throw ToolError(Sentence({u"%1: không còn chỗ cho bản sao tạm, %2: %3",
                                      u"%1: there is no room for a temporary copy, %2: %3"})
                                .arg(path, target, WriteFault(copy)));
    }
    if (!copy.flush())
        throw ToolError(Sentence({u"%1: không còn chỗ cho bản sao tạm, %2: %3",
                                  u"%1: there is no room for a temporary copy, %2: %3"})
                            .arg(path, target, WriteFault(copy)));
}

} // namespace

void CopyPrivately(const QString &path, const QString &target)
{
    RemoveStale(target);
    try {
        Copy(path, target);
    } catch (...) {
        QFile::remove(target);
        throw;
    }
}

PrivateCopy::PrivateCopy(const QString &path, const QString &copyPath) : m_path(copyPath)
{
    // The copy has to go at the end.
    NoteInterrupts();
    CopyPrivately(path, m_path);
    try {
        if (const StoredFile facts = ReadStoredFile(m_path); !facts.fault.isEmpty())
            throw ToolError(u"%1: %2"_s.arg(path, facts.fault));
        MakeHarmless(m_path);
    } catch (...) {
        QFile::remove(m_path);
        throw;
    }
}

PrivateCopy::~PrivateCopy()
{
    QFile::remove(m_path);
}
