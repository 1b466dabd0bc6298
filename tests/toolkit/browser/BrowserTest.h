#pragma once

#include "support/PageInput.h"
#include "support/WaitFor.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/program/Doors.h"

#include <QTest>

#include <gmock/gmock.h>

#include <memory>

/// One control in a window for all tests of a suite, each with its own pages. The doors are stand-ins that keep what
/// was asked of them.
class BrowserTest : public testing::Test
{
public:
    static void SetUpTestSuite();
    static void TearDownTestSuite();

protected:
    BrowserTest();
    ~BrowserTest() override;

    TBrowserControl &Control() { return *s_control; }
    /// Shows the page and waits until it is complete.
    void Load(const QString &page) { LoadBytes(page.toUtf8()); }
    void LoadBytes(const QByteArray &page);
    /// Value of an expression in the page's document, seen from our scripts.
    QVariant Value(const QString &expression) { return Control().Evaluate(expression); }
    QString Text(const QString &expression) { return Value(expression).toString(); }
    /// Waits until the expression is true in the page.
    bool Becomes(const QString &expression)
    {
        return WaitFor([&] { return Value(expression).toBool(); });
    }
    /// Clicks the first element that a selector finds.
    void Click(const QString &selector)
    {
        EXPECT_TRUE(TakesInput(Control()));
        QTest::mouseClick(Input(), Qt::LeftButton, {}, PlaceOf(selector));
    }
    /// The widget in which the engine takes its input.
    QWidget *Input() { return Control().focusProxy(); }
    /// Middle of the first element that a selector finds, in the control's coordinates.
    QPoint PlaceOf(const QString &selector);

    QStringList boxes;  ///< texts of the message boxes shown
    QStringList opened; ///< what the document door was asked to open

private:
    static std::unique_ptr<QWidget> s_window;
    static TBrowserControl *s_control;
    PlatformDoors m_realDoors;
};
