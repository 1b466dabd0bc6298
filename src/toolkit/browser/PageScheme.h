#pragma once

#include <QByteArray>
#include <QHash>
#include <QUrl>
#include <QWebEngineUrlSchemeHandler>

/// Serves the pages that controls hold ready, and nothing else, as UTF-8 HTML by our own scheme: no port, no file, and
/// the bytes reach the engine as they stand.
class PageSchemeHandler : public QWebEngineUrlSchemeHandler
{
    Q_OBJECT
public:
    using QWebEngineUrlSchemeHandler::QWebEngineUrlSchemeHandler;

    /// Holds a page ready and gives its address, which no other page of this run has. `owner` parts the controls: the
    /// engine keeps a zoom for each.
    QUrl Publish(int owner, const QByteArray &page);
    /// Forgets a page; its address leads nowhere from now on.
    void Withdraw(const QUrl &address);

    void requestStarted(QWebEngineUrlRequestJob *job) override;

private:
    QHash<QUrl, QByteArray> m_pages;
    quint64 m_lastNumber = 0;
};
