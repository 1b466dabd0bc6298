#include "toolkit/program/StartUp.h"

#include "base/Utf8Locale.h"

#include <QLoggingCategory>
#include <QQuickWindow>
#include <QtGlobal>

void PrepareProcess()
{
    ForceUtf8Environment();
    qputenv("QTWEBENGINE_ENABLE_LINUX_ACCESSIBILITY", "1");
    // Pages of text gain nothing from the graphics card; without one, emulation would make each repaint of the window
    // twenty times as slow.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    // Otherwise Qt WebEngine logs its parameters at each start.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext*=false"));
}
