#include "toolkit/SkinSamples.h"

#include <initializer_list>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using P = SkinPart;

/// What a look is made of; every part takes one of these, unless told otherwise.
struct Inks
{
    quint32 window, base, stripe, text, faint, disabled, frame, line, accent, selection, onSelection, button, hover,
        pressed, checked, thumb;
};

Skin Composed(const QString &name, const Inks &inks, std::initializer_list<std::pair<SkinPart, SkinFill>> others)
{
    Skin skin;
    skin.name = skin.displayName = name;
    const auto set = [&skin](quint32 colour, std::initializer_list<SkinPart> parts) {
        for (const SkinPart part : parts)
            skin.fills[static_cast<size_t>(part)] = {0xff000000 | colour, 0xff000000 | colour};
    };
    set(inks.window, {P::Window, P::Bar, P::Header, P::Tab, P::MenuSide});
    set(inks.base, {P::Base, P::Menu, P::TabActive, P::ToolTip, P::IconFill, P::ScrollTrack});
    set(inks.stripe, {P::AlternateBase});
    set(inks.text, {P::WindowText, P::Text, P::ButtonText, P::HeaderText, P::MenuText, P::ToolTipText, P::IconInk});
    set(inks.faint, {P::PlaceholderText});
    set(inks.disabled, {P::DisabledText});
    set(inks.frame, {P::Frame, P::ButtonFrame, P::ToolTipFrame, P::MenuFrame});
    set(inks.line, {P::GridLine, P::BarLine, P::Splitter});
    set(inks.accent, {P::Link, P::FocusRing, P::Progress, P::IconAccent});
    set(inks.selection, {P::Selection, P::MenuSelection});
    set(inks.onSelection, {P::SelectionText, P::MenuSelectionText});
    set(inks.button, {P::Button});
    set(inks.hover, {P::ButtonHover, P::RowHover, P::HeaderHover});
    set(inks.pressed, {P::ButtonPressed, P::InactiveSelection});
    set(inks.checked, {P::ButtonChecked});
    set(inks.thumb, {P::ScrollThumb, P::ScrollThumbHover});
    for (const auto &[part, fill] : others)
        skin.fills[static_cast<size_t>(part)] = {0xff000000 | fill.top, 0xff000000 | fill.bottom};
    return skin;
}

} // namespace

QList<Skin> SampleSkins()
{
    Skin light = Composed(u"light"_s,
                          {.window = 0xf6f3ee,
                           .base = 0xffffff,
                           .stripe = 0xfaf7f2,
                           .text = 0x2b2f36,
                           .faint = 0x6d727a,
                           .disabled = 0x857f75,
                           .frame = 0x948b7e,
                           .line = 0xddd6cb,
                           .accent = 0xb0561a,
                           .selection = 0xf3dfc4,
                           .onSelection = 0x4a1c0c,
                           .button = 0xfdfbf8,
                           .hover = 0xf0e8dc,
                           .pressed = 0xe7dbc8,
                           .checked = 0xf3dfc4,
                           .thumb = 0xb3aa9d},
                          {{P::ButtonFrame, {0xcfc8bd, 0xcfc8bd}}, {P::MenuFrame, {0xcfc8bd, 0xcfc8bd}}});
    light.cornerRadius = 5;

    Skin dark = Composed(u"dark"_s,
                         {.window = 0x24272c,
                          .base = 0x1b1d21,
                          .stripe = 0x212429,
                          .text = 0xe6e8eb,
                          .faint = 0x9aa0a8,
                          .disabled = 0x7f858d,
                          .frame = 0x7d848d,
                          .line = 0x3a3f46,
                          .accent = 0x6fb1f0,
                          .selection = 0x2b5378,
                          .onSelection = 0xffffff,
                          .button = 0x31353b,
                          .hover = 0x3b4047,
                          .pressed = 0x1f4263,
                          .checked = 0x2b4a66,
                          .thumb = 0x5b626b},
                         {{P::ButtonFrame, {0x4a5058, 0x4a5058}}, {P::MenuFrame, {0x4a5058, 0x4a5058}}});
    dark.isDark = true;
    dark.pictures.insert(u"branchClosed"_s, R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 16">
<path fill="#6fb1f0" d="M5 3l6 5-6 5z"/></svg>)");
    dark.pictures.insert(u"branchOpen"_s, R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 16">
<path fill="#6fb1f0" d="M3 5l5 6 5-6z"/></svg>)");
    dark.pictures.insert(u"check"_s, "no picture at all");

    Skin contrast = Composed(u"contrast"_s,
                             {.window = 0x000000,
                              .base = 0x000000,
                              .stripe = 0x000000,
                              .text = 0xffffff,
                              .faint = 0xd0d0d0,
                              .disabled = 0x9a9a9a,
                              .frame = 0xffffff,
                              .line = 0x8a8a8a,
                              .accent = 0x00e0ff,
                              .selection = 0xffff00,
                              .onSelection = 0x000000,
                              .button = 0x000000,
                              .hover = 0x303030,
                              .pressed = 0x005060,
                              .checked = 0x004a80,
                              .thumb = 0xffffff},
                             {{P::InactiveSelection, {0xc8c870, 0xc8c870}}, {P::RowHover, {0x303030, 0x303030}}});
    contrast.isDark = contrast.isHighContrast = true;
    contrast.cornerRadius = 0;
    contrast.lineWidth = 2;
    contrast.focusWidth = 3;

    Skin glossy = Composed(u"glossy"_s,
                           {.window = 0xdfe9f5,
                            .base = 0xffffff,
                            .stripe = 0xf3f7fc,
                            .text = 0x15284b,
                            .faint = 0x5f6f88,
                            .disabled = 0x6f7a89,
                            .frame = 0x6d87a8,
                            .line = 0xb4c8e0,
                            .accent = 0x2a62a8,
                            .selection = 0xffe39f,
                            .onSelection = 0x15284b,
                            .button = 0xd5e3f3,
                            .hover = 0xffe9b3,
                            .pressed = 0xffcf7a,
                            .checked = 0xffd98f,
                            .thumb = 0x8ba9cc},
                           {{P::Bar, {0xe6effa, 0xc3d7ee}},
                            {P::Button, {0xeaf2fb, 0xc4d7ee}},
                            {P::ButtonHover, {0xfff4cf, 0xffd97f}},
                            {P::Header, {0xf2f7fd, 0xd3e1f2}},
                            {P::InactiveSelection, {0xdbe5f1, 0xdbe5f1}}});
    glossy.isGlossy = true;
    return {light, dark, contrast, glossy};
}
