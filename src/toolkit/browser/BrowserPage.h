#pragma once

#include <QUrl>
#include <QWebEnginePage>

#include <functional>

class BrowserProfile;

/// The QWebEnginePage of a browser control: shows what the host loads and refuses all other navigation.
class BrowserPage : public QWebEnginePage
{
    Q_OBJECT
public:
    explicit BrowserPage(BrowserProfile *profile);

    /// Loads the page published under the address. From then on only anchors in it may be visited.
    void LoadFromHost(const QUrl &address);
    /// The address of the page that the host loaded last.
    QUrl Address() const { return m_address; }
    /// Whether a web page that the reader clicked has taken its place.
    bool IsAway() const { return m_isAway; }

    /// Asked for a link that may be followed, inside or outside; true cancels.
    std::function<bool(const QUrl &url)> OnBeforeNavigate;
    /// If true, a web address that the reader clicks and that OnBeforeNavigate does not cancel opens in place of the
    /// page, with its pictures and styles but without scripts or frames, until the host loads its next page.
    bool OpensLinksInside = false;

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
    /// Chromium does not tell whether a link or a form asks for the window, so nothing gets one. Our scripts make a
    /// plain link of one that wants a window.
    QWebEnginePage *createWindow(WebWindowType) override { return nullptr; }
    QStringList chooseFiles(FileSelectionMode, const QStringList &, const QStringList &) override { return {}; }
    void javaScriptAlert(const QUrl &, const QString &) override {}
    bool javaScriptConfirm(const QUrl &, const QString &) override { return false; }
    bool javaScriptPrompt(const QUrl &, const QString &, const QString &, QString *) override { return false; }
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &, int, const QString &) override {}

private:
    void RefuseRequests();
    /// True if Chromium shall navigate there itself.
    bool FollowLink(const QUrl &asked, bool isMainFrame);

    QUrl m_address;
    bool m_isHostLoading = false;
    bool m_isAway = false;    ///< showing a web page that the reader clicked
    bool m_isLeaving = false; ///< that web page is on its way
};
