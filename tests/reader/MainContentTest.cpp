#include "reader/ReaderWindow.h"

#include "support/FailingDisk.h"
#include "support/PageInput.h"
#include "toolkit/controls/CxTextEdit.h"

#include <QClipboard>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace {

class Content : public ReaderWindow
{
protected:
    void SetUp() override
    {
        StartOn(1102);
        Activate();
        ASSERT_TRUE(WaitPage());
    }
    QString Margin() { return Find<TcxButton>("btnMarginWidth").text(); }
};

} // namespace

TEST_F(Content, ButtonsShowAndStoreTheLanguage)
{
    for (const auto &[button, mode, page, language] : {std::tuple("btnPali", 0, "<p>pali 1102</p>", u"pi"_s),
                                                       {"btnVietPali", 10, "<p>parallel 1102</p>", u"vi"_s},
                                                       {"btnViet", 1, "<p>viet 1102</p>", u"vi"_s}}) {
        SCOPED_TRACE(button);
        Click(button);
        EXPECT_EQ(Page(), page);
        EXPECT_EQ(Stored(u"LanguageSutta"_s), QVariant(mode));
        EXPECT_EQ(Find<TcxButton>("btnMarginWidth").isEnabled(), mode != 10);
        EXPECT_EQ(Find<QMenu>("bsiMarginWidth").menuAction()->isEnabled(), mode != 10);
        for (const char *name : {"btnPali", "btnViet", "btnVietPali"})
            EXPECT_EQ(Find<TcxButton>(name).isChecked(), std::string(name) == button);
        // The next passage comes in the same language.
        GoTo(9971);
        GoTo(1102);
        EXPECT_EQ(Page(), page);
        const auto printed = Find<TBrowserControl>("ebContent").PrintedIdentity();
        EXPECT_EQ(printed.address + printed.language, u"lumivara://text/1102"_s + language);
    }
}

TEST_F(Content, TheMarginIsStoredShownAndOffAgainByTheButtonsBody)
{
    Trigger("acMarginWidth2");
    EXPECT_EQ(Page(), "<blockquote> <blockquote>\r<p>viet 1102</p>\r</blockquote> </blockquote>");
    EXPECT_EQ(Margin(), u"2"_s);
    EXPECT_EQ(Stored(u"MarginWidth"_s), QVariant(2));
    Click("btnMarginWidth");
    EXPECT_EQ(Page(), "<p>viet 1102</p>");
    EXPECT_EQ(Margin(), u"0"_s);
    EXPECT_EQ(Stored(u"MarginWidth"_s), QVariant(0));
    Trigger("acMarginWidth3");
    End();
    Start();
    EXPECT_EQ(Margin(), u"0"_s) << "the next run knows nothing of it";
}

TEST_F(Content, AChoiceThatCannotBeStoredHoldsWithoutAWord)
{
    for (const auto &[action, button, page] :
         {std::tuple("acMarginWidth1", "", "<blockquote>\r<p>viet 1102</p>\r</blockquote>"),
          {"", "btnPali", "<blockquote>\r<p>pali 1102</p>\r</blockquote>"},
          {"", "btnVietPali", "<p>parallel 1102</p>"}}) {
        FailingDisk full(2); // the key is there, the value finds no room
        disk = &full;
        *action ? Trigger(action) : Click(button);
        disk = &RealSettingsDisk();
        EXPECT_TRUE(full.Fired());
        EXPECT_EQ(Page(), page);
    }
    EXPECT_EQ(Margin(), u"1"_s);
    EXPECT_FALSE(Find<TcxButton>("btnMarginWidth").isEnabled());
}

TEST_F(Content, ZoomStepsAreStoredBeyondTheEnginesRange)
{
    for (int step = 0; step < 20; ++step)
        Trigger("acZoomOut");
    GoTo(1101);
    EXPECT_EQ(Browser().ZoomPercent(), -100);
    Trigger("acZoomIn");
    Browser().OnZoomWheel(2);
    EXPECT_EQ(Browser().ZoomPercent(), -70);
}

TEST_F(Content, TheEditKeysBelongToWhatHasTheFocus)
{
    const auto copied = [](const QString &text) {
        return WaitFor([&] { return QGuiApplication::clipboard()->text() == text; });
    };
    ASSERT_TRUE(TakesInput(Browser()));
    Browser().setFocus();
    ASSERT_TRUE(WaitFor([this] { return Browser().focusProxy() && Browser().focusProxy()->hasFocus(); }));
    QTest::keyClick(Browser().focusProxy(), Qt::Key_A, Qt::ControlModifier);
    ASSERT_TRUE(WaitFor([this] { return Action("acCopy").isEnabled(); }));
    QTest::keyClick(Browser().focusProxy(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(copied(u"viet 1102"_s));
    GoTo(1201);
    EXPECT_TRUE(WaitFor([this] { return !Action("acCopy").isEnabled(); }));
    auto &box = Find<TcxTextEdit>("edFilterSutta");
    box.setText(u"own text"_s);
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(copied(u"own text"_s));
}

TEST_F(Content, TheRowOnShowBringsBackAPageThatIsGone)
{
    for (const bool isByKey : {false, true}) {
        EmptyForGood(Browser());
        if (isByKey)
            QTest::keyClick(&Tree(), Qt::Key_Return);
        else
            QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualRect(Tree().currentIndex()).center());
        EXPECT_TRUE(WaitPage());
        EXPECT_FALSE(Browser().IsPageGone());
        EXPECT_EQ(Browser().Evaluate(u"document.body.textContent"_s).toString(), u"viet 1102"_s);
    }
}

TEST_F(Content, AfterASearchOfTheWholeTextF3WalksItsHits)
{
    window->SetSoughtWords(u"viet"_s);
    GoTo(1101);
    ASSERT_TRUE(WaitPage());
    EXPECT_EQ(Coloured(), u"viet"_s);
    const auto isSelected = [this](const QString &text) {
        return WaitFor([&] { return Browser().Evaluate(u"getSelection().toString()"_s).toString() == text; });
    };
    QTest::keyClick(&Tree(), Qt::Key_F3);
    EXPECT_TRUE(isSelected(u"viet"_s));
    EXPECT_FALSE(window->findChild<QWidget *>(u"dlgFind"_s)) << "no box is needed";
    window->SetSoughtWords({});
}
