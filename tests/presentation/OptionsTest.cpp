#include "presentation/Options.h"

#include "reader/ReaderWindow.h"
#include "support/FailingDisk.h"
#include "support/WaitFor.h"
#include "toolkit/BrowserControl.h"
#include "toolkit/ColorComboBox.h"
#include "toolkit/CxPageControl.h"
#include "toolkit/FontNameComboBox.h"
#include "toolkit/Fonts.h"
#include "toolkit/LayoutItem.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QPushButton>
#include <QScreen>
#include <QSpinBox>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace {

/// The dialog and the values of its key, which is missing at first.
class OptionsDialog : public ReaderWindow
{
protected:
    void SetUp() override
    {
        Doors().fontNames = [] { return QStringList{u"Alpha"_s, u"Beta Sans"_s, u"Segoe UI"_s}; };
        Start();
        Forget();
        ClearMemory();
    }
    void ClearMemory()
    {
        FontName = u"before"_s;
        kelora->vOpenSutta = kelora->vPopupTime = kelora->vPopupActive = 0;
        kelora->vBgColor = kelora->vHighlightColor = 0;
    }
    void Forget() { QDir(settings.Path(u"config"_s)).removeRecursively(); }
    void Store(const QVariantList &values)
    {
        for (int i = 0; i < values.size(); ++i)
            if (values[i].isValid())
                ReaderWindow::Store(names[i], values[i]);
    }
    QStringList Stored()
    {
        QStringList values;
        for (const QString &name : names)
            values.append(ReaderWindow::Stored(name).toString());
        return values;
    }
    /// What the six controls show: item, tick, number, font's text and item, colours.
    static QString Shown(QWidget &dialog)
    {
        QString shown;
        const auto &font = In<TcxFontNameComboBox>(dialog, "cbFontName");
        QTextStream(&shown) << In<QComboBox>(dialog, "cbOpenSutta").currentIndex() << ' '
                            << In<QCheckBox>(dialog, "cbPopupActive").isChecked() << ' '
                            << In<QSpinBox>(dialog, "sePopupTime").value() << ' ' << font.Text() << '/'
                            << font.ItemIndex() << Qt::hex << ' '
                            << In<TcxColorComboBox>(dialog, "ccbBgColor").ColorValue() << ' '
                            << In<TcxColorComboBox>(dialog, "ccbSeachHighlightColor").ColorValue();
        return shown;
    }
    QString Memory() const
    {
        QString memory;
        QTextStream(&memory) << kelora->vOpenSutta << ' ' << int(kelora->vPopupActive) << ' ' << kelora->vPopupTime
                             << ' ' << FontName << Qt::hex << ' ' << kelora->vBgColor << ' ' << kelora->vHighlightColor;
        return memory;
    }
    void Open()
    {
        dialog = std::make_unique<TfrmOptions>();
        dialog->show();
        dialog->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }
    /// Chooses other values than the complete key has.
    static void ChooseOthers(QWidget &dialog)
    {
        In<QComboBox>(dialog, "cbOpenSutta").setCurrentIndex(2);
        In<QCheckBox>(dialog, "cbPopupActive").setChecked(false);
        In<QSpinBox>(dialog, "sePopupTime").setValue(240);
        In<QComboBox>(dialog, "cbFontName").setCurrentIndex(0);
        In<TcxColorComboBox>(dialog, "ccbBgColor").SetColorValue(0x00302010);
        In<TcxColorComboBox>(dialog, "ccbSeachHighlightColor").SetColorValue(0x00000080);
    }

    const QStringList names{u"OpenSutta"_s, u"PopupActive"_s, u"PopupTime"_s,
                            u"FontName"_s,  u"BgColor"_s,     u"SeachHighlightColor"_s};
    const QVariantList complete{2, 1, 7, u"Beta Sans"_s, 0x00FF0000, 0x00123456};
    std::unique_ptr<TfrmOptions> dialog;
};

} // namespace

