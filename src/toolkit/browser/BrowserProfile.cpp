#include "toolkit/browser/BrowserProfile.h"

#include "toolkit/browser/NavigationRules.h"
#include "toolkit/program/Fonts.h"

#include <QWebEngineCookieStore>
#include <QWebEngineDownloadRequest>
#include <QWebEngineNotification>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInterceptor>

namespace {

/// Stops every request but that for the page itself and for data that stand in it.
class ClosedPageInterceptor : public QWebEngineUrlRequestInterceptor
{
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    void interceptRequest(QWebEngineUrlRequestInfo &request) override
    {
        const QUrl url = request.requestUrl();
        const bool isOurs = url.scheme() == QLatin1StringView(PageScheme);
        // A page within itself would nest without end.
        const bool isPage = request.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame;
        // The engine hears of a page of the web later than that page asks for what it holds: the first party is then
        // still the page before, but the initiator is the one that asks.
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
    // So that a mail link reaches the page's hook, which refuses it to the engine. Forbidden here, it would vanish
    // unseen.
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
