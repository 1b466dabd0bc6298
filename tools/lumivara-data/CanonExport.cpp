#include "lumivara-data/CanonExport.h"

#include "common/Console.h"
#include "common/Interrupt.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/CanonRows.h"
#include "lumivara-data/MarksExport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>

#ifdef Q_OS_LINUX
#include <cstdio>
#include <fcntl.h>
#endif

using namespace Qt::StringLiterals;

namespace {

/// Tells an export from a folder of the user's own, which no export may replace.
const QString Marker = u"made-by-lumivara-data.txt"_s;

void RefuseForeign(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink())
        return;
    if (info.isSymLink() || !info.isDir())
        throw ToolError(u"%1: is no folder"_s.arg(path));
    const QStringList entries =
        QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    if (!entries.isEmpty() && !entries.contains(Marker))
        throw ToolError(u"%1: holds files and is no export"_s.arg(path));
    const QStringList ours{Marker,          QString::fromUtf16(CanonTable::FileName), u"pages"_s, u"root"_s, u"html"_s,
                           u"translation"_s};
    for (const QString &entry : entries) {
        if (!ours.contains(entry))
            throw ToolError(u"%1: \"%2\" is not of an export; it would be lost"_s.arg(path, entry));
    }
}

/// Lets two folders change names in one step where the system can.
bool Exchange(const QString &a, const QString &b)
{
#if defined(Q_OS_LINUX) && defined(RENAME_EXCHANGE)
    return ::renameat2(AT_FDCWD, QFile::encodeName(a).constData(), AT_FDCWD, QFile::encodeName(b).constData(),
                       RENAME_EXCHANGE) == 0;
#else
    Q_UNUSED(a);
    Q_UNUSED(b);
    return false;
#endif
}

constexpr const char16_t *PageNames[CanonText::Pages] = {u"pali", u"english", u"vietnamese", u"parallel"};

/// One text as JSON objects: a segment for the title and one for each block of a page.
class SegmentFiles
{
public:
    SegmentFiles(const CanonText &text, const QString &groups) : m_text(text), m_groups(groups) {}

    void WriteTo(ExportFolder &folder)
    {
        const std::pair<QString, QString> languages[] = {
            {u"root/pli/%1/%2_root-pli.json"_s, m_text.namePali},
            {u"translation/en/lumivara/%1/%2_translation-en-lumivara.json"_s, m_text.nameEnglish},
            {u"translation/vi/lumivara/%1/%2_translation-vi-lumivara.json"_s, m_text.nameVietnamese}};
        qsizetype blocks = 0;
        for (int i = 0; i < 3; ++i) {
            if (m_text.pages[i].isEmpty())
                continue;
            const QStringList lines = Blocks(m_text.pages[i]);
            blocks = qMax(blocks, lines.size());
            folder.Write(languages[i].first.arg(m_groups, Id()), Object(languages[i].second, lines));
        }
        if (blocks > 0)
            folder.Write(u"html/%1/%2_html.json"_s.arg(m_groups, Id()),
                         Object(u"<h1>{}</h1>"_s, QStringList(blocks, u"<p>{}</p>"_s)));
    }

private:
    QString Id() const { return u"text%1"_s.arg(m_text.idVic); }

    static QStringList Blocks(const QByteArray &page)
    {
        const qsizetype body = page.toLower().indexOf("<body");
        QStringList lines;
        for (const QString &line : ExcerptText(QString::fromUtf8(page.mid(qMax<qsizetype>(body, 0)))).split(u'\n')) {
            if (const QString words = line.simplified(); !words.isEmpty())
                lines.append(words);
        }
        return lines;
    }

    static QByteArray Quoted(const QString &text)
    {
        QByteArray quoted = "\"";
        for (const char c : text.toUtf8()) {
            if (c == '"' || c == '\\')
                quoted += '\\';
            if (uchar(c) < ' ')
                quoted += "\\u00" + QByteArray::number(uchar(c), 16).rightJustified(2, '0');
            else
                quoted += c;
        }
        return quoted + '"';
    }

    QByteArray Object(const QString &title, const QStringList &blocks) const
    {
        QByteArray json = "{\n  " + Quoted(Id() + u":0.1"_s) + ": " + Quoted(title);
        for (qsizetype i = 0; i < blocks.size(); ++i)
            json += ",\n  " + Quoted(u"%1:%2.1"_s.arg(Id()).arg(i + 1)) + ": " + Quoted(blocks[i]);
        return json + "\n}\n";
    }

    const CanonText &m_text;
    QString m_groups;
};