TEST_F(OptionsDialog, ShowsWhatIsStoredUpToTheFirstBadValue)
{
    constexpr int none = -1, noKey = -2;
    const QString designed = u"-1 0 1 /-1 ff000005 ffff"_s;
    // Which value of a complete key is changed, to what (invalid: it is missing), and what the dialog shows.
    const std::tuple<int, QVariant, QString> rows[]{{noKey, {}, designed},
                                                    {none, {}, u"1 1 7 Beta Sans/1 ff0000 123456"_s},
                                                    {2, u"7"_s, u"1 1 1 /-1 ff000005 ffff"_s},
                                                    {3, {}, u"1 1 7 /-1 ff0000 123456"_s},
                                                    {3, 5, u"1 1 7 /-1 ff000005 ffff"_s},
                                                    {5, {}, u"1 1 7 Beta Sans/1 ff0000 ffff"_s},
                                                    {0, 5, u"-1 1 7 Beta Sans/1 ff0000 123456"_s},
                                                    {2, 0, u"1 1 1 Beta Sans/1 ff0000 123456"_s},
                                                    {2, 1 << 30, u"1 1 240 Beta Sans/1 ff0000 123456"_s},
                                                    {3, u"\"><b>Ghost"_s, u"1 1 7 \"><b>Ghost/-1 ff0000 123456"_s},
                                                    {3, u"BETA sans"_s, u"1 1 7 BETA sans/1 ff0000 123456"_s},
                                                    {5, -1, u"1 1 7 Beta Sans/1 ff0000 ffffffff"_s}};
    for (const auto &[changed, value, shown] : rows) {
        Forget();
        QVariantList values = changed == noKey ? QVariantList() : complete;
        if (changed >= 0)
            values[changed] = value;
        Store(values);
        EXPECT_EQ(Shown(*std::make_unique<TfrmOptions>()), shown) << changed;
    }
    CheckBoxes({});
}

TEST_F(OptionsDialog, OKStoresInOrderAndAFailedWriteLeavesTheDialogOpen)
{
    const QStringList old{u"2"_s, u"1"_s, u"7"_s, u"Beta Sans"_s, u"16711680"_s, u"1193046"_s};
    const QStringList chosen{u"3"_s, u"0"_s, u"240"_s, u"Alpha"_s, u"3153936"_s, u"128"_s};
    QSet<int> parts;
    for (int n = 1, fired = 1; fired; ++n) {
        Store(complete);
        Open();
        ChooseOthers(*dialog);
        FailingDisk failing(n);
        disk = &failing;
        QTest::mouseClick(&In<QPushButton>(*dialog, "btnOK"), Qt::LeftButton);
        disk = &RealSettingsDisk();
        fired = failing.Fired();
        const QStringList stored = Stored();
        EXPECT_EQ(dialog->isVisible(), boxes.size() == 1);
        EXPECT_EQ(Memory(), boxes.isEmpty() ? u"3 0 240 Alpha 302010 80"_s : u"0 0 0 before 0 0"_s);
        int written = 0;
        while (written < stored.size() && stored[written] == chosen[written])
            ++written;
        EXPECT_EQ(stored.mid(written), old.mid(written)) << n;
        // All, or nothing where the key can't be opened.
        EXPECT_TRUE(!boxes.isEmpty() || written == 0 || written == 6) << n;
        parts += written;
        ClearMemory();
        boxes.clear();
    }
    EXPECT_EQ(parts.size(), 7);
}

