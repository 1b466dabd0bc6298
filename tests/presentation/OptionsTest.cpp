#include "presentation/Options.h"

#include "reader/ReaderWindow.h"
#include "stores/JsonRegistry.h"
#include "stores/KeloraDM.h"
#include "stores/Modules.h"
#include "support/FailingDisk.h"
#include "support/WaitFor.h"
#include "toolkit/BrowserControl.h"
#include "toolkit/ColorComboBox.h"
#include "toolkit/CxPageControl.h"
#include "toolkit/Doors.h"
#include "toolkit/FontNameComboBox.h"
#include "toolkit/Fonts.h"
#include "toolkit/LayoutItem.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QPushButton>
#include <QScreen>
#include <QSpinBox>
#include <QTest>

#include <climits>

using namespace Qt::StringLiterals;

namespace {

using Values = QMap<QString, QVariant>;

const QStringList names{u"OpenSutta"_s, u"PopupActive"_s, u"PopupTime"_s,
                        u"FontName"_s,  u"BgColor"_s,     u"SeachHighlightColor"_s};
const QString program = u"/opt/Lumi vara/Lumivara"_s;

template <typename T>
T &In(QWidget &window, const char *name)
{
    return *window.findChild<T *>(QLatin1StringView(name));
}

/// What the six controls show: item, tick, number, font's text and item, colours.
QString Shown(QWidget &dialog)
{
    const auto &font = In<TcxFontNameComboBox>(dialog, "cbFontName");
    return u"%1 %2 %3 %4/%5 %6 %7"_s.arg(In<QComboBox>(dialog, "cbOpenSutta").currentIndex())
        .arg(In<QCheckBox>(dialog, "cbPopupActive").isChecked())
        .arg(In<QSpinBox>(dialog, "sePopupTime").value())
        .arg(font.Text())
        .arg(font.ItemIndex())
        .arg(In<TcxColorComboBox>(dialog, "ccbBgColor").ColorValue(), 0, 16)
        .arg(In<TcxColorComboBox>(dialog, "ccbSeachHighlightColor").ColorValue(), 0, 16);
}

/// The dialog over settings in a folder of their own, without the rest of the program.
class OptionsDialog : public testing::Test
{
protected:
    OptionsDialog()
    {
        Doors().messageBox = [this](const QString &, const QString &text, BoxButtons, BoxIcon) {
            boxes.append(text);
            return true;
        };
        Doors().fontNames = [] { return QStringList{u"Alpha"_s, u"Beta Sans"_s, u"Segoe UI"_s}; };
        ModuleDoors doors;
        doors.exeName = program;
        doors.createRegistry = [this]() -> std::unique_ptr<TRegistry> {
            return std::make_unique<JsonRegistry>(scratch.Path(u"config"_s), scratch.Path(u"autostart"_s), *disk);
        };
        kelora = std::make_unique<TfrmKeloraDM>(doors);
        frmKeloraDM = kelora.get();
        FontName = u"before"_s;
    }
    ~OptionsDialog() override
    {
        frmKeloraDM = nullptr;
        FontName.clear();
        InterfaceLang = 0;
        Doors() = m_realDoors;
    }
    void Store(const Values &values)
    {
        for (const auto &[name, value] : values.asKeyValueRange()) {
            if (!value.isValid())
                continue;
            const auto type = value.typeId() == QMetaType::QString ? RegistryType::String : RegistryType::Integer;
            kelora->SetRegistryData(RegistryRoot::CurrentUser, QString::fromUtf16(OptionsKey), value, type, name);
        }
    }
    QStringList Stored()
    {
        QStringList values;
        for (const QString &name : names)
            values.append(Read(RegistryRoot::CurrentUser, OptionsKey, name));
        return values;
    }
    QString StartCommand() { return Read(RegistryRoot::LocalMachine, RunKey, u"Kelora"_s); }
    QString Memory() const
    {
        return u"%1 %2 %3 %4 %5 %6"_s.arg(kelora->vOpenSutta)
            .arg(kelora->vPopupActive)
            .arg(kelora->vPopupTime)
            .arg(FontName)
            .arg(kelora->vBgColor, 0, 16)
            .arg(kelora->vHighlightColor, 0, 16);
    }
    TfrmOptions &Open()
    {
        dialog = std::make_unique<TfrmOptions>();
        dialog->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
        return *dialog;
    }
    /// Chooses other values than Complete() has.
    void ChooseOthers()
    {
        In<QComboBox>(*dialog, "cbOpenSutta").setCurrentIndex(2);
        In<QCheckBox>(*dialog, "cbPopupActive").setChecked(false);
        In<QSpinBox>(*dialog, "sePopupTime").setValue(240);
        In<QComboBox>(*dialog, "cbFontName").setCurrentIndex(0);
        In<TcxColorComboBox>(*dialog, "ccbBgColor").SetColorValue(0xFF00000F);
        In<TcxColorComboBox>(*dialog, "ccbSeachHighlightColor").SetColorValue(0x00000080);
    }
    static Values Complete()
    {
        return {{names[0], 2},          {names[1], 1},         {names[2], 7}, {names[3], u"Beta Sans"_s},
                {names[4], 0x00FF0000}, {names[5], 0x00123456}};
    }
    void Click(const char *button) { QTest::mouseClick(&In<QPushButton>(*dialog, button), Qt::LeftButton); }

