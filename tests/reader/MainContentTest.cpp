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

using namespace Qt::StringLiterals;

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
    void Open(int idVic) { ASSERT_TRUE(window->qryTreeSutas.Locate(u"ID_VIC"_s, idVic)); }
    std::string Page() { return Browser().Source().toStdString(); }
};

} // namespace

TEST_F(Content, ButtonsShowAndStoreTheLanguage)
{
    const struct
    {
        const char *button;
        int mode;
        bool margins;
        const char *page;
    } rows[]{{"btnPali", 0, true, "<p>pali 1102</p>"},
             {"btnVietPali", 10, false, "<p>parallel 1102</p>"},
             {"btnViet", 1, true, "<p>viet 1102</p>"}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.button);
        Find<TcxButton>(row.button).click();
        EXPECT_EQ(Page(), row.page);
        EXPECT_EQ(Stored(u"LanguageSutta"_s), QVariant(row.mode));
        EXPECT_EQ(Find<TcxButton>("btnMarginWidth").isEnabled(), row.margins);
        EXPECT_EQ(Find<QMenu>("bsiMarginWidth").menuAction()->isEnabled(), row.margins);
        for (const char *button : {"btnPali", "btnViet", "btnVietPali"})
            EXPECT_EQ(Find<TcxButton>(button).isChecked(), std::string(button) == row.button);
        // The next passage comes in the same language.
        Open(9971);
        Open(1102);
        EXPECT_EQ(Page(), row.page);
    }
}

TEST_F(Content, APassageWithoutTextShowsItsNameAndItsTextAgain)
{
    Open(1201);
    Find<TcxButton>("btnVietPali").click();
    EXPECT_THAT(Page(), testing::HasSubstr("Chương lớn"));
    EXPECT_THAT(Page(), testing::Not(testing::HasSubstr("viet 1201")));
    Find<TcxButton>("btnPali").click();
    EXPECT_EQ(Page(), "<p>pali 1201</p>");
}

TEST_F(Content, FontAndSizeAreSwappedAndATextOfWhichThatLeavesNothingShowsItsName)
{
    Open(1101);
    EXPECT_THAT(Page(), testing::HasSubstr("font-size:200%"));
    Open(1102);
    FontName = u"Gentium"_s;
    window->ViewSutta(2);
    EXPECT_EQ(Page(), "Gentium");
    FontName.clear();
    window->ViewSutta(2);
    EXPECT_THAT(Page(), testing::AllOf(testing::StartsWith("<HTML>"), testing::HasSubstr("Giới thứ nhì")));
}

TEST_F(Content, TheMarginIsStoredShownAndOffAgainByTheButtonsBody)
{
    Trigger("acMarginWidth2");
    EXPECT_EQ(Page(), "<blockquote> <blockquote>\r<p>viet 1102</p>\r</blockquote> </blockquote>");
    EXPECT_EQ(Find<TcxButton>("btnMarginWidth").text(), u"2"_s);
    EXPECT_EQ(Stored(u"MarginWidth"_s), QVariant(2));
    Find<TcxButton>("btnVietPali").click();
    EXPECT_EQ(Page(), "<p>parallel 1102</p>");
    Find<TcxButton>("btnViet").click();
    Find<TcxButton>("btnMarginWidth").click();
    EXPECT_EQ(Page(), "<p>viet 1102</p>");
    EXPECT_EQ(Find<TcxButton>("btnMarginWidth").text(), u"0"_s);
    EXPECT_EQ(Stored(u"MarginWidth"_s), QVariant(0));
    // The next run knows nothing of it.
    Trigger("acMarginWidth3");
    End();
    Start();
    EXPECT_EQ(Find<TcxButton>("btnMarginWidth").text(), u"0"_s);
    EXPECT_EQ(Page(), "<p>viet 1102</p>");
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
    EXPECT_TRUE(Browser().OnBeforeNavigate2(QUrl(u"https://example.org/a%20b?c=d#e"_s)));
    EXPECT_EQ(opened, QStringList()); // not while the engine waits for the answer
    EXPECT_TRUE(WaitFor([this] { return !opened.isEmpty(); }));
    EXPECT_EQ(opened, QStringList{u"https://example.org/a%20b?c=d#e"_s});
    EXPECT_FALSE(Browser().OnBeforeNavigate2(QUrl(u"mailto:a@b"_s)));
    EXPECT_EQ(Page(), "<p>viet 1102</p>");
}

TEST_F(Content, CopyIsEnabledWhileTextIsSelected)
{
    Browser().setFocus();
    ASSERT_TRUE(WaitFor([this] { return Browser().focusProxy() && Browser().focusProxy()->hasFocus(); }));
    EXPECT_FALSE(Find<TcxButton>("btnCopy").isEnabled());
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(Browser().focusProxy(), Qt::Key_A, Qt::ControlModifier);
    ASSERT_TRUE(WaitFor([this] { return Action("acCopy").isEnabled(); }));
    EXPECT_TRUE(Find<TcxButton>("btnCopy").isEnabled());
    QTest::keyClick(Browser().focusProxy(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(WaitFor([] { return QGuiApplication::clipboard()->text() == u"viet 1102"_s; }));
    Open(1201);
    EXPECT_TRUE(WaitFor([this] { return !Action("acCopy").isEnabled(); }));
}

TEST_F(Content, ASearchShowsItsHitsOnEveryPageThatCompletes)
{
    const auto colouredCount = [this] {
        return Browser()
            .Evaluate(u"[...document.querySelectorAll('body *')].filter(e => !e.children.length && "
                      "getComputedStyle(e).backgroundColor == 'rgb(255, 255, 0)').length"_s)
            .toInt();
    };
    const auto expectHits = [&](const QString &word, int idVic, int count) {
        window->vFindSuttaStr = word;
        Open(idVic);
        ASSERT_TRUE(WaitPage());
        EXPECT_TRUE(WaitFor([&] { return colouredCount() == count; })) << colouredCount();
    };
    expectHits(u"KINH"_s, 1201, 3);
    expectHits(u"KINH"_s, 1102, 0);
    expectHits({}, 1201, 0);
}

TEST_F(Content, InTheFilterBoxTheEditKeysBelongToTheBox)
{
    auto &box = Find<TcxTextEdit>("edFilterSutta");
    box.setFocus();
    box.setText(u"own text"_s);
    QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(box.selectedText(), u"own text"_s);
    QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"own text"_s);
    EXPECT_EQ(Browser().GetSelectedText(), QString());
}

TEST_F(Content, TextIsLightOnADarkPageColourOnly)
{
    for (const auto &[ground, text] : {std::pair<Colour, QString>(0x00400000, u"rgb(228, 228, 228)"_s),
                                       {0x00E0F0FF, u"rgb(0, 0, 0)"_s},
                                       {0x00000000, u"rgb(228, 228, 228)"_s}}) {
        kelora->vBgColor = ground;
        window->ApplyOptions();
        ASSERT_TRUE(WaitPage());
        EXPECT_EQ(Browser().Evaluate(u"getComputedStyle(document.body).color"_s).toString(), text);
    }
}
