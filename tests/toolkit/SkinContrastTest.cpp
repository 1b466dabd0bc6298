#include "marks/MarksWindow.h"
#include "presentation/SkinFile.h"
#include "toolkit/SkinPainter.h"
#include "toolkit/SkinSamples.h"
#include "toolkit/SkinStyle.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QMessageBox>
#include <QPainter>
#include <QPlainTextEdit>
#include <QStyleOption>
#include <QToolButton>
#include <QToolTip>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr double LeastText = 4.5;
constexpr double LeastDisabled = 3;
constexpr double LeastFrame = 3;

/// Full blocks reach the colour that thin antialiased letters only come near to; in this font they are as wide as
/// blanks.
QFont BlockFont()
{
    return QFont(u"DejaVu Sans Mono"_s, 10);
}

const QString Blocks(3, QChar(0x2588));
const QString Blanks(3, QChar(0x00A0));

struct Pair
{
    QRgb text = 0;
    QRgb ground = 0;
    double contrast = 0; ///< 0 where no text was found
};

/// The worst line of pixels within a rectangle: its commonest pixel of text against what lies under it.
Pair WorstLine(const QImage &texts, const QImage &blanks, const QRect &rect)
{
    Pair worst;
    const QRect inside = rect & texts.rect();
    const auto commonest = [&](int y) {
        QMap<std::pair<QRgb, QRgb>, int> counts;
        std::pair<QRgb, QRgb> most;
        for (int x = inside.left(); x <= inside.right(); ++x) {
            const std::pair<QRgb, QRgb> pixel(texts.pixel(x, y), blanks.pixel(x, y));
            if (pixel.first != pixel.second && ++counts[pixel] > counts.value(most))
                most = pixel;
        }
        return std::pair(most, counts.value(most));
    };
    // Lines at the upper and lower edge of the blocks are blended.
    for (int y = inside.top() + 1; y < inside.bottom(); ++y) {
        const auto [pixel, count] = commonest(y);
        if (count < 4 || commonest(y - 1).second < 4 || commonest(y + 1).second < 4)
            continue;
        const double contrast = Contrast(QColor(pixel.first), QColor(pixel.second));
        if (worst.contrast == 0 || contrast < worst.contrast)
            worst = {pixel.first, pixel.second, contrast};
    }
    return worst;
}

void ExpectContrast(const Pair &pair, double least, const QString &where)
{
    EXPECT_GE(pair.contrast, least) << where.toStdString() << ": text " << QColor(pair.text).name().toStdString()
                                    << " on " << QColor(pair.ground).name().toStdString();
}

/// Every skin of the product, and some that it lacks.
QList<Skin> AllSkins()
{
    QList<Skin> skins = SampleSkins();
    const QString file = ProductFolder() + u"AllSkins.skinres"_s;
    const QStringList names = SkinNames(file);
    EXPECT_EQ(names.size(), 28);
    for (const QString &name : names) {
        const std::optional<Skin> skin = LoadSkin(file, name);
        EXPECT_TRUE(skin) << name.toStdString();
        if (skin)
            skins.append(*skin);
    }
    return skins;
}

/// Skins the whole application for a test's time, with a list as it drops down from a combo, kept closed.
class SkinnedApplication
{
public:
    SkinnedApplication()
        : m_name(QApplication::style()->name()), m_palette(QApplication::palette()),
          m_style(new SkinStyle(SampleSkins()[0]))
    {
        QApplication::setStyle(m_style);
        m_combo = std::make_unique<QComboBox>();
        m_combo->view()->ensurePolished();
    }
    ~SkinnedApplication()
    {
        m_combo.reset();
        QApplication::setStyle(m_name);
        QApplication::setPalette(m_palette);
    }
    void Wear(const Skin &skin)
    {
        m_style->SetSkin(skin);
        QApplication::setPalette(SkinPalette(skin));
        QApplication::sendPostedEvents(); // the windows hear of a palette by one
    }
    const SkinStyle &Style() const { return *m_style; }
    const QWidget &DropDown() const { return *m_combo->view(); }

private:
    QString m_name;
    QPalette m_palette;
    SkinStyle *m_style;
    std::unique_ptr<QComboBox> m_combo;
};

