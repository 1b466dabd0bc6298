#pragma once

#include <QVariant>

#include <functional>
#include <optional>

class QObject;

/// What the desktop's setting "color-scheme" asks for: 1 is dark, 2 is light, however deep the value is wrapped; empty
/// for no preference, and for what is no such value.
std::optional<bool> IsDarkByColourScheme(QVariant value);

/// Tells whether the desktop wishes dark windows, once soon and then whenever that changes, until `context` ends. Asks
/// the desktop's portal without waiting for it; where that has no answer or no preference, the palette decides that the
/// desktop had when the program started. `tell` runs under the general guard.
void WatchDesktopLook(QObject *context, std::function<void(bool isDark)> tell);
