#include "toolkit/SkinStyle.h"

#include <QStyleFactory>

#include <utility>

QPalette SkinPalette(const Skin &skin)
{
    const auto colour = [&skin](SkinPart part) { return QColor::fromRgba(skin.Colour(part)); };
    QPalette palette(colour(SkinPart::Button), colour(SkinPart::Window));
    palette.setColor(QPalette::WindowText, colour(SkinPart::WindowText));
    palette.setColor(QPalette::Base, colour(SkinPart::Base));
    palette.setColor(QPalette::AlternateBase, colour(SkinPart::AlternateBase));
    palette.setColor(QPalette::Text, colour(SkinPart::Text));
    palette.setColor(QPalette::PlaceholderText, colour(SkinPart::PlaceholderText));
    palette.setColor(QPalette::ButtonText, colour(SkinPart::ButtonText));
    palette.setColor(QPalette::Highlight, colour(SkinPart::Selection));
    palette.setColor(QPalette::HighlightedText, colour(SkinPart::SelectionText));
    palette.setColor(QPalette::Inactive, QPalette::Highlight, colour(SkinPart::InactiveSelection));
    palette.setColor(QPalette::ToolTipBase, colour(SkinPart::ToolTip));
    palette.setColor(QPalette::ToolTipText, colour(SkinPart::ToolTipText));
    palette.setColor(QPalette::Link, colour(SkinPart::Link));
    palette.setColor(QPalette::LinkVisited, colour(SkinPart::Link));
    palette.setColor(QPalette::Mid, colour(SkinPart::Frame));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, colour(SkinPart::DisabledText));
    return palette;
}

SkinStyle::SkinStyle(Skin skin) : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))), m_skin(std::move(skin))
{}

void SkinStyle::SetSkin(Skin skin)
{
    m_skin = std::move(skin);
}
