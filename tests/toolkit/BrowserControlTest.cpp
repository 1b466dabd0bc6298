#include "toolkit/BrowserControl.h"

#include <QTest>

#include <gmock/gmock.h>

TEST(BrowserControl, ShowsThePageHandedOver)
{
    TBrowserControl control;
    control.resize(600, 400);
    control.show();
    control.LoadFromString(QStringLiteral("<p>Phẩm một, paṭhamo vaggo").toUtf8());
    EXPECT_TRUE(control.WaitComplete());
    EXPECT_EQ(control.Evaluate(QStringLiteral("lumivara.plainText()")).toString(), QStringLiteral("Phẩm một, paṭhamo vaggo"));
}
