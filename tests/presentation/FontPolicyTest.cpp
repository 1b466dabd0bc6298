#include "presentation/FontPolicy.h"

#include "marks/MarksWindow.h"
#include "presentation/FontRules.h"
#include "support/WaitFor.h"
#include "toolkit/CxButton.h"
#include "toolkit/CxLabel.h"
#include "toolkit/CxTextEdit.h"
#include "toolkit/Fonts.h"
#include "toolkit/Kinds.h"
#include "toolkit/LayoutItem.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QTableView>

using namespace Qt::StringLiterals;

namespace {

class TDBAdvGrid : public QTableView
{
    Q_OBJECT
};

/// "family size", then italic, bold and smoothed.
QString Told(const QFont &font)
{
    return u"%1 %2%3%4%5"_s.arg(font.family(), QString::number(font.pointSizeF()), font.italic() ? u" i"_s : u""_s,
                                font.bold() ? u" b"_s : u""_s,
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
    EXPECT_EQ(Told(Dressed<TcxLabel>(10)->font()), u"Segoe UI 10 i b q"_s);
    EXPECT_EQ(Told(Dressed<TcxLabel>(6)->font()), u"DejaVu Serif 36 b q"_s);
    EXPECT_EQ(Told(Dressed<TcxLabel>(8)->font()), designed);
    EXPECT_EQ(Told(Dressed<TcxButton>(-1)->font()), u"Segoe UI 9 q"_s);
    EXPECT_EQ(Told(Dressed<QLineEdit>(0)->font()), designed);
    EXPECT_EQ(Dressed<TcxTextEdit>(1)->palette().color(QPalette::Text), QColor(0xA0, 0xA0, 0xA4));
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
        const QImage image = label->grab().toImage().convertToFormat(QImage::Format_RGB32);
        const auto *pixels = reinterpret_cast<const QRgb *>(image.constBits());
        return std::count(pixels, pixels + image.width() * image.height(), colour.rgb()) > 0;
    };
    EXPECT_TRUE(holds(QColor(0x80, 0, 0)) && holds(Qt::white));
    label->SetShadow(0, Qt::white);
    EXPECT_FALSE(holds(Qt::white));
}

TEST(FontPolicy, ReachesTheCaptionsOfALayoutByItsTag)
{
    TdxLayoutControl layout;
    SetWindowFont(layout);
    const QString windowFont = Told(layout.font());
    auto *item = new TdxLayoutItem(&layout);
    auto *edit = new QLineEdit(item);
    (new QHBoxLayout(item))->addWidget(edit);
    item->SetCaption(u"Caption"_s);
    for (const QString &expected : {windowFont, u"Segoe UI 10 q"_s}) {
        ApplyFontPolicy(layout);
        EXPECT_EQ(Told(item->findChild<QLabel *>()->font()), expected);
        EXPECT_EQ(Told(edit->font()), windowFont);
        layout.setProperty("Tag", 1);
    }
}

class WalkedWindows : public MarksWindow
{};

TEST_F(WalkedWindows, AreDressedButForTreesPagesAndCaptions)
{
    Open(1101);
    OpenMarks();
    const QString plain = u"Segoe UI 9.75"_s, base = u"Segoe UI 10 q"_s;
    const auto check = [](QWidget &walked, const QByteArray &names, const QString &font) {
        for (const QByteArray &name : names.split(' '))
            EXPECT_EQ(Told(In<QWidget>(walked, name.constData()).font()), font) << name.constData();
    };
    check(*form, "pnFocus gFocus gtvFocus edTitleFocus edSearch mmDesc cbSuttaType bmMainBar1 bCopy ppContent", base);
    check(*form, "ebFocusText lcLeft lcFocus lcFocusItemTitle spltFocus", plain);
    EXPECT_EQ(Told(InMarks<QWidget>("lcFocusItemTitle").findChild<QLabel *>()->font()), plain);

    check(*window, "edFilterSutta", plain); // the main window is dressed with its skin
    const QList<QObject *> components = ComponentsOf(*window);
    for (QObject *component : components)
        ApplyFontPolicy(*component);
    check(*window,
          "pnContent edFilterSutta btnFocusHighlight bmMainBar1 lbDictionary btnSystem bsiSystem bcbInterface "
          "ppContent ppMainTray",
          base);
    check(*window, "dbtSutas ebContent lcTree lcContent spltMain", plain);

    Find<QWidget>("edFilterSutta").setFont(Designed());
    InMarks<QWidget>("edSearch").setFont(Designed());
    QTimer::singleShot(0, form, &QWidget::close);
    EXPECT_TRUE(WaitFor([&] { return !form; }));
    OpenMarks();
    check(*form, "edSearch", base); // each time that the window opens
    check(*window, "edFilterSutta", Told(Designed()));
}

#include "FontPolicyTest.moc"
