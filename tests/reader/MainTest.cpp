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

using namespace Qt::StringLiterals;

TEST_F(ReaderWindow, OpensThePassageOfTheOption)
{
    const struct
    {
        const char *rule;
        int openSutta, lastKelora;
        quint32 drawn;
        QString name; ///< of the row that opens
    } rows[]{{"last", 1, 1102, 0, u"Giới thứ nhì"_s},
             {"last is gone", 1, 4711, 0, u"Phân tích giới"_s},
             {"last was a group", 1, 0, 0, u"Phân tích giới"_s},
             {"lowest drawn", 2, 1102, 0, u"Giới thứ nhất"_s},
             {"highest drawn", 2, 0, 0xFFFFFFFF, u"Chương lớn"_s},
             {"drawn without a row", 2, 0, 0x80000000, u"Phân tích giới"_s},
             {"none", 3, 1102, 0, u"Phân tích giới"_s},
             {"zero", 0, 1102, 0, u"Phân tích giới"_s}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.rule);
        StoreDefaults(row.openSutta, row.lastKelora);
        drawn = row.drawn;
        Start();
        EXPECT_EQ(CurrentName(), row.name);
        EXPECT_EQ(Tree().currentIndex().data().toString(), row.name);
        CheckBoxes({});
        End();
    }
}

TEST_F(ReaderWindow, StartsInTheStoredLanguageOfPassages)
{
    const struct
    {
        int languageSutta;
        const char *button; ///< the one that is down
        bool palToggle, vieToggle, margins;
        const char *page; ///< text of the page of 1101
    } rows[]{{0, "btnPali", true, false, true, "pali 1101"},
             {1, "btnViet", false, true, true, "viet 1101"},
             {2, "btnViet", false, false, true, "english 1101"},
             {10, "btnVietPali", false, true, false, "parallel 1101"},
             {7, "btnViet", false, false, true, "Giới thứ nhất"}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.languageSutta);
        StoreDefaults(1, 1101, row.languageSutta);
        Start();
        for (const char *button : {"btnPali", "btnViet", "btnVietPali"})
            EXPECT_EQ(Find<TcxButton>(button).isChecked(), std::string(button) == row.button) << button;
        EXPECT_EQ(Action("bTreeNamePAL").isChecked(), row.palToggle);
        EXPECT_EQ(Action("bTreeNameVIE").isChecked(), row.vieToggle);
        EXPECT_EQ(Find<TcxButton>("btnMarginWidth").isEnabled(), row.margins);
        EXPECT_EQ(Find<QMenu>("bsiMarginWidth").isEnabled(), row.margins);
        EXPECT_THAT(Browser().Source().toStdString(), testing::HasSubstr(row.page));
        // Whatever the passage's language, the tree's follows the interface's.
        EXPECT_TRUE(Find<QObject>("dbtSutasNAME_VIC_VIE").property("Visible").toBool());
        EXPECT_FALSE(Find<QObject>("dbtSutasNAME_VIC_PAL").property("Visible").toBool());
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
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(window->isMaximized());
    EXPECT_EQ(window->windowTitle(), u"Lumivara 1.1"_s);
    EXPECT_EQ(window->minimumSize(), QSize(800, 600));
}

TEST_F(ReaderWindow, AnInterfaceLanguageWithoutAFileFallsBackToTheDefault)
{
    StoreDefaults(1, 1101, 1, 1);
    Start();
    EXPECT_EQ(InterfaceLang, 0);
    EXPECT_EQ(Stored(u"InterfaceLang"_s), QVariant(0));
}

TEST_F(ReaderWindow, WithoutTheCanonTheFailureIsToldTwiceAndTheEndAskedFor)
{
    program = settings.Path(u"Lumivara"_s);
    Start();
    EXPECT_EQ(exitCodes, QList<int>{1});
    ASSERT_EQ(boxes.size(), 2);
    EXPECT_THAT(boxes[0].text.toStdString(), testing::StartsWith("Kết nối dữ liệu không thành công!"));
    EXPECT_EQ(boxes[1].title, u"Lumivara 1.0"_s);
    EXPECT_NE(boxes[1].text, QString());
    EXPECT_EQ(Stored(u"InterfaceLang"_s), QVariant(0)); // what the events write on the way stays written
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
    EXPECT_EQ(Stored(u"LanguageSutta"_s), QVariant(0));
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_EQ(boxes[0].text, u"No space left on device"_s);
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

TEST_F(ReaderWindow, ClosingAsksAndStoresTheLastPassageAndTheTraysExitStoresNothing)
{
    const QString titles[]{u"Thông báo"_s, u"Information"_s, {}};
    const QString texts[]{u"Đồng ý thoát khỏi Lumivara?"_s, u"Are you sure you wish to quit Lumivara?"_s, {}};
    for (const int language : {0, 1, 2}) {
        for (const bool byTray : {false, true}) {
            SCOPED_TRACE(language);
            StoreDefaults(1, 1101);
            Start();
            InterfaceLang = language;
            ASSERT_TRUE(window->qryTreeSutas.Locate(u"ID_VIC"_s, 1201));
            answers = {false, true};
            for (const bool isLast : {false, true}) {
                if (byTray)
                    Trigger("acExit");
                else
                    EXPECT_EQ(window->close(), isLast);
                EXPECT_EQ(Stored(u"LastKelora"_s), QVariant(isLast && !byTray ? 1201 : 1101));
            }
            EXPECT_EQ(RunApplication(), 0); // ends at once: the end was asked for
            CheckBoxes(QList<Box>(2, {titles[language], texts[language]}));
            boxes.clear();
            End();
        }
    }
}

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
    EXPECT_EQ(Stored(u"LastKelora"_s), QVariant(0));
}

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

    for (const auto reason : {QSystemTrayIcon::MiddleClick, QSystemTrayIcon::Context}) {
        emit tray.activated(reason);
        EXPECT_EQ(Find<QMenu>("ppMainTray").isVisible(), reason == QSystemTrayIcon::Context);
    }
    Find<QMenu>("ppMainTray").close();
}
