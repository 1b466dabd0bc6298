#include "reader/ReaderWindow.h"

#include "toolkit/controls/BarCombo.h"

#include <QWidgetAction>

using namespace Qt::StringLiterals;

namespace {

enum Enabled { Always, WithSelection, Never };

/// A command of the window; with a hint of its own where the caption does not serve.
struct Command
{
    const char *name, *category, *caption;
    Enabled enabled = Always;
    const char *shortcuts = "", *hint = "";
};

// Without marks, a dictionary or another collection some can never be called.
const Command commands[]{
    {"acExit", "System", "Thoát"},
    {"acOption", "System", "Tùy chọn  "},
    {"acFernwhistle", "System", "Thông tin cập nhật..."},
    {"acHelp", "System", "Hướng dẫn sử dụng"},
    {"acOptionFormat", "Content", "Tùy chọn ..."},
    {"acSave", "Content", "Lưu...", Always, "", "Lưu thành tập tin..."},
    {"acGetWord", "Content", "Xem từ điển...", Never},
    {"acPaliContent", "Content", "Pali", Never},
    {"acEngContent", "Content", "English", Never},
    {"acVietContent", "Content", "Việt", Never},
    {"acCopy", "Content", "Sao chép", WithSelection, "Ctrl+C", "Sao chép (copy) đoạn văn bản đang chọn"},
    {"acFindDialog", "Content", "Tìm...", Always, "Ctrl+F", "Tìm từ, ngữ, đoạn văn trong bài kinh"},
    {"acSelectAll", "Content", "Chọn tất cả", Always, "Ctrl+A", "Chọn tất cả văn bản"},
    {"acPrint", "Content", "In...", Always, "", "In văn bản đang hiển thị"},
    {"acPrintPreview", "Content", "Xem trước khi in", Always, "", "Xem văn bản trước khi in"},
    {"acZoomIn", "Content", "Phóng to", Always, "", "Hiển thị với phông chữ lớn hơn"},
    {"acZoomOut", "Content", "Thu nhỏ", Always, "", "Hiển thị với phông chữ nhỏ hơn"},
    {"acFocusHighlight", "Content", "Đánh dấu đoạn kinh quan trọng", Never},
    {"acOtherTranslate", "Content", "Bản dịch khác...", Never},
    {"acMarginWidth0", "Content", "0"},
    {"acMarginWidth1", "Content", "1"},
    {"acMarginWidth2", "Content", "2"},
    {"acMarginWidth3", "Content", "3"},
    {"acDictionary", "Feature", "Từ điển  ", Never},
    {"acOrganization", "Feature", " Đánh dấu  ", Never},
    {"acNotes", "Feature", "Ghi chép  "},
    {"acSearchSutas", "Feature", "Tìm kiếm ", Always, "F2; Ctrl+Shift+F"},
    {"acExpandTree", "TreeSutas", "Mở rộng"},
    {"acCollapseTree", "TreeSutas", "Thu gọn"},
    {"acNamePAL", "TreeSutas", "Pāli"},
    {"acNameVIE", "TreeSutas", "Việt"},
    {"acNameENG", "TreeSutas", "Anh"},
    {"acNameVietPali", "TreeSutas", "acNameVietPali"},
    {"acAbout", "", "Giới thiệu "},
    {"acDN", "", "acDN", Never},
    {"acMN", "", "acMN", Never},
    {"acAN", "", "acAN", Never},
    {"acSN", "", "acSN", Never},
    {"acKN", "", "acKN", Never}};

/// Name, caption of a submenu, and the items, "/" for a separator.
const std::tuple<const char *, QString, QString> menus[] = {
    {"bsiSystem", u"Hệ thống"_s, u"bsiSkins bsiLanguage / acOption / acHelp acFernwhistle / acAbout"_s},
    {"ppMainTray", u""_s, u"acOption / acAbout acHelp acFernwhistle / acExit"_s},
    {"ppContent", u""_s,
     u"acFindDialog / acCopy acSelectAll / acPrint acPrintPreview acSave / acZoomIn acZoomOut bsiMarginWidth"
     " / acOptionFormat / acFocusHighlight acGetWord"_s},
    {"bsiMarginWidth", u"Độ rộng lề"_s, u"acMarginWidth0 acMarginWidth1 acMarginWidth2 acMarginWidth3"_s},
    {"ppTreeKelora", u""_s, u"bsiViewTreeName / acExpandTree acCollapseTree"_s},
    {"bsiRecent", u"Các bài vừa xem"_s, u""_s},
    {"bsiViewTreeName", u"Hiển thị tên bài kinh theo tiếng"_s, u"bTreeNamePAL bTreeNameVIE"_s},
    {"ppMore", u""_s,
     u"acFindEverywhere / acBack acForward bsiRecent acReference acCopyReference acMarkSelection / acImport / "
     "acVelthuis acFollowDesktop acFullScreen acFoot / acKeys acWelcome"_s},
    {"ppMarginWidth", u""_s, u"acMarginWidth0 acMarginWidth1 acMarginWidth2 acMarginWidth3"_s},
    {"bsiSkins", u"Giao diện"_s, u"bcbInterface"_s},
    {"bsiLanguage", u"Ngôn ngữ"_s, u"bcbLanguage"_s},
};

/// Name, text and hint of the buttons that have their own.
const std::tuple<const char *, QString, QString> buttons[] = {{"btnMarginWidth", u"0"_s, u"Độ rộng lề"_s},
                                                              {"btnFocusHighlight", u"Đánh dấu..."_s, u""_s},
                                                              {"btnPali", u""_s, u"Xem theo Tiếng Pali"_s},
                                                              {"btnViet", u""_s, u"Xem theo Tiếng Việt"_s},
                                                              {"btnVietPali", u""_s, u"Xem song ngữ Pali-Việt"_s}};

class Commands : public ReaderWindow
{
protected:
    void SetUp() override { StartOn(); }
};

} // namespace

