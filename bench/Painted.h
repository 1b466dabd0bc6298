#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QWebEngineScript>
#include <QWebEngineView>

/// Tells when the page of a view is on the screen: two animation frames after its load, or after Ask(). The same probe
/// for the program and for the floor. It signals by the document's title, which needs no polling.
class PaintedProbe : public QObject
{
public:
    template <typename Handler>
    PaintedProbe(QWebEngineView *view, Handler painted) : QObject(view), m_view(view)
    {
        connect(view, &QWebEngineView::loadFinished, this, &PaintedProbe::Ask);
        connect(view, &QWebEngineView::titleChanged, this, [this, painted](const QString &title) mutable {
            if (title == QStringLiteral("painted-%1").arg(m_count))
                painted();
        });
    }

    /// Tells once more when what was done to the page until now is on the screen.
    void Ask()
    {
        m_view->page()->runJavaScript(QStringLiteral("requestAnimationFrame(() => requestAnimationFrame(() => "
                                                     "{ document.title = 'painted-%1'; }));")
                                          .arg(++m_count),
                                      QWebEngineScript::ApplicationWorld);
    }

private:
    QPointer<QWebEngineView> m_view;
    int m_count = 0;
};