constexpr QRect Place(6, 6, 120, 32);

/// What a control's drawing is given: style, painter, state and caption.
struct Drawing
{
    const SkinStyle &style;
    const QWidget &dropDown;
    QPainter &painter;
    QStyle::State state;
    QString text;

    template <typename Option>
    Option Made() const
    {
        Option option;
        option.rect = Place;
        option.state = state;
        option.palette = QApplication::palette();
        option.palette.setCurrentColorGroup(!(state & QStyle::State_Enabled) ? QPalette::Disabled
                                            : state & QStyle::State_Active   ? QPalette::Active
                                                                             : QPalette::Inactive);
        option.fontMetrics = QFontMetrics(BlockFont());
        if constexpr (requires { option.text; })
            option.text = text;
        return option;
    }
};

void DrawPushButton(const Drawing &drawing, QStyleOptionButton::ButtonFeature feature)
{
    auto option = drawing.Made<QStyleOptionButton>();
    option.features = feature;
    drawing.style.drawControl(QStyle::CE_PushButton, &option, &drawing.painter, nullptr);
}

void DrawToolButton(const Drawing &drawing)
{
    auto option = drawing.Made<QStyleOptionToolButton>();
    option.state |= QStyle::State_AutoRaise;
    option.toolButtonStyle = Qt::ToolButtonTextOnly;
    option.font = BlockFont();
    option.subControls = QStyle::SC_ToolButton;
    drawing.style.drawComplexControl(QStyle::CC_ToolButton, &option, &drawing.painter, nullptr);
}

void DrawCombo(const Drawing &drawing)
{
    auto option = drawing.Made<QStyleOptionComboBox>();
    option.currentText = drawing.text;
    option.subControls = QStyle::SC_All;
    drawing.style.drawComplexControl(QStyle::CC_ComboBox, &option, &drawing.painter, nullptr);
    drawing.style.drawControl(QStyle::CE_ComboBoxLabel, &option, &drawing.painter, nullptr);
}

void DrawTick(const Drawing &drawing, QStyle::ControlElement element)
{
    const auto option = drawing.Made<QStyleOptionButton>();
    drawing.style.drawControl(element, &option, &drawing.painter, nullptr);
}

void DrawRow(const Drawing &drawing, QStyleOptionViewItem::ViewItemFeature feature, const QWidget *view = nullptr)
{
    auto option = drawing.Made<QStyleOptionViewItem>();
    option.features = feature | QStyleOptionViewItem::HasDisplay;
    option.font = BlockFont();
    option.showDecorationSelected = true;
    if (view)
        option.palette = view->palette();
    drawing.style.drawPrimitive(QStyle::PE_PanelItemViewRow, &option, &drawing.painter, view);
    drawing.style.drawControl(QStyle::CE_ItemViewItem, &option, &drawing.painter, view);
}

void DrawMenuRow(const Drawing &drawing)
{
    auto option = drawing.Made<QStyleOptionMenuItem>();
    option.font = BlockFont();
    option.menuHasCheckableItems = true;
    drawing.style.drawControl(QStyle::CE_MenuItem, &option, &drawing.painter, nullptr);
}

void DrawHeader(const Drawing &drawing)
{
    auto option = drawing.Made<QStyleOptionHeader>();
    drawing.style.drawControl(QStyle::CE_HeaderSection, &option, &drawing.painter, nullptr);
    drawing.style.drawControl(QStyle::CE_HeaderLabel, &option, &drawing.painter, nullptr);
}

void DrawTab(const Drawing &drawing)
{
    const auto option = drawing.Made<QStyleOptionTab>();
    drawing.style.drawControl(QStyle::CE_TabBarTabShape, &option, &drawing.painter, nullptr);
    drawing.style.drawControl(QStyle::CE_TabBarTabLabel, &option, &drawing.painter, nullptr);
}

