#include "presentation/languages/Components.h"

#include "presentation/languages/DKLang.h"

#include <QSet>

QList<QObject *> ComponentsOf(const QObject &window)
{
    QList<QObject *> found, waiting = window.children();
    QSet<QString> names;
    for (qsizetype i = 0; i < waiting.size(); ++i) {
        QObject *object = waiting[i];
        waiting += object->children();
        const QString name = object->objectName();
        const bool isOurs = !name.isEmpty() && !name.startsWith(QLatin1StringView("qt_"));
        if (!isOurs || names.contains(name) || qobject_cast<TDKLanguageController *>(object))
            continue;
        names.insert(name);
        found.append(object);
    }
    return found;
}
