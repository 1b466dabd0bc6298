#pragma once

/// Where the system is sent for what lies outside the program. The about box's page names the others itself.
inline constexpr char16_t InformationPage[] = u"https://lumivara.example/thong-tin";

/// The user guide's name, beside the executable.
inline constexpr char16_t UserGuideFile[] = u"LumivaraUserGuide.pdf";
