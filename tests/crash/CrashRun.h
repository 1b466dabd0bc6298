#pragma once

#include "crash/CrashRow.h"

#include <QHash>
#include <QMap>
#include <QProcess>

#include <gmock/gmock.h>

#include <optional>

/// Title and digest of the excerpt of each stored row.
using StoredRows = QHash<QString, QByteArray>;

inline constexpr int PatienceMilliseconds = 60000;
/// A copy that says nothing for so long will never say anything.
inline constexpr int StallMilliseconds = 20000;

/// How much to do: a number from the environment, else a short run.
inline int Amount(const char *variable, int byDefault)
{
    const int amount = qEnvironmentVariableIntValue(variable);
    return amount > 0 ? amount : byDefault;
}

/// What a worker said that it is doing or has done.
struct Operation
{
    char kind = 'a';
    CrashRow row;
};

/// What is known of the rows of one owner: the last acknowledged version of each, and what was under way.
class Ledger
{
public:
    explicit Ledger(char owner) : m_owner(owner) {}

    /// Reads all that a worker said: "begin KIND ROW VERSION" and "end". An operation is acknowledged by the line
    /// that follows it.
    void Hear(const QByteArray &said)
    {
        m_pending.reset();
        for (const QByteArray &line : said.split('\n')) {
            const QList<QByteArray> words = line.split(' ');
            if (words[0] == "begin" && words.size() == 4) {
                m_pending = Operation{words[1][0], {words[2].toLongLong(), words[3].toInt()}};
            } else if (words[0] == "end" && words.size() == 1 && m_pending) {
                Apply(*m_pending);
                ++acknowledged;
                m_pending.reset();
            }
        }
    }
    QList<CrashRow> Rows() const
    {
        QList<CrashRow> rows;
        for (auto it = m_rows.cbegin(); it != m_rows.cend(); ++it)
            rows.append({it.key(), it.value()});
        return rows;
    }
    bool IsPending() const { return m_pending.has_value(); }

    /// Compares with the file: each row is as acknowledged or as the pending operation makes it, one of the two.
    void Prove(StoredRows stored)
    {
        if (m_pending) {
            const CrashRow &row = m_pending->row;
            const QString before =
                m_rows.contains(row.id) ? CrashRow{row.id, m_rows[row.id]}.Title(m_owner) : QString();
            const bool happened =
                m_pending->kind == 'd' ? !stored.contains(before) : stored.contains(row.Title(m_owner));
            EXPECT_TRUE(m_pending->kind != 'e' || stored.contains(before) != happened)
                << "both or neither of " << qPrintable(before);
            if (happened)
                Apply(*m_pending);
            m_pending.reset();
        }
        for (const CrashRow &row : Rows()) {
            const QByteArray digest = digests.contains(row.id) ? digests[row.id] : DigestOf(row.Excerpt());
            EXPECT_EQ(stored.take(row.Title(m_owner)), digest) << qPrintable(row.Title(m_owner));
        }
        for (auto it = stored.cbegin(); it != stored.cend(); ++it)
            EXPECT_FALSE(it.key().startsWith(QChar::fromLatin1(m_owner))) << "nobody stored " << qPrintable(it.key());
    }
    /// Digests of the excerpts by row, where they do not follow from the row.
    QHash<qint64, QByteArray> digests;
    qsizetype acknowledged = 0;

private:
    void Apply(const Operation &operation)
    {
        if (operation.kind == 'd')
            m_rows.remove(operation.row.id);
        else
            m_rows[operation.row.id] = operation.row.version;
    }

    char m_owner;
    QMap<qint64, int> m_rows;
    std::optional<Operation> m_pending;
};

/// Every stored row of the marks in `folder`, read by a process that has just opened the file; none if it hangs or
/// crashes.
std::optional<StoredRows> ReadStored(const QString &folder);
/// Makes an empty file of marks in `folder`, with the list of texts if asked for.
void MakeMarks(const QString &folder, bool withTexts);
QString WorkerPath();
