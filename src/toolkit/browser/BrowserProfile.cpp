#include "toolkit/browser/BrowserProfile.h"

#include "toolkit/browser/NavigationRules.h"
#include "toolkit/program/Fonts.h"

#include <QWebEngineCookieStore>
#include <QWebEngineDownloadRequest>
#include <QWebEngineNotification>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInterceptor>

namespace {

/// Blocks every request except those for the page itself and for data: addresses in it.
class ClosedPageInterceptor : public QWebEngineUrlRequestInterceptor
{
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    void interceptRequest(QWebEngineUrlRequestInfo &request) override
    {
        const QUrl url = request.requestUrl();
        const bool isOurs = url.scheme() == QLatin1StringView(PageScheme);
        // A page inside itself would nest without end.
        const bool isPage = request.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame;
        // A web page's first requests come before the first party is updated, which is then still the previous page.
        // The initiator is the page that asks.
        const QUrl asking = IsWebAddress(request.initiator()) ? request.initiator() : request.firstPartyUrl();
        request.block(!MayRequest(url, asking, isPage) || (isOurs && !isPage));
    }
};

void CloseSettings(QWebEngineSettings &settings)
{
    using Settings = QWebEngineSettings;
    for (const auto attribute : {
             Settings::JavascriptEnabled,
             Settings::JavascriptCanOpenWindows,
             Settings::JavascriptCanAccessClipboard,
             Settings::JavascriptCanPaste,
             Settings::LocalStorageEnabled,
             Settings::LocalContentCanAccessRemoteUrls,
             Settings::LocalContentCanAccessFileUrls,
             Settings::HyperlinkAuditingEnabled,
             Settings::SpatialNavigationEnabled,
             Settings::ErrorPageEnabled,
             Settings::PluginsEnabled,
             Settings::PdfViewerEnabled,
             Settings::FullScreenSupportEnabled,
             Settings::ScreenCaptureEnabled,
             Settings::WebGLEnabled,
             Settings::AutoLoadIconsForPage,
             Settings::TouchIconsEnabled,
             Settings::FocusOnNavigationEnabled,
             Settings::PrintElementBackgrounds,
             Settings::AllowRunningInsecureContent,
             Settings::AllowGeolocationOnInsecureOrigins,
             Settings::AllowWindowActivationFromJavaScript,
             Settings::DnsPrefetchEnabled,
             Settings::NavigateOnDropEnabled,
         })
        settings.setAttribute(attribute, false);
    settings.setAttribute(Settings::PlaybackRequiresUserGesture, true);
    settings.setAttribute(Settings::WebRTCPublicInterfacesOnly, true);
    // Lets a mail link reach the page's hook, which keeps it from Chromium. Forbidden here, the link would do nothing.
    settings.setUnknownUrlSchemePolicy(Settings::AllowUnknownUrlSchemesFromUserInteraction);
    settings.setDefaultTextEncoding(QStringLiteral("utf-8"));
    if (!IsPageFontInstalled()) {
        for (const auto family : {Settings::StandardFont, Settings::SansSerifFont})
            settings.setFontFamily(family, PageFontFamily());
    }
}

} // namespace

BrowserProfile::BrowserProfile()
{
    CloseSettings(*settings());
    setHttpCacheType(QWebEngineProfile::NoCache);
    setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
    // Only where it is on: Qt 6.8 seeks dictionaries even to switch it off, and complains that there are none.
    if (isSpellCheckEnabled())
        setSpellCheckEnabled(false);
    cookieStore()->setCookieFilter([](const QWebEngineCookieStore::FilterRequest &) { return false; });
    setNotificationPresenter([](std::unique_ptr<QWebEngineNotification>) {});
    setUrlRequestInterceptor(new ClosedPageInterceptor(this));
    installUrlSchemeHandler(QByteArray(PageScheme), &m_pages);
    connect(this, &QWebEngineProfile::downloadRequested, this,
            [](QWebEngineDownloadRequest *download) { download->cancel(); });
}

BrowserProfile::~BrowserProfile()
{
    removeUrlSchemeHandler(&m_pages);
}

std::shared_ptr<BrowserProfile> BrowserProfile::Shared()
{
    static std::weak_ptr<BrowserProfile> shared;
    std::shared_ptr<BrowserProfile> profile = shared.lock();
    if (!profile) {
        profile.reset(new BrowserProfile);
        shared = profile;
    }
    return profile;
}
