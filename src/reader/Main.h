#pragma once

#include "base/Reading.h"
#include "imports/ImportJob.h"
#include "reader/CommandRules.h"
#include "reader/History.h"
#include "stores/KeloraSuttaList.h"
#include "stores/data/DataSource.h"
#include "stores/data/FIBDataSet.h"
#include "stores/engine/FileStamp.h"
#include "stores/engine/Scripter.h"
#include "stores/settings/Options.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

class QAction;
class QFileSystemWatcher;
class QMenu;
class QSystemTrayIcon;
class QTimer;
class QUrl;
class InputWatch;
class MarksInText;
class TBarCombo;
class TfrmDictionary;
class TfrmFocusHighlight;
class TfrmImport;
class TBrowserControl;
class TDBTreeListColumn;
class TDKLanguageController;
class TdxSkinController;
struct Neighbours;

namespace Ui {
class frmMain;
}

/// The main window: the canon as a tree, one passage as a page, and the commands on both. The constructor runs the
/// whole start-up and leaves the window visible, with its first page loading. It reports failures and continues without
/// the part that failed. Uses the modules of stores/Modules.h; clients and dictionary may be missing.
class TfrmMain : public QWidget, public Reading
{
    Q_OBJECT
public:
    explicit TfrmMain(QWidget *parent = nullptr);
    ~TfrmMain() override;

    /// Reads the tree again with the filter's text, and the passage under the cursor. Throws DatabaseError.
    void LoadContentData();
    /// Rebuilds the tree, expanded; during the start-up also chooses the opening passage. Throws DatabaseError.
    void LoadKeloraTree();
    /// Composes the current row in a language mode (see PageMode) and hands it to the browser. Throws DatabaseError.
    void ViewSutta(int mode);
    /// Shows the names of the tree in the language of a mode; the page stays.
    void ViewSuttaName(int mode);
    /// Sets, shows and stores the language mode. Does nothing during the start-up.
    void SetContentLanguage(int mode);
    /// Composes the page again after a change of options.
    void ApplyOptions();
    /// Tells something in the bar at the foot, in place of what was told there before; with an action, a button beside
    /// it does that once. An empty message clears it.
    void TellInFoot(const QString &message, const QString &action = {}, std::function<void()> act = nullptr);
    /// The browser control of the passage, and what shows its marks beside it.
    TBrowserControl &Content();
    MarksInText &Marks();

    void OpenText(const QVariant &idVic) override;
    void OpenMarkedText(int collection, int number) override;
    void ColourWords(const QString &words) override;
    void StepToPlace(bool isBackward) override;
    void SetSoughtWords(const QString &words) override;
    void BeginSearch(const Search &search) override;
    void EndSearch() override;
    bool OpenPlace(int idVic, std::optional<int> language, qsizetype place) override;
    void GoToPage() override;

    TpFIBDataSet qryTreeSutas;
    TpFIBDataSet qryKeloraContent;
    TDataSource dsTreeSutas;
    TDataSource dsKeloraContent;
    TpFIBScripter scInsKelora; ///< enters the canon's texts into the list of texts of the client database

    QString vFindSuttaStr; ///< words to highlight in each page that completes; the text search alone sets it
    int vTaruneBook = 0;

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    /// A command with its handler and, where its state changes, the rule that enables it.
    struct Command
    {
        QAction *action;
        std::function<bool(const ReaderFacts &)> rule;
    };

    /// Where a search has taken the reader.
    struct Hit
    {
        int idVic = 0;
        std::optional<int> language;
        qsizetype number = -1;
    };

    /// What the foot tells, with a button if there is something to do.
    struct FootMessage
    {
        QString text;
        QString action;
        std::function<void()> act;
    };

    // Main.cpp: start and end
    void DeclareTreeData();
    void DeclareContentData();
    void FormCreate();
    void FormShow();
    void FindLanguages();
    void StoreLastKelora();
    bool ConfirmQuit();
    void SetUpTray();
    void tiMainTrayClick();
    void bcbLanguageChange();
    void ChooseLanguageInForce();

    // MainSkins.cpp
    void FillSkins();
    void ApplyStoredSkin();
    void bcbInterfaceChange();
    /// Starts or ends following the desktop, as the command is checked.
    void FollowDesktop();
    void TakeDesktopLook(bool isDark);
    /// The first look of the file for a dark or a light desktop; empty if there is none.
    QString FirstLook(bool isDark) const;

    // MainTree.cpp
    void SetUpTree();
    void LocateOpeningPassage();
    TDBTreeListColumn *ShownNameColumn() const;
    void edFilterSuttaKeyUp(int key);

    // MainContent.cpp
    void SetUpContent();
    void SetUpReturn();
    QByteArray ComposePage(int mode);
    QString PageTitle();
    void dsKeloraContentDataChange();
    void LanguageButtonClick(int mode);
    /// A choice that finds no place in the settings holds for this run all the same.
    void StoreSilently(Option option, const OptionValue &value);
    void EnableMargins(bool enabled);
    void SetMarginWidth(int level);
    bool ebContentBeforeNavigate2(const QUrl &url);
    void ebContentDocumentComplete();
    /// Colours the words of a search, and scrolls to the first; false if there are none.
    bool GoToSoughtWords();

    // MainLookUp.cpp: words handed to the dictionary
    TfrmDictionary &OpenDictionary(bool isForWord = false);
    void LookUpWord(const std::function<QString(Neighbours &around)> &takeWord);
    void acGetWordExecute();
    void ebContentClick(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, int x, int y);

    // MainMarks.cpp
    void DeclareSuttaListScript();
    void FillSuttaList();
    void acFocusHighlightExecute();
    /// The browser of marks; null if it does not open.
    TfrmFocusHighlight *acOrganizationExecute();
    /// The strip beside the page, with the marks of the text and the hits of a search.
    void SetUpMarks();

