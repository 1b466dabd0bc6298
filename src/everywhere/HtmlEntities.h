#pragma once

#include <QByteArrayView>

/// The character of a named entity, by what stands between "&" and ";" in its case; 0 for a name that is not known.
/// Known are the letters of Latin alphabets, marks of punctuation and blanks; not those of mathematics and Greek, which
/// do not stand in words here.
char32_t EntityOf(QByteArrayView name);

/// True for a known name that browsers take without its ";" too.
bool IsEntityWithoutEnd(QByteArrayView name);

/// A character reference by number as browsers take it: windows-1252 below U+00A0, U+FFFD for what is no character.
char32_t NumberedCharacter(char32_t number);
