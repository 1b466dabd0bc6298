#include "presentation/FontPolicy.h"

#include "marks/MarksWindow.h"
#include "presentation/FontRules.h"
#include "support/WaitFor.h"
#include "toolkit/BarManager.h"
#include "toolkit/CxButton.h"
#include "toolkit/CxDBLabel.h"
#include "toolkit/CxLabel.h"
#include "toolkit/CxTextEdit.h"
#include "toolkit/Fonts.h"
#include "toolkit/Kinds.h"
#include "toolkit/LayoutItem.h"

#include <QFontInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QTableView>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

class TDBAdvGrid : public QTableView
{
    Q_OBJECT
};

class TcxSpinEdit : public QLineEdit
{
    Q_OBJECT
};

/// "family size", then italic, bold and smoothed.
QString Told(const QFont &font)
{
    return u"%1 %2%3%4%5"_s.arg(font.family())
        .arg(font.pointSizeF())
        .arg(font.italic() ? u" i"_s : u""_s, font.bold() ? u" b"_s : u""_s,
             font.styleStrategy() == QFont::PreferAntialias ? u" q"_s : u""_s);
}

QFont Designed()
{
    return {u"DejaVu Serif"_s, 7, QFont::Bold};
}

/// A control as designed, after the policy.
template <typename Control>
std::unique_ptr<Control> Dressed(int tag)
{
    auto control = std::make_unique<Control>();
    control->setFont(Designed());
    if (tag != 0)
        control->setProperty("Tag", tag);
    ApplyFontPolicy(*control);
    return control;
}

} // namespace

TEST(FontPolicy, DressesControlsByKindAndTag)
{
    BaseFontName.clear();
    BaseFontSize = 0;
    const QString base = u"Segoe UI 10 q"_s;
    const QString designed = u"DejaVu Serif 7 b"_s;
    EXPECT_EQ(Told(Dressed<TcxLabel>(0)->font()), base);
    EXPECT_EQ(BaseFontName, u"Segoe UI"_s);
    EXPECT_EQ(BaseFontSize, 10);
    EXPECT_EQ(Told(Dressed<TcxLabel>(11)->font()), u"Segoe UI 11 b q"_s);
    EXPECT_EQ(Told(Dressed<TcxLabel>(10)->font()), u"Segoe UI 10 i b q"_s);
    EXPECT_EQ(Told(Dressed<TcxLabel>(6)->font()), u"DejaVu Serif 36 b q"_s);
    EXPECT_EQ(Told(Dressed<TcxLabel>(8)->font()), designed);
    EXPECT_EQ(Told(Dressed<TcxDBLabel>(-1)->font()), u"Segoe UI 9 i b q"_s);
    EXPECT_EQ(Told(Dressed<TcxDBLabel>(5)->font()), designed);
    EXPECT_EQ(Told(Dressed<TcxButton>(-1)->font()), u"Segoe UI 9 q"_s);
    EXPECT_EQ(Told(Dressed<TPanel>(77)->font()), base);
    EXPECT_EQ(Told(Dressed<TcxSpinEdit>(1)->font()), base);
    EXPECT_EQ(Told(Dressed<QLineEdit>(0)->font()), designed);
    const auto grey = Dressed<TcxTextEdit>(1);
    EXPECT_EQ(Told(grey->font()), base);
    EXPECT_EQ(grey->palette().color(QPalette::Text), QColor(0xA0, 0xA0, 0xA4));
    EXPECT_EQ(Dressed<TcxLabel>(7)->palette().color(QPalette::WindowText), QColor(0x80, 0, 0));
    EXPECT_EQ(Dressed<TcxLabel>(5)->palette().color(QPalette::WindowText), QColor(0, 0, 0x80));
    const auto grid = Dressed<TDBAdvGrid>(0);
    EXPECT_EQ(Told(grid->font()), base);
    EXPECT_EQ(Told(grid->horizontalHeader()->font()), base);
}

TEST(FontPolicy, ThrowsTheWhiteShadowOfACoolLabel)
{
    const auto label = Dressed<TcxLabel>(7);
    QPalette ground = label->palette();
    ground.setColor(QPalette::Window, Qt::green);
    label->setPalette(ground);
    label->setAutoFillBackground(true);
    label->setText(u"I"_s);
    const auto holds = [&](QColor colour) {
        const QImage image = label->grab().toImage();
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixelColor(x, y) == colour)
                    return true;
        return false;
    };
    EXPECT_TRUE(holds(QColor(0x80, 0, 0)));
    EXPECT_TRUE(holds(Qt::white));
    label->SetShadow(0, Qt::white);
    EXPECT_FALSE(holds(Qt::white));
}

