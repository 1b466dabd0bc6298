#pragma once

#include <QList>

class QObject;

/// The components of a window, nearest first: the named objects below it; of equal names only the nearest. Language
/// controllers and Qt's own objects are excluded.
QList<QObject *> ComponentsOf(const QObject &window);
