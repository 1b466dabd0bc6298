#pragma once

#include "base/Colour.h"

#include <optional>

class QWidget;

/// Asks for any colour in Qt's dialog, in the interface's language, starting with `initial`. Empty if the reader
/// cancels.
std::optional<Colour> ChooseColour(QWidget *parent, Colour initial);
