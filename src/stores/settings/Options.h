#pragma once

#include <QString>

/// The running program's current settings, except those of the canon module, and the keys under which they are stored.

extern QString AppPath;       ///< folder of the executable with its trailing separator
extern QString FontName;      ///< font of the page
extern QString LastWord;      ///< word last shown by the dictionary
extern int DictionaryKind;    ///< 1 to 8 one directed dictionary, 0 none yet
extern bool MultiDictionary;  ///< show the partner dictionary's content too
extern int GlobalActiveStyle; ///< 1-based index of the skin, 0 for none
extern QString GlobalActiveName;
extern int CollectionMode; ///< 1: the Kelora's settings key

/// The options key of this program under the current user, and the machine's start list.
inline constexpr char16_t OptionsKey[] = u"\\Software\\Melko\\Kelora\\Options\\";
inline constexpr char16_t RunKey[] = u"\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
