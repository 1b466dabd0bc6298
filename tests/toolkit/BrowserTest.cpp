#include "toolkit/BrowserTest.h"
#include "support/WaitFor.h"

#include <QRectF>

using namespace Qt::StringLiterals;

std::unique_ptr<TBrowserControl> BrowserTest::s_control;

void BrowserTest::SetUpTestSuite()
{
    s_control = std::make_unique<TBrowserControl>();
    s_control->resize(640, 480);
    s_control->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(s_control.get()));
}

void BrowserTest::TearDownTestSuite()
{
    s_control.reset();
}

BrowserTest::BrowserTest() : m_realDoors(Doors())
{
    Doors().messageBox = [this](const QString &, const QString &text, BoxButtons, BoxIcon) {
        boxes.append(text);
        return true;
    };
    Doors().openDocument = [this](const QString &target) {
        opened.append(target);
        return true;
    };
}

BrowserTest::~BrowserTest()
{
    Control().OnBeforeNavigate2 = nullptr;
    Control().OnDocumentComplete = nullptr;
    Control().OnShowContextMenu = nullptr;
    Control().OnClick = nullptr;
    Control().OnZoomWheel = nullptr;
    Control().SetHostCSS({});
    Control().SetZoomPercent(100);
    Doors() = m_realDoors;
}

void BrowserTest::Load(const QString &page)
{
    LoadBytes(page.toUtf8());
}

void BrowserTest::LoadBytes(const QByteArray &page)
{
    Control().LoadFromString(page);
    EXPECT_TRUE(Control().WaitComplete());
}

bool BrowserTest::Becomes(const QString &expression)
{
    return WaitFor([&] { return Value(expression).toBool(); });
}

QWidget *BrowserTest::Input()
{
    return Control().focusProxy();
}

QPoint BrowserTest::PlaceOf(const QString &selector)
{
    const QVariantMap rect =
        Value(u"(() => { const r = document.querySelector('%1').getClientRects()[0];"
              " return { x: (r.left + r.right) / 2, y: (r.top + r.bottom) / 2 }; })()"_s.arg(selector))
            .toMap();
    const qreal zoom = Control().page()->zoomFactor();
    return (QPointF(rect[u"x"_s].toReal(), rect[u"y"_s].toReal()) * zoom).toPoint();
}