void DrawProgress(const Drawing &drawing, int progress)
{
    auto option = drawing.Made<QStyleOptionProgressBar>();
    option.state |= QStyle::State_Horizontal;
    option.maximum = 100;
    option.progress = progress;
    option.textVisible = true;
    drawing.style.drawControl(QStyle::CE_ProgressBar, &option, &drawing.painter, nullptr);
}

void DrawGroup(const Drawing &drawing)
{
    auto option = drawing.Made<QStyleOptionGroupBox>();
    option.subControls = QStyle::SC_GroupBoxFrame | QStyle::SC_GroupBoxLabel;
    option.textColor = option.palette.color(QPalette::WindowText);
    drawing.style.drawComplexControl(QStyle::CC_GroupBox, &option, &drawing.painter, nullptr);
}

void DrawToolTip(const Drawing &drawing)
{
    const auto option = drawing.Made<QStyleOptionFrame>();
    drawing.style.drawPrimitive(QStyle::PE_PanelTipLabel, &option, &drawing.painter, nullptr);
    drawing.style.drawItemText(&drawing.painter, Place, Qt::AlignCenter, option.palette, true, drawing.text,
                               QPalette::ToolTipText);
}

struct Control
{
    const char *name;
    SkinPart ground;
    const char *states; ///< by letter, as below
    std::function<void(const Drawing &)> draw;
};

struct NamedState
{
    const char *name;
    QStyle::State state;
};

const QMap<char, NamedState> &States()
{
    constexpr QStyle::State on = QStyle::State_Enabled | QStyle::State_Active;
    static const QMap<char, NamedState> states{
        {'n', {"normal", on}},
        {'h', {"hover", on | QStyle::State_MouseOver}},
        {'p', {"pressed", on | QStyle::State_Sunken | QStyle::State_MouseOver}},
        {'c', {"checked", on | QStyle::State_On}},
        {'f', {"focused", on | QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange}},
        {'s', {"selected", on | QStyle::State_Selected}},
        {'i', {"selected without focus", QStyle::State_Enabled | QStyle::State_Selected}},
        {'d', {"disabled", QStyle::State_None}},
        {'e', {"disabled and selected", QStyle::State_Selected}},
    };
    return states;
}

QList<Control> Controls()
{
    using Feature = QStyleOptionButton;
    using P = SkinPart;
    return {
        {"push button", P::Window, "nhpcfd", [](auto &d) { DrawPushButton(d, Feature::None); }},
        {"default button", P::Window, "nhpf", [](auto &d) { DrawPushButton(d, Feature::DefaultButton); }},
        {"flat button", P::Window, "nhpcd", [](auto &d) { DrawPushButton(d, Feature::Flat); }},
        {"tool button", P::Window, "nhpcfd", DrawToolButton},
        {"tool button on a bar", P::Bar, "nhpcfd", DrawToolButton},
        {"combo", P::Window, "nhpfd", DrawCombo},
        {"check box", P::Window, "nhpcfd", [](auto &d) { DrawTick(d, QStyle::CE_CheckBox); }},
        {"radio button", P::Window, "nhpcfd", [](auto &d) { DrawTick(d, QStyle::CE_RadioButton); }},
        {"row", P::Base, "nhside", [](auto &d) { DrawRow(d, QStyleOptionViewItem::None); }},
        {"second row", P::Base, "nhside", [](auto &d) { DrawRow(d, QStyleOptionViewItem::Alternate); }},
        {"drop-down row", P::Menu, "nhs", [](auto &d) { DrawRow(d, QStyleOptionViewItem::None, &d.dropDown); }},
        {"menu item", P::Menu, "nscd", DrawMenuRow},
        {"header", P::Base, "nhd", DrawHeader},
        {"tab", P::Window, "nhsd", DrawTab},
        {"progress, none done", P::Window, "n", [](auto &d) { DrawProgress(d, 0); }},
        {"progress, all done", P::Window, "n", [](auto &d) { DrawProgress(d, 100); }},
        {"group box", P::Window, "nd", DrawGroup},
        {"tool tip", P::Window, "n", DrawToolTip},
    };
}

