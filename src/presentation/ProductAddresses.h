#pragma once

/// The project's names and addresses are set here alone: the package's metadata is made with them
/// (packaging/CMakeLists.txt), and scripts/check-sources compares debian/ with them. The about box's page has addresses
/// of its own.

/// The component's id where programs are offered; reversed, the domain that vouches for it.
inline constexpr char16_t ComponentId[] = u"example.lumivara.lumivara";
/// The menu entry's file, without ".desktop". On Wayland a window finds its icon by it.
inline constexpr char16_t DesktopEntry[] = u"lumivara";

inline constexpr char16_t DeveloperId[] = u"example.lumivara";
inline constexpr char16_t DeveloperName[] = u"The Lumivara authors";
inline constexpr char16_t DeveloperMail[] = u"team@lumivara.example";

inline constexpr char16_t HomePage[] = u"https://lumivara.example/";
/// What the program opens in the browser.
inline constexpr char16_t InformationPage[] = u"https://lumivara.example/thong-tin";
/// Where the pictures of docs/pictures/store can be had.
inline constexpr char16_t PicturesFolder[] = u"https://lumivara.example/pictures/";

/// The user guide's name, beside the executable.
inline constexpr char16_t UserGuideFile[] = u"LumivaraUserGuide.pdf";
