#include "reader/ReaderWindow.h"
#include "support/WaitFor.h"

#include "presentation/GlobalUnit.h"
#include "toolkit/BrowserControl.h"
#include "toolkit/CxButton.h"
#include "toolkit/CxTextEdit.h"
#include "toolkit/DBTreeList.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

namespace {

class Content : public ReaderWindow
{
protected:
    void SetUp() override
    {
        StoreDefaults(1, 1102);
        Start();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        ASSERT_TRUE(WaitPage());
    }
    void Open(int idVic) { ASSERT_TRUE(window->qryTreeSutas.Locate(QStringLiteral("ID_VIC"), idVic)); }
    std::string Page() { return Browser().Source().toStdString(); }
};

struct LanguageButton
{
    const char *button;
    int mode;
    bool margins;
    const char *page;
};

class LanguageButtons : public Content, public testing::WithParamInterface<LanguageButton>
{};

} // namespace

TEST_P(LanguageButtons, ShowAndStoreTheLanguage)
{
    Find<TcxButton>(GetParam().button).click();
    EXPECT_EQ(Page(), GetParam().page);
    EXPECT_EQ(Stored(QStringLiteral("LanguageSutta")), QVariant(GetParam().mode));
    EXPECT_EQ(Find<TcxButton>("btnMarginWidth").isEnabled(), GetParam().margins);
    EXPECT_EQ(Find<QMenu>("bsiMarginWidth").menuAction()->isEnabled(), GetParam().margins);
    int down = 0;
    for (const char *button : {"btnPali", "btnViet", "btnVietPali"})
        down += Find<TcxButton>(button).isChecked();
    EXPECT_EQ(down, 1);
    EXPECT_TRUE(Find<TcxButton>(GetParam().button).isChecked());
    // The next passage comes in the same language.
    Open(9971);
    Open(1102);
    EXPECT_EQ(Page(), GetParam().page);
}

INSTANTIATE_TEST_SUITE_P(Buttons, LanguageButtons,
                         testing::Values(LanguageButton{"btnPali", 0, true, "<p>pali 1102</p>"},
                                         LanguageButton{"btnViet", 1, true, "<p>viet 1102</p>"},
                                         LanguageButton{"btnVietPali", 10, false, "<p>parallel 1102</p>"}),
                         [](const auto &info) { return std::string(info.param.button); });

TEST_F(Content, APassageWithoutTextShowsItsNameAndItsTextAgain)
{
    Open(1201);
    Find<TcxButton>("btnVietPali").click();
    EXPECT_THAT(Page(), testing::HasSubstr("Chương lớn"));
    EXPECT_THAT(Page(), testing::Not(testing::HasSubstr("viet 1201")));
    Find<TcxButton>("btnPali").click();
    EXPECT_EQ(Page(), "<p>pali 1201</p>");
}

TEST_F(Content, ATextOfWhichTheSwapsLeaveNothingShowsItsName)
{
    Trigger("acMarginWidth2");
    window->ViewSutta(2);
    EXPECT_THAT(Page(), testing::HasSubstr("Segoe UI"));
    FontName.clear();
    window->ViewSutta(2);
    EXPECT_THAT(Page(), testing::AllOf(testing::StartsWith("<HTML>"), testing::HasSubstr("Giới thứ nhì")));
}

TEST_F(Content, TheSizeIsSwappedAndTheFontByTheOption)
{
    FontName = QStringLiteral("Gentium");
    Open(1101);
    EXPECT_THAT(Page(), testing::HasSubstr("font-size:200%"));
}

TEST_F(Content, TheMarginIsStoredShownAndOffAgainByTheButtonsBody)
{
    Trigger("acMarginWidth2");
    EXPECT_EQ(Page(), "<blockquote> <blockquote>\r<p>viet 1102</p>\r</blockquote> </blockquote>");
    EXPECT_EQ(Find<TcxButton>("btnMarginWidth").text(), QStringLiteral("2"));
    EXPECT_EQ(Stored(QStringLiteral("MarginWidth")), QVariant(2));
    Find<TcxButton>("btnVietPali").click();
    EXPECT_EQ(Page(), "<p>parallel 1102</p>");
    Find<TcxButton>("btnViet").click();
    Find<TcxButton>("btnMarginWidth").click();
    EXPECT_EQ(Page(), "<p>viet 1102</p>");
    EXPECT_EQ(Find<TcxButton>("btnMarginWidth").text(), QStringLiteral("0"));
    EXPECT_EQ(Stored(QStringLiteral("MarginWidth")), QVariant(0));
}

TEST_F(Content, TheMarginIsForgottenByTheNextRun)
{
    Trigger("acMarginWidth3");
    End();
    Start();
    EXPECT_EQ(Find<TcxButton>("btnMarginWidth").text(), QStringLiteral("0"));
    EXPECT_EQ(Page(), "<p>viet 1102</p>");
}

TEST_F(Content, NewOptionsComposeThePageAgain)
{
    Open(1101);
    int pages = 0;
    const auto change = std::exchange(window->dsKeloraContent.OnDataChange, nullptr);
    window->dsKeloraContent.OnDataChange = [&] {
        ++pages;
        change();
    };
    window->ApplyOptions();
    EXPECT_EQ(pages, 1);
    EXPECT_THAT(Page(), testing::HasSubstr("viet 1101"));
}

