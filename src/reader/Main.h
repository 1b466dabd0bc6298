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
class TBarCombo;
class TfrmDictionary;
class TfrmImport;
class TBrowserControl;
class TDBTreeListColumn;
class TDKLanguageController;
class TdxSkinController;

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
    /// The browser control of the passage.
    TBrowserControl &Content();

    void OpenText(const QVariant &idVic) override;
    void OpenMarkedText(int collection, int number) override;
    void ColourWords(const QString &words) override;
    void StepToPlace(bool isBackward) override;
    void SetSoughtWords(const QString &words) override;

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
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    /// A command with its handler and, where its state changes, the rule that enables it.
    struct Command
    {
        QAction *action;
        std::function<bool(const ReaderFacts &)> rule;
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
    TfrmDictionary &OpenDictionary();
    void LookUpWord(const std::function<QString()> &takeWord);
    void acGetWordExecute();
    void ebContentClick(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, int x, int y);

    // MainMarks.cpp
    void DeclareSuttaListScript();
    void FillSuttaList();
    void acFocusHighlightExecute();
    void acOrganizationExecute();

    // MainFoot.cpp: the bar at the foot
    void SetUpFoot();
    void ShowFoot(bool shows);
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
    /// Opens a text, also if the filter hides it, which is emptied then. False if the canon does not have it.
    bool LocateText(int text);
    /// Sets the language mode of the next page, its button and its option.
    void ChooseLanguage(int mode);
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

    // MainImports.cpp: what a reader brings, and databases that are replaced while they are open
    void SetUpImports();
    void WatchFile(ImportTarget target);
    void TellOfNewFile(ImportTarget target);
    void OpenNewFile(ImportTarget target);
    void OpenNewCanon();
    void OpenNewDictionary();
    TfrmImport &OpenImports();
    void OpenWelcome(bool takesFocus);

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
    bool m_isAskingToQuit = false;
    bool m_isMarking = false;
    std::function<void()> m_footAction;
    bool m_isFootInOrder = false; ///< of the tab key
    InputWatch *m_input = nullptr;
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
    QList<KeloraText> m_texts;         ///< of the canon, once they have been asked for
    QFileSystemWatcher *m_watcher = nullptr;
    std::map<ImportTarget, FileStamp> m_openFiles; ///< those that this program has open under the names
};