TEST_F(OptionsDialog, AFontThatTheSystemLacksIsNotStored)
{
    Store({2, 1, 7, u"Ghost"_s, 0, 0});
    Open();
    QTest::keyClick(dialog.get(), Qt::Key_Return);
    CheckBoxes({{u"Lumivara 1.0"_s, u"List index out of bounds (-1)"_s}});
    EXPECT_EQ(Stored().value(3) + u'/' + FontName, u"Ghost/before"_s);
    QTest::keyClick(&In<QComboBox>(*dialog, "cbFontName"), Qt::Key_B);
    QTest::keyClick(dialog.get(), Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(Stored().value(3) + u'/' + FontName, u"Beta Sans/Beta Sans"_s);

    // The list's letters go to the store, those on show to the program.
    ReaderWindow::Store(names[3], u"SEGOE ui"_s);
    Open();
    QTest::keyClick(dialog.get(), Qt::Key_Return);
    EXPECT_EQ(Stored().value(3) + u'/' + FontName, u"Segoe UI/SEGOE ui"_s);
}

TEST_F(OptionsDialog, DefaultsAreStoredAtOnceAndShownButNotInForce)
{
    Open(); // without any key
    ChooseOthers(*dialog);
    In<QPushButton>(*dialog, "btnDefault").setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); // a button that has the focus comes before OK
    EXPECT_EQ(Shown(*dialog), u"0 1 30 Segoe UI/2 ff000005 ffff"_s);
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_EQ(Stored(), (QStringList{u"1"_s, u"1"_s, u"30"_s, u"Segoe UI"_s, u"-16777211"_s, u"65535"_s}));
    EXPECT_EQ(Memory(), u"0 0 0 before 0 0"_s);
}

TEST_F(OptionsDialog, TheStartListIsWrittenWhenTheFocusMoves)
{
    QFile entry(settings.Path(u"autostart/Kelora.desktop"_s));
    const auto open = [&] {
        Open();
        In<QTabWidget>(*dialog, "pgOptions").setCurrentIndex(1);
        return &In<QCheckBox>(*dialog, "cbStartWin");
    };
    // Steps: the focus comes (f), the box is ticked (t), the focus goes (a), the dialog ends (E, K). After each the
    // entry is missing (-), starts nothing (0) or the program (1).
    const std::tuple<QString, bool, QString> rows[]{
        {u"ftaE"_s, false, u"0011"_s}, {u"ftK"_s, true, u"110"_s}, {u"faE"_s, true, u"111"_s}, {u"K"_s, true, u"-"_s}};
    const QMap<QChar, Qt::Key> keys{
        {u't', Qt::Key_Space}, {u'a', Qt::Key_Tab}, {u'E', Qt::Key_Escape}, {u'K', Qt::Key_Return}};
    for (const auto &[steps, wasStarted, expected] : rows) {
        entry.remove();
        Store(complete);
        kelora->vStartWin = wasStarted;
        QCheckBox *box = open();
        QString entries;
        for (const QChar step : steps) {
            if (step == u'f')
                box->setFocus();
            else
                QTest::keyClick(QApplication::focusWidget(), keys.value(step));
            const bool isThere = entry.open(QIODevice::ReadOnly);
            entries += !isThere ? u'-' : entry.readAll().contains(program.toUtf8()) ? u'1' : u'0';
            entry.close();
        }
        EXPECT_EQ(entries, expected) << qPrintable(steps);
        EXPECT_EQ(kelora->vStartWin, wasStarted) << qPrintable(steps);
    }
    FailingDisk failing(1, FailingDisk::Lasting::ForGood);
    disk = &failing;
    open()->setFocus();
    dialog->close();
    disk = &RealSettingsDisk();
    EXPECT_TRUE(failing.Fired());
    CheckBoxes({}); // a list that can't be written is passed over
}

TEST_F(OptionsDialog, ItsSizeIsFixedAndGrowsWithTheLetters)
{
    Open();
    EXPECT_EQ(dialog->size(), QSize(394, 372));
    EXPECT_EQ(dialog->minimumSize(), dialog->maximumSize());
    EXPECT_LE((dialog->geometry().center() - dialog->screen()->availableGeometry().center()).manhattanLength(), 40);
    EXPECT_TRUE(In<QWidget>(*dialog, "cbFontName").hasFocus());
    EXPECT_TRUE(In<QWidget>(*dialog, "lcSystemGroup1").isHidden());
    QFont large = dialog->font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    dialog->setFont(large);
    EXPECT_TRUE(WaitFor([&] { return dialog->height() >= 540; })) << dialog->height();
}

