#pragma once

#include <QtGlobal>

/// Contrast of two opaque colours, 1 to 21, by the relative luminance of WCAG 2. 0xRRGGBB; the high byte is ignored.
double ContrastRatio(quint32 one, quint32 other);
