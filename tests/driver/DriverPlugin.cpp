#include "driver/Driver.h"

#include <QGenericPlugin>
#include <QTimer>

/// Loaded into the program by QT_QPA_GENERIC_PLUGINS=lumivara-driver; the program knows nothing of it.
class DriverPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "driver.json")
public:
    QObject *create(const QString &, const QString &) override { return new Driver; }
};

#include "DriverPlugin.moc"
