#pragma once

#include "support/WaitFor.h"
#include "toolkit/browser/BrowserControl.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QMouseEvent>
#include <QWebEnginePage>
#include <QWebEngineScript>

/// Waits until the page gets mouse events: Chromium drops them before its first paint of a page.
[[nodiscard]] inline bool TakesInput(TBrowserControl &page)
{
    int moves = 0;
    return WaitFor([&] {
        QWidget *input = page.focusProxy();
        const QPointF place(2 + ++moves % 2, 2);
        QMouseEvent move(QEvent::MouseMove, place, input->mapToGlobal(place), Qt::NoButton, {}, {});
        QCoreApplication::sendEvent(input, &move);
        return page
            .Evaluate(QStringLiteral(
                "self.hears ?? (addEventListener('mousemove', () => { hears = true }), self.hears = false)"))
            .toBool();
    });
}

/// Empties the view so often that it no longer brings its page back by itself.
inline void EmptyForGood(TBrowserControl &page)
{
    for (int time = 0; time < 2; ++time) {
        bool isEmptied = false;
        const auto watch = QObject::connect(page.page(), &QWebEnginePage::urlChanged, [&](const QUrl &url) {
            isEmptied = isEmptied || url.scheme() == QLatin1StringView("about");
        });
        page.page()->runJavaScript(QStringLiteral("location.replace('about:blank')"),
                                   QWebEngineScript::ApplicationWorld);
        EXPECT_TRUE(WaitFor([&] { return isEmptied && (time > 0 || (page.IsComplete() && !page.IsPageGone())); }));
        QObject::disconnect(watch);
    }
    EXPECT_TRUE(page.IsPageGone());
}
