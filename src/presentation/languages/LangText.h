#pragma once

#include <QByteArray>
#include <QString>

class QIODevice;

/// The characters of a language file: UTF-16 of either order or UTF-8 by their marks, which are not part of the text;
/// without one UTF-8 if the bytes are valid as that, else windows-1252, in which every byte is a character.
/// `hasMark` is set if there was one.
QString DecodeLangText(const QByteArray &bytes, bool *hasMark = nullptr);

/// UTF-16 little-endian with its mark.
QByteArray EncodeLangText(const QString &text);

/// The bytes before the first line that begins with "[", cut at a line's end, or all if there is no such line.
/// Reads little more than that, and 16 MiB at most.
QByteArray ReadLangHeader(QIODevice &device);
