#pragma once

#include "lumivara-lang/WindowTables.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// Something in a language file that a translator should look at.
struct LanguageFinding
{
    qsizetype line; ///< from 1
    QString text;
};

/// The lines of a language file, decoded by the rules of the program.
QStringList LinesOf(const QByteArray &bytes);

/// Compares the lines of a language file with the windows: what the program would not understand or not find, texts
/// that are missing, and what a translation has lost of its text. Findings come in the order of their lines.
QList<LanguageFinding> CheckLanguage(const QStringList &lines, const QList<WindowTable> &windows);
