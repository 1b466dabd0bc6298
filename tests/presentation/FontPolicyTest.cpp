#include "presentation/FontPolicy.h"
#include "stores/settings/Options.h"

#include "marks/MarksWindow.h"
#include "presentation/FontRules.h"
#include "support/WaitFor.h"
#include "toolkit/bound/CxDBLabel.h"
#include "toolkit/controls/CxButton.h"
#include "toolkit/controls/CxLabel.h"
#include "toolkit/controls/CxTextEdit.h"
#include "toolkit/controls/Kinds.h"
#include "toolkit/program/Fonts.h"

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

/// Font and text colour, where it has changed, of a control as designed after the policy.
template <typename Control>
QString Dressed(int tag)
{
    Control control;
    control.setFont(Designed());
    control.setProperty("Tag", tag);
    const auto role = std::is_base_of_v<QLabel, Control> ? QPalette::WindowText : QPalette::Text;
    QPalette green = control.palette();
    green.setColor(role, Qt::green);
    control.setPalette(green);
    ApplyFontPolicy(control);
    const QColor ink = control.palette().color(role);
    return Told(control.font()) + (ink == Qt::green ? QString() : u' ' + ink.name());
}

} // namespace

TEST(FontPolicy, DressesControlsByKindAndTag)
{
    BaseFontName.clear();
    // By Tag; all others have the one of *, or stay as they were designed.
    const std::pair<QString (*)(int), QString> rows[]{
        {Dressed<TcxLabel>, u"0=Segoe UI 10 q,10=Segoe UI 10 i b q,1=Segoe UI 10 b q #000000,"
                            "11=Segoe UI 11 b q #000000,2=DejaVu Serif 12 b q,3=DejaVu Serif 14 b q,"
                            "4=DejaVu Serif 18 b q,5=DejaVu Serif 24 b q #000080,6=DejaVu Serif 36 b q,"
                            "7=DejaVu Serif 48 b q #800000"_s},
        {Dressed<TcxDBLabel>, u"0=Segoe UI 10 q,10=Segoe UI 10 i b q,-1=Segoe UI 9 i b q"_s},
        {Dressed<TcxButton>, u"0=Segoe UI 10 q,-1=Segoe UI 9 q"_s},
        {Dressed<TcxTextEdit>, u"0=Segoe UI 10 q,1=Segoe UI 10 q #a0a0a4"_s},
        {Dressed<TPanel>, u"*=Segoe UI 10 q"_s},
        {Dressed<QLineEdit>, {}}};
    for (const auto &[dressed, told] : rows) {
        QMap<QString, QString> fonts;
        for (const QString &font : told.split(u','))
            fonts[font.section(u'=', 0, 0)] = font.section(u'=', 1);
        for (int tag = -2; tag <= 12; ++tag)
            EXPECT_EQ(dressed(tag), fonts.value(QString::number(tag), fonts.value(u"*"_s, Told(Designed())))) << tag;
    }
    EXPECT_EQ(BaseFontName, u"Segoe UI"_s);
    TDBAdvGrid grid;
    ApplyFontPolicy(grid);
    EXPECT_EQ(Told(grid.font()) + Told(grid.horizontalHeader()->font()), u"Segoe UI 10 qSegoe UI 10 q"_s);
}

TEST(FontPolicy, ThrowsTheWhiteShadowOfACoolLabel)
{
    TcxLabel label;
    label.setProperty("Tag", 7);
    label.setPalette(Qt::green);
    label.setAutoFillBackground(true);
    label.setText(u"I"_s);
    ApplyFontPolicy(label);
    const auto holds = [&](QColor colour) {
        const QImage image = label.grab().toImage().convertToFormat(QImage::Format_RGB32);
        const auto *pixels = reinterpret_cast<const QRgb *>(image.constBits());
        return std::count(pixels, pixels + image.width() * image.height(), colour.rgb()) > 0;
    };
    EXPECT_TRUE(holds(QColor(0x80, 0, 0)) && holds(Qt::white));
    label.SetShadow(0, Qt::white);
    EXPECT_FALSE(holds(Qt::white));
}

class WalkedWindows : public MarksWindow
{};

TEST_F(WalkedWindows, AreDressedButForTreesPagesAndCaptions)
{
    Store(u"GlobalActiveStyle"_s, 0);
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
    check(*window, "pnContent edFilterSutta btnFocusHighlight bmMainBar1 lbDictionary bsiSystem bcbInterface ppContent",
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
