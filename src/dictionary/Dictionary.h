#pragma once

#include "stores/DataSource.h"
#include "stores/FIBDataSet.h"

#include <QTimer>
#include <QWidget>

#include <memory>

class QUrl;

namespace Ui {
class frmDictionary;
}

/// The dictionary window: the words of one directed dictionary, and the entry of the current one. A tool window: opened
/// by OpenForm(), gone when closed. Starts with DictionaryKind and LastWord and leaves both behind. Needs the modules
/// of dictionary and canon, which outlive it.
class TfrmDictionary : public QWidget
{
    Q_OBJECT
public:
    explicit TfrmDictionary(QWidget *parent = nullptr);
    ~TfrmDictionary() override;

    /// Opens the dictionary of DictionaryKind on LastWord. Called once, before the window shows. Throws DatabaseError,
    /// and the window then stands empty.
    void FormCreate();
    /// Makes a kind current, with the text of its search box and the caption of the bar. The text is read after that of
    /// the kind being left has been kept, so it may be the kept one. Throws DatabaseError.
    void SwitchDictionary(int kind, const QString &text, const QString &caption);
    /// Caption of a kind in an interface language; also gives the button for several dictionaries its caption.
    QString GetDictionaryCaption(int kind, int interfaceLanguage);
    /// Looks a word up: turns to the dictionary of the current pair that has it, and filters the list by it.
    /// Throws DatabaseError.
    void SearchingText(const QString &text);
    /// The same after the kind was set without a switch: the bar keeps its caption, and nothing of the kind being left
    /// is remembered.
    void LookUp(int kind, const QString &text);
    /// Shows the entry of the current word; a failure leaves the page as it is.
    void ShowWordContent();
    /// Makes the page of the current entry, into vHTMLString. Throws DatabaseError.
    void SaveHTMLFormatted();
    /// Reads words and entry anew from search box and kind. Throws DatabaseError.
    void RefreshWordList();
    /// The same for a text that was typed or handed over: an empty list shows the page of an entry without lines.
    /// Throws DatabaseError.
    void RunWordSearch();

    TpFIBDataSet qryWords;
    TpFIBDataSet qryContents;
    TpFIBDataSet qryCheckWord;
    TDataSource dsWords;
    TDataSource dsContents;
    QTimer TimerDelta;     ///< runs from the first key on, and counts vDeltaT
    QTimer TimerEndScroll; ///< runs from each move in the list until its entry shows

    int vTypeDict = 0;
    QByteArray vHTMLString;

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    // Dictionary.cpp: the window
    void DeclareData();
    void SetUpCommands();
    void UpdateCommands();
    void FormShow();
    void FormClose();
    void SelectDictionary(int kind, const QString &text);
    void SaveSearchText();
    void bMultiDictionaryClick();
    bool ebContentWordBeforeNavigate2(const QUrl &url);

    // DictionarySearch.cpp: list and search
    void SetUpSearch();
    bool HasWord(int kind, const QString &form);
    void edSearchWordKeyDown(int key, const QString &text);
    void TimerDeltaTimer();
    void qryWordsEndScroll();
    void acGotoWordExecute();

    std::unique_ptr<Ui::frmDictionary> ui;
    QStringList vWordsDefQry; ///< the statement of the whole list
    int vDeltaT = 0;
    bool vIsInit = false;
    /// Off while a page is made: a web address then leaves for the system's browser, later it opens inside.
    bool FIsStartPage = false;
    QString vSTextEV, vSTextVE, vSTextFV, vSTextVF; ///< search texts kept while another kind is current
    QString vSTextPV, vSTextVP;                     ///< never written: these kinds start with an empty box
};
