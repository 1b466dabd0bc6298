#include "reader/ReaderWindow.h"
#include "support/WaitFor.h"

#include "toolkit/BarCombo.h"
#include "toolkit/CxButton.h"

#include <QMenu>
#include <QToolButton>
#include <QWidgetAction>

namespace {

struct Row
{
    const char *name;
    const char *category;
    const char *caption;
    const char *shortcuts;
    const char *hint; ///< null where the caption serves
    bool enabled;
};

const Row rows[] = {
    {"acExit", "System", "Thoát", "", nullptr, true},
    {"acOption", "System", "Tùy chọn  ", "", nullptr, true},
    {"acOptionFormat", "Content", "Tùy chọn ...", "", nullptr, true},
    {"acAbout", "", "Giới thiệu ", "", nullptr, true},
    {"acFernwhistle", "System", "Thông tin cập nhật...", "", nullptr, true},
    {"acHelp", "System", "Hướng dẫn sử dụng", "", nullptr, true},
    {"acCopy", "Content", "Sao chép", "Ctrl+C", "Sao chép (copy) đoạn văn bản đang chọn", false},
    {"acFindDialog", "Content", "Tìm...", "Ctrl+F", "Tìm từ, ngữ, đoạn văn trong bài kinh", true},
    {"acSelectAll", "Content", "Chọn tất cả", "Ctrl+A", "Chọn tất cả văn bản", true},
    {"acPrint", "Content", "In...", "", "In văn bản đang hiển thị", true},
    {"acPrintPreview", "Content", "Xem trước khi in", "", "Xem văn bản trước khi in", true},
    {"acSave", "Content", "Lưu...", "", "Lưu thành tập tin...", true},
    {"acZoomIn", "Content", "Phóng to", "", "Hiển thị với phông chữ lớn hơn", true},
    {"acZoomOut", "Content", "Thu nhỏ", "", "Hiển thị với phông chữ nhỏ hơn", true},
    {"acMarginWidth0", "Content", "0", "", nullptr, true},
    {"acMarginWidth1", "Content", "1", "", nullptr, true},
    {"acMarginWidth2", "Content", "2", "", nullptr, true},
    {"acMarginWidth3", "Content", "3", "", nullptr, true},
    {"acFocusHighlight", "Content", "Đánh dấu đoạn kinh quan trọng", "", nullptr, false},
    {"acGetWord", "Content", "Xem từ điển...", "", nullptr, false},
    {"acSearchSutas", "Feature", "Tìm kiếm ", "F2; Ctrl+Shift+F", nullptr, true},
    {"acDictionary", "Feature", "Từ điển  ", "", nullptr, false},
    {"acOrganization", "Feature", " Đánh dấu  ", "", nullptr, false},
    {"acNotes", "Feature", "Ghi chép  ", "", nullptr, true},
    {"acExpandTree", "TreeSutas", "Mở rộng", "", nullptr, true},
    {"acCollapseTree", "TreeSutas", "Thu gọn", "", nullptr, true},
    {"acNamePAL", "TreeSutas", "Pāli", "", nullptr, true},
    {"acNameVIE", "TreeSutas", "Việt", "", nullptr, true},
    {"acNameENG", "TreeSutas", "Anh", "", nullptr, true},
    {"acNameVietPali", "TreeSutas", "acNameVietPali", "", nullptr, true},
    {"acOtherTranslate", "Content", "Bản dịch khác...", "", nullptr, false},
    {"acPaliContent", "Content", "Pali", "", nullptr, false},
    {"acEngContent", "Content", "English", "", nullptr, false},
    {"acVietContent", "Content", "Việt", "", nullptr, false},
    {"acDN", "", "acDN", "", nullptr, false},
    {"acMN", "", "acMN", "", nullptr, false},
    {"acAN", "", "acAN", "", nullptr, false},
    {"acSN", "", "acSN", "", nullptr, false},
    {"acKN", "", "acKN", "", nullptr, false},
};

struct Menu
{
    const char *name;
    QList<const char *> items; ///< "/" for a separator
};

const Menu menus[] = {
    {"bsiSystem", {"bsiSkins", "bsiLanguage", "/", "acOption", "/", "acHelp", "acFernwhistle", "/", "acAbout"}},
    {"ppMainTray", {"acOption", "/", "acAbout", "acHelp", "acFernwhistle", "/", "acExit"}},
    {"ppContent",
     {"acFindDialog", "/", "acCopy", "acSelectAll", "/", "acPrint", "acPrintPreview", "acSave", "/", "acZoomIn",
      "acZoomOut", "bsiMarginWidth", "/", "acOptionFormat", "/", "acFocusHighlight", "acGetWord"}},
    {"bsiMarginWidth", {"acMarginWidth0", "acMarginWidth1", "acMarginWidth2", "acMarginWidth3"}},
    {"ppTreeKelora", {"bsiViewTreeName", "/", "acExpandTree", "acCollapseTree"}},
    {"bsiViewTreeName", {"bTreeNamePAL", "bTreeNameVIE"}},
    {"ppMarginWidth", {"acMarginWidth0", "acMarginWidth1", "acMarginWidth2", "acMarginWidth3"}},
};

struct Button
{
    const char *name;
    const char *text;
    const char *hint;
};

const Button buttons[] = {
    {"btnFindDialog", "", "Tìm từ, ngữ, đoạn văn trong bài kinh"},
    {"btnCopy", "", "Sao chép (copy) đoạn văn bản đang chọn"},
    {"btnSelectAll", "", "Chọn tất cả văn bản"},
    {"btnPrint", "", "In văn bản đang hiển thị"},
    {"btnPrintPreview", "", "Xem văn bản trước khi in"},
    {"btnSave", "", "Lưu thành tập tin..."},
    {"btnZoomIn", "", "Hiển thị với phông chữ lớn hơn"},
    {"btnZoomOut", "", "Hiển thị với phông chữ nhỏ hơn"},
    {"btnMarginWidth", "0", "Độ rộng lề"},
    {"btnFocusHighlight", "Đánh dấu...", ""},
    {"btnPali", "", "Xem theo Tiếng Pali"},
    {"btnViet", "", "Xem theo Tiếng Việt"},
    {"btnVietPali", "", "Xem song ngữ Pali-Việt"},
};

class Commands : public ReaderWindow
{
protected:
    void SetUp() override
    {
        StoreDefaults(1, 1101);
        Start();
    }
};

} // namespace