    ScratchFolder scratch;
    SettingsDisk *disk = &RealSettingsDisk();
    std::unique_ptr<TfrmKeloraDM> kelora;
    std::unique_ptr<TfrmOptions> dialog;
    QStringList boxes;

private:
    QString Read(RegistryRoot root, const char16_t *key, const QString &name)
    {
        try {
            return kelora->GetRegistryData(root, QString::fromUtf16(key), name).toString();
        } catch (const RegistryError &) {
            return u"none"_s;
        }
    }

    PlatformDoors m_realDoors = Doors();
};

} // namespace

TEST_F(OptionsDialog, ShowsWhatIsStoredUpToTheFirstBadValue)
{
    constexpr int none = -1, noKey = -2;
    const QString designed = u"-1 0 1 /-1 ff000005 ffff"_s;
    const struct
    {
        const char *rule;
        int changed;    ///< which value of a complete key; none, or no key at all
        QVariant value; ///< invalid: it is missing
        QString shown;
    } rows[]{{"no key", noKey, {}, designed},
             {"complete", none, {}, u"1 1 7 Beta Sans/1 ff0000 123456"_s},
             {"first missing", 0, {}, designed},
             {"third of another type", 2, u"7"_s, u"1 1 1 /-1 ff000005 ffff"_s},
             {"font missing", 3, {}, u"1 1 7 /-1 ff0000 123456"_s},
             {"font of another type", 3, 5, u"1 1 7 /-1 ff000005 ffff"_s},
             {"colour of another type", 4, u"red"_s, u"1 1 7 Beta Sans/1 ff000005 ffff"_s},
             {"last missing", 5, {}, u"1 1 7 Beta Sans/1 ff0000 ffff"_s},
             {"opening beyond the list", 0, 5, u"-1 1 7 Beta Sans/1 ff0000 123456"_s},
             {"opening of no sense", 0, INT_MIN, u"-1 1 7 Beta Sans/1 ff0000 123456"_s},
             {"time too short", 2, 0, u"1 1 1 Beta Sans/1 ff0000 123456"_s},
             {"time too long", 2, INT_MAX, u"1 1 240 Beta Sans/1 ff0000 123456"_s},
             {"unknown font", 3, u"\"><b>Ghost"_s, u"1 1 7 \"><b>Ghost/-1 ff0000 123456"_s},
             {"font in other letters", 3, u"BETA sans"_s, u"1 1 7 BETA sans/1 ff0000 123456"_s},
             {"system colour", 4, int(0xFF000005), u"1 1 7 Beta Sans/1 ff000005 123456"_s},
             {"colour of no sense", 5, -1, u"1 1 7 Beta Sans/1 ff0000 ffffffff"_s}};
    for (const auto &row : rows) {
        QDir(scratch.Path(u"config"_s)).removeRecursively();
        Values values = row.changed == noKey ? Values() : Complete();
        if (row.changed >= 0)
            values[names[row.changed]] = row.value;
        Store(values);
        TfrmOptions options;
        EXPECT_EQ(Shown(options), row.shown) << row.rule;
        EXPECT_EQ(boxes, QStringList());
    }
}

