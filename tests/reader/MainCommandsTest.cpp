#include "reader/ReaderWindow.h"

#include "toolkit/controls/BarCombo.h"

#include <QWidgetAction>

using namespace Qt::StringLiterals;

namespace {

/// Name, category, caption, shortcuts, hint if the caption does not serve, and "off" where nothing can be done yet.
const QString rows = QStringLiteral(
    "acExit|System|Thoát/acOption|System|Tùy chọn  /acFernwhistle|System|Thông tin cập nhật.../"
    "acHelp|System|Hướng dẫn sử dụng/"
    "acOptionFormat|Content|Tùy chọn .../acSave|Content|Lưu...||Lưu thành tập tin.../"
    "acGetWord|Content|Xem từ điển...|||off/acPaliContent|Content|Pali|||off/acEngContent|Content|English|||off/"
    "acVietContent|Content|Việt|||off/acCopy|Content|Sao chép|Ctrl+C|Sao chép (copy) đoạn văn bản đang chọn|off/"
    "acFindDialog|Content|Tìm...|Ctrl+F|Tìm từ, ngữ, đoạn văn trong bài kinh/"
    "acSelectAll|Content|Chọn tất cả|Ctrl+A|Chọn tất cả văn bản/acPrint|Content|In...||In văn bản đang hiển thị/"
    "acPrintPreview|Content|Xem trước khi in||Xem văn bản trước khi in/"
    "acZoomIn|Content|Phóng to||Hiển thị với phông chữ lớn hơn/"
    "acZoomOut|Content|Thu nhỏ||Hiển thị với phông chữ nhỏ hơn/"
    "acFocusHighlight|Content|Đánh dấu đoạn kinh quan trọng|||off/acOtherTranslate|Content|Bản dịch khác...|||off/"
    "acMarginWidth0|Content|0/acMarginWidth1|Content|1/acMarginWidth2|Content|2/acMarginWidth3|Content|3/"
    "acDictionary|Feature|Từ điển  |||off/acOrganization|Feature| Đánh dấu  |||off/acNotes|Feature|Ghi chép  /"
    "acSearchSutas|Feature|Tìm kiếm |F2; Ctrl+Shift+F/"
    "acExpandTree|TreeSutas|Mở rộng/acCollapseTree|TreeSutas|Thu gọn/acNamePAL|TreeSutas|Pāli/"
    "acNameVIE|TreeSutas|Việt/acNameENG|TreeSutas|Anh/acNameVietPali|TreeSutas|acNameVietPali/"
    "acAbout||Giới thiệu /acDN||acDN|||off/acMN||acMN|||off/acAN||acAN|||off/acSN||acSN|||off/acKN||acKN|||off");

/// Name, caption of a submenu, and the items, "/" for a separator.
const std::tuple<const char *, QString, QString> menus[] = {
    {"bsiSystem", u"Hệ thống"_s, u"bsiSkins bsiLanguage / acOption / acHelp acFernwhistle / acAbout"_s},
    {"ppMainTray", u""_s, u"acOption / acAbout acHelp acFernwhistle / acExit"_s},
    {"ppContent", u""_s,
     u"acFindDialog / acCopy acSelectAll / acPrint acPrintPreview acSave / acZoomIn acZoomOut bsiMarginWidth"
     " / acOptionFormat / acFocusHighlight acGetWord"_s},
    {"bsiMarginWidth", u"Độ rộng lề"_s, u"acMarginWidth0 acMarginWidth1 acMarginWidth2 acMarginWidth3"_s},
    {"ppTreeKelora", u""_s, u"bsiViewTreeName / acExpandTree acCollapseTree"_s},
    {"bsiViewTreeName", u"Hiển thị tên bài kinh theo tiếng"_s, u"bTreeNamePAL bTreeNameVIE"_s},
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
    for (const QString &row : rows.split(u'/')) {
        const QString name = row.section(u'|', 0, 0), hint = row.section(u'|', 4, 4);
        const QAction &action = Action(qPrintable(name));
        QString told = QStringList{name,
                                   action.property("Category").toString(),
                                   action.text(),
                                   QKeySequence::listToString(action.shortcuts()),
                                   hint.isEmpty() ? hint : action.toolTip(),
                                   action.isEnabled() ? QString() : u"off"_s}
                           .join(u'|');
        while (told.endsWith(u'|'))
            told.chop(1);
        EXPECT_EQ(told, row);
        EXPECT_FALSE(action.icon().pixmap(32).isNull()) << qPrintable(name);
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
    for (const auto &[name, caption, expected] : menus) {
        QStringList items;
        for (QAction *action : Find<QMenu>(name).actions()) {
            const auto *held = qobject_cast<QWidgetAction *>(action);
            items.append(held                    ? held->defaultWidget()->findChild<TBarCombo *>()->objectName()
                         : action->isSeparator() ? u"/"_s
                         : action->menu()        ? action->menu()->objectName()
                                                 : action->objectName());
        }
        EXPECT_EQ(items.join(u' '), expected) << name;
        EXPECT_EQ(Find<QMenu>(name).title(), caption);
    }
    EXPECT_EQ(Action("bTreeNamePAL").text() + Action("bTreeNameVIE").text(), u"PāliViệt"_s);
}

TEST_F(Commands, ButtonsHaveTheirTextsHintsAndActions)
{
    for (const auto &[name, text, hint] : buttons) {
        const TcxButton &found = Find<TcxButton>(name);
        EXPECT_EQ(found.text() + u'|' + found.toolTip(), text + u'|' + hint) << name;
        EXPECT_FALSE(found.icon().isNull()) << name;
        EXPECT_EQ(found.ShowHint(), std::string(name) != "btnVietPali") << name;
    }
    for (const char *name : {"FindDialog", "Copy", "SelectAll", "Print", "PrintPreview", "Save", "ZoomIn", "ZoomOut"}) {
        const TcxButton &found = Find<TcxButton>(qPrintable(u"btn"_s + QLatin1StringView(name)));
        EXPECT_EQ(found.text() + found.toolTip(), Action(qPrintable(u"ac"_s + QLatin1StringView(name))).toolTip());
    }
    for (const char *name : {"Organization", "Dictionary", "SearchSutas", "Help"})
        EXPECT_EQ(Find<QToolButton>(qPrintable(u"lb"_s + QLatin1StringView(name))).defaultAction(),
                  &Action(qPrintable(u"ac"_s + QLatin1StringView(name))));
    EXPECT_EQ(Find<QToolButton>("lbOptions").defaultAction(), &Action("acOption"));
    EXPECT_EQ(Find<QToolButton>("lbHelp").toolButtonStyle(), Qt::ToolButtonIconOnly);
}