TEST(FontPolicy, ReachesCaptionsAndWhatStandsOnBars)
{
    QWidget window;
    SetWindowFont(window);
    const QString windowFont = Told(window.font());
    auto *layout = new TdxLayoutControl(&window);
    auto *item = new TdxLayoutItem(layout);
    auto *cell = new QHBoxLayout(item);
    auto *edit = new QLineEdit(item);
    cell->addWidget(edit);
    item->SetCaption(u"Caption"_s);
    auto *caption = item->findChild<QLabel *>();
    ApplyFontPolicy(*layout);
    EXPECT_EQ(Told(caption->font()), windowFont) << "Tag 0 follows the look";
    layout->setProperty("Tag", 1);
    ApplyFontPolicy(*layout);
    EXPECT_EQ(Told(caption->font()), u"Segoe UI 10 q"_s);
    EXPECT_EQ(Told(edit->font()), windowFont);

    auto *bar = new TdxBar(&window);
    auto *button = new QToolButton(bar);
    auto *menu = new TdxBarSubItem(&window);
    auto *popup = new TdxBarPopupMenu(&window);
    TdxBarManager manager(&window);
    popup->setFont(Designed());
    ApplyFontPolicy(manager);
    EXPECT_EQ(Told(button->font()), u"Segoe UI 10 q"_s);
    EXPECT_EQ(Told(menu->font()), u"Segoe UI 10 q"_s);
    EXPECT_EQ(Told(popup->font()), Told(Designed()));
    ApplyFontPolicy(*popup);
    EXPECT_EQ(Told(popup->font()), u"Segoe UI 10 q"_s);
}

class WalkedWindows : public MarksWindow
{};

TEST_F(WalkedWindows, AreDressedButForTreesPagesAndCaptions)
{
    Open(1101);
    OpenMarks();
    const QString windowFont = u"Segoe UI 9.75"_s;
    const QString base = u"Segoe UI 10 q"_s;
    const auto fontOf = [](QWidget &walked, const QString &name) {
        return Told(In<QWidget>(walked, qPrintable(name)).font());
    };
    for (const char *name : {"pnFocus", "edSuttaName", "gFocus", "gtvFocus", "edTitleFocus", "edKeyWord", "edSearch",
                             "mmDesc", "cbSuttaType", "edPriority", "bmMainBar1", "bCopy", "ppContent"})
        EXPECT_EQ(fontOf(*form, QString::fromLatin1(name)), base) << name;
    for (const char *name : {"ebFocusText", "lcLeft", "lcFocus", "lcFocusItemTitle", "spltFocus"})
        EXPECT_EQ(fontOf(*form, QString::fromLatin1(name)), windowFont) << name;
    EXPECT_EQ(Told(InMarks<QWidget>("lcFocusItemTitle").findChild<QLabel *>()->font()), windowFont);

    EXPECT_EQ(fontOf(*window, u"edFilterSutta"_s), windowFont) << "the main window is dressed with its skin";
    const QList<QObject *> components = ComponentsOf(*window);
    for (QObject *component : components)
        ApplyFontPolicy(*component);
    for (const char *name : {"pnContent", "edFilterSutta", "btnFocusHighlight", "btnMarginWidth", "bmMainBar1",
                             "lbDictionary", "btnSystem", "bsiSystem", "bsiSkins", "bcbInterface", "bsiMarginWidth",
                             "ppContent", "ppTreeKelora", "ppMainTray", "ppMarginWidth"})
        EXPECT_EQ(fontOf(*window, QString::fromLatin1(name)), base) << name;
    for (const char *name : {"dbtSutas", "ebContent", "lcTree", "lcContent", "spltMain"})
        EXPECT_EQ(fontOf(*window, QString::fromLatin1(name)), windowFont) << name;

    window->findChild<QWidget *>(u"edFilterSutta"_s)->setFont(Designed());
    InMarks<QWidget>("edSearch").setFont(Designed());
    QTimer::singleShot(0, form, &QWidget::close);
    EXPECT_TRUE(WaitFor([&] { return !form; }));
    OpenMarks();
    EXPECT_EQ(fontOf(*form, u"edSearch"_s), base) << "each time that the window opens";
    EXPECT_EQ(fontOf(*window, u"edFilterSutta"_s), Told(Designed())) << "no other window is walked";
}

#include "FontPolicyTest.moc"
