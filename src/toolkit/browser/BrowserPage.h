#pragma once

#include <QUrl>
#include <QWebEnginePage>

#include <functional>

class BrowserProfile;

/// The engine's page behind a browser control: shows what the host loads and refuses every other way to go.
class BrowserPage : public QWebEnginePage
{
    Q_OBJECT
public:
    explicit BrowserPage(BrowserProfile *profile);

    /// Loads the page that the host holds ready under the address. From now on only places in it may be visited.
    void LoadFromHost(const QUrl &address);
    /// The address of the page that the host loaded last.
    QUrl Address() const { return m_address; }

    /// Asked for a link that may be followed, inside or outside; true cancels.
    std::function<bool(const QUrl &url)> OnBeforeNavigate;
    /// On: a web address that the reader clicks and OnBeforeNavigate does not cancel opens in place of the page, with
    /// its pictures and styles and without scripts or frames, until the host loads its next page.
    bool OpensLinksInside = false;

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
    QWebEnginePage *createWindow(WebWindowType) override { return nullptr; }
    QStringList chooseFiles(FileSelectionMode, const QStringList &, const QStringList &) override { return {}; }
    void javaScriptAlert(const QUrl &, const QString &) override {}
    bool javaScriptConfirm(const QUrl &, const QString &) override { return false; }
    bool javaScriptPrompt(const QUrl &, const QString &, const QString &, QString *) override { return false; }
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &, int, const QString &) override {}

private:
    void RefuseRequests();
    /// True where the engine shall go there itself.
    bool FollowLink(const QUrl &asked, bool isMainFrame, bool isByReader);

    QUrl m_address;
    bool m_isHostLoading = false;
    QUrl m_opening;        ///< a link of its own window, on its way into this one
    bool m_isAway = false; ///< on a page of the web, by the reader's own click
};
