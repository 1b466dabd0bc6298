#include "reader/ReaderWindow.h"

#include "stores/Modules.h"
#include "support/FailingDisk.h"
#include "toolkit/controls/BarCombo.h"

#include <QSystemTrayIcon>

using namespace Qt::StringLiterals;

TEST_F(ReaderWindow, OpensThePassageOfTheOption)
{
    const std::tuple<const char *, int, int, quint32, QString> rows[]{
        {"last", 1, 1102, 0, u"Giới thứ nhì"_s},
        {"last is gone", 1, 4711, 0, u"Phân tích giới"_s},
        {"lowest drawn", 2, 1102, 0, u"Giới thứ nhất"_s},
        {"highest drawn", 2, 0, 0xFFFFFFFF, u"Chương lớn"_s},
        {"drawn without a row", 2, 0, 0x80000000, u"Phân tích giới"_s},
        {"none", 3, 1102, 0, u"Phân tích giới"_s}};
    for (const auto &[rule, openSutta, lastKelora, number, name] : rows) {
        SCOPED_TRACE(rule);
        StoreDefaults(openSutta, lastKelora);
        drawn = number;
        Start();
        EXPECT_EQ(CurrentName(), name);
        EXPECT_EQ(Tree().currentIndex().data().toString(), name);
        End();
    }
}

TEST_F(ReaderWindow, StartsInTheStoredLanguageOfPassages)
{
    for (const auto &[language, button, pal, vie, page] : {std::tuple(0, "btnPali", true, false, "pali 1101"),
                                                           {2, "btnViet", false, false, "english 1101"},
                                                           {10, "btnVietPali", false, true, "parallel 1101"},
                                                           {7, "btnViet", false, false, "Giới thứ nhất"}}) {
        SCOPED_TRACE(language);
        StartOn(1101, language);
        EXPECT_TRUE(Find<TcxButton>(button).isChecked());
        EXPECT_TRUE(Action("bTreeNamePAL").isChecked() == pal && Action("bTreeNameVIE").isChecked() == vie);
        EXPECT_EQ(Find<QMenu>("bsiMarginWidth").isEnabled(), language != 10);
        EXPECT_THAT(Page(), testing::HasSubstr(page));
        EXPECT_TRUE(Find<QObject>("dbtSutasNAME_VIC_VIE").property("Visible").toBool()) << "by the interface alone";
        End();
    }
}

TEST_F(ReaderWindow, AFirstStartReadsPaliAndStoresTheInterfaceLanguage)
{
    Start();
    EXPECT_TRUE(Find<TcxButton>("btnPali").isChecked());
    EXPECT_EQ(CurrentName(), u"Phân tích giới"_s);
    EXPECT_EQ(Stored(u"InterfaceLang"_s), QVariant(0));
    EXPECT_FALSE(Stored(u"LanguageSutta"_s).isValid());
    EXPECT_EQ(CollectionMode, 1);
    EXPECT_TRUE(window->isVisible() && window->isMaximized());
    EXPECT_EQ(window->windowTitle(), u"Lumivara 1.1"_s);
    EXPECT_EQ(window->minimumSize(), QSize(800, 600));
}

TEST_F(ReaderWindow, AnInterfaceLanguageWithoutAFileFallsBackToTheDefault)
{
    StartOn(1001, 1, 1);
    EXPECT_EQ(Stored(u"InterfaceLang"_s), QVariant(0));
    EXPECT_THAT(Page(), testing::HasSubstr("Phân tích giới")) << "before the first page is composed";
}

TEST_F(ReaderWindow, AFullDiskAtTheStartIsToldAndTheReaderWorks)
{
    StoreDefaults(1, 1101);
    Store(u"GlobalActiveStyle"_s, 0);
    FailingDisk full(2, FailingDisk::Lasting::ForGood); // the folder is there, the value finds no room
    disk = &full;
    Start();
    disk = &RealSettingsDisk();
    Click("btnPali");
    EXPECT_EQ(Page(), "<p>pali 1101</p>");
    EXPECT_EQ(Stored(u"LanguageSutta"_s), QVariant(0));
    EXPECT_EQ(TakeBox(), "No space left on device");
}

TEST_F(ReaderWindow, ClosingAsksAndStoresTheLastPassage)
{
    for (const auto &[language, title, text] : {std::tuple(0, u"Thông báo"_s, u"Đồng ý thoát khỏi Lumivara?"_s),
                                                {1, u"Information"_s, u"Are you sure you wish to quit Lumivara?"_s},
                                                {2, u""_s, u""_s}}) {
        SCOPED_TRACE(language);
        StartOn();
        InterfaceLang = language;
        language == 2 ? window->qryTreeSutas.First() : GoTo(1201);
        answers = {false, true};
        EXPECT_FALSE(window->close());
        EXPECT_EQ(Stored(u"LastKelora"_s), QVariant(1101));
        EXPECT_TRUE(window->close());
        EXPECT_EQ(Stored(u"LastKelora"_s), QVariant(language == 2 ? 0 : 1201)) << "a group is no passage";
        EXPECT_EQ(RunApplication(), 0); // ends at once: the end was asked for
        CheckBoxes(QList<Box>(2, {title, text}));
        End();
    }
}

TEST_F(ReaderWindow, TheTraysExitAsksAndStoresNoPassage)
{
    StartOn();
    GoTo(1201);
    answers = {false, true};
    Trigger("acExit");
    Trigger("acExit");
    EXPECT_EQ(Stored(u"LastKelora"_s), QVariant(1101));
    EXPECT_EQ(RunApplication(), 0);
    CheckBoxes(QList<Box>(2, {u"Thông báo"_s, u"Đồng ý thoát khỏi Lumivara?"_s}));
}

TEST_F(ReaderWindow, AsksOnceToQuitWhileTheQuestionIsOpen)
{
    StartOn();
    int asked = 0;
    Doors().messageBox = [&](const QString &, const QString &, BoxButtons, BoxIcon) {
        if (++asked < 5) // by the close button and by the tray
            window->close(), Trigger("acExit");
        return false;
    };
    EXPECT_FALSE(window->close());
    EXPECT_EQ(asked, 1);
    Trigger("acExit");
    EXPECT_EQ(asked, 2); // a refused question leaves the next one free
}

TEST_F(ReaderWindow, ATrayClickBringsBackOnlyWhatIsAway)
{
    StartOn();
    auto &tray = Find<QSystemTrayIcon>("tiMainTray");
    auto &menu = Find<QMenu>("ppMainTray");
    EXPECT_TRUE(tray.isVisible() && !tray.toolTip().isEmpty() && tray.contextMenu() == &menu);
    window->showNormal();
    emit tray.activated(QSystemTrayIcon::Trigger);
    EXPECT_FALSE(window->isMaximized());
    window->showMinimized();
    emit tray.activated(QSystemTrayIcon::Trigger);
    EXPECT_TRUE(window->isMaximized() && !window->isMinimized());
    window->hide();
    emit tray.activated(QSystemTrayIcon::Trigger);
    EXPECT_TRUE(window->isVisible());
    emit tray.activated(QSystemTrayIcon::MiddleClick);
    EXPECT_FALSE(menu.isVisible());
    emit tray.activated(QSystemTrayIcon::Context);
    EXPECT_TRUE(menu.isVisible());
    menu.close();
}
