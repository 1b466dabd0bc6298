#pragma once

#include <QByteArray>
#include <QString>

/// Converts between bytes and characters one by one: windows-1252 as in the WHATWG Encoding Standard, with 81, 8D, 8F,
/// 90 and 9D as the control characters of the same number, so that every byte survives. A character without a byte
/// becomes "?".
QString FromWindows1252(const QByteArray &bytes);
QByteArray ToWindows1252(const QString &text);
