#include "reader/ReaderWindow.h"

#include "toolkit/BarCombo.h"
#include "toolkit/CxButton.h"

#include <QMenu>
#include <QToolButton>
#include <QWidgetAction>

using namespace Qt::StringLiterals;

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
    const char *caption; ///< of a submenu
    QString items;       ///< parted by blanks, "/" for a separator
};

const Menu menus[] = {
    {"bsiSystem", "Hệ thống", u"bsiSkins bsiLanguage / acOption / acHelp acFernwhistle / acAbout"_s},
    {"ppMainTray", "", u"acOption / acAbout acHelp acFernwhistle / acExit"_s},
    {"ppContent", "",
     u"acFindDialog / acCopy acSelectAll / acPrint acPrintPreview acSave / acZoomIn acZoomOut bsiMarginWidth"
     " / acOptionFormat / acFocusHighlight acGetWord"_s},
    {"bsiMarginWidth", "Độ rộng lề", u"acMarginWidth0 acMarginWidth1 acMarginWidth2 acMarginWidth3"_s},
    {"ppTreeKelora", "", u"bsiViewTreeName / acExpandTree acCollapseTree"_s},
    {"bsiViewTreeName", "Hiển thị tên bài kinh theo tiếng", u"bTreeNamePAL bTreeNameVIE"_s},
    {"ppMarginWidth", "", u"acMarginWidth0 acMarginWidth1 acMarginWidth2 acMarginWidth3"_s},
    {"bsiSkins", "Giao diện", u"bcbInterface"_s},
    {"bsiLanguage", "Ngôn ngữ", u"bcbLanguage"_s},
};

struct Button
{
    const char *name;
    const char *action; ///< null where text and hint are its own
    const char *text;
    const char *hint;
};

const Button buttons[] = {
    {"btnFindDialog", "acFindDialog", "", ""},
    {"btnCopy", "acCopy", "", ""},
    {"btnSelectAll", "acSelectAll", "", ""},
    {"btnPrint", "acPrint", "", ""},
    {"btnPrintPreview", "acPrintPreview", "", ""},
    {"btnSave", "acSave", "", ""},
    {"btnZoomIn", "acZoomIn", "", ""},
    {"btnZoomOut", "acZoomOut", "", ""},
    {"btnMarginWidth", nullptr, "0", "Độ rộng lề"},
    {"btnFocusHighlight", nullptr, "Đánh dấu...", ""},
    {"btnPali", nullptr, "", "Xem theo Tiếng Pali"},
    {"btnViet", nullptr, "", "Xem theo Tiếng Việt"},
    {"btnVietPali", nullptr, "", "Xem song ngữ Pali-Việt"},
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
    QStringList seen;
    for (const QAction *action : window->findChildren<QAction *>()) {
        for (const QKeySequence &shortcut : action->shortcuts())
            seen.append(shortcut.toString());
    }
    EXPECT_EQ(seen.size(), 5);
    EXPECT_EQ(seen.removeDuplicates(), 0) << "a shortcut has two meanings";
}

TEST_F(Commands, MenusHoldTheirItemsInOrder)
{
    for (const Menu &menu : menus) {
        QStringList items;
        for (QAction *action : Find<QMenu>(menu.name).actions()) {
            const auto *held = qobject_cast<QWidgetAction *>(action);
            items.append(held                    ? held->defaultWidget()->findChild<TBarCombo *>()->objectName()
                         : action->isSeparator() ? u"/"_s
                         : action->menu()        ? action->menu()->objectName()
                                                 : action->objectName());
        }
        EXPECT_EQ(items.join(u' '), menu.items) << menu.name;
        EXPECT_EQ(Find<QMenu>(menu.name).title().toStdString(), menu.caption);
    }
    EXPECT_EQ(Action("bTreeNamePAL").text(), u"Pāli"_s);
    EXPECT_EQ(Action("bTreeNameVIE").text(), u"Việt"_s);
    EXPECT_EQ(Find<TBarCombo>("bcbInterface").maxVisibleItems(), 28);
}

TEST_F(Commands, ButtonsHaveTheirTextsAndHints)
{
    for (const Button &button : buttons) {
        const TcxButton &found = Find<TcxButton>(button.name);
        const QString hint = button.action ? Action(button.action).toolTip() : QString::fromUtf8(button.hint);
        EXPECT_EQ(found.text().toStdString(), button.text) << button.name;
        EXPECT_EQ(found.toolTip(), hint) << button.name;
        EXPECT_FALSE(found.icon().isNull()) << button.name;
        EXPECT_EQ(found.ShowHint(), std::string(button.name) != "btnVietPali") << button.name;
    }
}

TEST_F(Commands, LargeButtonsShareTheirActions)
{
    const std::pair<const char *, const char *> large[] = {{"lbOrganization", "acOrganization"},
                                                           {"lbDictionary", "acDictionary"},
                                                           {"lbSearchSutas", "acSearchSutas"},
                                                           {"lbOptions", "acOption"},
                                                           {"lbHelp", "acHelp"}};
    for (const auto &[button, action] : large)
        EXPECT_EQ(Find<QToolButton>(button).defaultAction(), &Action(action)) << button;
    EXPECT_EQ(Find<QToolButton>("lbHelp").toolButtonStyle(), Qt::ToolButtonIconOnly);
}
