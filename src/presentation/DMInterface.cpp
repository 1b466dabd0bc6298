#include "presentation/DMInterface.h"

#include "base/Colour.h"
#include "presentation/GlobalInterface.h"
#include "toolkit/program/Doors.h"
#include "toolkit/skin/LookAndFeel.h"
#include "toolkit/skin/SkinController.h"

#include <QApplication>
#include <QFont>

TInterfaceDM *InterfaceDM = nullptr;

namespace {

constexpr Colour SystemWindowColour = 0xFF000005;
constexpr Colour SystemMenuHighlight = 0xFF00001D;
constexpr Colour Grey = 0xA4A0A0;

template <typename Component>
Component *Make(QObject *owner, const char *name)
{
    auto *component = new Component(owner);
    component->setObjectName(QLatin1StringView(name));
    return component;
}

QFont DesignFont()
{
    constexpr int height = 11; // pixels
    QFont font(QStringLiteral("Tahoma"));
    font.setPixelSize(height);
    return font;
}

void Paint(TcxStyle &style, Colour text, Colour ground)
{
    style.textColor = text;
    style.color = ground;
}

} // namespace

TInterfaceDM::TInterfaceDM(QObject *owner)
    : QObject(owner),
      dxLayoutLookAndFeelListGobal(Make<TdxLayoutLookAndFeelList>(this, "dxLayoutLookAndFeelListGobal")),
      SkinLookAndFeel(Make<TdxLayoutSkinLookAndFeel>(dxLayoutLookAndFeelListGobal, "SkinLookAndFeel")),
      cxHintStyleController1(Make<TcxHintStyleController>(this, "cxHintStyleController1")),
      cxLookAndFeelController1(Make<TcxLookAndFeelController>(this, "cxLookAndFeelController1")),
      GlobalStyleRepository(Make<TcxStyleRepository>(this, "GlobalStyleRepository")),
      Supplement(Make<TcxStyle>(GlobalStyleRepository, "Supplement")),
      SupplementOwner(Make<TcxStyle>(GlobalStyleRepository, "SupplementOwner")),
      SelectedGridRow(Make<TcxStyle>(GlobalStyleRepository, "SelectedGridRow")),
      ContentEven(Make<TcxStyle>(GlobalStyleRepository, "ContentEven")),
      ContentOdd(Make<TcxStyle>(GlobalStyleRepository, "ContentOdd")),
      BkgNoData(Make<TcxStyle>(GlobalStyleRepository, "BkgNoData"))
{
    setObjectName(QStringLiteral("InterfaceDM"));
    const QString userSkin = QString::fromUtf16(UserSkin);
    constexpr int offset = 2;
    for (const char *name : {"ControlOffsetHorz", "ItemOffset", "RootItemsAreaOffsetHorz", "RootItemsAreaOffsetVert"})
        SkinLookAndFeel->setProperty(name, offset);
    SkinLookAndFeel->setProperty("ControlOffsetVert", 0);
    SkinLookAndFeel->setProperty("NativeStyle", false);
    SkinLookAndFeel->setProperty("SkinName", userSkin);
    SkinLookAndFeel->GroupOptions().SetFont(DesignFont());
    SkinLookAndFeel->ItemOptions().SetFont(DesignFont());

    cxHintStyleController1->setProperty("HintStyleClassName", QStringLiteral("TcxHintStyle"));
    cxHintStyleController1->setProperty("CallOutPosition", QStringLiteral("cxbpTopLeft"));
    cxHintStyleController1->setProperty("Rounded", true);
    cxHintStyleController1->setProperty("CaptionFont", DesignFont());
    cxHintStyleController1->setProperty("Font", DesignFont());
    cxLookAndFeelController1->setProperty("SkinName", userSkin);

    ContentOdd->textColor = SystemMenuHighlight;
    ContentOdd->font = DesignFont();
    Make<TcxCardsStyleSheet>(GlobalStyleRepository, "CardsStyleSheet");
}

void TInterfaceDM::DataModuleCreate()
{
    constexpr int baseFontSize = 10;
    QApplication::setFont(QFont(QStringLiteral("Segoe UI"), baseFontSize));
    KeepSystemColours();
    SystemColour = [](int code) { return Doors().systemColour(code); };

    constexpr int darkest = 90, dark = 65, light = 10;
    const Colour base = BaseColors[0];
    Supplement->textColor = DarkenColor(base, darkest);
    Paint(*SupplementOwner, DarkenColor(base, dark), SystemWindowColour);
    Paint(*SelectedGridRow, SupplementOwner->textColor, SystemWindowColour);
    Paint(*ContentEven, TcxStyle::Default, SystemWindowColour);
    ContentOdd->color = LightenColor(base, light);
    Paint(*BkgNoData, Grey, SystemWindowColour);
}
