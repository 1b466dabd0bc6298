#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

class EntryIntake;
class QIODevice;
class TextLines;

/// Words and entries in the source form of a dictionary: "dictionary KIND", then for each entry "% word" and its lines.
/// A line that begins with a backslash is taken literally after it, including blanks at its ends.
class MarkUpWords
{
public:
    /// Called for a faulty line, with its number and the fault.
    using Fault = std::function<void(qsizetype line, const QString &fault)>;

    struct Word
    {
        QByteArray name;
        QByteArray content; ///< cut off behind the longest entry that there may be
        qsizetype line = 0; ///< of the word
    };

    MarkUpWords(TextLines &lines, Fault fault) : m_lines(lines), m_fault(std::move(fault)) {}

    /// False at the end.
    bool Next(Word &word);
    /// The kind that the last "dictionary KIND" before the first word told; 0 for none.
    int Kind() const { return m_kind; }

    /// An entry's lines in this form, each ended by "\n". Reading them gives the same bytes.
    static QByteArray Written(const QByteArray &content);

private:
    void ReadHead(const QByteArray &line);

    TextLines &m_lines;
    Fault m_fault;
    std::optional<QByteArray> m_nextWord;
    qsizetype m_nextLine = 0;
    int m_kind = 0;
};

/// Escapes an entry for one line, and back: backslash, tab and line ends become "\\", "\t", "\n" and "\r".
void AppendEscapedEntry(QByteArray &line, QByteArrayView content);
QByteArray UnescapedEntry(QByteArrayView text);

/// Imports all words of a text: "word TAB entry" on each line, or the source form. The device is open; `fileName` is
/// for reports.
void TakeTabbedWords(QIODevice &device, const QString &fileName, EntryIntake &intake,
                     const std::function<void()> &progress);
/// "form TAB word" on each line.
void TakeTabbedForms(QIODevice &device, const QString &fileName, EntryIntake &intake,
                     const std::function<void()> &progress);
void TakeMarkUpWords(QIODevice &device, const QString &fileName, EntryIntake &intake,
                     const std::function<void()> &progress);
