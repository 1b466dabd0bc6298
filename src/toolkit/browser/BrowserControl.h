#pragma once

#include <QPoint>
#include <QString>
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

/// A browser control that shows pages handed over as bytes, each a closed document: no scripts, nothing requested from
/// outside, links leave through the document door. Used under its given object name by every window that shows a page.
class TBrowserControl : public QWebEngineView
{
    Q_OBJECT
    Q_PROPERTY(int ZoomPercent READ ZoomPercent WRITE SetZoomPercent)
    Q_PROPERTY(QString HostCSS READ HostCSS WRITE SetHostCSS)
public:
    explicit TBrowserControl(QWidget *parent = nullptr);
    ~TBrowserControl() override;

    /// Style sheet that the host gives the pages loaded from now on; ranks below the page's own rules and leaves no
    /// trace in it.
    QString HostCSS() const;
    void SetHostCSS(const QString &css);
    /// Whether the host style gives the pages loaded from now on a dark ground. On the screen alone their text then
    /// becomes light, and stored colours become lighter where they could not be read on what is behind them. Off at
    /// first.
    void SetDarkGround(bool on);
    /// Whether a web address that the reader clicks, and OnBeforeNavigate2 lets pass, opens in place of the page until
    /// the next one is handed over. Off at first: such an address then goes nowhere.
    void SetOpensLinksInside(bool on);
    /// Whether a right press with Ctrl asks for the menu like one without. Off at first: that gesture is another.
    void SetShowsMenuWithCtrl(bool on);
    /// Shows the page; its bytes are UTF-8 HTML and reach the engine as they stand. Completes later, see
    /// OnDocumentComplete. A newer page replaces one that is still loading. `title` names the page where the document
    /// has no title of its own (print header, file name).
    void LoadFromString(const QByteArray &page, const QString &title = {});
    /// The bytes last handed over.
    QByteArray Source() const;
    /// True once the last page handed over has finished loading.
    bool IsComplete() const;
    /// Processes events until the page is complete; false when the page or the control went away meanwhile, or a newer
    /// call took over.
    bool WaitComplete();

    void Copy();
    void SelectAll();
    /// Plain text of the selection, from the engine's cache: cheap. Empty unless the page is complete, and where only
    /// pictures are selected.
    QString GetSelectedText() const;
    /// Whether GetSelectedText() gives any, at no cost: after "select all" the text itself can be megabytes.
    bool HasSelectedText() const;
    /// HTML of the selection as the engine serialises it. Waits for the engine, processing events.
    QString GetSelectedHtml();
    void ShowFindDialog();
    void Print();
    void PrintPreview();
    void SaveDialog();

    /// Stored unchanged; the engine gets it clamped to its range.
    int ZoomPercent() const;
    void SetZoomPercent(int percent);

    /// Waits until the page is complete, then gives every occurrence of the text a colour (empty colour: leaves it).
    /// Colours are texts the engine understands ("#FFFF00", "Yellow"). Number of hits; 0 when the page went away.
    int SearchAndHighlight(const QString &text, FindFlags flags, ScrollMode scroll, const QString &foreground,
                           const QString &background);
    /// Finds the first occurrence from the start of the body, case ignored, and scrolls it to the top of the view.
    /// False if there is none.
    bool ScrollToFirst(const QString &text);
    /// The word whose glyph is under the point (the control's coordinates), trimmed; empty over white space or a
    /// picture.
    QString GetWordAtCursor(int x, int y);

    /// Runs a script of ours in the isolated world and waits for its value, processing events. Invalid when the page
    /// went away.
    QVariant Evaluate(const QString &script);

    /// Asked before the engine follows a link or navigates; true cancels. FIsStartPage-style guards live in the
    /// handler.
    std::function<bool(const QUrl &url)> OnBeforeNavigate2;
    std::function<void()> OnDocumentComplete;
    /// In place of the engine's own menu, by mouse or keyboard; the position in screen coordinates. Not called when
    /// Ctrl was down at the press of button or key, see SetShowsMenuWithCtrl().
    std::function<void(const QPoint &screenPoint)> OnShowContextMenu;
    /// On the press of the left or right button, despite its name; the control's coordinates.
    std::function<void(Qt::MouseButton, Qt::KeyboardModifiers, int x, int y)> OnClick;
    /// Ctrl with the wheel: one step, positive to enlarge.
    std::function<void(int steps)> OnZoomWheel;

protected:
    bool event(QEvent *event) override;

private:
    class Private;
    friend class Private;
    std::unique_ptr<Private> d;
};
