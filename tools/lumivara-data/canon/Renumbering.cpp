#include "lumivara-data/canon/Renumbering.h"

#include "base/Messages.h"
#include "common/Tool.h"
#include "lumivara-data/files/Disk.h"
#include "lumivara-data/files/PrivateCopy.h"
#include "lumivara-data/files/UnfinishedFile.h"
#include "stores/Schema.h"
#include "stores/engine/FileStamp.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

bool IsThere(const QString &path)
{
    return QFileInfo::exists(path) || QFileInfo(path).isSymLink();
}

} // namespace

Renumbering::Renumbering(const QString &canon, StepDoor door)
    : m_canon(QFileInfo(canon).absoluteFilePath()), m_door(std::move(door))
{}

bool Renumbering::IsUnfinished() const
{
    return IsThere(JournalPath()) || IsThere(NextPath());
}

std::optional<Renumbering::Journal> Renumbering::Found() const
{
    if (!IsThere(JournalPath()))
        return std::nullopt;
    QFile file(JournalPath());
    OpenSource(file);
    constexpr qint64 largest = 16 << 20;
    const QJsonObject object = QJsonDocument::fromJson(file.read(largest)).object();
    Journal journal{object[u"marks"_s].toString(), object[u"keepNames"_s].toBool(), {}};
    const QJsonArray keys = object[u"keys"_s].toArray();
    for (const auto &pair : keys)
        journal.keys.insert(pair[0].toInt(), pair[1].toInt());
    if (journal.marks.isEmpty() || journal.keys.isEmpty())
        throw ToolError(
            Sentence({u"%1: không phải là nhật ký khóa cũ và mới", u"%1: is no journal of old and new keys"})
                .arg(JournalPath()));
    return journal;
}

void Renumbering::Run(const Journal &journal, const ChangeMarks &changeMarks)
{
    try {
        m_door();
        KeepMarks(journal.marks);
        m_door();
        Write(journal);
        m_door();
        changeMarks(journal);
    } catch (const std::exception &) {
        // The journal first: without it nobody goes on.
        QFile::remove(JournalPath());
        BringNamesToDisk(QFileInfo(m_canon).absolutePath());
        TakeBack();
        throw;
    }
    PutInPlace();
}

void Renumbering::GoOn(const Journal &journal, const ChangeMarks &changeMarks)
{
    m_door();
    changeMarks(journal);
    PutInPlace();
}

void Renumbering::TakeBack()
{
    QFile::remove(NextPath());
    BringNamesToDisk(QFileInfo(m_canon).absolutePath());
}

void Renumbering::KeepMarks(const QString &marks)
{
    FileInTheMaking copy(NameBefore(marks));
    constexpr int mostCopies = 3; // of a file that changes meanwhile
    for (int copies = 1;; ++copies) {
        const FileStamp stamp = FileStamp::Of(marks);
        CopyPrivately(marks, copy.Path());
        if (FileStamp::Of(marks) == stamp)
            break;
        if (copies == mostCopies)
            throw ToolError(Sentence({u"%1: đang bị thay đổi; hãy đóng chương trình trước",
                                      u"%1: is being changed; close the program first"})
                                .arg(marks));
    }
    copy.FinishAs(NameBefore(marks), marks);
}

void Renumbering::Write(const Journal &journal)
{
    QList<int> olds = journal.keys.keys();
    std::sort(olds.begin(), olds.end());
    QJsonArray keys;
    for (const int old : std::as_const(olds))
        keys.append(QJsonArray{old, journal.keys[old]});
    const QByteArray json =
        QJsonDocument(QJsonObject{{u"marks"_s, journal.marks}, {u"keepNames"_s, journal.keepsNames}, {u"keys"_s, keys}})
            .toJson();
    FileInTheMaking making(JournalPath());
    QFile file(making.Path());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write(json) != json.size())
        throw ToolError(u"%1: %2"_s.arg(JournalPath(), WriteFault(file)));
    file.close();
    making.FinishAs(JournalPath(), journal.marks);
}

/// With the marks changed. Where the new canon no longer waits it has its place.
void Renumbering::PutInPlace()
{
    if (IsThere(NextPath())) {
        m_door();
        if (IsThere(m_canon) && !KeepUnder(m_canon, NameBefore(m_canon)))
            throw ToolError(Sentence({u"%1: không giữ lại được: %2", u"%1: cannot be kept: %2"})
                                .arg(m_canon, qt_error_string(errno)));
        m_door();
        RenameOver(NextPath(), m_canon);
        BringNamesToDisk(QFileInfo(m_canon).absolutePath());
    }
    m_door();
    RenameOver(JournalPath(), m_canon + u".renumbered"_s);
    BringNamesToDisk(QFileInfo(m_canon).absolutePath());
    m_door();
}
