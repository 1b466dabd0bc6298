#pragma once

#include "base/Colour.h"

#include <optional>

class QWidget;

/// Asks for any colour in the toolkit's own dialog, in the interface's language, beginning with `initial`. Nothing if
/// the reader cancels.
std::optional<Colour> ChooseColour(QWidget *parent, Colour initial);
