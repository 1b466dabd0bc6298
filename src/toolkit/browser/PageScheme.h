#pragma once

#include <QByteArray>
#include <QHash>
#include <QUrl>
#include <QWebEngineUrlSchemeHandler>

/// Serves the published pages, and nothing else, as UTF-8 HTML through our own scheme: no port, no file, and the bytes
/// reach Chromium unchanged.
class PageSchemeHandler : public QWebEngineUrlSchemeHandler
{
    Q_OBJECT
public:
    using QWebEngineUrlSchemeHandler::QWebEngineUrlSchemeHandler;

    /// Publishes a page and returns its address, which is unique in this run. `owner` is the control's number: Chromium
    /// keeps a zoom for each.
    QUrl Publish(int owner, const QByteArray &page);
    /// Forgets a page; its address is invalid from then on.
    void Withdraw(const QUrl &address);

    void requestStarted(QWebEngineUrlRequestJob *job) override;

private:
    QHash<QUrl, QByteArray> m_pages;
    quint64 m_lastNumber = 0;
};
