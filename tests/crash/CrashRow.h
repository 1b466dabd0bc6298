#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QString>

inline QByteArray DigestOf(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}

/// A mark of the crash tests. Its title tells which row it is and how often it was edited, and the excerpt follows from
/// both, so that a stored row can be proved without a record of it.
struct CrashRow
{
    qint64 id = 0;
    int version = 0;

    /// "k17.2"; the letter names whose row it is.
    QString Title(char owner) const
    {
        return QStringLiteral("%1%2.%3").arg(QChar::fromLatin1(owner)).arg(id).arg(version);
    }
    static CrashRow FromTitle(const QString &title)
    {
        return {title.mid(1).section(u'.', 0, 0).toLongLong(), title.section(u'.', 1).toInt()};
    }
    /// Bytes of every value: most often a few kilobytes, now and then many pages.
    QByteArray Excerpt() const
    {
        QRandomGenerator random(static_cast<quint32>(id * 1000003 + version));
        const int words = random.bounded(20) == 0 ? random.bounded(75000, 150000) : random.bounded(3000);
        QByteArray bytes(words * 4, Qt::Uninitialized);
        random.fillRange(reinterpret_cast<quint32 *>(bytes.data()), words);
        return bytes;
    }
};
