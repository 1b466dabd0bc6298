#pragma once

#include "lumivara-data/dictionary/EntryIntake.h"
#include "lumivara-data/dictionary/FormSorter.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/RecordSorter.h"
#include "stores/Schema.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

class Console;
class RepeatedStatement;
class Report;
class Statement;

/// Finds equal texts by their digests.
class TextNumbers
{
public:
    /// The number of an earlier equal text; else stores the text under `number` and returns that.
    int Number(const QByteArray &text, int number);

private:
    struct Slot
    {
        quint64 high = 0;
        quint32 low = 0;
        int number = 0; ///< 0 for an empty slot
    };
    Slot &Find(quint64 high, quint32 low);

    std::vector<Slot> m_slots;
    size_t m_used = 0;
};

/// Makes a dictionary database row by row, of any size, in fixed memory plus a few bytes for each entry. Entries are
/// written at once, equal ones only once; words are sorted on disk and written at the end. Throws ToolError or
/// DatabaseError.
class DictionaryWriter : public WordStore
{
public:
    /// Longest entry, in bytes.
    static constexpr qsizetype LongestEntry = 1 << 20;
    /// Entries joined for words that have several, in bytes: so many times those of all entries that were added.
    static constexpr quint64 MostTimesJoined = 4;

    /// Makes the file, which must not exist.
    explicit DictionaryWriter(const QString &path);
    ~DictionaryWriter() override;

    int AddEntry(const QByteArray &content) override;
    void AddWord(int kind, const QString &word, int entry) override;
    void AddForm(int kind, const QString &form, const QString &word) override { m_forms.Add(kind, form, word); }
    qsizetype WordCount() const { return m_words.Count(); }
    /// Words of a kind as they were added, before duplicates are joined.
    qsizetype AddedCount(int kind) const { return m_addedWords[kind]; }
    qsizetype FormCount() const { return m_forms.Count(); }

    /// Stores the words in dictionary order, and the forms of those words, and leaves the file in read-only mode.
    /// Entries of one word are joined by a blank line and reported, forms of no word left out and reported; without a
    /// report a repeated word, or such a form, throws ToolError.
    void Finish(Console &console, Report *report);

    /// Words of a kind as they were stored, duplicates joined. After Finish().
    qsizetype WordCount(int kind) const { return m_storedWords[kind]; }
    /// Forms of a kind as they were stored, with each of their words once. After Finish().
    qsizetype FormCount(int kind) const { return m_storedForms[kind]; }
    /// What became of words that came again: with an entry that they had already; with one that could not be joined.
    qsizetype EqualCount() const { return m_equalWords; }
    qsizetype UnjoinedCount() const { return m_unjoined; }

private:
    struct Word
    {
        int kind = 0;
        QByteArray sortKey;
        QByteArray name; ///< UTF-8
        QByteArray form; ///< the one that the existence test looks for, UTF-8
        int entry = 0;
    };
    bool NextWord(Word &word);
    int Join(const Word &word, const std::vector<int> &entries, Report &report);
    bool MayJoin(const std::vector<int> &entries);
    QByteArray Content(int entry);
    void StoreWords(Console &console, Report *report);
    void StoreForms(Console &console, Report *report);
    void DropUnusedEntries();
    std::unique_ptr<RepeatedStatement> Prepared(const QString &sql);
    void ProveOrder();

    DataFile m_file;
    std::unique_ptr<RepeatedStatement> m_entries;
    std::unique_ptr<Statement> m_content;
    TextNumbers m_numbers;
    int m_lastEntry = 0;
    std::vector<bool> m_isUsed;   ///< by the entry's number
    std::vector<quint32> m_sizes; ///< of the entries, by the number before theirs
    quint64 m_entryBytes = 0;
    quint64 m_joinedBytes = 0, m_mostJoined = 0;
    RecordSorter m_words;
    FormSorter m_forms;
    QByteArray m_record; ///< the memory of the one that is made
    qsizetype m_equalWords = 0, m_unjoined = 0;
    qsizetype m_addedWords[DictKind::All.back() + 1] = {};
    qsizetype m_storedWords[DictKind::All.back() + 1] = {};
    qsizetype m_storedForms[DictKind::All.back() + 1] = {};
    quint64 m_digests[DictKind::All.back() + 1] = {}; ///< of the words of a kind in their order
};
