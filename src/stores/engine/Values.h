#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

enum class FieldType { Integer, SmallInt, DateTime, WideString, Blob };

/// A value as text: bytes are UTF-8, a time is in the locale's short form; empty for null.
QString ValueText(const QVariant &value);

/// Joins surrogate halves of three bytes each into UTF-8. Firebird splits characters above U+FFFF like that on the way
/// from a UTF8 column to a connection of UNICODE_FSS.
void JoinSurrogates(QByteArray &text);
