#include "marks/ExcerptFile.h"

#include "base/InterfaceLanguage.h"

#include <QFile>
#include <QScopeGuard>

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString fileName = u"tmpfocus.html"_s;
constexpr mode_t readableByAll = 0644;

enum class Deed { Save, Load };

[[noreturn]] void Fail(Deed deed, const QString &path, const QString &cause)
{
    QString text =
        u"The file \"%1\" cannot be %2: %3"_s.arg(path, deed == Deed::Save ? u"written"_s : u"read"_s, cause);
    if (InterfaceLang == 0)
        text = u"Không %2 được tệp \"%1\": %3"_s.arg(path, deed == Deed::Save ? u"ghi"_s : u"đọc"_s, cause);
    throw std::runtime_error(text.toStdString());
}

[[noreturn]] void FailBySystem(Deed deed, const QString &path)
{
    Fail(deed, path, QString::fromLocal8Bit(std::strerror(errno)));
}

void WriteAll(int file, const QByteArray &bytes, const QString &path)
{
    for (qsizetype written = 0; written < bytes.size();) {
        const ssize_t count = ::write(file, bytes.data() + written, static_cast<size_t>(bytes.size() - written));
        if (count < 0 && errno != EINTR)
            FailBySystem(Deed::Save, path);
        written += count < 0 ? 0 : count;
    }
}

} // namespace

ExcerptFile::ExcerptFile(const QString &folder) : m_folder(folder) {}

ExcerptFile::~ExcerptFile()
{
    if (m_held >= 0)
        ::close(m_held);
}

void ExcerptFile::Hold()
{
    if (m_held >= 0)
        return;
    const int folder = ::open(QFile::encodeName(m_folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        FailBySystem(Deed::Save, m_folder + fileName);
    // Locks the folder, because each save replaces the file.
    if (::flock(folder, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        ::close(folder);
        Fail(Deed::Save, m_folder + fileName,
             InterfaceLang == 0 ? u"một bản khác của chương trình đang mở cửa sổ đánh dấu."_s
                                : u"another copy of the program has its marking window open."_s);
    }
    m_held = folder;
}

void ExcerptFile::Save(const QByteArray &bytes)
{
    Hold();
    const QString path = m_folder + fileName;
    QByteArray beside = QFile::encodeName(path + u".XXXXXX"_s);
    const int file = ::mkostemp(beside.data(), O_CLOEXEC);
    if (file < 0)
        FailBySystem(Deed::Save, path);
    auto removeBeside = qScopeGuard([&] { ::unlink(beside.constData()); });
    {
        const auto close = qScopeGuard([&] { ::close(file); });
        WriteAll(file, bytes, path);
        if (::fchmod(file, readableByAll) != 0)
            FailBySystem(Deed::Save, path);
    }
    if (::rename(beside.constData(), QFile::encodeName(path).constData()) != 0)
        FailBySystem(Deed::Save, path);
    removeBeside.dismiss();
}

QByteArray ExcerptFile::Load() const
{
    const QString path = m_folder + fileName;
    // O_NONBLOCK: a pipe put in its place must not stop the program.
    const int handle = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (handle < 0)
        FailBySystem(Deed::Load, path);
    QFile file;
    if (!file.open(handle, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        Fail(Deed::Load, path, file.errorString());
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        Fail(Deed::Load, path, file.errorString());
    return bytes;
}
