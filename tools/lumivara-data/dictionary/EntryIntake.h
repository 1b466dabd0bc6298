#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

class Report;

/// What keeps words and entries.
class WordStore
{
public:
    virtual ~WordStore() = default;
    /// Stores an entry, of any size, and gives its number from 1; equal ones have the same.
    virtual int AddEntry(const QByteArray &content) = 0;
    /// Gives a kind (1 to 8) a word of 1 to 63 UTF-16 units, which leads to an entry.
    virtual void AddWord(int kind, const QString &word, int entry) = 0;
};

/// Where a word stands in its source; made a text only when there is something to tell.
struct SourcePlace
{
    QString file;
    qsizetype number = 0; ///< of the line or of the word

    QString Text() const { return file + u':' + QString::number(number); }
};

/// An entry as it can be taken, and what there is to tell of it.
struct CheckedEntry
{
    QByteArray content;
    QString fault;       ///< why it is left out; null if it is not
    QStringList changes; ///< what of it is taken otherwise
};

/// Takes words and entries from elsewhere into one kind of a dictionary, in the form that its procedures and the search
/// ask for. What cannot be taken, and what is taken otherwise, is told.
class EntryIntake
{
public:
    EntryIntake(int kind, WordStore &store, Report &report) : m_kind(kind), m_store(store), m_report(report) {}

    /// Takes a word and its entry, UTF-8 in the line mark-up. The entry's number, or 0 if it was left out.
    int Take(const QByteArray &word, QByteArray content, const SourcePlace &place);
    /// Looks at an entry without taking it; of any thread.
    static CheckedEntry Check(QByteArray content);
    /// An entry for words to come; 0 if it was left out.
    int TakeEntry(const CheckedEntry &entry, const SourcePlace &place);
    /// One more word for an entry that was taken.
    bool TakeWord(const QByteArray &word, int entry, const SourcePlace &place);

    int Kind() const { return m_kind; }
    Report &Told() { return m_report; }

private:
    void LeaveOut(const SourcePlace &place, const QString &why);

    int m_kind;
    WordStore &m_store;
    Report &m_report;
};
