#pragma once

#include "base/TextRange.h"
#include "toolkit/browser/PagePlace.h"

#include <QPoint>
#include <QString>
#include <QStringList>
#include <QWebEngineView>

#include <functional>
#include <memory>

class QWidget;

/// Registers the scheme of our pages. Call before the application object exists.
void RegisterPageScheme();

enum class FindFlag { WholeWord = 2, MatchCase = 4 };
Q_DECLARE_FLAGS(FindFlags, FindFlag)
Q_DECLARE_OPERATORS_FOR_FLAGS(FindFlags)

enum class ScrollMode { None = 0, First = 1, Last = 2 };

/// A word of a page, and the words beside it in the order of reading, as far as nothing but a blank or a hyphen parts
/// them.
struct PageWord
{
    QString word;
    QStringList before, after;
};

/// A browser control that shows pages handed over as bytes. Each is a closed document: no scripts, no requests to the
/// outside; links open through the document door. Every window that shows a page has one, under its given object name.
class TBrowserControl : public QWebEngineView
{
    Q_OBJECT
    Q_PROPERTY(int ZoomPercent READ ZoomPercent WRITE SetZoomPercent)
    Q_PROPERTY(QString HostCSS READ HostCSS WRITE SetHostCSS)
public:
    explicit TBrowserControl(QWidget *parent = nullptr);
    ~TBrowserControl() override;

    /// The host's style sheet for pages loaded from now on. It ranks below the page's own rules and leaves no trace in
    /// the page.
    QString HostCSS() const;
    void SetHostCSS(const QString &css);
    /// Whether the host style gives pages loaded from now on a dark background. If so, on the screen only, their text
    /// becomes light, and stored colours that would be unreadable become lighter. Off by default.
    void SetDarkGround(bool on);
    /// Whether under a dark skin the pages loaded from now on have a dark background, of the colour of the skin's
    /// edits, as if the host style gave it. Another skin shows the page again. Off by default.
    void SetFollowsSkin(bool on);
    /// Whether a web address that the reader clicks, and that OnBeforeNavigate2 does not cancel, opens in place of the
    /// page until the next page is handed over. Off by default: such an address is then ignored.
    void SetOpensLinksInside(bool on);
    /// Whether Ctrl with the right button opens the menu as well. Off by default, because that gesture is a look-up.
    void SetShowsMenuWithCtrl(bool on);
    /// Shows the page; its bytes are UTF-8 HTML and reach Chromium unchanged. Completes later, see OnDocumentComplete.
    /// A newer page replaces one that is still loading. `title` is for documents without a title (print header, file
    /// name).
    void LoadFromString(const QByteArray &page, const QString &title = {});
    /// What prints say of the page that is shown: an address that means something to the reader, and the language of
    /// its text, as "vi", for programs that read it aloud. Both may be empty.
    struct Identity
    {
        QString address;
        QString language;
    };
    Identity PrintedIdentity() const;
    /// For the pages loaded from now on.
    void SetPrintedIdentity(const Identity &identity);
    /// The bytes last handed over.
    QByteArray Source() const;
    /// True once the last page handed over has finished loading.
    bool IsComplete() const;
    /// True if the page handed over last is not on show and won't come: the view is empty, or shows a web page that the
    /// reader opened from it. Handing it over again brings it back.
    bool IsPageGone() const;
    /// Processes events until the page is complete. False if page or control were destroyed meanwhile, or a newer call
    /// took over.
    bool WaitComplete();

