#pragma once

#include "presentation/Skin.h"

#include <QList>

/// Skins of every kind that a style must paint: light with round corners, dark with pictures, high contrast with broad
/// lines, glossy with blends.
QList<Skin> SampleSkins();
