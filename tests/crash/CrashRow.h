#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QString>

#include <chrono>

inline qint64 Microseconds()
{
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

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
        auto state = static_cast<quint64>(id * 1000003 + version) | 1U;
        const auto next = [&state] {
            state ^= state << 13;
            state ^= state >> 7;
            state ^= state << 17;
            return state;
        };
        for (int i = 0; i < 8; ++i)
            next();
        const auto size = static_cast<qsizetype>(next() % 20 == 0 ? 300000 + next() % 300000 : next() % 12000);
        QByteArray bytes(size, Qt::Uninitialized);
        for (char &byte : bytes)
            byte = static_cast<char>(next() >> 24);
        return QByteArray("\xEF\xBB\xBF") + bytes;
    }
};