    void Copy();
    void SelectAll();
    /// Plain text of the selection, from Qt WebEngine's cache: cheap. Empty before the page is complete, and if only
    /// pictures are selected.
    QString GetSelectedText() const;
    /// Whether GetSelectedText() is not empty, at no cost: after "select all" the text itself can be megabytes.
    bool HasSelectedText() const;
    /// HTML of the selection as Chromium serialises it. Waits for Chromium, processing events.
    QString GetSelectedHtml();
    /// Opens the find bar below the control, which has to be in a box layout.
    void ShowFindDialog();
    bool IsFindBarOpen() const;
    /// The next or the previous place of the find bar's text; without such a text, the next or previous coloured hit;
    /// without hits the bar opens. F3 and Shift+F3 do this in the control's whole window.
    void FindStep(bool isBackward);
    /// Whether such steps go from one coloured hit to another even if the find bar holds a text, until the reader seeks
    /// with it again. Off by default.
    void PreferColoured(bool on);
    /// Marks places of the page and of those to come as the find bar marks its own, and takes the reader to the place
    /// `at`, counted from 0; none if negative. Until ClearPlaces(), or until the reader seeks with the find bar, which
    /// closes. `placesIn` gets the visible text, in which a run of blanks is one blank and paragraphs are lines.
    void ShowPlaces(PlacesIn placesIn, qsizetype at);
    void ClearPlaces();
    void Print();
    void PrintPreview();
    void SaveDialog();

    /// Stored unchanged; Chromium gets it clamped to its range.
    int ZoomPercent() const;
    void SetZoomPercent(int percent);

    /// Waits until the page is complete, then colours every occurrence of the text (an empty colour changes nothing).
    /// Colours are CSS texts ("#FFFF00", "Yellow"). Returns the number of hits, 0 if the page was destroyed.
    int SearchAndHighlight(const QString &text, FindFlags flags, ScrollMode scroll, const QString &foreground,
                           const QString &background);
    /// Finds the first occurrence from the start of the body, ignoring case, and scrolls it to the top of the view.
    /// False if there is none.
    bool ScrollToFirst(const QString &text);
    /// The word whose glyph is under the point (the control's coordinates), trimmed; empty over white space or a
    /// picture.
    QString GetWordAtCursor(int x, int y);
    /// The same word, and so many words at most on either side of it.
    PageWord GetWordWithNeighbours(int x, int y, int most);

    /// Gives the place that stands at the top of the view, later and without waiting, even if another page is handed
    /// over meanwhile. False, and nothing comes, where no page is complete; nothing comes either if the page ends.
    bool AskPlace(const std::function<void(const PagePlace &)> &take);
    /// Where the selection begins. Waits for Chromium, processing events.
    PagePlace SelectedPlace();
    /// Scrolls the complete page to a place, later and without waiting. A place behind the text's end is its last
    /// block.
    void GoToPlace(const PagePlace &place);

    /// Calls a function of our scripts in the complete page, later and without waiting. What it gives comes only as
    /// long as no other page is handed over. False where no page is complete.
    bool Ask(QStringView function, const QVariant &argument, const std::function<void(const QVariant &)> &take);

    /// Runs a script of ours in the isolated world and waits for its value, processing events. Invalid if the page was
    /// destroyed.
    QVariant Evaluate(const QString &script);

    /// Asked before Chromium follows a link or navigates; true cancels. Guards such as FIsStartPage are the handler's.
    std::function<bool(const QUrl &url)> OnBeforeNavigate2;
    std::function<void()> OnDocumentComplete;
    /// Called instead of Chromium's own menu, by mouse or keyboard; the position is in screen coordinates. Not called
    /// if Ctrl was held at the press, see SetShowsMenuWithCtrl().
    std::function<void(const QPoint &screenPoint)> OnShowContextMenu;
    /// Despite its name, called at the press of the left or right button; coordinates are the control's.
    std::function<void(Qt::MouseButton, Qt::KeyboardModifiers, int x, int y)> OnClick;
    /// Called when the reader begins to seek with the find bar.
    std::function<void()> OnFindBegin;
    /// Asked first by FindStep() and its keys; true if the step has been made.
    std::function<bool(bool isBackward)> OnFindStep;
    /// Called for Ctrl with the wheel; positive steps enlarge.
    std::function<void(int steps)> OnZoomWheel;
    /// Called when parts of the complete page may stand elsewhere in its height than before, or other places of it may
    /// be marked or coloured.
    std::function<void()> OnPlacesChange;

protected:
    bool event(QEvent *event) override;

private:
    class Private;
    friend class Private;
    std::unique_ptr<Private> d;
};
