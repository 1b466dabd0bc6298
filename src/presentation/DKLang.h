#pragma once

/// The translation engine under its customary name.

#include "presentation/languages/DKLang.h"
