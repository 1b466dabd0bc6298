#include "toolkit/browser/PageScheme.h"

#include "toolkit/browser/BrowserControl.h"
#include "toolkit/browser/EarlyCalls.h"
#include "toolkit/browser/NavigationRules.h"

#include <QBuffer>
#include <QLibraryInfo>
#include <QVersionNumber>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>

void RegisterPageScheme()
{
    QWebEngineUrlScheme scheme{QByteArray(PageScheme)};
    // With a host the page has an origin, so that our scripts can reach documents in its frames.
    scheme.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    scheme.setFlags(QWebEngineUrlScheme::SecureScheme);
    QWebEngineUrlScheme::registerScheme(scheme);
}

QUrl PageSchemeHandler::Publish(int owner, const QByteArray &page)
{
    const QUrl address(
        QStringLiteral("%1://page%2/%3").arg(QLatin1StringView(PageScheme)).arg(owner).arg(++m_lastNumber));
    // Before Qt 6.8 every call comes to the interceptor.
    static const bool mayCallEarly = QLibraryInfo::version() >= QVersionNumber(6, 8);
    m_pages.insert(address, mayCallEarly ? WithoutEarlyCalls(page) : page);
    return address;
}

void PageSchemeHandler::Withdraw(const QUrl &address)
{
    m_pages.remove(address);
}

void PageSchemeHandler::requestStarted(QWebEngineUrlRequestJob *job)
{
    const auto page = m_pages.constFind(job->requestUrl().adjusted(QUrl::RemoveFragment));
    if (page == m_pages.constEnd() || job->requestMethod() != QByteArrayLiteral("GET")) {
        job->fail(QWebEngineUrlRequestJob::UrlNotFound);
        return;
    }
    auto *device = new QBuffer;
    device->setData(*page);
    device->open(QIODevice::ReadOnly);
    connect(job, &QObject::destroyed, device, &QObject::deleteLater);
    // The charset of the answer overrides the page's.
    job->reply(QByteArrayLiteral("text/html; charset=utf-8"), device);
}
