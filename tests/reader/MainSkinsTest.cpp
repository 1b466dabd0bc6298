#include "reader/ReaderWindow.h"

#include "toolkit/controls/BarCombo.h"
#include "toolkit/skin/SkinController.h"
#include "toolkit/skin/SkinStyle.h"

#include <QApplication>
#include <QStyle>
#include <QToolTip>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

const QColor Paper(0xf8, 0xf8, 0xf8), Night(0x10, 0x10, 0x10);

class MainSkins : public ReaderWindow
{
protected:
    MainSkins()
    {
        QJsonObject broken = WholeSkin(u"Broken"_s);
        broken[u"colours"_s] = 1;
        SetSkins(SkinDocument({WholeSkin(u"Light"_s), WholeSkin(u"Night"_s, true), broken}));
    }
    ~MainSkins() override
    {
        End();
        TdxSkinController controller;
        controller.NativeStyle = true;
        controller.Refresh();
        EXPECT_EQ(QApplication::style(), m_style) << "as it was before any skin";
        EXPECT_EQ((QList{QApplication::palette(), QToolTip::palette()}), m_palettes);
    }
    void Open(int style)
    {
        Store(u"GlobalActiveStyle"_s, style);
        Store(u"GlobalActiveName"_s, u"stored"_s);
        StartOn();
    }
    TBarCombo &Interface() { return Find<TBarCombo>("bcbInterface"); }
    /// The stored number and name, and the skin on show.
    QString State()
    {
        const auto *style = qobject_cast<SkinStyle *>(QApplication::style());
        return u"%1 %2 %3"_s.arg(Stored(u"GlobalActiveStyle"_s).toInt())
            .arg(Stored(u"GlobalActiveName"_s).toString(), style ? style->Current().name : u"-"_s);
    }

private:
    const QStyle *m_style = QApplication::style();
    const QList<QPalette> m_palettes{QApplication::palette(), QToolTip::palette()};
};

TEST_F(MainSkins, ReachOpenWindowsAndThoseOpenedLaterWithoutTouchingFontsAndSystemColours)
{
    Open(0);
    ASSERT_EQ(Interface().count(), 3);
    EXPECT_EQ(Interface().maxVisibleItems(), 28);
    EXPECT_EQ(State(), u"0 stored -"_s);
    Trigger("acSearchSutas");
    const auto fonts = [this] {
        return QList{window->font(), QApplication::font("QMenu"), QApplication::font("QToolButton")};
    };
    const QList<QFont> before = fonts();
    const Colour systemWindow = Doors().systemColour(5);

    Interface().SetItemIndex(1);
    EXPECT_EQ(State(), u"2 Night Night"_s);
    const QStyle *style = QApplication::style();
    Trigger("acFindDialog");
    const QWidgetList all{window.get(), FindForm(u"frmSearchSutas"_s), &Find<QWidget>("dlgFind"),
                          &Find<QMenu>("ppMainTray")};
    const auto expectGround = [&](const QColor &colour) {
        for (const QWidget *widget : all)
            EXPECT_EQ(widget->palette().color(QPalette::Window), colour) << widget->objectName().toStdString();
    };
    expectGround(Night);
    EXPECT_EQ(QToolTip::palette().color(QPalette::ToolTipText), Paper);
    EXPECT_EQ(Doors().systemColour(5), systemWindow) << "pages keep the desktop's colours";

    Interface().SetItemIndex(0);
    EXPECT_EQ(State(), u"1 Light Light"_s);
    EXPECT_EQ(QApplication::style(), style) << "one style object for all skins";
    expectGround(Paper);
    EXPECT_EQ(fonts(), before);

    auto &controller = Find<TdxSkinController>("scMain");
    for (const char *off : {"NativeStyle", "UseSkins"}) {
        const bool was = controller.property(off).toBool();
        for (const bool shows : {false, true}) {
            controller.setProperty(off, shows == was);
            controller.Refresh();
            EXPECT_EQ(State(), shows ? u"1 Light Light"_s : u"1 Light -"_s) << off;
        }
    }
}

