#pragma once

#include <QByteArrayView>
#include <QString>

/// Text functions that several windows and stores share. None of them fails.

/// Decodes UTF-8 and keeps a leading U+FEFF, which Qt's own conversion drops as a byte order mark. Invalid bytes become
/// U+FFFD.
QString FromUtf8(QByteArrayView bytes);

/// Trims characters up to U+0020 at both ends, and no others.
QString TrimControls(const QString &text);

/// A to Z in lower case, every other character as it is.
QString LowerAscii(QString text);
/// Upper case by Unicode, character by character; a character that would grow, such as "ß", stays.
QString UpperByCharacter(const QString &text);