/// The folders of each group: its own and those above, by their keys and names.
QHash<int, QString> GroupFolders(const QList<SourceGroup> &groups)
{
    QHash<int, const SourceGroup *> known;
    for (const SourceGroup &group : groups)
        known.insert(group.idVit, &group);
    QHash<int, QString> folders;
    for (const SourceGroup &group : groups) {
        QStringList parts;
        constexpr int deepest = 30; // also the end of a cycle
        for (const SourceGroup *at = &group; at && parts.size() < deepest; at = known.value(at->parent)) {
            QString name = at->namePali.left(40);
            name.removeIf([](QChar c) { return c == u'/' || c.unicode() < u' '; });
            parts.prepend((u"%1 "_s.arg(at->idVit) + name).trimmed());
        }
        folders.insert(group.idVit, parts.join(u'/'));
    }
    return folders;
}

} // namespace

ExportFolder::ExportFolder(const QString &target)
    : m_target(QDir::cleanPath(QFileInfo(target).absoluteFilePath())), m_path(m_target + u".part"_s),
      m_lock(m_path + u".lock"_s)
{
    NoteInterrupts();
    const QString above = QFileInfo(m_target).absolutePath();
    if (!QFileInfo(above).isDir())
        throw ToolError(u"%1: there is no such folder"_s.arg(above));
    m_lock.setStaleLockTime(0);
    if (!m_lock.tryLock(0))
        throw ToolError(m_lock.error() == QLockFile::LockFailedError
                            ? u"%1: another process is writing this export"_s.arg(m_target)
                            : u"%1: cannot be written"_s.arg(above));
    RefuseForeign(m_target);
    RefuseForeign(m_path);
    QDir(m_path).removeRecursively();
    Write(Marker, "An export of lumivara-data; the next one to this place replaces the whole folder.\n");
}

ExportFolder::~ExportFolder()
{
    QDir(m_path).removeRecursively();
}

void ExportFolder::Write(const QString &name, const QByteArray &bytes)
{
    const QString path = m_path + u'/' + name;
    const QString folder = QFileInfo(path).path();
    if (folder != m_lastFolder && !QDir().mkpath(folder))
        throw ToolError(u"%1: cannot be made"_s.arg(folder));
    m_lastFolder = folder;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write(bytes) != bytes.size())
        throw ToolError(u"%1: %2"_s.arg(path, file.errorString()));
}

void ExportFolder::Finish()
{
    ThrowIfInterrupted();
    if (QFileInfo::exists(m_target) && Exchange(m_path, m_target))
        return;
    // An older export goes away with what the destructor removes.
    QDir(m_target).removeRecursively();
    std::error_code error;
    std::filesystem::rename(QFileInfo(m_path).filesystemFilePath(), QFileInfo(m_target).filesystemFilePath(), error);
    if (error)
        throw ToolError(u"%1: %2"_s.arg(m_target, QString::fromStdString(error.message())));
}

void WriteCanonFolder(CanonRows &rows, ExportFolder &folder, bool withSegments, Report &report, Console &console)
{
    QByteArray table = CanonTable::Header();
    const QList<SourceGroup> groups = rows.Groups(report);
    for (const SourceGroup &group : groups)
        table += CanonTable::Line({true,
                                   true,
                                   {},
                                   group.idVit,
                                   group.parent,
                                   {},
                                   group.namePali,
                                   group.nameVietnamese,
                                   group.nameEnglish,
                                   {}});
    const QHash<int, QString> folders = withSegments ? GroupFolders(groups) : QHash<int, QString>();
    const qsizetype total = rows.TextCount();
    qsizetype texts = 0, pages = 0;
    for (CanonText text; rows.Next(text, report);) {
        CanonTableRow row{
            false, true, {}, text.idVic, text.idVit, text.number, text.namePali, text.nameVietnamese, text.nameEnglish,
            {}};
        for (int i = 0; i < CanonText::Pages; ++i) {
            if (text.pages[i].isEmpty()) {
                row.pages[i] = text.pages[i].isNull() ? QString() : u""_s;
                continue;
            }
            row.pages[i] =
                u"pages/%1-%2-%3.html"_s.arg(text.idVit).arg(text.idVic).arg(QString::fromUtf16(PageNames[i]));
            folder.Write(row.pages[i], text.pages[i]);
            ++pages;
        }
        table += CanonTable::Line(row);
        if (withSegments)
            SegmentFiles(text, folders.value(text.idVit, u"0"_s)).WriteTo(folder);
        console.Progress(u"texts"_s, ++texts, total);
    }
    console.EndProgress();
    folder.Write(QString::fromUtf16(CanonTable::FileName), table);
    report.Count(u"groups"_s, groups.size());
    report.Count(u"texts"_s, texts);
    report.Count(u"pages"_s, pages);
}