    // MainFoot.cpp: the bar at the foot
    void SetUpFoot();
    void ShowFoot(bool shows);
    /// Of the options added since: it holds from now on, and is stored.
    void KeepChoice(Option option, const OptionValue &value);
    void UpdateFootText();
    void GoToArea(int step);

    // MainWay.cpp: the way back and forward, and the place in each text
    void SetUpWay();
    /// The number of the tree's row, 0 for none.
    int TextOnShow();
    /// Another text comes on show: keeps the place in the one before, and says where to go in this one.
    void TextComes();
    /// Asks for the place on show, which is kept when it is told; false where there is none. `then` runs after that.
    bool LeavePlace(const std::function<void()> &then = nullptr);
    /// Composes the text on show again in another dress, and keeps the place.
    void ViewAgain(int mode);
    void GoToWantedPlace();
    void Go(bool isForward);
    bool TravelTo(const Place &place);
    /// Sets the language mode of the next page of a text, its button and its option. A page in English has no button,
    /// and is shown as for a hit.
    void ChooseLanguage(int text, int mode);
    /// The name of a text in the interface's language; empty if the canon does not have it.
    QString NameOfText(int text);
    void FillRecent();
    void StorePlaces();
    void StorePlacesAtEnd();

    // MainReference.cpp: places by number and block
    void SetUpReference();
    void acReferenceExecute();
    void acCopyReferenceExecute();
    void CloseReference();
    void ShowCandidates();
    void GoToTyped(const QString &typed);
    /// Opens a text, at a place where one is given. False if the canon does not have it.
    bool GoToReference(int text, const std::optional<PagePlace> &place);
    const QList<KeloraText> &Texts();

    // MainKeys.cpp: commands that have keys alone
    void SetUpKeys();
    /// Of a key that acts on page or window: its release in the filter box would read the tree again.
    void WireKey(QAction *action, std::function<void()> execute);
    void ShowFullScreen(bool shows);
    void GoToTextBeside(bool isBefore);
    bool IsTextAt(int row) const;
    void OpenKeys();

    // MainImports.cpp: what a reader brings, and databases that are replaced while they are open
    void SetUpImports();
    void WatchFile(ImportTarget target);
    void TellOfNewFile(ImportTarget target);
    void OpenNewFile(ImportTarget target);
    void OpenNewCanon();
    void OpenNewDictionary();
    TfrmImport &OpenImports();
    void OpenWelcome(bool takesFocus);

    // MainEverywhere.cpp: the search of everything; names for a filter that finds none
    void SetUpEverywhere();
    void acFindEverywhereExecute();
    /// The language mode of the page on show.
    int ShownLanguage() const;
    void ShowLanguageButton(int mode);
    /// The hit holds for its own text alone.
    void LeaveHitOfOtherText();
    void LeaveHit();
    void MarkPlaces();
    bool IsTreeFiltered();
    /// Moves the whole tree to a row; false if there is none.
    bool OpenInWholeTree(int idVic);
    void OfferNames();

    // MainCommands.cpp
    void SetUpCommands();
    void SetUpButtons();
    void SetUpSystemMenu();
    TBarCombo *AddCombo(QMenu *menu, const QString &name);
    void Wire(QAction *action, std::function<void()> execute, std::function<bool(const ReaderFacts &)> rule = {});
    bool HasSelection() const;
    void UpdateCommands();
    void acExitExecute();
    void acOptionExecute();
    void acAboutExecute();
    void acHelpExecute();
    void acFernwhistleExecute();

    std::unique_ptr<Ui::frmMain> ui;
    std::vector<Command> m_commands;
    TBarCombo *bcbInterface = nullptr;
    TBarCombo *bcbLanguage = nullptr;
    TdxSkinController *scMain = nullptr;
    QSystemTrayIcon *tiMainTray = nullptr;
    TDKLanguageController *dkLang = nullptr;
    QString vDefTreeKeloraSQL;
    bool vIsInit = false;
    bool FIsStartPage = false;
    std::unique_ptr<QObject> m_desktopWatch; ///< while the desktop is followed
    std::optional<bool> m_isDesktopDark;     ///< as told by it
    bool m_isFollowing = false;              ///< the desktop chooses a look now, not the reader
    bool m_isAskingToQuit = false;
    bool m_isMarking = false;
    InputWatch *m_input = nullptr;
    std::unique_ptr<MarksInText> m_marks;
    QTimer *m_storeTimer = nullptr;
    History m_history;
    PlaceStore m_places;
    Place m_shown;                     ///< the page handed over last; only text and language
    bool m_isTextShown = false;        ///< that page is of a text and not of a group
    int m_textNumber = 0;              ///< of the text that came last
    std::optional<PagePlace> m_wanted; ///< where to go when the page is complete
    std::optional<PagePlace> m_travel; ///< on the way back or forward
    std::optional<PagePlace> m_given;  ///< of the text that is being opened
    bool m_isReloading = false;        ///< the tree, or the page with other options
    bool m_hasOwnPlace = false;        ///< who opens the text takes the reader to a place of his own
    QList<KeloraText> m_texts;         ///< of the canon by number, once they have been asked for
    std::optional<Search> m_search;    ///< that has begun last, unless the find bar or the text search has
    std::optional<Hit> m_hit;
    FootMessage m_foot;
    std::optional<FootMessage> m_footBeforeNames; ///< while names are offered
    QPointer<QWidget> m_pageWidget;               ///< of Chromium, from which the tab key leads to the foot
    QFileSystemWatcher *m_watcher = nullptr;
    std::map<ImportTarget, FileStamp> m_openFiles; ///< those that this program has open under the names
};