TEST_F(OptionsDialog, ThePageFollowsAtOnceAfterOKAlone)
{
    StoreDefaults(1, 1102, 2);
    End();
    Start();
    EXPECT_TRUE(WaitPage());
    RunModal<TfrmOptions>("acOptionFormat", [&](TfrmOptions &open) {
        ChooseOthers(open);
        QTest::keyClick(&open, Qt::Key_Escape);
    });
    EXPECT_EQ(Browser().Source(), "Segoe UI");
    RunModal<TfrmOptions>("acOptionFormat", [&](TfrmOptions &open) {
        ChooseOthers(open);
        Action("acOption").trigger(); // the tray's menu still works
        EXPECT_EQ(window->findChildren<TfrmOptions *>().size(), 1);
        QTest::keyClick(&open, Qt::Key_Return);
    });
    EXPECT_EQ(Browser().Source(), "Alpha");
    EXPECT_TRUE(Browser().HostCSS().startsWith(u"body {background-color: #102030}"_s));
    CheckBoxes({});
}

TEST_F(OptionsDialog, SpeaksTheInterfacesLanguage)
{
    AddEnglish();
    for (const bool isEnglish : {false, true}) {
        End();
        StoreDefaults(1, 1101, 1, isEnglish);
        Start();
        RunModal<TfrmOptions>("acOption", [&](TfrmOptions &open) {
            const auto &pages = In<TcxPageControl>(open, "pgOptions");
            QStringList shown{open.windowTitle(), pages.tabText(0), pages.tabText(1)};
            auto &opening = In<QComboBox>(open, "cbOpenSutta");
            for (int row = 0; row < opening.count(); ++row)
                shown.append(opening.itemText(row));
            for (const char *name : {"btnDefault", "btnOK", "btnCancel", "cbStartWin"})
                shown.append(In<QAbstractButton>(open, name).text());
            for (const char *name : {"lcFormatItemBgColor", "lcSystemItemSecondPerNo"})
                shown.append(In<TdxLayoutItem>(open, name).Caption());
            shown += {In<TcxColorComboBox>(open, "ccbBgColor").OtherColorCaption(),
                      In<QWidget>(open, "ccbSeachHighlightColor").accessibleName()};
            EXPECT_EQ(shown.join(u'|'),
                      isEnglish ? u"Options|Display|System|Last passage|Random passage|No choice|&Default|&OK|&Cancel|"
                                  "Start with Windows|Background color|second/1|Other color...|Highlight color"_s
                                : u"Tùy chọn|  Hiển thị  |  Hệ thống  |Bài kinh sau cùng|Bài kinh ngẫu nhiên|"
                                  "Không tùy chọn|&Mặc định|Đồ&ng ý|&Bỏ qua|Khởi động cùng Windows|Màu nền văn bản|"
                                  "phút/1 lần|Màu khác...|Màu kết quả tìm kiếm"_s);
            QTest::keyClick(&In<QWidget>(open, "ccbBgColor"), Qt::Key_Tab, Qt::ControlModifier);
            EXPECT_EQ(pages.currentIndex(), 1);
        });
    }
    CheckBoxes({});
}

TEST(FontNames, HoldEachUsableNameOnceAndTheStandInsToo)
{
    InstallFontSubstitutes();
    const QStringList fonts = Doors().fontNames();
    EXPECT_TRUE(fonts.contains(u"Noto Sans"_s) && fonts.contains(u"Segoe UI"_s));
    QStringList sorted = fonts;
    sorted.removeDuplicates();
    sorted.sort(Qt::CaseInsensitive);
    EXPECT_EQ(fonts, sorted);
    EXPECT_FALSE(fonts.join(u'|').contains(u'[') || fonts.join(u'|').contains(u"|."_s));
}