TEST_F(Commands, AreAllThereWithCaptionShortcutHintCategoryAndPicture)
{
    const auto check = [this](const char *state, Enabled most) {
        for (const auto &[name, category, caption, enabled, shortcuts, hint] : commands) {
            SCOPED_TRACE(std::string(name) + " while " + state);
            const QAction &action = Action(name);
            EXPECT_EQ(action.isEnabled(), enabled <= most);
            EXPECT_EQ(action.property("Category").toString().toStdString(), category);
            EXPECT_EQ(action.text().toStdString(), caption);
            EXPECT_EQ(QKeySequence::listToString(action.shortcuts()).toStdString(), shortcuts);
            EXPECT_TRUE(*hint == 0 || action.toolTip().toStdString() == hint) << qPrintable(action.toolTip());
            EXPECT_FALSE(action.icon().pixmap(32).isNull());
        }
    };
    check("nothing is selected", Always);
    EXPECT_TRUE(WaitPage());
    Browser().SelectAll();
    EXPECT_TRUE(WaitFor([this] { return Action("acCopy").isEnabled(); })) << "acCopy while all is selected";
    check("all is selected", WithSelection);
    QStringList seen;
    for (const QAction *action : window->findChildren<QAction *>()) {
        for (const QKeySequence &shortcut : action->shortcuts())
            seen.append(shortcut.toString());
    }
    EXPECT_EQ(seen.size(), 31);
    EXPECT_EQ(seen.removeDuplicates(), 0) << "a shortcut has two meanings";
}

TEST_F(Commands, MenusHoldTheirItemsInOrder)
{
    for (const auto &[name, caption, expected] : menus) {
        QStringList items;
        for (QAction *action : Find<QMenu>(name).actions()) {
            const auto *held = qobject_cast<QWidgetAction *>(action);
            items.append(held                    ? held->defaultWidget()->findChild<TBarCombo *>()->objectName()
                         : action->isSeparator() ? u"/"_s
                         : action->menu()        ? action->menu()->objectName()
                                                 : action->objectName());
        }
        EXPECT_EQ(items.join(u' ').toStdString(), expected.toStdString()) << name;
        EXPECT_EQ(Find<QMenu>(name).title().toStdString(), caption.toStdString()) << name;
    }
    EXPECT_EQ(Action("bTreeNamePAL").text() + Action("bTreeNameVIE").text(), u"PāliViệt"_s);
}

TEST_F(Commands, ButtonsHaveTheirTextsHintsAndActions)
{
    for (const auto &[name, text, hint] : buttons) {
        const TcxButton &found = Find<TcxButton>(name);
        EXPECT_EQ((found.text() + u'|' + found.toolTip()).toStdString(), (text + u'|' + hint).toStdString()) << name;
        EXPECT_FALSE(found.icon().isNull()) << name;
        EXPECT_EQ(found.ShowHint(), std::string(name) != "btnVietPali") << name;
    }
    for (const char *name : {"FindDialog", "Copy", "SelectAll", "Print", "PrintPreview", "Save", "ZoomIn", "ZoomOut"}) {
        const TcxButton &found = Find<TcxButton>(qPrintable(u"btn"_s + QLatin1StringView(name)));
        EXPECT_EQ(found.text() + found.toolTip(), Action(qPrintable(u"ac"_s + QLatin1StringView(name))).toolTip())
            << name;
    }
    for (const char *name : {"Organization", "Dictionary", "SearchSutas", "Help"})
        EXPECT_EQ(Find<QToolButton>(qPrintable(u"lb"_s + QLatin1StringView(name))).defaultAction(),
                  &Action(qPrintable(u"ac"_s + QLatin1StringView(name))))
            << name;
    EXPECT_EQ(Find<QToolButton>("lbOptions").defaultAction(), &Action("acOption"));
    EXPECT_EQ(Find<QToolButton>("lbHelp").toolButtonStyle(), Qt::ToolButtonIconOnly);
}
