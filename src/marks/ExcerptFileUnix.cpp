#include "marks/ExcerptFile.h"

#include "base/Messages.h"

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

constexpr Message cannotSave{u"Không ghi được tệp \"%1\": %2", u"The file \"%1\" cannot be written: %2"};
constexpr Message cannotLoad{u"Không đọc được tệp \"%1\": %2", u"The file \"%1\" cannot be read: %2"};
constexpr Message heldByAnother{u"một bản khác của chương trình đang mở cửa sổ đánh dấu.",
                                u"another copy of the program has its marking window open."};

/// What it means, and what to do; the cause stands below.
constexpr Message checkFolder{u"Chưa đánh dấu được. Hãy xem thư mục của chương trình có cho ghi và còn chỗ không, rồi "
                              "đánh dấu lại.",
                              u"Nothing was marked. See that the program's folder can be written and has room, then "
                              "mark again."};
constexpr Message closeOther{u"Chưa đánh dấu được. Hãy đóng cửa sổ đánh dấu của bản kia, rồi đánh dấu lại.",
                             u"Nothing was marked. Close the marking window of the other copy, then mark again."};
constexpr Message markAgain{u"Chưa lưu gì cả: không đọc lại được đoạn trích. Hãy bấm \"Bỏ qua\", rồi đánh dấu lại.",
                            u"Nothing was stored: the excerpt cannot be read back. Press \"Cancel\", then mark again."};

enum class Deed { Save, Hold, Load };

[[noreturn]] void Fail(Deed deed, const QString &path, const QString &cause)
{
    const Message &advice = deed == Deed::Save ? checkFolder : deed == Deed::Hold ? closeOther : markAgain;
    const QString text = TextOrEnglish(deed == Deed::Load ? cannotLoad : cannotSave).arg(path, cause);
    throw std::runtime_error((TextOrEnglish(advice) + u"\n\n"_s + text).toStdString());
}

[[noreturn]] void FailBySystem(Deed deed, const QString &path)
{
    Fail(deed, path, QString::fromLocal8Bit(std::strerror(errno)));
}

/// What the umask leaves to others; the file is made for its writer alone.
mode_t ModeOfNew()
{
    const mode_t mask = ::umask(077);
    ::umask(mask);
    return readableByAll & ~mask;
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
        Fail(Deed::Hold, m_folder + fileName, TextOrEnglish(heldByAnother));
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
        if (::fchmod(file, ModeOfNew()) != 0)
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
    struct stat status = {};
    if (::fstat(handle, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(handle);
        Fail(Deed::Load, path, QString::fromLocal8Bit(std::strerror(EACCES)));
    }
    QFile file;
    if (!file.open(handle, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        Fail(Deed::Load, path, file.errorString());
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        Fail(Deed::Load, path, file.errorString());
    return bytes;
}