/// A picture of one control in one state, on its ground.
QImage Drawn(const SkinnedApplication &application, const Control &control, QStyle::State state, const QString &text,
             int scale = 1)
{
    const SkinFill &ground = application.Style().Current().Fill(control.ground);
    QImage image(QSize(Place.width() + 12, Place.height() + 12) * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    QPainter painter(&image);
    QLinearGradient blend(0, 0, 0, Place.height() + 12);
    blend.setColorAt(0, QColor::fromRgba(ground.top));
    blend.setColorAt(1, QColor::fromRgba(ground.bottom));
    painter.fillRect(image.rect(), blend);
    painter.setFont(BlockFont());
    control.draw({application.Style(), application.DropDown(), painter, state, text});
    return image;
}

} // namespace

TEST(SkinContrast, CaptionsOfEveryControlInEveryState)
{
    const QFontMetrics metrics(BlockFont());
    ASSERT_TRUE(metrics.inFontUcs4(0x2588));
    ASSERT_EQ(metrics.horizontalAdvance(Blocks), metrics.horizontalAdvance(Blanks));
    SkinnedApplication application;
    for (const Skin &skin : AllSkins()) {
        application.Wear(skin);
        for (const Control &control : Controls()) {
            for (const char *letter = control.states; *letter != 0; ++letter) {
                const NamedState &state = States().value(*letter);
                const Pair worst = WorstLine(Drawn(application, control, state.state, Blocks),
                                             Drawn(application, control, state.state, Blanks), Place);
                const bool isDisabled = !(state.state & QStyle::State_Enabled);
                ExpectContrast(
                    worst, isDisabled ? LeastDisabled : LeastText,
                    u"%1, %2, %3"_s.arg(skin.name, QLatin1StringView(control.name), QLatin1StringView(state.name)));
            }
        }
    }
}

TEST(SkinContrast, FramesAndMarksThatTellAControl)
{
    const auto framed = [](QStyle::PrimitiveElement element) {
        return [element](const Drawing &drawing) {
            auto option = drawing.Made<QStyleOptionFrame>();
            option.lineWidth = 2;
            drawing.style.drawPrimitive(element, &option, &drawing.painter, nullptr);
        };
    };
    const auto box = [](QStyle::PrimitiveElement element) {
        return [element](const Drawing &drawing) {
            auto option = drawing.Made<QStyleOptionButton>();
            option.rect = QRect(Place.left(), Place.top() + 8, 16, 16);
            drawing.style.drawPrimitive(element, &option, &drawing.painter, nullptr);
        };
    };
    const auto combo = [](const Drawing &drawing) {
        auto option = drawing.Made<QStyleOptionComboBox>();
        option.editable = true;
        option.subControls = QStyle::SC_ComboBoxFrame;
        drawing.style.drawComplexControl(QStyle::CC_ComboBox, &option, &drawing.painter, nullptr);
    };
    const Control controls[] = {
        {"line edit", SkinPart::Window, "nf", framed(QStyle::PE_PanelLineEdit)},
        {"editable combo", SkinPart::Window, "nf", combo},
        {"check box", SkinPart::Window, "nhc", box(QStyle::PE_IndicatorCheckBox)},
        {"radio button", SkinPart::Window, "nhc", box(QStyle::PE_IndicatorRadioButton)},
        {"focused button", SkinPart::Window, "f", [](auto &d) { DrawPushButton(d, QStyleOptionButton::None); }},
        {"group box", SkinPart::Window, "n", framed(QStyle::PE_FrameGroupBox)},
    };
    SkinnedApplication application;
    for (const Skin &skin : AllSkins()) {
        application.Wear(skin);
        constexpr int scale = 3; // at which a thin round frame has pixels of its own colour
        const int line = Place.center().y();
        for (const Control &control : controls) {
            for (const char *letter = control.states; *letter != 0; ++letter) {
                const NamedState &state = States().value(*letter);
                const QImage image = Drawn(application, control, state.state, Blanks, scale);
                const QColor outside = image.pixelColor(scale, scale * line + 1);
                const QColor frame = image.pixelColor(scale * Place.left() + 1, scale * line + 1);
                EXPECT_GE(Contrast(frame, outside), LeastFrame)
                    << skin.name.toStdString() << ", " << control.name << ", " << state.name << ": frame "
                    << frame.name().toStdString() << " on " << outside.name().toStdString();
            }
        }
        // A tick must show, whatever it lies on: the picture with it against the box in the same state without.
        for (const Control &control : {controls[2], controls[3]}) {
            const QImage image = Drawn(application, control, States().value('c').state, Blanks, scale);
            double best = 1;
            const QRect box(scale * (Place.left() + 3), scale * (line - 5), scale * 10, scale * 10);
            const QColor beside = image.pixelColor(box.topLeft() + QPoint(0, scale * 2));
            for (int x = box.left(); x <= box.right(); ++x) {
                for (int y = box.top(); y <= box.bottom(); ++y)
                    best = std::max(best, Contrast(image.pixelColor(x, y), beside));
            }
            EXPECT_GE(best, LeastFrame) << skin.name.toStdString() << ": mark of " << control.name;
        }
    }
}

