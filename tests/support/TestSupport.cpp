#include "support/TestSupport.h"

#include <QCoreApplication>
#include <QDir>

using namespace Qt::StringLiterals;

QString ProductFolder()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + u"/../Lumivara"_s) + u'/';
}

ScratchFolder::ScratchFolder() = default;
