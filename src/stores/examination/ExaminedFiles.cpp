#include "stores/examination/ExaminedFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView MannerNames[] = {"as it is"_L1, "as copy"_L1, "not at all"_L1};

/// Grows when an examination looks for more, so that older verdicts no longer count.
constexpr int ExaminationVersion = 1;

QJsonObject JsonOf(const FileStamp &stamp)
{
    // As text: numbers of JSON have 53 bits.
    return {{u"version"_s, ExaminationVersion},
            {u"device"_s, QString::number(stamp.device)},
            {u"number"_s, QString::number(stamp.number)},
            {u"bytes"_s, QString::number(stamp.bytes)},
            {u"changed"_s, QString::number(stamp.changed)},
            {u"touched"_s, QString::number(stamp.touched)}};
}

FileStamp StampOf(const QJsonObject &json)
{
    return {json[u"device"_s].toString().toULongLong(), json[u"number"_s].toString().toULongLong(),
            json[u"bytes"_s].toString().toULongLong(), json[u"changed"_s].toString().toLongLong(),
            json[u"touched"_s].toString().toLongLong()};
}

QString KeyOf(const QString &path)
{
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? info.absoluteFilePath() : canonical;
}

} // namespace

QJsonObject Verdict::ToJson() const
{
    return {{u"manner"_s, QString(MannerNames[static_cast<int>(manner)])},
            {u"copy"_s, copy},
            {u"reason"_s, reason},
            {u"stamp"_s, JsonOf(stamp)}};
}

std::optional<Verdict> Verdict::FromJson(const QJsonObject &json)
{
    if (json[u"stamp"_s].toObject()[u"version"_s].toInt() != ExaminationVersion)
        return std::nullopt;
    for (int i = 0; i < static_cast<int>(std::size(MannerNames)); ++i) {
        if (json[u"manner"_s].toString() == MannerNames[i])
            return Verdict{static_cast<Manner>(i), json[u"copy"_s].toString(), json[u"reason"_s].toString(),
                           StampOf(json[u"stamp"_s].toObject())};
    }
    return std::nullopt;
}

QString ExaminedFiles::UsualFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + u"/lumivara"_s;
}

QString ExaminedFiles::MemoryPath() const
{
    return m_folder + u"/examined.json"_s;
}

QJsonObject ExaminedFiles::Read() const
{
    QFile file(MemoryPath());
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

bool ExaminedFiles::MakeFolder() const
{
    constexpr QFile::Permissions mine = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    if (!QDir().mkpath(QFileInfo(m_folder).absolutePath()))
        return false;
    return QDir().mkdir(m_folder, mine) || (QFileInfo(m_folder).isDir() && QFileInfo(m_folder).isWritable());
}

std::optional<Verdict> ExaminedFiles::Find(const QString &path) const
{
    const FileStamp stamp = FileStamp::Of(path);
    const auto verdict = Verdict::FromJson(Read()[KeyOf(path)].toObject());
    if (stamp == FileStamp() || !verdict || verdict->stamp != stamp)
        return std::nullopt;
    if (verdict->manner == Verdict::Manner::AsCopy && !QFileInfo(verdict->copy).isFile())
        return std::nullopt;
    return verdict;
}

void ExaminedFiles::Remember(const QString &path, const Verdict &verdict)
{
    if (verdict.stamp == FileStamp() || !MakeFolder())
        return;
    QJsonObject all = Read();
    const QString key = KeyOf(path);
    const QString old = all[key].toObject()[u"copy"_s].toString();
    // A program that has the old copy open goes on with it. Only what lies in the folder is deleted.
    if (old != verdict.copy && QFileInfo(old).absolutePath() == QFileInfo(m_folder).absoluteFilePath())
        QFile::remove(old);
    all[key] = verdict.ToJson();
    QSaveFile file(MemoryPath());
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QJsonDocument(all).toJson());
        file.commit();
    }
}
