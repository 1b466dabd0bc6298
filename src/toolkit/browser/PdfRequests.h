#pragma once

#include <QByteArray>
#include <QObject>
#include <QPageLayout>
#include <QPointer>
#include <QQueue>

#include <functional>
#include <optional>

class QWebEnginePage;

/// Asks Chromium for PDFs of a page, one after the other: it never answers a request that comes during another one.
class PdfRequests : public QObject
{
    Q_OBJECT
public:
    using Answer = std::function<void(const QByteArray &pdf)>;

    /// The page's own, which lives as long as the page.
    static PdfRequests &Of(QWebEnginePage &page);
    /// Answers from the event loop, unless `context` is gone by then; with nothing if Chromium failed, its process
    /// ended, or the page was about to be replaced, because it is then uncertain which of the two would be laid out.
    void Ask(const QPageLayout &layout, QObject *context, Answer answer);
    /// Call before the page is destroyed: Chromium crashes if that happens in the first moments of a request. Processes
    /// events, but no input, for as long as those last.
    static void WaitForSafety(QWebEnginePage &page);

private:
    struct Request
    {
        QPageLayout layout;
        QPointer<QObject> context;
        Answer answer;
    };
    explicit PdfRequests(QWebEnginePage &page);
    void AskNext();
    void Answered(quint64 number, const QByteArray &pdf);
    static void Tell(const Request &request, const QByteArray &pdf);

    void Drop();

    QWebEnginePage &m_page;
    QQueue<Request> m_requests;
    std::optional<Request> m_current; ///< empty if Chromium's answer is of no use any more
    bool m_isBusy = false;            ///< Chromium has not answered
    bool m_isEarly = false;           ///< in those first moments
    quint64 m_number = 0;             ///< of the request that Chromium has
};
