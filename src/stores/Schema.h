#pragma once

#include <QString>

/// Language modes of a passage.
namespace PageMode {
inline constexpr int Pali = 0;
inline constexpr int Vietnamese = 1;
inline constexpr int English = 2;
inline constexpr int Parallel = 10;
} // namespace PageMode

/// Name of the KELORA_CONTENT column that a mode shows; empty for an unknown mode.
QString ContentColumn(int mode);
