#include "toolkit/SkinSamples.h"

using namespace Qt::StringLiterals;

namespace {

using P = SkinPart;

constexpr size_t Kinds = 4; // light, dark, high contrast, glossy

struct Row
{
    QList<SkinPart> parts;
    quint32 colours[Kinds];
};

/// Every part has a row.
const Row Rows[] = {
    {{P::Window, P::Bar, P::Header, P::Tab, P::MenuSide}, {0xf6f3ee, 0x24272c, 0x000000, 0xdfe9f5}},
    {{P::Base, P::Menu, P::TabActive, P::ToolTip, P::IconFill, P::ScrollTrack},
     {0xffffff, 0x1b1d21, 0x000000, 0xffffff}},
    {{P::AlternateBase}, {0xfaf7f2, 0x212429, 0x000000, 0xf3f7fc}},
    {{P::WindowText, P::Text, P::ButtonText, P::HeaderText, P::MenuText, P::ToolTipText, P::IconInk},
     {0x2b2f36, 0xe6e8eb, 0xffffff, 0x15284b}},
    {{P::PlaceholderText}, {0x6d727a, 0x9aa0a8, 0xd0d0d0, 0x5f6f88}},
    {{P::DisabledText}, {0x857f75, 0x7f858d, 0x9a9a9a, 0x6f7a89}},
    {{P::Frame, P::ToolTipFrame}, {0x948b7e, 0x7d848d, 0xffffff, 0x6d87a8}},
    {{P::ButtonFrame, P::MenuFrame}, {0xcfc8bd, 0x4a5058, 0xffffff, 0x6d87a8}},
    {{P::GridLine, P::BarLine, P::Splitter}, {0xddd6cb, 0x3a3f46, 0x8a8a8a, 0xb4c8e0}},
    {{P::Link, P::FocusRing, P::Progress, P::IconAccent}, {0xb0561a, 0x6fb1f0, 0x00e0ff, 0x2a62a8}},
    {{P::Selection, P::MenuSelection}, {0xf3dfc4, 0x2b5378, 0xffff00, 0xffe39f}},
    {{P::SelectionText, P::MenuSelectionText}, {0x4a1c0c, 0xffffff, 0x000000, 0x15284b}},
    {{P::Button}, {0xfdfbf8, 0x31353b, 0x000000, 0xd5e3f3}},
    {{P::ButtonHover, P::RowHover, P::HeaderHover}, {0xf0e8dc, 0x3b4047, 0x303030, 0xffe9b3}},
    {{P::ButtonPressed}, {0xe7dbc8, 0x1f4263, 0x005060, 0xffcf7a}},
    {{P::InactiveSelection}, {0xe7dbc8, 0x1f4263, 0xc8c870, 0xdbe5f1}},
    {{P::ButtonChecked}, {0xf3dfc4, 0x2b4a66, 0x004a80, 0xffd98f}},
    {{P::ScrollThumb, P::ScrollThumbHover}, {0xb3aa9d, 0x5b626b, 0xffffff, 0x8ba9cc}},
};

} // namespace

QList<Skin> SampleSkins()
{
    QList<Skin> skins(Kinds);
    const QString names[Kinds] = {u"light"_s, u"dark"_s, u"contrast"_s, u"glossy"_s};
    for (size_t kind = 0; kind < Kinds; ++kind) {
        Skin &skin = skins[qsizetype(kind)];
        skin.name = skin.displayName = names[kind];
        for (const Row &row : Rows) {
            for (const SkinPart part : row.parts)
                skin.fills[size_t(part)] = {0xff000000 | row.colours[kind], 0xff000000 | row.colours[kind]};
        }
    }
    skins[0].cornerRadius = 5;

    Skin &dark = skins[1];
    dark.isDark = true;
    const QString arrow =
        uR"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 16"><path fill="#6fb1f0" d="%1"/></svg>)"_s;
    dark.pictures = {{u"branchClosed"_s, arrow.arg(u"M5 3l6 5-6 5z"_s).toUtf8()},
                     {u"branchOpen"_s, arrow.arg(u"M3 5l5 6 5-6z"_s).toUtf8()},
                     {u"check"_s, "no picture at all"}};

    Skin &contrast = skins[2];
    contrast.isDark = contrast.isHighContrast = true;
    contrast.cornerRadius = 0;
    contrast.lineWidth = 2;
    contrast.focusWidth = 3;

    Skin &glossy = skins[3];
    glossy.isGlossy = true;
    const std::pair<SkinPart, SkinFill> blends[] = {{P::Bar, {0xffe6effa, 0xffc3d7ee}},
                                                    {P::Button, {0xffeaf2fb, 0xffc4d7ee}},
                                                    {P::ButtonHover, {0xfffff4cf, 0xffffd97f}},
                                                    {P::Header, {0xfff2f7fd, 0xffd3e1f2}}};
    for (const auto &[part, fill] : blends)
        glossy.fills[size_t(part)] = fill;
    return skins;
}
