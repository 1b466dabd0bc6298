#include "reader/ReaderWindow.h"
#include "support/SkinSupport.h"

#include "presentation/DMInterface.h"
#include "presentation/GlobalUnit.h"
#include "toolkit/BarCombo.h"
#include "toolkit/Forms.h"
#include "toolkit/LayoutItem.h"
#include "toolkit/LookAndFeel.h"
#include "toolkit/SkinController.h"
#include "toolkit/SkinStyle.h"

#include <QApplication>
#include <QLabel>
#include <QMenu>
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
        StoreDefaults(1, 1101);
        Store(u"GlobalActiveStyle"_s, style);
        Store(u"GlobalActiveName"_s, u"stored"_s);
        Start();
    }
    TBarCombo &Interface() { return Find<TBarCombo>("bcbInterface"); }
    static QColor Ground(const QWidget &widget) { return widget.palette().color(QPalette::Window); }
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
    EXPECT_EQ(Interface().ItemIndex(), -1);
    ExpectStored(0, u"stored"_s);
    Trigger("acSearchSutas");
    const QFont font = window->font(), menuFont = QApplication::font("QMenu"),
                buttonFont = QApplication::font("QToolButton");
    const Colour systemWindow = Doors().systemColour(5);

    Interface().SetItemIndex(1);
    EXPECT_EQ(SkinOnShow(), u"Night"_s);
    ExpectStored(2, u"Night"_s);
    const QStyle *style = QApplication::style();
    Trigger("acFindDialog");
    const QWidgetList all{window.get(), FindForm(u"frmSearchSutas"_s), &Find<QWidget>("dlgFind"),
                          &Find<QMenu>("ppMainTray")};
    for (const QWidget *widget : all) {
        EXPECT_EQ(Ground(*widget), Night) << widget->objectName().toStdString();
        EXPECT_EQ(widget->style(), style) << widget->objectName().toStdString();
    }
    EXPECT_EQ(QToolTip::palette().color(QPalette::ToolTipText), Paper);
    EXPECT_EQ(Doors().systemColour(5), systemWindow) << "pages keep the desktop's colours";

    Interface().SetItemIndex(0);
    EXPECT_EQ(SkinOnShow(), u"Light"_s);
    EXPECT_EQ(QApplication::style(), style) << "one style object for all skins";
    for (const QWidget *widget : all)
        EXPECT_EQ(Ground(*widget), Paper) << widget->objectName().toStdString();
    EXPECT_EQ(window->font(), font);
    EXPECT_EQ(QApplication::font("QMenu"), menuFont);
    EXPECT_EQ(QApplication::font("QToolButton"), buttonFont);

    auto &controller = Find<TdxSkinController>("scMain");
    for (const char *off : {"NativeStyle", "UseSkins"}) {
        const QVariant before = controller.property(off);
        controller.setProperty(off, !before.toBool());
        controller.Refresh();
        EXPECT_EQ(SkinOnShow(), QString()) << off;
        controller.setProperty(off, before);
        controller.Refresh();
        EXPECT_EQ(SkinOnShow(), u"Light"_s) << off;
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
    Interface().setCurrentIndex(1); // as the user does
    CheckBoxes({{u"Lumivara 1.0"_s, skinFile + u": No such file or directory"_s}});
    ExpectStored(1, u"Light"_s);
}

TEST_F(MainSkins, FollowTheStoredNumberAlone)
{
    const struct
    {
        int stored;
        int index;
        QString shown;
    } cases[] = {{1, 0, u"Light"_s}, {4, -1, {}}, {-7, -1, {}}, {0x7FFFFFFF, -1, {}}, {-0x7FFFFFFF - 1, -1, {}}};
    for (const auto &item : cases) {
        TdxSkinController().Refresh(); // without a skin's name: the platform's look
        Open(item.stored);
        EXPECT_EQ(Interface().ItemIndex(), item.index) << item.stored;
        EXPECT_EQ(SkinOnShow(), item.shown) << item.stored;
        EXPECT_EQ(Stored(u"GlobalActiveStyle"_s), QVariant(item.stored));
        EXPECT_EQ(PassageNames().size(), 4) << item.stored;
        End();
    }
}

TEST_F(MainSkins, MissingFromTheDiskEndTheStartEarlyAndTheWindowStands)
{
    QFile::remove(skinFile);
    Open(1);
    CheckBoxes({{u"Lumivara 1.0"_s, skinFile + u": No such file or directory"_s}});
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(window->qryTreeSutas.Active());
    EXPECT_EQ(Interface().count(), 0);
    EXPECT_EQ(Find<TBarCombo>("bcbLanguage").count(), 0);
    answers = {true};
    EXPECT_TRUE(window->close());
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
    EXPECT_EQ(item.findChild<QLabel *>()->font().family(), u"Tahoma"_s);
    EXPECT_EQ(item.findChild<QLabel *>()->font().pixelSize(), 11);
    Open(0);
    EXPECT_EQ(item.findChild<QLabel *>()->font().family(), u"Segoe UI"_s);
    EXPECT_EQ(item.findChild<QLabel *>()->font().pointSize(), 10);
    EXPECT_EQ(module.SkinLookAndFeel->GroupOptions().Font().pointSize(), 10);
    End();
    SystemColour = colours;
    QApplication::setFont(font);
    InterfaceDM = nullptr;
}

} // namespace
