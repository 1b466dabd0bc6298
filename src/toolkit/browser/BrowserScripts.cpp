#include "toolkit/browser/BrowserScripts.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

static void InitScriptResources()
{
    // In a static library resources are linked only if they are called for.
    Q_INIT_RESOURCE(scripts);
}

namespace {

/// Shorter pages are shown at once anyway.
constexpr qsizetype longPageBytes = 1'000'000;

QString ReadScript(QStringView name)
{
    QFile file(QStringLiteral(":/toolkit/scripts/%1.js").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("Script %s is missing from the program", qUtf8Printable(name.toString()));
    return QString::fromUtf8(file.readAll());
}

QString ReadAllScripts(const QList<QStringView> &names)
{
    InitScriptResources();
    QString source;
    for (const QStringView name : names)
        source += ReadScript(name);
    return source;
}

/// The value as a JavaScript literal.
QString Literal(const QVariant &value)
{
    const QByteArray array = QJsonDocument(QJsonArray{QJsonValue::fromVariant(value)}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.sliced(1, array.size() - 2));
}

QWebEngineScript OwnScript(const QString &source, bool isForFrames)
{
    QWebEngineScript script;
    script.setSourceCode(source);
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setRunsOnSubFrames(isForFrames);
    return script;
}

} // namespace

void InstallPageScripts(QWebEngineScriptCollection &scripts, const PageSetting &setting)
{
    static const QString functions =
        ReadAllScripts({u"text", u"scroll", u"highlight", u"selection", u"find", u"place", u"heights"});
    static const QString host = ReadAllScripts({u"closed", u"host"});
    static const QString night = ReadAllScripts({u"nightcolours", u"nighttraits", u"night"});
    static const QString longPage = ReadAllScripts({u"long"});
    scripts.clear();
    // A web page that a control shows in place of its own keeps its look.
    const QString start = QStringLiteral("const IS_OURS = !/^https?:$/.test(location.protocol);\n"
                                         "const HOST_CSS = %1 + (IS_OURS ? %2 : '');\n")
                              .arg(Literal(setting.hostCss), Literal(setting.groundCss));
    // Before a long page is measured, so that Chromium computes its styles once.
    scripts.insert(OwnScript(
        start + host + (setting.isDark ? QStringLiteral("if (IS_OURS) {\n%1\n}\n").arg(night) : QString()), true));
    if (setting.byteCount > longPageBytes)
        scripts.insert(OwnScript(longPage, false));
    scripts.insert(OwnScript(functions, false));
}

QString ScriptCall(QStringView function, const QVariantList &arguments)
{
    QStringList literals;
    for (const QVariant &argument : arguments)
        literals.append(Literal(argument));
    return QStringLiteral("lumivara.%1(%2)").arg(function, literals.join(QStringLiteral(", ")));
}
