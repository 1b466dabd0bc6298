#include "toolkit/browser/BrowserPage.h"

#include "toolkit/browser/BrowserProfile.h"
#include "toolkit/browser/NavigationRules.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Guard.h"

#include <QAuthenticator>
#include <QTimer>
#include <QWebEngineCertificateError>
#include <QWebEngineClientCertificateSelection>
#include <QWebEngineFileSystemAccessRequest>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineQuotaRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>
#include <QWebEngineUrlRequestInterceptor>

namespace {

/// Blocks web requests of a closed page. The profile's interceptor, which runs first, can't tell which page may make
/// them.
class WebInterceptor : public QWebEngineUrlRequestInterceptor
{
public:
    WebInterceptor(QObject *parent, const bool &isAway) : QWebEngineUrlRequestInterceptor(parent), m_isAway(isAway) {}

    void interceptRequest(QWebEngineUrlRequestInfo &request) override
    {
        if (IsWebAddress(request.requestUrl()) && !m_isAway)
            request.block(true);
    }

private:
    const bool &m_isAway;
};

} // namespace

BrowserPage::BrowserPage(BrowserProfile *profile) : QWebEnginePage(profile)
{
    setUrlRequestInterceptor(new WebInterceptor(this, m_isAway));
    RefuseRequests();
    // A link that asks for a new window is treated like any other.
    connect(this, &QWebEnginePage::newWindowRequested, this, [this](QWebEngineNewWindowRequest &request) {
        const QUrl url = request.requestedUrl();
        if (!FollowLink(url, true, request.isUserInitiated()))
            return;
        m_opening = url;
        QTimer::singleShot(0, this, [this, url] { load(url); });
    });
}

void BrowserPage::RefuseRequests()
{
    connect(this, &QWebEnginePage::featurePermissionRequested, this, [this](const QUrl &origin, Feature feature) {
        setFeaturePermission(origin, feature, PermissionDeniedByUser);
    });
    connect(this, &QWebEnginePage::fullScreenRequested, this,
            [](QWebEngineFullScreenRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::quotaRequested, this, [](QWebEngineQuotaRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::registerProtocolHandlerRequested, this,
            [](QWebEngineRegisterProtocolHandlerRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::fileSystemAccessRequested, this,
            [](QWebEngineFileSystemAccessRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::selectClientCertificate, this,
            [](QWebEngineClientCertificateSelection selection) { selection.selectNone(); });
    connect(this, &QWebEnginePage::certificateError, this,
            [](QWebEngineCertificateError error) { error.rejectCertificate(); });
    const auto giveNoName = [](const QUrl &, QAuthenticator *authenticator) { *authenticator = QAuthenticator(); };
    connect(this, &QWebEnginePage::authenticationRequired, this, giveNoName);
    connect(this, &QWebEnginePage::proxyAuthenticationRequired, this, giveNoName);
}

void BrowserPage::LoadFromHost(const QUrl &address)
{
    m_address = address;
    m_isHostLoading = true;
    m_isAway = false;
    load(address);
}

bool BrowserPage::acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame)
{
    if (isMainFrame && m_isHostLoading && url == m_address) {
        m_isHostLoading = false;
        return DecideNavigation(url, true, true, m_address) == Navigation::Load;
    }
    // The mouse's Back button and the reload keys bypass all shortcuts.
    if (type == NavigationTypeBackForward || type == NavigationTypeReload || type == NavigationTypeFormSubmitted)
        return false;
    if (isMainFrame && !m_opening.isEmpty() && url == m_opening) {
        m_opening.clear();
        return true;
    }
    if (m_isAway && isMainFrame && type == NavigationTypeRedirect)
        return IsWebAddress(url);
    return FollowLink(url, isMainFrame, type == NavigationTypeLinkClicked);
}

bool BrowserPage::FollowLink(const QUrl &asked, bool isMainFrame, bool isByReader)
{
    const QUrl url = m_isAway ? asked : AddressAskedFor(asked); // web pages never use such addresses
    const Navigation decision = DecideNavigation(url, false, isMainFrame, m_address);
    if (decision == Navigation::Load && !isMainFrame)
        return true;
    // Navigation that the reader did not cause, such as a refresh in the page's mark-up, opens nothing outside.
    if (decision == Navigation::Refuse || (decision == Navigation::OpenOutside && !isByReader))
        return false;
    bool isCancelled = false;
    RunGuarded([&] { isCancelled = OnBeforeNavigate && OnBeforeNavigate(url); });
    if (isCancelled || decision == Navigation::Load)
        return !isCancelled;
    if (OpensLinksInside && IsWebAddress(url)) {
        m_isAway = true;
        return true;
    }
    // The host handles web addresses itself; mail links go to the document door.
    if (!url.toString().contains(QStringLiteral("http")))
        OpenDocumentLater(url.toString(QUrl::FullyEncoded));
    return false;
}
