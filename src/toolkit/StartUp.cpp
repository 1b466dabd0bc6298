#include "toolkit/StartUp.h"

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
    std::setlocale(LC_ALL, "");
    return QByteArray(nl_langinfo(CODESET)).compare("UTF-8", Qt::CaseInsensitive) == 0;
}

/// By the environment, because the toolkit sets the locale from it once more.
void ForceUtf8Locale()
{
    if (IsUtf8Locale())
        return;
    const QByteArray everything = qgetenv("LC_ALL");
    if (!everything.isEmpty()) {
        qputenv("LANG", everything);
        qunsetenv("LC_ALL");
    }
    qputenv("LC_CTYPE", "C.UTF-8");
    std::setlocale(LC_ALL, "");
}

} // namespace
#endif

void PrepareProcess()
{
#ifndef Q_OS_WIN
    ForceUtf8Locale();
#endif
    qputenv("QTWEBENGINE_ENABLE_LINUX_ACCESSIBILITY", "1");
    // Pages of text gain nothing from the graphics card; without one, emulating it would cost every repaint of the
    // window twenty times what painting costs.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    // The engine would list its parameters at each start.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext*=false"));
}
