#include "reader/ReaderWindow.h"

#include "presentation/DMInterface.h"
#include "toolkit/BarCombo.h"
#include "toolkit/LayoutItem.h"
#include "toolkit/LookAndFeel.h"
#include "toolkit/SkinController.h"
#include "toolkit/SkinStyle.h"

#include <QApplication>
#include <QLabel>
#include <QStyle>
#include <QToolTip>

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
        EXPECT_EQ(QApplication::palette(), m_palette);
        EXPECT_EQ(QToolTip::palette(), m_toolTips);
    }
    void Open(int style)
    {
        Store(u"GlobalActiveStyle"_s, style);
        Store(u"GlobalActiveName"_s, u"stored"_s);
        StartOn();
    }
    TBarCombo &Interface() { return Find<TBarCombo>("bcbInterface"); }
    static QString SkinOnShow()
    {
        const auto *style = qobject_cast<SkinStyle *>(QApplication::style());
        return style ? style->Current().name : QString();
    }
    void ExpectStored(int style, const QString &name)
    {
        EXPECT_EQ(Stored(u"GlobalActiveStyle"_s), QVariant(style));
        EXPECT_EQ(Stored(u"GlobalActiveName"_s), QVariant(name));
    }

private:
    const QStyle *m_style = QApplication::style();
    const QPalette m_palette = QApplication::palette();
    const QPalette m_toolTips = QToolTip::palette();
};

TEST_F(MainSkins, ReachOpenWindowsAndThoseOpenedLaterWithoutTouchingFontsAndSystemColours)
{
    Open(0);
    EXPECT_EQ(SkinOnShow(), QString());
    ASSERT_EQ(Interface().count(), 3);
    EXPECT_EQ(Interface().maxVisibleItems(), 28);
    ExpectStored(0, u"stored"_s);
    Trigger("acSearchSutas");
    const auto fonts = [this] {
        return QList{window->font(), QApplication::font("QMenu"), QApplication::font("QToolButton")};
    };
    const QList<QFont> before = fonts();
    const Colour systemWindow = Doors().systemColour(5);

    Interface().SetItemIndex(1);
    EXPECT_EQ(SkinOnShow(), u"Night"_s);
    ExpectStored(2, u"Night"_s);
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
    EXPECT_EQ(SkinOnShow(), u"Light"_s);
    EXPECT_EQ(QApplication::style(), style) << "one style object for all skins";
    expectGround(Paper);
    EXPECT_EQ(fonts(), before);

    auto &controller = Find<TdxSkinController>("scMain");
    for (const char *off : {"NativeStyle", "UseSkins"}) {
        const bool was = controller.property(off).toBool();
        for (const bool shows : {false, true}) {
            controller.setProperty(off, shows == was);
            controller.Refresh();
            EXPECT_EQ(SkinOnShow(), shows ? u"Light"_s : QString()) << off;
        }
    }
}

TEST_F(MainSkins, ThatCannotBeLoadedAreStoredAllTheSame)
{
    Open(2);
    EXPECT_EQ(SkinOnShow(), u"Night"_s);
    ExpectStored(2, u"Night"_s);
    Interface().SetItemIndex(2);
    EXPECT_EQ(SkinOnShow(), u"Night"_s);
    ExpectStored(3, u"Broken"_s);
    SetSkins(SkinDocument({}));
    Interface().SetItemIndex(0);
    EXPECT_EQ(SkinOnShow(), u"Night"_s);
    ExpectStored(1, u"Light"_s);
    QFile::remove(skinFile);
    const Box told{u"Lumivara 1.0"_s, skinFile + u": No such file or directory"_s};
    Interface().setCurrentIndex(1); // as the user does
    CheckBoxes({told});
    ExpectStored(1, u"Light"_s);
    End();
    Open(1);
    CheckBoxes({told});
    EXPECT_TRUE(window->isVisible() && !window->qryTreeSutas.Active()) << "the start ends early";
    EXPECT_EQ(Interface().count() + Find<TBarCombo>("bcbLanguage").count(), 0);
}

TEST_F(MainSkins, FollowTheStoredNumberAlone)
{
    for (const auto &[stored, index, shown] :
         {std::tuple(1, 0, u"Light"_s), {4, -1, u""_s}, {-7, -1, u""_s}, {0x7FFFFFFF, -1, u""_s}}) {
        TdxSkinController().Refresh(); // without a skin's name: the platform's look
        Open(stored);
        EXPECT_EQ(Interface().ItemIndex(), index) << stored;
        EXPECT_EQ(SkinOnShow(), shown) << stored;
        EXPECT_EQ(Stored(u"GlobalActiveStyle"_s), QVariant(stored));
        End();
    }
}

TEST_F(MainSkins, SetTheCaptionsOfLayouts)
{
    TInterfaceDM module;
    InterfaceDM = &module;
    const auto colours = SystemColour;
    const QFont font = QApplication::font();
    module.DataModuleCreate();
    EXPECT_EQ(module.Supplement->textColor, 0x420000u);
    EXPECT_EQ(module.SelectedGridRow->textColor, 0x5B0000u);
    EXPECT_EQ(module.ContentOdd->color, 0xA82B0Bu);
    TdxLayoutItem item;
    item.SetCaption(u"x"_s);
    const QLabel &label = *item.findChild<QLabel *>();
    EXPECT_EQ(label.font().family() + QString::number(label.font().pixelSize()), u"Tahoma11"_s);
    Open(0);
    EXPECT_EQ(label.font().family() + QString::number(label.font().pointSize()), u"Segoe UI10"_s);
    End();
    SystemColour = colours;
    QApplication::setFont(font);
    InterfaceDM = nullptr;
}

} // namespace
