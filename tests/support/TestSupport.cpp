#include "support/TestSupport.h"

#include <QCoreApplication>
#include <QDir>

QString ProductFolder()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../Lumivara")) + QLatin1Char('/');
}

ScratchFolder::ScratchFolder() = default;