TEST_F(Content, ZoomStepsAreStoredBeyondTheEnginesRange)
{
    for (int step = 0; step < 20; ++step)
        Trigger("acZoomOut");
    EXPECT_EQ(Browser().ZoomPercent(), -100);
    Trigger("acZoomIn");
    EXPECT_EQ(Browser().ZoomPercent(), -90);
    Open(1101);
    EXPECT_EQ(Browser().ZoomPercent(), -90);
    Browser().OnZoomWheel(2);
    EXPECT_EQ(Browser().ZoomPercent(), -70);
    Browser().OnZoomWheel(-1);
    EXPECT_EQ(Browser().ZoomPercent(), -80);
}

TEST_F(Content, AWebAddressLeavesForTheSystemAndThePageStays)
{
    EXPECT_TRUE(Browser().OnBeforeNavigate2(QUrl(QStringLiteral("https://example.org/a%20b?c=d#e"))));
    EXPECT_EQ(opened, QStringList()); // not while the engine waits for the answer
    EXPECT_TRUE(WaitFor([this] { return !opened.isEmpty(); }));
    EXPECT_EQ(opened, QStringList{QStringLiteral("https://example.org/a%20b?c=d#e")});
    EXPECT_FALSE(Browser().OnBeforeNavigate2(QUrl(QStringLiteral("mailto:a@b"))));
    EXPECT_EQ(Page(), "<p>viet 1102</p>");
}

TEST_F(Content, CopyIsEnabledWhileTextIsSelected)
{
    Pause(50);
    EXPECT_FALSE(Action("acCopy").isEnabled());
    EXPECT_FALSE(Find<TcxButton>("btnCopy").isEnabled());
    Trigger("acSelectAll");
    EXPECT_TRUE(WaitFor([this] { return Action("acCopy").isEnabled(); }));
    EXPECT_TRUE(Find<TcxButton>("btnCopy").isEnabled());
    QGuiApplication::clipboard()->clear();
    Trigger("acCopy");
    EXPECT_TRUE(WaitFor([] { return QGuiApplication::clipboard()->text() == QStringLiteral("viet 1102"); }));
    Open(1201);
    EXPECT_TRUE(WaitFor([this] { return !Action("acCopy").isEnabled(); }));
}

TEST_F(Content, ASearchShowsItsHitsOnEveryPageThatCompletes)
{
    const auto colouredCount = [this] {
        return Browser()
            .Evaluate(QStringLiteral("[...document.querySelectorAll('body *')].filter(e => !e.children.length && "
                                     "getComputedStyle(e).backgroundColor == 'rgb(255, 255, 0)').length"))
            .toInt();
    };
    EXPECT_EQ(colouredCount(), 0);
    window->vFindSuttaStr = QStringLiteral("KINH");
    Open(1201);
    ASSERT_TRUE(WaitPage());
    EXPECT_TRUE(WaitFor([&] { return colouredCount() == 3; }));
    Open(1102);
    ASSERT_TRUE(WaitPage());
    EXPECT_EQ(colouredCount(), 0);
    window->vFindSuttaStr.clear();
    Open(1201);
    ASSERT_TRUE(WaitPage());
    EXPECT_EQ(colouredCount(), 0);
}

TEST_F(Content, TheContextMenuComesAtThePoint)
{
    auto &menu = Find<QMenu>("ppContent");
    const QPoint point = window->mapToGlobal(QPoint(500, 300));
    Browser().OnShowContextMenu(point);
    EXPECT_TRUE(menu.isVisible());
    EXPECT_EQ(menu.pos(), point);
    menu.close();
}

// --- Shortcuts ------------------------------------------------------------------------------------------------------

TEST_F(Content, ShortcutsActWhileThePageHasTheFocus)
{
    Browser().setFocus();
    ASSERT_TRUE(WaitFor([this] { return Browser().focusProxy() && Browser().focusProxy()->hasFocus(); }));
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(Browser().focusProxy(), Qt::Key_A, Qt::ControlModifier);
    ASSERT_TRUE(WaitFor([this] { return Action("acCopy").isEnabled(); }));
    QTest::keyClick(Browser().focusProxy(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(WaitFor([] { return QGuiApplication::clipboard()->text() == QStringLiteral("viet 1102"); }));
}

TEST_F(Content, InTheFilterBoxTheEditKeysBelongToTheBox)
{
    auto &box = Find<TcxTextEdit>("edFilterSutta");
    box.setFocus();
    box.setText(QStringLiteral("own text"));
    QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(box.selectedText(), QStringLiteral("own text"));
    QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("own text"));
    EXPECT_EQ(Browser().GetSelectedText(), QString());
}

TEST_F(Content, TextIsLightOnADarkPageColourOnly)
{
    const struct
    {
        Colour ground;
        const char *text;
    } rows[] = {{0x00400000, "rgb(228, 228, 228)"}, {0x00E0F0FF, "rgb(0, 0, 0)"}, {0x00000000, "rgb(228, 228, 228)"}};
    for (const auto &[ground, text] : rows) {
        kelora->vBgColor = ground;
        window->ApplyOptions();
        ASSERT_TRUE(WaitPage());
        EXPECT_EQ(Browser().Evaluate(QStringLiteral("getComputedStyle(document.body).color")).toString().toStdString(),
                  text);
    }
}
