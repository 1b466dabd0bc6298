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
    ColorCombo()
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

TEST_F(ColorCombo, ColoursComeBackAsTheyWereSet)
{
    const int named = combo.count() - 1;
    EXPECT_EQ(named, 138); // of 147 names nine are second ones
    for (const auto &[colour, shown] : {std::pair(0x00FF0000U, u"Blue"_s),
                                        {0x00123456U, u"#563412"_s},
                                        {0x00FFFFFFU, u"White"_s},
                                        {0x02FF0000U, u"#0000FF"_s},
                                        {0xFFFFFFFFU, u"#FFFFFF"_s}}) {
        combo.SetColorValue(colour);
        EXPECT_EQ(combo.ColorValue(), colour);
        EXPECT_EQ(combo.currentText(), shown);
        EXPECT_LE(combo.count(), named + 2) << "one item for all without a name";
    }
    combo.SetColorValue(0x0000FFFF);
    const QImage swatch = combo.grab().toImage();
    for (int x = 10; x < swatch.width() / 2; ++x)
        EXPECT_EQ(swatch.pixelColor(x, swatch.height() / 2), QColor(Qt::yellow)) << "nothing is written on it";
}

TEST_F(ColorCombo, AnyOtherColourIsAskedForFromTheOpenListOnly)
{
    combo.SetColorValue(0xFF000005);
    AskForAnother();
    EXPECT_EQ(combo.ColorValue(), 0xFF000005U) << "cancelled";
    answer = 0x00010203;
    AskForAnother();
    EXPECT_EQ(asked, QList<Colour>(2, 0xFF000005));
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
        QTimer::singleShot(0, qApp, [&] {
            auto *dialog = qobject_cast<QColorDialog *>(QApplication::activeModalWidget());
            texts = dialog->windowTitle();
            for (auto *widget : dialog->findChildren<QWidget *>()) {
                if (widget->isVisible())
                    texts += widget->property("text").toString().remove(u'&') + u'|';
            }
            dialog->setCurrentColor(QColor(1, 2, 3));
            QTest::keyClick(dialog, isVietnamese ? Qt::Key_Return : Qt::Key_Escape);
        });
        EXPECT_EQ(ChooseColour(nullptr, 0x0000FFFF), isVietnamese ? std::optional<Colour>(0x00030201) : std::nullopt);
        EXPECT_TRUE(texts.startsWith(isVietnamese ? u"Chọn màu"_s : u"Choose a color"_s));
        EXPECT_EQ(texts.contains(u"Bỏ qua"_s), isVietnamese);
        EXPECT_FALSE(texts.contains(u"Pick Screen"_s));
    }
}
