#pragma once

/// Shared by all windows and modules, under its customary name: current settings, the interface's language, colours,
/// texts.

#include "base/Colour.h"
#include "base/InterfaceLanguage.h"
#include "base/Texts.h"
#include "stores/settings/Options.h"
