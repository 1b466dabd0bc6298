#pragma once

#include <QByteArrayView>
#include <QString>

/// Small rules for texts that several windows and stores share. Values in, values out; nothing here fails.

/// Characters of UTF-8, a leading U+FEFF included: Qt's own conversion takes that for a mark and drops it. U+FFFD where
/// the bytes are not UTF-8.
QString FromUtf8(QByteArrayView bytes);

/// Trims characters up to U+0020 at both ends, and no others.
QString TrimControls(const QString &text);

/// A to Z in lower case, every other character as it is.
QString LowerAscii(QString text);
/// Upper case by the full Unicode rule, character by character: what would grow, as "ß", stays.
QString UpperByCharacter(const QString &text);
