#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QVariant>

#include <functional>
#include <memory>

class TfrmDictionary;
class TfrmDictionaryDM;
class TfrmKeloraDM;

/// The kind whose words are measured: Pāli to Vietnamese.
inline constexpr int BenchKind = 5;

/// The n-th word of a measured dictionary; in dictionary order they are not in the order of their numbers.
QString BenchWord(int number);
/// An entry of about `bytes` bytes with all kinds of line in equal parts. UTF-8.
QByteArray BenchEntry(qsizetype bytes);

/// A dictionary file with so many words of one kind, made by the tool's own code at the first call in a run.
QString BenchDictionaryFile(int words);

/// Megabytes that this process, with nothing done before, takes when the list of a dictionary file has gone to its end.
double MemoryAtEndOfList(const QString &file);

/// The real dictionary window in this process, over a dictionary made for measuring. One at a time.
class BenchDictionary
{
public:
    /// Opens the window on the first word of a dictionary file.
    explicit BenchDictionary(const QString &file);
    ~BenchDictionary();
    BenchDictionary(const BenchDictionary &) = delete;
    BenchDictionary &operator=(const BenchDictionary &) = delete;

    QString ClientLibrary() const;
    QString DatabasePath() const;
    QString ListStatement(bool filtered) const;
    QString EntryStatement() const;
    QString CheckStatement() const;
    /// The page on the screen.
    QByteArray Page() const;
    /// Rows that the list shows at least in part.
    int RowsOnScreen() const;
    /// A word of the list by its place, which the list fetches up to.
    QString WordAt(int row);

    /// Milliseconds to the entry painted: from the end of the debounce, and from a look-up.
    double SearchTime(const QString &text);
    double LookUpTime(const QString &text);
    /// Milliseconds until a window that opens on a word has list and entry; its making and its painting excluded.
    double OpenTime(const QString &lastWord);
    /// Milliseconds until a key in the list or in the search box is handled and the list painted.
    double KeyTime(const char *widget, Qt::Key key);
    /// The same for a key that goes to the end of the list, from a list just opened.
    double EndTime();

private:
    void MakeWindow();
    void WaitPainted();

    QTemporaryDir m_folder;
    std::unique_ptr<TfrmKeloraDM> m_kelora;
    std::unique_ptr<TfrmDictionaryDM> m_dictionary;
    std::unique_ptr<TfrmDictionary> m_window;
    std::function<void()> m_tellPainted;
    int m_painted = 0;
    int m_seen = 0;
};
