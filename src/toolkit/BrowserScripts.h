#pragma once

#include <QString>
#include <QStringView>
#include <QVariantList>

class QWebEngineScriptCollection;

/// Puts our scripts into the engine for the pages loaded from now on: in a world of their own, which pages cannot
/// reach. `byteCount` is the size of the page to come; long pages leave paragraphs outside the view unrendered.
void InstallPageScripts(QWebEngineScriptCollection &scripts, const QString &hostCss, qsizetype byteCount);

/// The text of a call of one of our functions in the page; arguments are texts, numbers, truth values and maps of
/// these.
QString ScriptCall(QStringView function, const QVariantList &arguments = {});
