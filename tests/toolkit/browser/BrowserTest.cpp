#include "toolkit/browser/BrowserTest.h"

#include <QRectF>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

std::unique_ptr<QWidget> BrowserTest::s_window;
TBrowserControl *BrowserTest::s_control = nullptr;

void BrowserTest::SetUpTestSuite()
{
    s_window = std::make_unique<QWidget>();
    auto *layout = new QVBoxLayout(s_window.get());
    layout->setContentsMargins({});
    layout->setSpacing(0);
    s_control = new TBrowserControl;
    layout->addWidget(s_control);
    s_window->resize(640, 480);
    s_window->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(s_window.get()));
}

void BrowserTest::TearDownTestSuite()
{
    s_window.reset();
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
    Control().SetOpensLinksInside(false);
    Control().SetHostCSS({});
    Control().SetZoomPercent(100);
    Doors() = m_realDoors;
}

void BrowserTest::LoadBytes(const QByteArray &page)
{
    Control().LoadFromString(page);
    EXPECT_TRUE(Control().WaitComplete());
}

QPoint BrowserTest::PlaceOf(const QString &selector)
{
    const QVariantList place = Value(u"((r) => [(r.left + r.right) / 2, (r.top + r.bottom) / 2])"
                                     "(document.querySelector('%1').getClientRects()[0])"_s.arg(selector))
                                   .toList();
    return (QPointF(place.value(0).toReal(), place.value(1).toReal()) * Control().page()->zoomFactor()).toPoint();
}
