#pragma once

#include <QByteArray>

/// The base class of one of Qt's classes, as far as .ui files use it; empty if unknown.
QByteArray BaseClass(const QByteArray &className);
