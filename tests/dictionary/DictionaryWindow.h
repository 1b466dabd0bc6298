#pragma once

#include "dictionary/Dictionary.h"
#include "reader/ReaderWindow.h"

/// The reader with a small dictionary beside its canon, and the dictionary's window over it. Words of the dictionary
/// that stand for faults: "nil" has a null entry, "gone" none at all, "bad" makes its procedure fail; a test for a word
/// "null", "none" or "bad" gives null, no row, or fails; the list of kind 4 fails behind its one word.
class DictionaryWindow : public ReaderWindow
{
protected:
    ~DictionaryWindow() override;

    /// Starts the reader with the dictionary beside it and settings of a language of passages and interface.
    void StartReader(int languageSutta = 0, int interfaceLang = 0);
    /// Runs a script on the open dictionary.
    void RunScript(const QString &script);
    /// Opens the window by its command on a kind.
    void OpenOn(int kind);
    /// The window, found as the reader finds it.
    void FindDictionary();

    template <typename T>
    T &In(const char *name)
    {
        QWidget *place = form;
        return ReaderWindow::In<T>(place ? *place : *window, name);
    }
    QLineEdit &Edit() { return In<QLineEdit>("edSearchWord"); }
    TBrowserControl &Entry() { return In<TBrowserControl>("ebContentWord"); }
    QString Caption() { return In<QToolButton>("btnDicts").text(); }
    /// Sets the search text and reads the list by it.
    void Search(const QString &text)
    {
        Edit().setText(text);
        form->RefreshWordList();
    }
    QStringList Words();
    /// The word under the list's cursor.
    QString Word() { return form->qryWords.FieldByName(QStringLiteral("WORD_NAME")).AsString(); }
    /// The entry's page has been shown whole and holds the text.
    bool EntryShows(const QString &text);

    QPointer<TfrmDictionary> form;
};
