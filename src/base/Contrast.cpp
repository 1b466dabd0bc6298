#include "base/Contrast.h"

#include <algorithm>
#include <cmath>

namespace {

double Luminance(quint32 colour)
{
    const auto linear = [colour](int bit) {
        constexpr double full = 255;
        constexpr double knee = 0.04045;
        const double value = (colour >> bit & 0xFF) / full;
        return value <= knee ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(16) + 0.7152 * linear(8) + 0.0722 * linear(0);
}

} // namespace

double ContrastRatio(quint32 one, quint32 other)
{
    constexpr double glare = 0.05; // the light that even a dark screen emits
    const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
    return (lighter + glare) / (darker + glare);
}
