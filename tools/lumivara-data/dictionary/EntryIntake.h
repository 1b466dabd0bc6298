#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

class Report;

/// A store of words and entries.
class WordStore
{
public:
    virtual ~WordStore() = default;
    /// Stores an entry of any size and returns its number, from 1; equal entries have the same number.
    virtual int AddEntry(const QByteArray &content) = 0;
    /// Adds a word of 1 to 63 UTF-16 units to a kind (1 to 8), with the number of its entry.
    virtual void AddWord(int kind, const QString &word, int entry) = 0;
    /// Adds a form of 1 to 63 UTF-16 units, as look-ups ask for it, of a word that is or will be added. Of a form's
    /// words the first ones count most.
    virtual void AddForm(int kind, const QString &form, const QString &word) = 0;
};

/// The place of a word in its source; converted to text only for a report.
struct SourcePlace
{
    QString file;
    qsizetype number = 0; ///< of the line or of the word

    QString Text() const { return file + u':' + QString::number(number); }
};

/// An entry ready for import, and the findings about it.
struct CheckedEntry
{
    QByteArray content;
    QString fault;       ///< why it is skipped; null if it is not
    QStringList changes; ///< what was changed in it
};

/// Imports words and entries into one kind of a dictionary, in the form that its procedures and the search need.
/// Reports what it skips or changes.
class EntryIntake
{
public:
    /// Words and forms of one source; large dictionaries have a tenth of that.
    static constexpr qsizetype MostWords = 5'000'000;

    EntryIntake(int kind, WordStore &store, Report &report) : m_kind(kind), m_store(store), m_report(report) {}

    /// Imports a word and its entry, UTF-8 in the line mark-up. Returns the entry's number, 0 if it was skipped.
    int Take(const QByteArray &word, QByteArray content, const SourcePlace &place);
    /// Checks an entry without importing it; may be called on any thread.
    static CheckedEntry Check(QByteArray content);
    /// Imports an entry for later words; 0 if it was skipped.
    int TakeEntry(const CheckedEntry &entry, const SourcePlace &place);
    /// Adds a word for an imported entry. Throws ToolError behind MostWords.
    bool TakeWord(const QByteArray &word, int entry, const SourcePlace &place);

    /// Adds a form for a word, whether or not that is known already: one that never comes is told when all are stored.
    /// Throws ToolError behind MostWords.
    bool TakeForm(const QByteArray &form, const QByteArray &word, const SourcePlace &place);

    /// Words that the source has, and forms that become words, whatever becomes of them.
    void CountRead(qsizetype words) { m_readCount += words; }
    qsizetype ReadCount() const { return m_readCount; }
    /// Those that were imported, equal ones each by itself.
    qsizetype TakenCount() const { return m_wordCount; }
    /// The same for forms that are kept beside the words.
    void CountFormsRead(qsizetype forms) { m_formsRead += forms; }
    qsizetype FormsReadCount() const { return m_formsRead; }

    int Kind() const { return m_kind; }
    Report &Told() { return m_report; }

private:
    enum class Part { Word, Form };
    static QString NameOf(Part part);
    void LeaveOut(const SourcePlace &place, const QString &why);
    std::optional<QString> Accepted(const QByteArray &bytes, Part part, const SourcePlace &place);

    int m_kind;
    WordStore &m_store;
    Report &m_report;
    qsizetype m_wordCount = 0, m_readCount = 0, m_formCount = 0, m_formsRead = 0;
};
