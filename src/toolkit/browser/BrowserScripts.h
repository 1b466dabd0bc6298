#pragma once

#include <QString>
#include <QStringView>
#include <QVariantList>

class QWebEngineScriptCollection;

/// What our scripts need to know of the next page.
struct PageSetting
{
    QString hostCss;
    QString groundCss;       ///< the same, but not for web pages
    bool isDark = false;     ///< dark background: unreadable text is lightened
    qsizetype byteCount = 0; ///< long pages leave paragraphs outside the view unrendered
};

/// Installs our scripts for pages loaded from now on, in an isolated world that pages cannot reach.
void InstallPageScripts(QWebEngineScriptCollection &scripts, const PageSetting &setting);

/// JavaScript that calls one of our functions in the page; arguments are strings, numbers, booleans and maps of these.
QString ScriptCall(QStringView function, const QVariantList &arguments = {});
