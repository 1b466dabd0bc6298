#pragma once

#include "dictionary/FormSearch.h"
#include "stores/data/DataSource.h"
#include "stores/data/FIBDataSet.h"

#include <QTimer>
#include <QWidget>

#include <map>
#include <memory>
#include <optional>

class DictionaryForms;
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
    /// and leaves the window empty then. A window that opens for a word, which SearchingText() is called with next,
    /// lists nothing before.
    void FormCreate(bool isForWord = false);
    /// Makes a kind current, with the text of its search box and the caption of the bar. First stores the text of the
    /// kind being left, so `text` may refer to that. Throws DatabaseError.
    void SwitchDictionary(int kind, const QString &text, const QString &caption);
    /// Caption of a kind in an interface language; also gives the button for several dictionaries its caption.
    QString GetDictionaryCaption(int kind, int interfaceLanguage);
    /// Names the dictionary on the bar again, in the interface's language; without one the captions stay.
    void ShowCaptions();
    /// Looks a word up: switches to the dictionary of the current pair that has it, and filters the list by it. The
    /// words beside it in its text help to find longer ones. Throws DatabaseError.
    void SearchingText(const QString &text, const Neighbours &around = {});
    /// The same for another kind without a switch: the bar keeps its caption, and the text of the kind being left is
    /// not stored.
    void LookUp(int kind, const QString &text, const Neighbours &around = {});
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
    QTimer TimerForms;     ///< runs while the words behind what is sought are looked for

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
    void SearchInPair();
    void ListAsOpened();

    // DictionaryStrip.cpp: the words behind a form, and those that were shown
    void SetUpStrip();
    void DropForms();
    void SeekForms();
    void BeginSeeking();
    void TimerFormsTimer();
    std::optional<bool> IsSoughtListed();
    void OpenForm(const FoundWord &word);
    void acFormsExecute();
    void TakeShown();
    std::optional<qsizetype> StepLeadsTo(int step) const;
    void EnableSteps();
    void StepShown(int step);
    void OpenWord(int kind, const QString &word);
    int RowOfWord(const QString &word, int most);
    bool StandOn(const QString &word);
    void StandOnOpened();

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
    bool m_isForWord = false;                       ///< opened for a word that has not come yet
    bool m_isListDue = false;                       ///< the list that such a window has not read

    std::unique_ptr<DictionaryForms> m_forms;
    std::unique_ptr<FormSearch> m_formSearch;
    std::optional<SoughtForm> m_handedOver; ///< while it is being looked up
    SoughtForm m_sought;                    ///< what the strip is for
    QString m_soughtText;                   ///< what the box made of it
    std::optional<bool> m_isListed;         ///< whether the list has it, once that is known
    int m_rowsSeen = 0;                     ///< of the list, on the way to know it
    bool m_keepsStrip = false;              ///< while one of its words is being opened

    struct ShownWord
    {
        int kind = 0;
        QString word;
        bool operator==(const ShownWord &) const = default;
    };
    QList<ShownWord> m_shown;  ///< the words shown, oldest first
    qsizetype m_shownAt = -1;  ///< the one on show
    bool m_isStepping = false; ///< among the words shown, which stay as they are
    QString m_opened;          ///< the word on which the list that is read next stands
};
