#include "toolkit/browser/BrowserPage.h"

#include "toolkit/browser/BrowserProfile.h"
#include "toolkit/browser/NavigationRules.h"
#include "toolkit/program/Doors.h"
#include "toolkit/program/Guard.h"

#include <QAuthenticator>
#include <QColor>
#include <QWebEngineCertificateError>
#include <QWebEngineClientCertificateSelection>
#include <QWebEngineFileSystemAccessRequest>
#include <QWebEngineFullScreenRequest>
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

/// A template, so that of the two ways only the one that this Qt knows is compiled. The first came with 6.8, where the
/// second is outdated.
template <typename Page>
void RefusePermissions(Page *page)
{
    if constexpr (requires { &Page::permissionRequested; }) {
        QObject::connect(page, &Page::permissionRequested, page, [](auto permission) { permission.deny(); });
    } else {
        QObject::connect(page, &Page::featurePermissionRequested, page, [page](const QUrl &origin, auto feature) {
            page->setFeaturePermission(origin, feature, Page::PermissionDeniedByUser);
        });
    }
}

} // namespace

BrowserPage::BrowserPage(BrowserProfile *profile) : QWebEnginePage(profile)
{
    setUrlRequestInterceptor(new WebInterceptor(this, m_isAway));
    RefuseRequests();
    connect(this, &QWebEnginePage::urlChanged, this, [this] { m_isLeaving = false; });
}

void BrowserPage::RefuseRequests()
{
    RefusePermissions<QWebEnginePage>(this);
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
    m_isLeaving = false;
    load(address);
}

bool BrowserPage::acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame)
{
    if (isMainFrame && m_isHostLoading && url == m_address) {
        m_isHostLoading = false;
        return DecideNavigation(url, true, true, m_address) == Navigation::Load;
    }
    // A web page that the reader clicked may stand elsewhere by now. Once it is there it is as closed as any.
    if (m_isLeaving && isMainFrame && type == NavigationTypeRedirect)
        return IsWebAddress(url);
    // Only the reader's click on a link counts. Forms, refreshes in a page's mark-up, reload keys and the mouse's Back
    // button don't even reach the host's guard.
    return type == NavigationTypeLinkClicked && FollowLink(url, isMainFrame);
}

bool BrowserPage::FollowLink(const QUrl &asked, bool isMainFrame)
{
    const QUrl url = m_isAway ? asked : AddressAskedFor(asked); // web pages never use such addresses
    const Navigation decision = DecideNavigation(url, false, isMainFrame, m_address);
    if (decision == Navigation::Refuse)
        return false;
    bool isCancelled = false;
    RunGuarded([&] { isCancelled = OnBeforeNavigate && OnBeforeNavigate(url); });
    if (isCancelled || decision == Navigation::Load)
        return !isCancelled;
    if (OpensLinksInside && IsWebAddress(url)) {
        m_isAway = true;
        m_isLeaving = true;
        setBackgroundColor(Qt::white); // which web pages expect
        return true;
    }
    // The host handles web addresses itself; mail links go to the document door.
    if (!url.toString().contains(QStringLiteral("http")))
        OpenDocumentLater(url.toString(QUrl::FullyEncoded));
    return false;
}