TEST_F(OptionsDialog, OKStoresInOrderAndAFailedWriteLeavesTheDialogOpen)
{
    const QStringList old{u"2"_s, u"1"_s, u"7"_s, u"Beta Sans"_s, u"16711680"_s, u"1193046"_s};
    const QStringList chosen{u"3"_s, u"0"_s, u"240"_s, u"Alpha"_s, u"-16777201"_s, u"128"_s};
    int storedWhole = 0, storedInPart = 0;
    for (int n = 1, fired = 1; fired; ++n) {
        Store(Complete());
        const QString before = Memory();
        Open();
        ChooseOthers();
        FailingDisk failing(n);
        disk = &failing;
        Click("btnOK");
        disk = &RealSettingsDisk();
        fired = failing.Fired();
        const QStringList stored = Stored();
        if (!boxes.isEmpty()) {
            EXPECT_TRUE(dialog->isVisible());
            EXPECT_EQ(boxes.size(), 1);
            EXPECT_EQ(Memory(), before);
            qsizetype written = 0;
            while (written < stored.size() && stored[written] == chosen[written])
                ++written;
            EXPECT_EQ(stored.mid(written), old.mid(written)) << n;
            storedInPart += written > 0;
        } else {
            EXPECT_FALSE(dialog->isVisible());
            EXPECT_EQ(dialog->result(), QDialog::Accepted);
            EXPECT_TRUE(stored == chosen || stored == old) << "all, or nothing where the key can't be opened";
            EXPECT_EQ(Memory(), u"3 0 240 Alpha ff00000f 80"_s);
            storedWhole += stored == chosen;
            FontName = u"before"_s;
            kelora->vOpenSutta = kelora->vPopupTime = 0;
            kelora->vBgColor = kelora->vHighlightColor = 0;
        }
        boxes.clear();
    }
    EXPECT_EQ(storedWhole, 1);
    EXPECT_GE(storedInPart, 5);
}

TEST_F(OptionsDialog, AFontThatTheSystemLacksIsNotStored)
{
    Store(Complete());
    Store({{names[3], u"Ghost"_s}});
    Open();
    In<QComboBox>(*dialog, "cbOpenSutta").setCurrentIndex(0);
    QTest::keyClick(dialog.get(), Qt::Key_Return);
    EXPECT_EQ(boxes, QStringList{u"List index out of bounds (-1)"_s});
    EXPECT_EQ(Stored(), (QStringList{u"1"_s, u"1"_s, u"7"_s, u"Ghost"_s, u"16711680"_s, u"1193046"_s}));
    EXPECT_EQ(Memory(), u"0 0 0 before 0 0"_s);
    EXPECT_TRUE(dialog->isVisible());
    QTest::keyClick(&In<QComboBox>(*dialog, "cbFontName"), Qt::Key_B);
    QTest::keyClick(dialog.get(), Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(Stored().value(3) + u'/' + FontName, u"Beta Sans/Beta Sans"_s);

    // The list's letters go to the store, those on show to the program.
    Store({{names[3], u"SEGOE ui"_s}});
    Open();
    QTest::keyClick(dialog.get(), Qt::Key_Return);
    EXPECT_EQ(Stored().value(3) + u'/' + FontName, u"Segoe UI/SEGOE ui"_s);
}

TEST_F(OptionsDialog, DefaultsAreStoredAtOnceAndShownButNotInForce)
{
    Open(); // without any key
    ChooseOthers();
    In<QPushButton>(*dialog, "btnDefault").setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); // a button that has the focus comes before OK
    const QStringList defaults{u"1"_s, u"1"_s, u"30"_s, u"Segoe UI"_s, u"-16777211"_s, u"65535"_s};
    EXPECT_EQ(Stored(), defaults);
    EXPECT_EQ(Shown(*dialog), u"0 1 30 Segoe UI/2 ff000005 ffff"_s);
    EXPECT_TRUE(dialog->isVisible());
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_EQ(Stored(), defaults);
    EXPECT_EQ(Memory(), u"0 0 0 before 0 0"_s);
}

