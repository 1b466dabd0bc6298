#include "toolkit/browser/NavigationRules.h"

namespace {

bool IsPageAddress(const QUrl &url)
{
    return url.scheme() == QLatin1StringView(PageScheme);
}

bool IsPlaceInPage(const QUrl &url, const QUrl &page)
{
    // Without a fragment it would be a reload, and passages are never reloaded.
    return url.hasFragment() && IsPageAddress(url) && url.matches(page, QUrl::RemoveFragment);
}

} // namespace

QUrl AddressAskedFor(const QUrl &url)
{
    if (!IsPageAddress(url) || url.host() != QLatin1StringView("dropped"))
        return url;
    return QUrl(QUrl::fromPercentEncoding(url.query(QUrl::FullyEncoded).toLatin1()));
}

Navigation DecideNavigation(const QUrl &url, bool isStartPage, bool isMainFrame, const QUrl &page)
{
    // A frame loads by itself: the reader did not ask for its address, which must not reach the system's browser.
    if (!isMainFrame)
        return Navigation::Refuse;
    if (isStartPage && IsPageAddress(url))
        return Navigation::Load;
    if (url.toEncoded().contains("http") || url.scheme() == QLatin1StringView("mailto"))
        return Navigation::OpenOutside;
    return IsPlaceInPage(url, page) ? Navigation::Load : Navigation::Refuse;
}

bool MayRequest(const QUrl &url, const QUrl &page, bool isForMainFrame)
{
    return IsPageAddress(url) || url.scheme() == QLatin1StringView("data") ||
           (IsWebAddress(url) && (isForMainFrame || IsWebAddress(page)));
}

bool IsWebAddress(const QUrl &url)
{
    return url.scheme() == QLatin1StringView("http") || url.scheme() == QLatin1StringView("https");
}
