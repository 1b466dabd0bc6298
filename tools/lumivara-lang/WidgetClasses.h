#pragma once

#include <QByteArray>

/// The class that a class of the toolkit derives from, as far as descriptions of windows use it; empty if unknown.
QByteArray BaseClass(const QByteArray &className);
