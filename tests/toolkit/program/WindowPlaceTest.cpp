#include "toolkit/program/WindowPlace.h"

#include "marks/FocusEdit.h"
#include "presentation/Options.h"
#include "toolkit/controls/BarCombo.h"
#include "toolkit/program/EachWindow.h"

#include <QDialog>
#include <QScreen>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

class WholeWindows : public EachWindow
{
protected:
    /// As the desktop has it: the widget itself may still know an older frame.
    static QRect PlaceOf(const QWidget &shown)
    {
        return shown.windowHandle() ? shown.windowHandle()->frameGeometry() : QRect();
    }
    static bool IsWhole(const QWidget &shown)
    {
        return !FrameOf(shown).isNull() && shown.screen()->availableGeometry().contains(PlaceOf(shown));
    }
    static std::string Place(const QWidget &shown)
    {
        const QRect place = PlaceOf(shown), desk = shown.screen()->availableGeometry();
        return Name(shown) + u" at %1 %2, %3 x %4 of %5 x %6"_s.arg(place.x())
                                 .arg(place.y())
                                 .arg(place.width())
                                 .arg(place.height())
                                 .arg(desk.width())
                                 .arg(desk.height())
                                 .toStdString();
    }
    /// Runs the first test below again, on a screen of its own.
    void RunOnScreen(const QString &size, const QString &scale)
    {
        const QString display = QCoreApplication::applicationDirPath() + u"/../display"_s;
        RunAgain(u"WholeWindows.StandOnTheirScreen"_s, {{u"QT_SCALE_FACTOR"_s, scale}}, {display, u"-s"_s, size});
    }
};

} // namespace

TEST_F(WholeWindows, StandOnTheirScreen)
{
    StartProgram();
    const auto check = [this](QWidget &shown) {
        EXPECT_TRUE(&shown == window.get() || WaitFor([&] { return IsWhole(shown); })) << Place(shown);
    };
    for (const int language : {0, 1}) {
        Find<TBarCombo>("bcbLanguage").SetItemIndex(language);
        Find<TBarCombo>("bcbInterface").SetItemIndex(language == 0 ? -1 : 24);
        VisitAll(check);
        VisitPreview(check);
    }
}

TEST_F(WholeWindows, StandOnTheSmallestScreen)
{
    RunOnScreen(u"800x600"_s, u"1"_s);
}

TEST_F(WholeWindows, StandOnTheSmallestScreenAtTwiceTheScale)
{
    RunOnScreen(u"1600x1200"_s, u"2"_s);
}

TEST_F(WholeWindows, StandOverTheMiddleOfOwnerOrScreen)
{
    StartProgram();
    const auto isOver = [](const QWidget &shown, const QRect &ground) {
        return IsWhole(shown) && (PlaceOf(shown).center() - ground.center()).manhattanLength() <= 1;
    };
    const QRect desk = window->screen()->availableGeometry();
    window->showNormal();
    window->setGeometry(desk.adjusted(150, 100, 0, -60));
    EXPECT_TRUE(WaitFor([this] { return !FrameOf(*window).isNull(); }));
    MarkAll([&](TfrmFocusEdit &editor) {
        EXPECT_TRUE(WaitFor([&] { return isOver(editor, PlaceOf(*window)); })) << Place(editor);
    });
    for (const auto &[command, name] : {std::pair("acDictionary", u"frmDictionary"_s),
                                        {"acOrganization", u"frmFocusHighlight"_s},
                                        {"acImport", u"frmImport"_s},
                                        {"acWelcome", u"frmWelcome"_s}}) {
        Trigger(command);
        EXPECT_TRUE(WaitFor([&] { return isOver(*FindForm(name), desk); })) << Place(*FindForm(name));
        FindForm(name)->close();
    }
    RunModal<TfrmOptions>("acOption", [&](TfrmOptions &options) {
        EXPECT_TRUE(WaitFor([&] { return isOver(options, desk); })) << Place(options);
    });
}
