#include "stores/settings/JsonRegistry.h"

#include <QDir>
#include <QStandardPaths>

std::unique_ptr<TRegistry> CreateSystemRegistry()
{
    const QString config = QDir::cleanPath(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
    // A user without a home would get a folder at the top of the disk; such a user has no settings.
    if (config.isEmpty() || config == QDir::rootPath() + QStringLiteral(".config"))
        return std::make_unique<JsonRegistry>(QString(), QString());
    return std::make_unique<JsonRegistry>(config + QStringLiteral("/lumivara"), config + QStringLiteral("/autostart"));
}
