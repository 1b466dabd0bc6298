#pragma once

#include "base/Colour.h"

#include <QString>

#include <functional>
#include <optional>

class TRegistry;

/// The options that the reader sets in the options dialog, as they are stored, in the order in which they are read and
/// written. They begin with the defaults.
struct OptionValues
{
    int openSutta = 1; ///< opening text: 1 last, 2 random, 3 none
    bool popupActive = true;
    int popupTime = 30;
    QString fontName = QStringLiteral("Segoe UI");
    Colour bgColor = 0xFF000005; ///< the system's window colour
    Colour seachHighlightColor = 0x0000FFFF;
};

/// What could be read of them: all up to the first that is missing or of another type.
struct StoredOptions
{
    std::optional<int> openSutta;
    std::optional<bool> popupActive;
    std::optional<int> popupTime;
    std::optional<QString> fontName;
    std::optional<Colour> bgColor;
    std::optional<Colour> seachHighlightColor;
};

/// Reads from the options key. Nothing if there is none; never fails.
StoredOptions ReadStoredOptions(TRegistry &registry);

/// Writes value by value to the options key, making it if need be; a key that can't be opened stores nothing and is no
/// failure. Throws RegistryError when a value can't be stored; those before it are. The font's name is asked for when
/// its turn has come, and what that throws passes through.
void WriteOptions(TRegistry &registry, const OptionValues &values, const std::function<QString()> &fontName);
