#pragma once

/// Addresses that the program opens outside. The about box's page has the others.
inline constexpr char16_t InformationPage[] = u"https://lumivara.example/thong-tin";

/// The user guide's name, beside the executable.
inline constexpr char16_t UserGuideFile[] = u"LumivaraUserGuide.pdf";