TEST_F(OptionsDialog, TheStartListIsWrittenWhenTheFocusMoves)
{
    const QString command = u'"' + program + u'"';
    struct Row
    {
        const char *rule;
        bool wasStarted;
        QString steps; ///< f: focus comes, t: the box is ticked, a: focus goes; E, C, K and X end the dialog
        QStringList commands;
    };
    const QString no = u"none"_s;
    const Row rows[] = {
        {"ClickedAndLeft", false, u"ftaC"_s, {u""_s, u""_s, command, command}},
        {"LeftByCancel", false, u"ftC"_s, {u""_s, u""_s, command}},
        {"LeftByEscape", false, u"ftE"_s, {u""_s, u""_s, command}},
        {"LeftByEnter", true, u"ftK"_s, {command, command, u""_s}},
        {"LeftByTheCloseBox", true, u"ftX"_s, {command, command, u""_s}},
        {"PassedThrough", true, u"faE"_s, {command, command, command}},
        {"NotTouched", true, u"K"_s, {no}},
    };
    const QMap<QChar, Qt::Key> keys{
        {u't', Qt::Key_Space}, {u'a', Qt::Key_Tab}, {u'E', Qt::Key_Escape}, {u'K', Qt::Key_Return}};
    for (const Row &row : rows) {
        QFile::remove(scratch.Path(u"autostart/Kelora.desktop"_s));
        Store(Complete());
        kelora->vStartWin = row.wasStarted;
        Open();
        In<QTabWidget>(*dialog, "pgOptions").setCurrentIndex(1);
        auto &box = In<QCheckBox>(*dialog, "cbStartWin");
        EXPECT_EQ(box.isChecked(), row.wasStarted) << row.rule;
        QStringList commands;
        for (const QChar step : row.steps) {
            if (step == u'f')
                box.setFocus();
            else if (step == u'C')
                Click("btnCancel");
            else if (step == u'X')
                dialog->close();
            else
                QTest::keyClick(QApplication::focusWidget(), keys.value(step));
            commands.append(StartCommand());
        }
        EXPECT_EQ(commands, row.commands) << row.rule;
        EXPECT_FALSE(dialog->isVisible()) << row.rule;
        EXPECT_EQ(kelora->vStartWin, row.wasStarted) << row.rule;
    }
    QFile::remove(scratch.Path(u"autostart/Kelora.desktop"_s));
    FailingDisk failing(1, FailingDisk::Lasting::ForGood);
    disk = &failing;
    Open();
    In<QTabWidget>(*dialog, "pgOptions").setCurrentIndex(1);
    In<QCheckBox>(*dialog, "cbStartWin").setFocus();
    dialog->close();
    EXPECT_TRUE(failing.Fired());
    EXPECT_EQ(boxes, QStringList()) << "a list that can't be written is passed over";
}

TEST_F(OptionsDialog, ItsSizeIsFixedAndGrowsWithTheLetters)
{
    for (const int language : {0, 1, 2}) {
        InterfaceLang = language;
        Open();
        EXPECT_EQ(dialog->size(), QSize(394, 372));
        EXPECT_EQ(dialog->minimumSize(), dialog->maximumSize());
        EXPECT_LE((dialog->geometry().center() - dialog->screen()->availableGeometry().center()).manhattanLength(), 40);
        EXPECT_TRUE(In<QWidget>(*dialog, "cbFontName").hasFocus());
        const bool isEnglish = language == 1;
        EXPECT_EQ(In<TdxLayoutItem>(*dialog, "lcFormatItemBgColor").Caption(),
                  isEnglish ? u"Background color"_s : u"Màu nền văn bản"_s);
        EXPECT_EQ(In<QWidget>(*dialog, "ccbSeachHighlightColor").accessibleName(),
                  isEnglish ? u"Highlight color"_s : u"Màu kết quả tìm kiếm"_s);
        EXPECT_EQ(In<QCheckBox>(*dialog, "cbStartWin").text(),
                  isEnglish ? u"Start with Windows"_s : u"Khởi động cùng Windows"_s);
        EXPECT_EQ(In<TdxLayoutItem>(*dialog, "lcSystemItemSecondPerNo").Caption(),
                  isEnglish ? u"second/1"_s : u"phút/1 lần"_s);
        EXPECT_TRUE(In<QWidget>(*dialog, "lcSystemGroup1").isHidden());
        QFont large = dialog->font();
        large.setPointSizeF(large.pointSizeF() * 1.5);
        dialog->setFont(large);
        EXPECT_TRUE(WaitFor([&] { return dialog->height() >= 540; })) << dialog->height();
    }
}

namespace {

class OptionsCommand : public ReaderWindow
{
protected:
    void Ask(const char *command, const std::function<void(TfrmOptions &)> &inside)
    {
        RunModal<TfrmOptions>(command, [&](TfrmOptions &dialog) {
            inside(dialog);
            EXPECT_FALSE(dialog.isVisible());
        });
    }
};

} // namespace

