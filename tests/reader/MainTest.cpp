#include "reader/ReaderWindow.h"

#include "presentation/GlobalUnit.h"
#include "stores/Modules.h"
#include "support/FailingDisk.h"
#include "toolkit/BarCombo.h"
#include "toolkit/BrowserControl.h"
#include "toolkit/CxButton.h"
#include "toolkit/DBTreeList.h"

#include <QMenu>
#include <QSystemTrayIcon>

namespace {

QString Text(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

// --- Start ----------------------------------------------------------------------------------------------------------

namespace {

struct Opening
{
    const char *rule;
    int openSutta, lastKelora;
    quint32 drawn;
    const char *name; ///< of the row that opens
};

class OpeningPassage : public ReaderWindow, public testing::WithParamInterface<Opening>
{};

} // namespace

TEST_P(OpeningPassage, ByTheOption)
{
    StoreDefaults(GetParam().openSutta, GetParam().lastKelora);
    drawn = GetParam().drawn;
    Start();
    EXPECT_EQ(CurrentName(), Text(GetParam().name));
    EXPECT_EQ(Tree().currentIndex().data().toString(), Text(GetParam().name));
    CheckBoxes({});
}

INSTANTIATE_TEST_SUITE_P(Rules, OpeningPassage,
                         testing::Values(Opening{"Last", 1, 1102, 0, "Giới thứ nhì"},
                                         Opening{"LastIsGone", 1, 4711, 0, "Phân tích giới"},
                                         Opening{"LastWasAGroup", 1, 0, 0, "Phân tích giới"},
                                         Opening{"LowestDrawn", 2, 1102, 0, "Giới thứ nhất"},
                                         Opening{"HighestDrawn", 2, 0, 0xFFFFFFFF, "Chương lớn"},
                                         Opening{"DrawnWithoutARow", 2, 0, 0x80000000, "Phân tích giới"},
                                         Opening{"None", 3, 1102, 0, "Phân tích giới"},
                                         Opening{"Zero", 0, 1102, 0, "Phân tích giới"}),
                         [](const auto &info) { return std::string(info.param.rule); });

namespace {

struct StartLanguage
{
    const char *rule;
    int languageSutta;
    const char *button; ///< the one that is down
    bool palToggle, vieToggle, margins;
    const char *page; ///< text of the page of 1101
};

class StartLanguages : public ReaderWindow, public testing::WithParamInterface<StartLanguage>
{};

} // namespace

TEST_P(StartLanguages, SetButtonsTogglesAndPage)
{
    StoreDefaults(1, 1101, GetParam().languageSutta);
    Start();
    for (const char *button : {"btnPali", "btnViet", "btnVietPali"})
        EXPECT_EQ(Find<TcxButton>(button).isChecked(), std::string(button) == GetParam().button) << button;
    EXPECT_EQ(Action("bTreeNamePAL").isChecked(), GetParam().palToggle);
    EXPECT_EQ(Action("bTreeNameVIE").isChecked(), GetParam().vieToggle);
    EXPECT_EQ(Find<TcxButton>("btnMarginWidth").isEnabled(), GetParam().margins);
    EXPECT_EQ(Find<QMenu>("bsiMarginWidth").isEnabled(), GetParam().margins);
    EXPECT_EQ(Find<TcxButton>("btnMarginWidth").text(), QStringLiteral("0"));
    EXPECT_THAT(Browser().Source().toStdString(), testing::HasSubstr(GetParam().page));
    // Whatever the passage's language, the tree's follows the interface's.
    EXPECT_TRUE(Find<QObject>("dbtSutasNAME_VIC_VIE").property("Visible").toBool());
    EXPECT_FALSE(Find<QObject>("dbtSutasNAME_VIC_PAL").property("Visible").toBool());
}

INSTANTIATE_TEST_SUITE_P(Modes, StartLanguages,
                         testing::Values(StartLanguage{"Pali", 0, "btnPali", true, false, true, "pali 1101"},
                                         StartLanguage{"Vietnamese", 1, "btnViet", false, true, true, "viet 1101"},
                                         StartLanguage{"English", 2, "btnViet", false, false, true, "english 1101"},
                                         StartLanguage{"Parallel", 10, "btnVietPali", false, true, false,
                                                       "parallel 1101"},
                                         StartLanguage{"Unknown", 7, "btnViet", false, false, true, "Giới thứ nhất"}),
                         [](const auto &info) { return std::string(info.param.rule); });

TEST_F(ReaderWindow, AFirstStartReadsPaliAndStoresTheInterfaceLanguage)
{
    Start();
    EXPECT_TRUE(Find<TcxButton>("btnPali").isChecked());
    EXPECT_EQ(CurrentName(), Text("Phân tích giới"));
    EXPECT_EQ(Stored(QStringLiteral("InterfaceLang")), QVariant(0));
    EXPECT_FALSE(Stored(QStringLiteral("LanguageSutta")).isValid());
    EXPECT_EQ(CollectionMode, 1);
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(window->isMaximized());
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Lumivara 1.1"));
    EXPECT_EQ(window->minimumSize(), QSize(800, 600));
}

TEST_F(ReaderWindow, AnInterfaceLanguageWithoutAFileFallsBackToTheDefault)
{
    StoreDefaults(1, 1101, 1, 1);
    Start();
    EXPECT_EQ(InterfaceLang, 0);
    EXPECT_EQ(Stored(QStringLiteral("InterfaceLang")), QVariant(0));
}

TEST_F(ReaderWindow, WithoutTheCanonTheFailureIsToldTwiceAndTheEndAskedFor)
{
    program = settings.Path(QStringLiteral("Lumivara"));
    Start();
    EXPECT_EQ(exitCodes, QList<int>{1});
    ASSERT_EQ(boxes.size(), 2);
    EXPECT_THAT(boxes[0].text.toStdString(), testing::StartsWith("Kết nối dữ liệu không thành công!"));
    EXPECT_EQ(boxes[1].title, QStringLiteral("Lumivara 1.0"));
    EXPECT_NE(boxes[1].text, QString());
    EXPECT_EQ(Stored(QStringLiteral("InterfaceLang")), QVariant(0)); // what the events write on the way stays written
    EXPECT_EQ(Tree().model()->rowCount(), 0);
}

TEST_F(ReaderWindow, AFullDiskAtTheStartIsToldAndTheReaderWorks)
{
    StoreDefaults(1, 1101);
    FailingDisk full(2, FailingDisk::Lasting::ForGood); // the folder is there, the value finds no room
    disk = &full;
    Start();
    EXPECT_TRUE(full.Fired());
    disk = &RealSettingsDisk();
    Find<TcxButton>("btnPali").click();
    EXPECT_EQ(Browser().Source(), QByteArray("<p>pali 1101</p>"));
    EXPECT_EQ(Stored(QStringLiteral("LanguageSutta")), QVariant(0));
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_EQ(boxes[0].text, QStringLiteral("No space left on device"));
}

TEST_F(ReaderWindow, ClientsAndDictionaryMayBeAbsent)
{
    StoreDefaults(1, 1101);
    Start();
    frmClientsDM = nullptr;
    frmDictionaryDM = nullptr;
    QCoreApplication::processEvents();
    EXPECT_FALSE(Action("acOrganization").isEnabled());
    EXPECT_FALSE(Action("acGetWord").isEnabled());
    CheckBoxes({});
}

// --- End ------------------------------------------------------------------------------------------------------------

namespace {

struct Prompt
{
    const char *language;
    int interfaceLang;
    const char *title, *text;
};

class QuitPrompts : public ReaderWindow, public testing::WithParamInterface<Prompt>
{
protected:
    Box Expected() const { return {Text(GetParam().title), Text(GetParam().text)}; }
};

} // namespace

TEST_P(QuitPrompts, ClosingAsksAndStoresTheLastPassage)
{
    StoreDefaults(1, 1101);
    Start();
    InterfaceLang = GetParam().interfaceLang;
    ASSERT_TRUE(window->qryTreeSutas.Locate(QStringLiteral("ID_VIC"), 1201));
    answers = {false, true};
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(Stored(QStringLiteral("LastKelora")), QVariant(1101));
    EXPECT_TRUE(window->close());
    EXPECT_EQ(Stored(QStringLiteral("LastKelora")), QVariant(1201));
    EXPECT_EQ(RunApplication(), 0); // ends at once: the end was asked for
    CheckBoxes({Expected(), Expected()});
}

TEST_P(QuitPrompts, TheTraysExitAsksAndStoresNothing)
{
    StoreDefaults(1, 1101);
    Start();
    InterfaceLang = GetParam().interfaceLang;
    ASSERT_TRUE(window->qryTreeSutas.Locate(QStringLiteral("ID_VIC"), 1201));
    answers = {false, true};
    Trigger("acExit");
    Trigger("acExit");
    EXPECT_EQ(RunApplication(), 0);
    EXPECT_EQ(Stored(QStringLiteral("LastKelora")), QVariant(1101));
    CheckBoxes({Expected(), Expected()});
}

INSTANTIATE_TEST_SUITE_P(Languages, QuitPrompts,
                         testing::Values(Prompt{"Vietnamese", 0, "Thông báo", "Đồng ý thoát khỏi Lumivara?"},
                                         Prompt{"English", 1, "Information", "Are you sure you wish to quit Lumivara?"},
                                         Prompt{"AnyOther", 2, "", ""}),
                         [](const auto &info) { return std::string(info.param.language); });

TEST_F(ReaderWindow, AsksOnceToQuitWhileTheQuestionIsOpen)
{
    StoreDefaults(1, 1101);
    Start();
    int asked = 0;
    Doors().messageBox = [&](const QString &, const QString &, BoxButtons, BoxIcon) {
        if (++asked < 5) { // by the close button and by the tray, in either order
            window->close();
            Trigger("acExit");
        }
        return false;
    };
    EXPECT_FALSE(window->close());
    EXPECT_EQ(asked, 1);
    Trigger("acExit");
    EXPECT_EQ(asked, 2); // a refused question leaves the next one free
}

TEST_F(ReaderWindow, LeavingOnAGroupStoresNoPassage)
{
    StoreDefaults(1, 1101);
    Start();
    window->qryTreeSutas.First();
    answers = {true};
    window->close();
    RunApplication();
    EXPECT_EQ(Stored(QStringLiteral("LastKelora")), QVariant(0));
}

// --- Tray -----------------------------------------------------------------------------------------------------------

TEST_F(ReaderWindow, ATrayClickBringsBackOnlyWhatIsAway)
{
    StoreDefaults(1, 1101);
    Start();
    auto &tray = Find<QSystemTrayIcon>("tiMainTray");
    EXPECT_TRUE(tray.isVisible());
    EXPECT_FALSE(tray.toolTip().isEmpty());
    EXPECT_EQ(tray.contextMenu(), &Find<QMenu>("ppMainTray"));

    window->showNormal();
    emit tray.activated(QSystemTrayIcon::Trigger);
    EXPECT_FALSE(window->isMaximized());

    window->showMinimized();
    emit tray.activated(QSystemTrayIcon::Trigger);
    EXPECT_FALSE(window->isMinimized());
    EXPECT_TRUE(window->isMaximized());

    window->hide();
    emit tray.activated(QSystemTrayIcon::Trigger);
    EXPECT_TRUE(window->isVisible());
}

TEST_F(ReaderWindow, TheTraysMenuComesOnTheRightButtonAlone)
{
    StoreDefaults(1, 1101);
    Start();
    auto &tray = Find<QSystemTrayIcon>("tiMainTray");
    auto &menu = Find<QMenu>("ppMainTray");
    emit tray.activated(QSystemTrayIcon::MiddleClick);
    EXPECT_FALSE(menu.isVisible());
    emit tray.activated(QSystemTrayIcon::Context);
    EXPECT_TRUE(menu.isVisible());
    menu.close();
}
