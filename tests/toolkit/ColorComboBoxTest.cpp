#include "toolkit/ColorComboBox.h"

#include "support/WaitFor.h"
#include "toolkit/ColorChooser.h"
#include "toolkit/Doors.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QColorDialog>
#include <QScopedValueRollback>
#include <QTest>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

class ColorCombo : public testing::Test
{
protected:
    ~ColorCombo() override { Doors() = m_realDoors; }
    void SetUp() override
    {
        Doors().chooseColour = [this](QWidget *, Colour initial) {
            asked.append(initial);
            return answer;
        };
        combo.SetOtherColorCaption(u"Other..."_s);
        combo.resize(120, 26);
        combo.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&combo));
    }
    /// Opens the list and chooses its last item.
    void AskForAnother()
    {
        combo.showPopup();
        EXPECT_TRUE(WaitFor([this] { return combo.view()->isVisible(); }));
        QTest::keyClick(combo.view(), Qt::Key_End);
        QTest::keyClick(combo.view(), Qt::Key_Return);
    }

    TcxColorComboBox combo;
    QList<Colour> asked;
    std::optional<Colour> answer;

private:
    PlatformDoors m_realDoors = Doors();
};

} // namespace

TEST_F(ColorCombo, OffersEveryNamedColourOnceAndShowsNoName)
{
    QList<QRgb> expected, offered;
    for (const QString &name : QColor::colorNames()) {
        if (name != u"transparent" && !expected.contains(QColor(name).rgb()))
            expected.append(QColor(name).rgb());
    }
    for (int row = 0; row < combo.count() - 1; ++row) {
        EXPECT_EQ(ColorToHtml(combo.itemData(row).toUInt()), QColor(combo.itemText(row)).name().toUpper());
        offered.append(QColor(combo.itemText(row)).rgb());
    }
    EXPECT_THAT(offered, testing::UnorderedElementsAreArray(expected));
    EXPECT_EQ(combo.currentIndex(), -1);
    combo.SetColorValue(0x0000FFFF);
    const QImage swatch = combo.grab().toImage();
    for (int x = 10; x < swatch.width() / 2; ++x)
        EXPECT_EQ(swatch.pixelColor(x, swatch.height() / 2), QColor(Qt::yellow)) << "nothing is written on it";
}

TEST_F(ColorCombo, ColoursComeBackAsTheyWereSet)
{
    combo.setProperty("DefaultColor", 0xFF000005U);
    EXPECT_EQ(combo.ColorValue(), 0xFF000005U);
    const int named = combo.count() - 1;
    const struct
    {
        Colour colour;
        QString shown;
    } rows[] = {{0x0000FFFF, u"Yellow"_s},
                {0x00FF0000, u"Blue"_s},
                {0x00123456, u"#563412"_s},
                {0xFF000005, u"#FFFFFF"_s},
                {0x00FFFFFF, u"White"_s},
                {0x02FF0000, u"#0000FF"_s},
                {0, u"Black"_s},
                {0xFFFFFFFF, u"#FFFFFF"_s}};
    for (const auto &row : rows) {
        combo.SetColorValue(row.colour);
        EXPECT_EQ(combo.ColorValue(), row.colour);
        EXPECT_EQ(combo.currentText(), row.shown) << row.colour;
        EXPECT_LE(combo.count(), named + 2) << "one item for all without a name";
        EXPECT_EQ(combo.OtherColorCaption(), u"Other..."_s);
    }
}

TEST_F(ColorCombo, AnyOtherColourIsAskedForFromTheOpenListOnly)
{
    combo.SetColorValue(0xFF000005);
    AskForAnother();
    EXPECT_EQ(combo.ColorValue(), 0xFF000005U) << "cancelled";
    answer = 0x00010203;
    AskForAnother();
    EXPECT_EQ(combo.ColorValue(), 0x00010203U);
    EXPECT_EQ(asked, (QList<Colour>{0xFF000005, 0xFF000005}));
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_End, Qt::Key_PageDown})
        QTest::keyClick(&combo, key);
    EXPECT_EQ(combo.ColorValue(), 0x00010203U) << "stepping stops at the last colour";
    QTest::keyClick(&combo, Qt::Key_Up);
    EXPECT_EQ(combo.currentText(), u"Black"_s);
    EXPECT_EQ(asked.size(), 2);
}

TEST(ColorChooser, AsksInTheToolkitsDialogInBothLanguages)
{
    const QScopedValueRollback language(InterfaceLang);
    for (const bool isVietnamese : {true, false}) {
        InterfaceLang = isVietnamese ? 0 : 1;
        QString texts;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
            auto *dialog = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
            if (!dialog || !dialog->isVisible())
                return;
            poll.stop();
            texts = dialog->windowTitle();
            for (auto *widget : dialog->findChildren<QWidget *>()) {
                if (widget->isVisible())
                    texts += widget->property("text").toString().remove(u'&') + u'|';
            }
            dialog->setCurrentColor(QColor(1, 2, 3));
            QTest::keyClick(dialog, isVietnamese ? Qt::Key_Return : Qt::Key_Escape);
        });
        poll.start(10);
        EXPECT_EQ(ChooseColour(nullptr, 0x0000FFFF), isVietnamese ? std::optional<Colour>(0x00030201) : std::nullopt);
        EXPECT_TRUE(texts.startsWith(isVietnamese ? u"Chọn màu"_s : u"Choose a color"_s));
        EXPECT_EQ(texts.contains(u"Basic colors"_s), !isVietnamese);
        EXPECT_EQ(texts.contains(u"Bỏ qua"_s), isVietnamese);
        EXPECT_FALSE(texts.contains(u"Pick Screen"_s));
    }
}