TEST_F(Commands, AreAllThereWithCaptionShortcutHintCategoryAndPicture)
{
    for (const Row &row : rows) {
        const QAction &action = Action(row.name);
        EXPECT_EQ(action.property("Category").toString().toStdString(), row.category) << row.name;
        EXPECT_EQ(action.text().toStdString(), row.caption) << row.name;
        EXPECT_EQ(QKeySequence::listToString(action.shortcuts()).toStdString(), row.shortcuts) << row.name;
        EXPECT_EQ(action.isEnabled(), row.enabled) << row.name;
        EXPECT_FALSE(action.icon().pixmap(32).isNull()) << row.name;
        if (row.hint) {
            EXPECT_EQ(action.toolTip().toStdString(), row.hint) << row.name;
        }
    }
}

TEST_F(Commands, NoShortcutHasTwoMeanings)
{
    QStringList seen;
    for (const QAction *action : window->findChildren<QAction *>()) {
        for (const QKeySequence &shortcut : action->shortcuts()) {
            EXPECT_FALSE(seen.contains(shortcut.toString())) << shortcut.toString().toStdString();
            seen.append(shortcut.toString());
        }
    }
    EXPECT_EQ(seen.size(), 5);
}

TEST_F(Commands, MenusHoldTheirItemsInOrder)
{
    for (const Menu &menu : menus) {
        QStringList items, expected;
        for (const QAction *action : Find<QMenu>(menu.name).actions())
            items.append(action->isSeparator() ? QStringLiteral("/")
                         : action->menu()      ? action->menu()->objectName()
                                               : action->objectName());
        for (const char *item : menu.items)
            expected.append(QLatin1StringView(item));
        EXPECT_EQ(items, expected) << menu.name;
    }
}

