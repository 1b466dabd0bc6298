#pragma once

#include <QList>

class QObject;

/// The components of a window, nearest first: the named objects below it, of one name the nearest alone. Language
/// controllers and the toolkit's own objects are none of them.
QList<QObject *> ComponentsOf(const QObject &window);
