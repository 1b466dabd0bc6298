#pragma once

#include "base/Colour.h"

#include <QString>

#include <functional>
#include <optional>

class TRegistry;

/// The options of the options dialog, as they are stored, in the order of reading and writing. Initialised with the
/// defaults.
struct OptionValues
{
    int openSutta = 1; ///< opening text: 1 last, 2 random, 3 none
    bool popupActive = true;
    int popupTime = 30;
    QString fontName = QStringLiteral("Segoe UI");
    Colour bgColor = 0xFF000005; ///< the system's window colour
    Colour seachHighlightColor = 0x0000FFFF;
};

/// The options that could be read: all before the first one that is missing or of another type.
struct StoredOptions
{
    std::optional<int> openSutta;
    std::optional<bool> popupActive;
    std::optional<int> popupTime;
    std::optional<QString> fontName;
    std::optional<Colour> bgColor;
    std::optional<Colour> seachHighlightColor;
};

/// Reads the options key. Empty if there is none; never fails.
StoredOptions ReadStoredOptions(TRegistry &registry);

/// Writes value by value to the options key, which is created if necessary. If the key can't be opened, silently stores
/// nothing. Throws RegistryError if a value can't be stored; those before it are stored. The font's name is asked for
/// when its turn comes; an exception from that passes through.
void WriteOptions(TRegistry &registry, const OptionValues &values, const std::function<QString()> &fontName);
