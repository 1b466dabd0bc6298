#include "Painted.h"

#include <QApplication>
#include <QGenericPlugin>
#include <QTimer>

#include <cstdio>
#include <utility>

/// Prints "painted" once the first page of the view ebContent stands on the screen. Loaded into the program and into
/// the floor alike by QT_QPA_GENERIC_PLUGINS=lumivara-probe.
class ProbePlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "probe.json")
public:
    QObject *create(const QString &, const QString &) override
    {
        auto *timer = new QTimer;
        connect(timer, &QTimer::timeout, timer, [timer] {
            const QList<QWidget *> widgets = QApplication::allWidgets();
            for (QWidget *widget : widgets) {
                auto *view = qobject_cast<QWebEngineView *>(widget);
                if (!view || view->objectName() != u"ebContent")
                    continue;
                new PaintedProbe(view, [isFirst = true]() mutable {
                    if (!std::exchange(isFirst, false))
                        return;
                    std::puts("painted");
                    std::fflush(stdout);
                });
                timer->stop();
                return;
            }
        });
        timer->start(1);
        return timer;
    }
};

#include "ProbePlugin.moc"
