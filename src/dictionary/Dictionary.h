#pragma once

#include "stores/data/DataSource.h"
#include "stores/data/FIBDataSet.h"

#include <QTimer>
#include <QWidget>

#include <map>
#include <memory>
#include <optional>

class QUrl;

class SoughtForms;

namespace Ui {
class frmDictionary;
}

/// The dictionary window: the words of one directed dictionary, and the entry of the current word. A tool window:
/// opened by OpenForm(), deleted when closed. Starts with DictionaryKind and LastWord and updates both. Needs the
/// modules of dictionary and canon, which outlive it.
class TfrmDictionary : public QWidget
{
    Q_OBJECT
public:
    explicit TfrmDictionary(QWidget *parent = nullptr);
    ~TfrmDictionary() override;

    /// Opens the dictionary of DictionaryKind at LastWord. Called once, before the window shows. Throws DatabaseError
    /// and leaves the window empty then.
    void FormCreate();
    /// Makes a kind current, with the text of its search box and the caption of the bar. First stores the text of the
    /// kind being left, so `text` may refer to that. Throws DatabaseError.
    void SwitchDictionary(int kind, const QString &text, const QString &caption);
    /// Caption of a kind in an interface language; also gives the button for several dictionaries its caption.
    QString GetDictionaryCaption(int kind, int interfaceLanguage);
    /// Names the dictionary on the bar again, in the interface's language; without one the captions stay.
    void ShowCaptions();
    /// Looks a word up: switches to the dictionary of the current pair that has it, and filters the list by it.
    /// Throws DatabaseError.
    void SearchingText(const QString &text);
    /// The same for another kind without a switch: the bar keeps its caption, and the text of the kind being left is
    /// not stored.
    void LookUp(int kind, const QString &text);
    /// Shows the entry of the current word; after a failure the page stays.
    void ShowWordContent();
    /// Makes the page of the current entry, into vHTMLString. Throws DatabaseError.
    void SaveHTMLFormatted();
    /// Reads words and entry again for search box and kind. Throws DatabaseError.
    void RefreshWordList();
    /// The same for a typed or passed text: an empty list shows the page of an entry without lines. Throws
    /// DatabaseError.
    void RunWordSearch();

    TpFIBDataSet qryWords;
    TpFIBDataSet qryContents;
    TpFIBDataSet qryCheckWord;
    TDataSource dsWords;
    TDataSource dsContents;
    QTimer TimerDelta;     ///< runs from the first key on and counts vDeltaT
    QTimer TimerEndScroll; ///< runs from each move in the list until its entry is shown

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
    void SetUpTyping();
    QChar Niggahita();
    void edSearchWordKeyDown(int key, const QString &text);
    void TimerDeltaTimer();
    void qryWordsEndScroll();
    void acGotoWordExecute();

    std::unique_ptr<Ui::frmDictionary> ui;
    std::unique_ptr<SoughtForms> m_soughtForms; ///< none without the dictionary's module
    QStringList vWordsDefQry;                   ///< the statement of the whole list
    std::optional<int> m_namedKind; ///< whose caption was asked for last: it names the button for several dictionaries
    std::optional<int> m_shownKind; ///< whose caption the bar shows
    int vDeltaT = 0;
    bool vIsInit = false;
    /// False while a page is being made: a web address then opens in the system's browser, otherwise inside.
    bool FIsStartPage = false;
    QString vSTextEV, vSTextVE, vSTextFV, vSTextVF; ///< search texts kept while another kind is current
    QString vSTextPV, vSTextVP;                     ///< never written: these kinds start with an empty box
    std::map<int, QChar> m_niggahitas;              ///< by kind, as far as asked for
};