TEST_F(MainSkins, ThatCannotBeLoadedAreStoredAllTheSame)
{
    Open(2);
    EXPECT_EQ(State(), u"2 Night Night"_s);
    Interface().SetItemIndex(2);
    EXPECT_EQ(State(), u"3 Broken Night"_s);
    SetSkins(SkinDocument({}));
    Interface().SetItemIndex(0);
    EXPECT_EQ(State(), u"1 Light Night"_s);
    QFile::remove(skinFile);
    const Box told{u"Lumivara 1.0"_s, skinFile + u": No such file or directory"_s};
    Interface().setCurrentIndex(1); // as the user does
    CheckBoxes({told});
    EXPECT_EQ(State(), u"1 Light Night"_s);
    End();
    Open(1);
    CheckBoxes({told});
    EXPECT_TRUE(window->isVisible() && !window->qryTreeSutas.Active()) << "the start ends early";
    EXPECT_EQ(Interface().count() + Find<TBarCombo>("bcbLanguage").count(), 0);
}

TEST_F(MainSkins, FollowTheDesktopAsTheReaderChoseForDarkAndLight)
{
    QJsonObject contrast = WholeSkin(u"Contrast"_s, true);
    contrast[u"highContrast"_s] = true;
    SetSkins(SkinDocument({contrast, WholeSkin(u"Light"_s), WholeSkin(u"Night"_s, true), WholeSkin(u"Day"_s),
                           WholeSkin(u"Dusk"_s, true)}));
    QPointer<QObject> watched;
    std::function<void(bool)> tell;
    Doors().watchDesktopLook = [&](QObject *context, std::function<void(bool isDark)> told) {
        watched = context;
        tell = std::move(told);
    };
    Open(4);
    EXPECT_FALSE(watched) << "off at first";
    Trigger("acFollowDesktop");
    ASSERT_TRUE(watched);
    EXPECT_EQ(State(), u"4 Day Day"_s) << "until the desktop has told";
    tell(false);
    EXPECT_EQ(State(), u"4 Day Day"_s) << "it is light already";
    tell(true);
    EXPECT_EQ(State(), u"3 Night Night"_s) << "the first dark one without high contrast";
    tell(false);
    EXPECT_EQ(State(), u"4 Day Day"_s) << "the reader's from before";
    Interface().setCurrentIndex(0); // a dark one for a light desktop
    tell(true);
    Interface().setCurrentIndex(4);
    tell(false);
    EXPECT_EQ(State(), u"1 Contrast Contrast"_s);
    tell(true);
    EXPECT_EQ(State(), u"5 Dusk Dusk"_s);
    tell(true);
    Interface().setCurrentIndex(2);
    EXPECT_EQ(State(), u"3 Night Night"_s) << "the reader may choose any time";

    End();
    watched = nullptr;
    Start();
    EXPECT_TRUE(Action("acFollowDesktop").isChecked() && watched);
    tell(false);
    EXPECT_EQ(State(), u"1 Contrast Contrast"_s) << "what was chosen is kept";
    tell(true);
    EXPECT_EQ(State(), u"3 Night Night"_s);
    Trigger("acFollowDesktop");
    EXPECT_FALSE(watched);
    Interface().setCurrentIndex(1);
    EXPECT_EQ(Stored(u"DarkLook"_s).toString(), u"Night"_s) << "no more of the desktop's";
}

TEST_F(MainSkins, FollowTheStoredNumberAlone)
{
    constexpr int least = std::numeric_limits<int>::min();
    for (const auto &[stored, index] : {std::pair(1, 0), {4, -1}, {-1, -1}, {least, -1}, {0x7FFFFFFF, -1}}) {
        TdxSkinController().Refresh(); // without a skin's name: the platform's look
        Open(stored);
        EXPECT_EQ(Interface().ItemIndex(), index) << stored;
        EXPECT_EQ(State(), stored == 1 ? u"1 Light Light"_s : u"0  -"_s) << "one that the file lacks is given up";
        End();
    }
}

} // namespace
