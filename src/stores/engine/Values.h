#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

enum class FieldType { Integer, SmallInt, DateTime, WideString, Blob };

/// Characters of a value: bytes are UTF-8, a moment is in the locale's short form; empty for null.
QString ValueText(const QVariant &value);

/// Joins the halves of characters above U+FFFF, three bytes each, into UTF-8: so Firebird parts them on the way from a
/// UTF8 column to a connection of UNICODE_FSS.
void JoinSurrogates(QByteArray &text);