TEST_F(Commands, SubmenusHaveTheirCaptions)
{
    const std::pair<const char *, const char *> captions[] = {
        {"bsiSystem", "Hệ thống"},
        {"bsiSkins", "Giao diện"},
        {"bsiLanguage", "Ngôn ngữ"},
        {"bsiMarginWidth", "Độ rộng lề"},
        {"bsiViewTreeName", "Hiển thị tên bài kinh theo tiếng"},
    };
    for (const auto &[name, caption] : captions)
        EXPECT_EQ(Find<QMenu>(name).title().toStdString(), caption);
    EXPECT_EQ(Action("bTreeNamePAL").text().toStdString(), "Pāli");
    EXPECT_EQ(Action("bTreeNameVIE").text().toStdString(), "Việt");
}

TEST_F(Commands, CombosStandInTheirSubmenus)
{
    const std::pair<const char *, const char *> combos[] = {{"bsiSkins", "bcbInterface"},
                                                            {"bsiLanguage", "bcbLanguage"}};
    for (const auto &[menu, combo] : combos) {
        const QList<QAction *> items = Find<QMenu>(menu).actions();
        ASSERT_EQ(items.size(), 1) << menu;
        const auto *item = qobject_cast<QWidgetAction *>(items.first());
        ASSERT_TRUE(item) << menu;
        EXPECT_TRUE(item->defaultWidget()->findChild<TBarCombo *>(QLatin1StringView(combo))) << combo;
    }
    EXPECT_EQ(Find<TBarCombo>("bcbInterface").maxVisibleItems(), 28);
}

TEST_F(Commands, ButtonsHaveTheirTextsAndHints)
{
    for (const Button &button : buttons) {
        const TcxButton &found = Find<TcxButton>(button.name);
        EXPECT_EQ(found.text().toStdString(), button.text) << button.name;
        EXPECT_EQ(found.toolTip().toStdString(), button.hint) << button.name;
        EXPECT_FALSE(found.icon().isNull()) << button.name;
        EXPECT_FALSE(found.accessibleName().isEmpty() && found.text().isEmpty()) << button.name;
        EXPECT_EQ(found.ShowHint(), std::string(button.name) != "btnVietPali") << button.name;
    }
}

TEST_F(Commands, LargeButtonsShareTheirActions)
{
    const std::pair<const char *, const char *> large[] = {
        {"lbOrganization", "acOrganization"},
        {"lbDictionary", "acDictionary"},
        {"lbSearchSutas", "acSearchSutas"},
        {"lbOptions", "acOption"},
        {"lbHelp", "acHelp"},
    };
    for (const auto &[button, action] : large)
        EXPECT_EQ(Find<QToolButton>(button).defaultAction(), &Action(action)) << button;
    EXPECT_EQ(Find<QToolButton>("lbHelp").toolButtonStyle(), Qt::ToolButtonIconOnly);
}

TEST_F(Commands, NotesDoNothing)
{
    Trigger("acNotes");
    CheckBoxes({});
}

TEST_F(Commands, NothingIsClippedInTheSmallestWindow)
{
    window->showNormal();
    window->resize(window->minimumSize());
    ASSERT_TRUE(WaitFor([this] { return window->size() == QSize(800, 600); }));
    for (const QToolButton *button : window->findChildren<QToolButton *>()) {
        if (!button->isVisible() || !button->objectName().startsWith(QLatin1StringView("btn")))
            continue;
        EXPECT_GE(button->width(), button->sizeHint().width()) << button->objectName().toStdString();
        const QRect inWindow(button->mapTo(window.get(), QPoint()), button->size());
        EXPECT_TRUE(window->rect().contains(inWindow)) << button->objectName().toStdString();
    }
}
