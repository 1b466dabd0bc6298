#pragma once

/// The translation engine, by the name under which it is known.

#include "presentation/languages/DKLang.h"
