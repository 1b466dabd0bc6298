#include "toolkit/controls/MarkStrip.h"

#include "support/WaitFor.h"
#include "toolkit/skin/SkinPainter.h"

#include <QCoreApplication>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(MarkStrip, EachKindHasAColourThatIsSeenOnLightAndDarkGrounds)
{
    const StripKind kinds[]{StripKind::Special, StripKind::High, StripKind::Normal, StripKind::Low, StripKind::Hit};
    for (const QColor ground : {QColor(Qt::white), QColor(0xFFF8E7), QColor(Qt::black), QColor(0x2B2F36)}) {
        QList<QRgb> colours;
        for (const StripKind kind : kinds) {
            const QColor colour = StripColour(kind, ground);
            EXPECT_GE(Contrast(colour, ground), 3) << static_cast<int>(kind) << " on " << ground.name().toStdString();
            EXPECT_FALSE(colours.contains(colour.rgb()));
            colours.append(colour.rgb());
        }
    }
}

TEST(MarkStrip, TellsWhatALineIsAndLeadsThere)
{
    TMarkStrip strip;
    strip.resize(12, 300);
    strip.show();
    QStringList done;
    strip.OnClick = [&](qsizetype line) { done.append(u"go %1"_s.arg(line)); };
    strip.OnDoubleClick = [&](qsizetype line) { done.append(u"open %1"_s.arg(line)); };
    strip.SetLines({{0.25, StripKind::Hit, u"hit"_s},
                    {0.5, StripKind::High, u"a <b>\nnote & more"_s},
                    {0.75, StripKind::Low, {}},
                    {0.5, StripKind::Low, u"second"_s}});
    const auto hintAt = [&](const QPoint &point) {
        QHelpEvent event(QEvent::ToolTip, point, strip.mapToGlobal(point));
        QCoreApplication::sendEvent(&strip, &event);
        return QToolTip::text().toStdString();
    };
    EXPECT_EQ(hintAt(strip.RectOf(0).center()), "<qt><b>hit</b></qt>");
    EXPECT_EQ(hintAt(strip.RectOf(1).center()), "<qt><b>second</b><hr><b>a &lt;b&gt;</b><br>note &amp; more</qt>");
    hintAt({6, 120});
    EXPECT_TRUE(WaitFor([] { return QToolTip::text().isEmpty(); })) << "between the lines";
    EXPECT_FALSE(strip.RectOf(0).intersects(QRect(strip.RectOf(1).x(), 0, 12, 300))) << "sides of their own";

    QTest::mouseClick(&strip, Qt::LeftButton, {}, strip.RectOf(2).center());
    QTest::mouseClick(&strip, Qt::RightButton, {}, strip.RectOf(2).center());
    QTest::mouseClick(&strip, Qt::LeftButton, {}, {6, 120});
    QTest::mousePress(&strip, Qt::LeftButton, {}, strip.RectOf(2).center());
    QTest::mouseRelease(&strip, Qt::LeftButton, {}, strip.RectOf(0).center());
    QTest::mouseDClick(&strip, Qt::LeftButton, {}, strip.RectOf(0).center());
    EXPECT_EQ(done.first(), u"go 2"_s);
    EXPECT_EQ(done.last(), u"open 0"_s);
    EXPECT_EQ(done.count(u"go 2"_s), 1);
    EXPECT_EQ(done.count(u"open 0"_s), 1);
}
