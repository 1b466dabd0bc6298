#include "toolkit/browser/PdfRequests.h"

#include "toolkit/program/Guard.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineScript>

#include <utility>

PdfRequests &PdfRequests::Of(QWebEnginePage &page)
{
    auto *requests = page.findChild<PdfRequests *>(QString(), Qt::FindDirectChildrenOnly);
    return requests ? *requests : *new PdfRequests(page);
}

PdfRequests::PdfRequests(QWebEnginePage &page) : QObject(&page), m_page(page)
{
    ConnectGuarded(&page, &QWebEnginePage::loadStarted, this, [this] { Drop(); });
    // The answer is lost with Chromium's process.
    ConnectGuarded(&page, &QWebEnginePage::renderProcessTerminated, this, [this] {
        ++m_number;
        m_isBusy = false;
        m_isEarly = false;
        Drop();
    });
}

void PdfRequests::Drop()
{
    if (m_current)
        m_requests.prepend(*m_current);
    m_current.reset();
    for (const Request &request : std::exchange(m_requests, {}))
        Tell(request, {});
}

void PdfRequests::Ask(const QPageLayout &layout, QObject *context, Answer answer)
{
    m_requests.enqueue({layout, context, std::move(answer)});
    if (!m_isBusy)
        AskNext();
}

void PdfRequests::AskNext()
{
    while (!m_requests.isEmpty() && !m_requests.head().context)
        m_requests.dequeue();
    if (m_requests.isEmpty())
        return;
    m_current = m_requests.dequeue();
    m_isBusy = true;
    m_isEarly = true;
    const QPointer self(this);
    m_page.printToPdf(
        [self, number = ++m_number](const QByteArray &pdf) {
            // Not from within Chromium's call.
            if (self)
                QTimer::singleShot(0, self, [self, number, pdf] { self->Answered(number, pdf); });
        },
        m_current->layout);
    // A script runs behind the request's first exchange of messages, and is answered behind it.
    m_page.runJavaScript(QStringLiteral("0"), QWebEngineScript::ApplicationWorld,
                         [self, number = m_number](const QVariant &) {
                             if (self && self->m_number == number)
                                 self->m_isEarly = false;
                         });
}

void PdfRequests::Answered(quint64 number, const QByteArray &pdf)
{
    if (number != m_number)
        return;
    m_isBusy = false;
    m_isEarly = false;
    const std::optional<Request> request = std::exchange(m_current, std::nullopt);
    AskNext();
    if (request)
        Tell(*request, pdf);
}

void PdfRequests::WaitForSafety(QWebEnginePage &page)
{
    constexpr int longest = 5000; // milliseconds; Chromium's process may hang
    const QPointer<PdfRequests> requests = page.findChild<PdfRequests *>(QString(), Qt::FindDirectChildrenOnly);
    QEventLoop loop;
    QElapsedTimer clock;
    clock.start();
    QTimer wake;
    wake.start(5);
    while (requests && requests->m_isEarly && clock.elapsed() < longest)
        loop.processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
}

void PdfRequests::Tell(const Request &request, const QByteArray &pdf)
{
    if (request.context)
        QTimer::singleShot(0, request.context, [request, pdf] { RunGuarded([&] { request.answer(pdf); }); });
}
