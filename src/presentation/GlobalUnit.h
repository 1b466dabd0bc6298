#pragma once

/// What all windows and modules share, by the name under which it is known: the settings in force, the interface's
/// language, colours, texts.

#include "base/Colour.h"
#include "base/InterfaceLanguage.h"
#include "base/Texts.h"
#include "stores/settings/Options.h"
