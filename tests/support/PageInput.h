#pragma once

#include "support/WaitFor.h"
#include "toolkit/BrowserControl.h"

#include <QCoreApplication>
#include <QMouseEvent>

/// Waits until the page hears the mouse: what comes before the engine has painted a page for the first time is dropped.
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
