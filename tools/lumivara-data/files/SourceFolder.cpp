#include "lumivara-data/files/SourceFolder.h"

#include "base/Messages.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/files/PageFacts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

using namespace Qt::StringLiterals;

namespace {

constexpr int DeepestFolder = 32;

bool LeadsOut(const QString &name)
{
    return name.isEmpty() || QDir::isAbsolutePath(name) || name.contains(QChar(0)) ||
           name.split(u'/').contains(u".."_s);
}

/// End of the run of digits that begins at `at`.
qsizetype DigitsEnd(const QString &text, qsizetype at)
{
    while (at < text.size() && text[at] >= u'0' && text[at] <= u'9')
        ++at;
    return at;
}

QStringView WithoutLeadingZeros(QStringView digits)
{
    while (digits.size() > 1 && digits.front() == u'0')
        digits = digits.mid(1);
    return digits;
}

} // namespace

SourceFolder::SourceFolder(const QString &path)
    : m_path(QDir::cleanPath(QFileInfo(path).absoluteFilePath())), m_canonicalPath(QFileInfo(path).canonicalFilePath())
{
    if (!QFileInfo(m_path).isDir())
        throw ToolError(Sentence({u"%1: không có thư mục này", u"%1: there is no such folder"}).arg(path));
}

QString SourceFolder::Name() const
{
    return QFileInfo(m_canonicalPath).fileName();
}

bool SourceFolder::HasFolder(const QString &name) const
{
    return Folders().contains(name);
}

QStringList SourceFolder::Folders() const
{
    return QDir(m_path).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks, QDir::Name);
}

QStringList SourceFolder::FilesBelow(const QString &folder, Report &report) const
{
    QStringList names;
    Collect(folder, 0, names, report);
    return names;
}

void SourceFolder::Collect(const QString &folder, int depth, QStringList &names, Report &report) const
{
    if (depth > DeepestFolder) {
        report.Find(folder, Sentence({u"nằm sâu hơn %1 thư mục; không đọc", u"lies deeper than %1 folders; not read"})
                                .arg(DeepestFolder));
        return;
    }
    const QDir::Filters all = QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot;
    for (const QFileInfo &entry : QDir(m_path + u'/' + folder).entryInfoList(all, QDir::Name)) {
        const QString name = folder + u'/' + entry.fileName();
        if (entry.isDir() && !entry.isSymLink())
            Collect(name, depth + 1, names, report);
        else if (entry.isDir())
            report.Find(name,
                        Sentence({u"là liên kết đến một thư mục; không đọc", u"is a link to a folder; not read"}));
        else if (entry.isSymLink() && !IsInside(entry.filePath()))
            report.Find(name, Sentence({u"là liên kết dẫn ra ngoài thư mục; không đọc",
                                        u"is a link that leads out of the folder; not read"}));
        else if (!entry.isFile())
            report.Find(name, Sentence({u"không phải là tệp thường; không đọc", u"is no regular file; not read"}));
        else
            names.append(name);
    }
}

bool SourceFolder::IsInside(const QString &path) const
{
    return QFileInfo(path).canonicalFilePath().startsWith(m_canonicalPath + u'/');
}

qint64 SourceFolder::SizeOf(const QString &name) const
{
    return QFileInfo(m_path + u'/' + name).size();
}

std::optional<QByteArray> SourceFolder::Read(const QString &name, Report &report) const
{
    if (LeadsOut(name)) {
        report.Find(name, Sentence({u"tên này dẫn ra ngoài thư mục", u"this name leads out of the folder"}));
        return std::nullopt;
    }
    const QString path = m_path + u'/' + name;
    const QFileInfo info(path);
    QFile file(path);
    if (!info.exists() && !info.isSymLink())
        report.Find(name, Sentence({u"không có tệp này", u"there is no such file"}));
    else if (!IsInside(path))
        report.Find(name, Sentence({u"dẫn ra ngoài thư mục; không đọc", u"leads out of the folder; not read"}));
    else if (!info.isFile())
        report.Find(name, Sentence({u"không phải là tệp thường; không đọc", u"is no regular file; not read"}));
    else if (info.size() > LargestSourceFile)
        report.Find(name, Sentence({u"có %1 byte, nhiều hơn %2; không đọc", u"has %1 bytes, more than %2; not read"})
                              .arg(info.size())
                              .arg(LargestSourceFile));
    else if (!file.open(QIODevice::ReadOnly))
        report.Find(name, file.errorString());
    else if (QByteArray bytes = file.read(info.size()); file.error() != QFileDevice::NoError)
        report.Find(name, file.errorString());
    else
        return bytes.isNull() ? QByteArray("") : bytes;
    return std::nullopt;
}

std::optional<QByteArray> SourceFolder::ReadText(const QString &name, Report &report) const
{
    const std::optional<QByteArray> bytes = Read(name, report);
    return bytes ? TextAsUtf8(*bytes, name, report) : std::nullopt;
}

std::optional<QByteArray> TextAsUtf8(const QByteArray &bytes, const QString &place, Report &report)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return TextAsUtf8(bytes.mid(3), place, report);
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        QStringDecoder decoder(QStringDecoder::Utf16);
        const QString text = decoder(bytes);
        if (decoder.hasError() || bytes.size() % 2 != 0) {
            report.Find(place, Sentence({u"có dấu thứ tự byte của UTF-16 nhưng không phải UTF-16; không nhập",
                                         u"has the byte order mark of UTF-16 and is none; not taken"}));
            return std::nullopt;
        }
        report.Note(place, Sentence({u"được chuyển từ UTF-16", u"converted from UTF-16"}));
        return text.toUtf8();
    }
    if (const qsizetype bad = FirstBadUtf8Byte(bytes); bad >= 0) {
        report.Find(
            place,
            Sentence({u"không phải UTF-8 ở byte %1; không nhập", u"is not UTF-8 at byte %1; not taken"}).arg(bad));
        return std::nullopt;
    }
    return bytes;
}

bool NaturalLess(const QString &a, const QString &b)
{
    for (qsizetype i = 0, j = 0; i < a.size() && j < b.size();) {
        const qsizetype iEnd = DigitsEnd(a, i), jEnd = DigitsEnd(b, j);
        if (iEnd > i && jEnd > j) {
            const QStringView left = WithoutLeadingZeros(QStringView(a).mid(i, iEnd - i));
            const QStringView right = WithoutLeadingZeros(QStringView(b).mid(j, jEnd - j));
            if (left != right)
                return left.size() != right.size() ? left.size() < right.size() : left < right;
            i = iEnd;
            j = jEnd;
        } else {
            const QChar left = a[i++].toCaseFolded(), right = b[j++].toCaseFolded();
            if (left != right)
                return left < right;
        }
        if (i == a.size() || j == b.size())
            return i == a.size() && j == b.size() ? a < b : i == a.size();
    }
    return a.size() != b.size() ? a.size() < b.size() : a < b;
}
