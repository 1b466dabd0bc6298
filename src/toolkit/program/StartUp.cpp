#include "toolkit/program/StartUp.h"

#include <QtGlobal>

#include <QByteArray>
#include <QLoggingCategory>
#include <QQuickWindow>

#include <clocale>

#ifndef Q_OS_WIN
#include <langinfo.h>

namespace {

bool IsUtf8Locale()
{
    return QByteArray(nl_langinfo(CODESET)).compare("UTF-8", Qt::CaseInsensitive) == 0;
}

/// Through the environment, because parts of Qt set the locale from it again when they need it.
void ForceUtf8Environment()
{
    std::setlocale(LC_ALL, "");
    if (IsUtf8Locale())
        return;
    const QByteArray everything = qgetenv("LC_ALL");
    if (!everything.isEmpty()) {
        qputenv("LANG", everything);
        qunsetenv("LC_ALL");
    }
    qputenv("LC_CTYPE", "C.UTF-8");
}

} // namespace
#endif

void PrepareProcess()
{
#ifndef Q_OS_WIN
    ForceUtf8Environment();
#endif
    qputenv("QTWEBENGINE_ENABLE_LINUX_ACCESSIBILITY", "1");
    // Pages of text gain nothing from the graphics card; without one, emulation would make each repaint of the window
    // twenty times as slow.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    // Otherwise Qt WebEngine logs its parameters at each start.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext*=false"));
}

void SettleLocale()
{
#ifndef Q_OS_WIN
    // If LANG is not installed, setting the locale in the application object fails for all categories, even LC_CTYPE.
    if (!IsUtf8Locale())
        std::setlocale(LC_CTYPE, "C.UTF-8");
#endif
}