TEST_F(OptionsCommand, ThePageFollowsAtOnceAfterOKAlone)
{
    Doors().fontNames = [] { return QStringList{u"Alpha"_s, u"Segoe UI"_s}; };
    StoreDefaults(1, 1102, 2);
    Start();
    EXPECT_TRUE(WaitPage());
    EXPECT_EQ(Browser().Source(), "Segoe UI");
    int pages = 0;
    const auto change = std::exchange(window->dsKeloraContent.OnDataChange, nullptr);
    window->dsKeloraContent.OnDataChange = [&] {
        ++pages;
        change();
    };
    const auto press = [](QWidget &dialog, Qt::Key key) { QTest::keyClick(&dialog, key); };
    Ask("acOption", [&](TfrmOptions &dialog) { press(dialog, Qt::Key_Return); });
    EXPECT_EQ(pages, 1) << "unchanged values compose the page, too";
    const auto choose = [](TfrmOptions &dialog) {
        In<QComboBox>(dialog, "cbFontName").setCurrentIndex(0);
        In<TcxColorComboBox>(dialog, "ccbBgColor").SetColorValue(0x00302010);
        In<TcxColorComboBox>(dialog, "ccbSeachHighlightColor").SetColorValue(0x00000080);
    };
    Ask("acOptionFormat", [&](TfrmOptions &dialog) {
        choose(dialog);
        press(dialog, Qt::Key_Escape);
    });
    EXPECT_EQ(pages, 1);
    EXPECT_EQ(Browser().Source(), "Segoe UI");
    Ask("acOptionFormat", [&](TfrmOptions &dialog) {
        choose(dialog);
        Action("acOption").trigger(); // the tray's menu still works
        EXPECT_EQ(window->findChildren<TfrmOptions *>().size(), 1);
        press(dialog, Qt::Key_Return);
    });
    EXPECT_EQ(pages, 2);
    EXPECT_EQ(Browser().Source(), "Alpha");
    EXPECT_TRUE(Browser().HostCSS().startsWith(u"body {background-color: #102030}"_s));
    EXPECT_EQ(kelora->vHighlightColor, 0x80U);
    CheckBoxes({});
}

TEST_F(OptionsCommand, SpeaksTheInterfacesLanguage)
{
    AddEnglish();
    for (const bool isEnglish : {false, true}) {
        StoreDefaults(1, 1101, 1, isEnglish);
        Start();
        Ask("acOption", [&](TfrmOptions &dialog) {
            const auto &pages = In<TcxPageControl>(dialog, "pgOptions");
            QStringList shown{dialog.windowTitle(), pages.tabText(0), pages.tabText(1)};
            auto &opening = In<QComboBox>(dialog, "cbOpenSutta");
            for (int row = 0; row < opening.count(); ++row)
                shown.append(opening.itemText(row));
            shown.append(In<TcxColorComboBox>(dialog, "ccbBgColor").OtherColorCaption());
            for (const char *name : {"btnDefault", "btnOK", "btnCancel"})
                shown.append(In<QPushButton>(dialog, name).text());
            EXPECT_EQ(shown.join(u'|'),
                      isEnglish ? u"Options|Display|System|Last passage|Random passage|No choice|Other color...|"
                                  "&Default|&OK|&Cancel"_s
                                : u"Tùy chọn|  Hiển thị  |  Hệ thống  |Bài kinh sau cùng|Bài kinh ngẫu nhiên|"
                                  "Không tùy chọn|Màu khác...|&Mặc định|Đồ&ng ý|&Bỏ qua"_s);
            EXPECT_EQ(pages.currentIndex(), 0);
            QTest::keyClick(&In<QWidget>(dialog, "ccbBgColor"), Qt::Key_Tab, Qt::ControlModifier);
            EXPECT_EQ(pages.currentIndex(), 1);
            EXPECT_TRUE(opening.isVisible());
            dialog.close();
        });
        End();
    }
    CheckBoxes({});
}

TEST(FontNames, HoldEachUsableNameOnceAndTheStandInsToo)
{
    InstallFontSubstitutes();
    const QStringList fonts = Doors().fontNames();
    EXPECT_TRUE(fonts.contains(u"Noto Sans"_s));
    EXPECT_EQ(fonts.count(u"Segoe UI"_s), 1);
    QStringList sorted = fonts;
    sorted.removeDuplicates();
    sorted.sort(Qt::CaseInsensitive);
    EXPECT_EQ(fonts, sorted);
    for (const QString &font : fonts)
        EXPECT_FALSE(font.contains(u'[') || font.startsWith(u'.')) << qPrintable(font);
}
