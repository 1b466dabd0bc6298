#pragma once

#include "support/WaitFor.h"
#include "toolkit/browser/BrowserControl.h"

#include <QCoreApplication>
#include <QMouseEvent>

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