namespace {

class SkinnedWindows : public MarksWindow
{
protected:
    ~SkinnedWindows() override { QFile::remove(DictionaryFile()); }
    QString DictionaryFile() const { return QFileInfo(program).path() + u"/PALIDICT.FDB"_s; }

    /// What shows a caption that may be replaced without a trace in the data.
    static QWidgetList Captioned(const QWidget &form)
    {
        QWidgetList widgets;
        for (QWidget *widget : form.findChildren<QWidget *>()) {
            const auto *tool = qobject_cast<QToolButton *>(widget);
            const bool isTool = tool && tool->toolButtonStyle() != Qt::ToolButtonIconOnly;
            const bool isCaption = isTool || (!tool && qobject_cast<QAbstractButton *>(widget)) ||
                                   (qobject_cast<QLabel *>(widget) && !widget->property("text").toString().isEmpty());
            if (widget->isVisibleTo(&form) && !widget->isWindow() && isCaption)
                widgets.append(widget);
        }
        return widgets;
    }

    static QImage Shown(QWidget &form, const QWidgetList &widgets, const QString &text)
    {
        for (QWidget *widget : widgets) {
            widget->setFont(BlockFont());
            widget->setProperty("text", text.left(widget->property("text").toString().size()));
        }
        return form.grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
};

} // namespace

TEST_F(SkinnedWindows, EveryCaptionOfEveryWindow)
{
    EXPECT_TRUE(QFile::link(ProductFolder() + u"PALIDICT.FDB"_s, DictionaryFile()));
    const QList<Skin> skins = AllSkins();
    SkinnedApplication application;
    Open();
    OpenMarks();
    Trigger("acSearchSutas");
    Trigger("acDictionary");
    QMessageBox box(QMessageBox::Question, u"?"_s, Blocks, QMessageBox::Yes | QMessageBox::No);
    box.show();
    QToolTip::showText(window->mapToGlobal(QPoint(40, 40)), Blocks, window.get());
    QWidgetList forms;
    for (QWidget *form : QApplication::topLevelWidgets()) {
        if (form->isVisible())
            forms.append(form);
    }
    ASSERT_GE(forms.size(), 6); // main window, marks, search, dictionary, message box, tool tip
    for (const Skin &skin : skins) {
        application.Wear(skin);
        for (QWidget *form : forms) {
            QWidgetList widgets = Captioned(*form);
            if (qobject_cast<QLabel *>(form))
                widgets.append(form);
            const QImage texts = Shown(*form, widgets, Blocks);
            const QImage blanks = Shown(*form, widgets, Blanks);
            for (const QWidget *widget : widgets) {
                const QRect rect(widget == form ? QPoint() : widget->mapTo(form, QPoint()), widget->size());
                const QString where = u"%1, %2 in %3 (%4)"_s.arg(skin.name, widget->objectName(), form->objectName(),
                                                                 QLatin1StringView(form->metaObject()->className()));
                ExpectContrast(WorstLine(texts, blanks, rect), widget->isEnabled() ? LeastText : LeastDisabled, where);
            }
        }
    }
    box.hide();
    QToolTip::hideText();
}
