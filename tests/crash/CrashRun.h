#pragma once

#include "crash/CrashRow.h"

#include <QHash>
#include <QProcess>

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <optional>

/// Title and digest of the excerpt of each stored row.
using StoredRows = QHash<QString, QByteArray>;

inline constexpr int PatienceMilliseconds = 60000;
/// A copy that says nothing for so long will never say anything.
inline constexpr int StallMilliseconds = 20000;

/// How much to do: a number from the environment, else a short run.
inline int Amount(const char *variable, int byDefault)
{
    bool isNumber = false;
    const int amount = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber && amount > 0 ? amount : byDefault;
}

/// What a worker said that it is doing or has done.
struct Operation
{
    char kind = 'a';
    CrashRow row;
    qint64 begun = 0;
};

/// What is known of the rows of one owner: the last acknowledged version of each, and what was under way.
class Ledger
{
public:
    explicit Ledger(char owner) : m_owner(owner) {}

    /// Reads all that a worker said. An operation is acknowledged by the line that follows it.
    void Hear(const QByteArray &said)
    {
        m_pending.reset();
        for (const QByteArray &line : said.split('\n')) {
            const QList<QByteArray> words = line.split(' ');
            if (words[0] == "begin" && words.size() == 5) {
                m_pending = Operation{words[1][0], {words[2].toLongLong(), words[3].toInt()}, words[4].toLongLong()};
            } else if (words[0] == "end" && words.size() == 3 && m_pending) {
                Apply(*m_pending);
                ++acknowledged;
                tries += words[1].toInt();
                longest = std::max(longest, words[2].toLongLong() - m_pending->begun);
                m_pending.reset();
            }
        }
    }
    QList<CrashRow> Rows() const
    {
        QList<CrashRow> rows;
        for (auto it = m_rows.cbegin(); it != m_rows.cend(); ++it)
            rows.append({it.key(), it.value()});
        std::sort(rows.begin(), rows.end(), [](const CrashRow &a, const CrashRow &b) { return a.id < b.id; });
        return rows;
    }
    const std::optional<Operation> &Pending() const { return m_pending; }

    /// Compares with the file: each row is as acknowledged or as the pending operation makes it, one of the two.
    void Prove(StoredRows stored)
    {
        if (m_pending) {
            const CrashRow &row = m_pending->row;
            const bool wasThere = m_rows.contains(row.id);
            const QString before = wasThere ? CrashRow{row.id, m_rows[row.id]}.Title(m_owner) : QString();
            const bool happened =
                m_pending->kind == 'd' ? !stored.contains(before) : stored.contains(row.Title(m_owner));
            if (m_pending->kind == 'e') {
                EXPECT_NE(stored.contains(before), happened) << "both or neither of " << qPrintable(before);
            }
            if (happened)
                Apply(*m_pending);
            m_pending.reset();
        }
        for (auto it = m_rows.cbegin(); it != m_rows.cend(); ++it) {
            const CrashRow row{it.key(), it.value()};
            const QByteArray digest = digests.contains(row.id) ? digests[row.id] : DigestOf(row.Excerpt());
            EXPECT_EQ(stored.take(row.Title(m_owner)), digest) << qPrintable(row.Title(m_owner));
        }
        for (auto it = stored.cbegin(); it != stored.cend(); ++it)
            EXPECT_FALSE(it.key().startsWith(QChar::fromLatin1(m_owner))) << "nobody stored " << qPrintable(it.key());
    }

    /// Digests of the excerpts by row, where they do not follow from the row.
    QHash<qint64, QByteArray> digests;
    qsizetype acknowledged = 0;
    qint64 tries = 0;
    qint64 longest = 0; ///< microseconds

private:
    void Apply(const Operation &operation)
    {
        if (operation.kind == 'd')
            m_rows.remove(operation.row.id);
        else
            m_rows[operation.row.id] = operation.row.version;
    }

    char m_owner;
    QHash<qint64, int> m_rows;
    std::optional<Operation> m_pending;
};

/// Where the kills fell: between two operations, or inside one.
class KillCount
{
public:
    void Count(const std::optional<Operation> &pending)
    {
        ++m_kills;
        if (pending)
            ++m_inside[pending->kind];
    }
    double InsideShare() const
    {
        return m_kills == 0 ? 0 : static_cast<double>(m_inside['a'] + m_inside['e'] + m_inside['d']) / m_kills;
    }
    void Print() const
    {
        std::printf("%d kills; inside an add %d, an edit %d, a delete %d\n", m_kills, m_inside['a'], m_inside['e'],
                    m_inside['d']);
    }

private:
    QHash<char, int> m_inside;
    int m_kills = 0;
};

/// Every stored row of the marks in `folder`, read by a process that has just opened the file; none if it hangs or
/// crashes.
std::optional<StoredRows> ReadStored(const QString &folder);
/// Makes an empty file of marks in `folder`, with the list of texts if asked for.
void MakeMarks(const QString &folder, bool withTexts);
QString WorkerPath();
