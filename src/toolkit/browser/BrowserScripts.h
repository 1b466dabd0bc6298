#pragma once

#include <QString>
#include <QStringView>
#include <QVariantList>

class QWebEngineScriptCollection;

/// What our scripts must know of the page to come.
struct PageSetting
{
    QString hostCss;
    bool isDark = false;     ///< its text is lightened where it could not be read
    qsizetype byteCount = 0; ///< long pages leave paragraphs outside the view unrendered
};

/// Puts our scripts into the engine for the pages loaded from now on: in a world of their own, which pages cannot
/// reach.
void InstallPageScripts(QWebEngineScriptCollection &scripts, const PageSetting &setting);

/// The text of a call of one of our functions in the page; arguments are texts, numbers, truth values and maps of
/// these.
QString ScriptCall(QStringView function, const QVariantList &arguments = {});
