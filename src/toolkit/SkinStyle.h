#pragma once

#include "presentation/Skin.h"

#include <QPalette>
#include <QProxyStyle>

/// The palette of a skin: what controls that the style leaves alone, and pictures, take their colours from.
QPalette SkinPalette(const Skin &skin);

/// Paints every control of the program with a skin's fills and lines. It carries no font. A change of skin keeps the
/// style object: set the skin, then the application's palette.
class SkinStyle : public QProxyStyle
{
    Q_OBJECT
public:
    explicit SkinStyle(Skin skin);

    const Skin &Current() const { return m_skin; }
    void SetSkin(Skin skin);

private:
    Skin m_skin;
};
