#include "presentation/About.h"

#include "presentation/Contrast.h"
#include "presentation/GlobalUnit.h"
#include "reader/ReaderWindow.h"
#include "support/PageInput.h"
#include "toolkit/BarCombo.h"
#include "toolkit/BrowserControl.h"
#include "toolkit/CxLinkLabel.h"

#include <QPlainTextEdit>
#include <QPushButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

class About : public ReaderWindow
{
protected:
    void SetUp() override
    {
        AddEnglish();
        StoreDefaults(1, 1101);
        Start();
        // Nothing that the door answers shows in the program.
        Doors().openDocument = [this](const QString &target) {
            opened.append(target);
            return false;
        };
    }

    /// Runs the command, and `inside` once the box stands with its page.
    void Show(const std::function<void(TfrmGioithieu &)> &inside)
    {
        RunModal<TfrmGioithieu>("acAbout", [&](TfrmGioithieu &box) {
            EXPECT_TRUE(WaitFor([&] { return In<TBrowserControl>(box, "wbAbout").IsComplete(); }, 15000));
            inside(box);
        });
    }
};

} // namespace

TEST_F(About, ShowsThePageOfItsMemoAnewEachTimeInBothLanguages)
{
    const QString captions[]{u"Lumivara|Lumivara|Version 1.1|© 2026 Nhóm tác giả Lumivara|Thông tin thêm...|Đó&ng"_s,
                             u"Lumivara|Lumivara|Version 1.1|© 2026 The Lumivara authors|More information...|&Close"_s};
    QByteArray page;
    for (int language : {0, 1}) {
        Find<TBarCombo>("bcbLanguage").SetItemIndex(language);
        Show([&](TfrmGioithieu &box) {
            QStringList shown{box.windowTitle()};
            for (const char *name : {"lbTarune", "lbVersion", "lbCopyright", "lbFernwhistle"})
                shown.append(In<QLabel>(box, name).text());
            auto &close = In<QPushButton>(box, "btnClose");
            EXPECT_EQ(shown.join(u'|') + u'|' + close.text(), captions[language]);
            EXPECT_EQ(box.size(), QSize(444, 528));
            EXPECT_EQ(box.minimumSize(), box.maximumSize());
            EXPECT_FALSE(In<QPlainTextEdit>(box, "mmAbout").isVisible());
            auto &browser = In<TBrowserControl>(box, "wbAbout");
            EXPECT_EQ(browser.Source(), In<QPlainTextEdit>(box, "mmAbout").toPlainText().toUtf8());
            EXPECT_TRUE(page.isEmpty() || page == browser.Source()) << "the page is not translated";
            page = browser.Source();
            EXPECT_TRUE(std::ranges::all_of(page, [](char c) { return c == '\n' || (c >= 32 && c < 127); }));
            const auto value = [&](const QString &expression) { return browser.Evaluate(expression).toString(); };
            EXPECT_TRUE(value(u"document.body.textContent"_s).contains(u"tiếng Pāli và tiếng Việt"_s));
            EXPECT_EQ(value(u"(e => e.scrollHeight <= 342 && e.scrollWidth <= 390 && innerWidth == 390"
                            " && getComputedStyle(e).backgroundColor)(document.documentElement)"_s),
                      u"rgb(255, 255, 255)"_s);
            QFont font = box.font();
            font.setPixelSize(20);
            box.setFont(font);
            EXPECT_GE(box.width(), 444 * 20 / 13);
            EXPECT_TRUE(WaitFor([&] { return browser.Evaluate(u"Math.abs(innerWidth - 390) < 2"_s).toBool(); }));
            QTest::mouseClick(&close, Qt::LeftButton);
            EXPECT_FALSE(box.isVisible());
        });
    }
    CheckBoxes({});
}

TEST_F(About, SendsLinksToTheSystemAndStays)
{
    Show([&](TfrmGioithieu &box) {
        auto &page = In<TBrowserControl>(box, "wbAbout");
        EXPECT_TRUE(TakesInput(page));
        const QString mark = u"document.body.dataset.mark"_s;
        page.Evaluate(mark + u" = 'same'"_s);
        for (const QKeySequence keys : {u"F5"_s, u"Ctrl+R"_s, u"Alt+Left"_s})
            QTest::keyClick(page.focusProxy(), keys[0].key(), keys[0].keyboardModifiers());
        page.reload();
        for (int link : {0, 1}) {
            const QVariantList place =
                page.Evaluate(u"(r => [r.left + 3, r.top + 3])(document.links[%1].getClientRects()[0])"_s.arg(link))
                    .toList();
            QTest::mouseClick(page.focusProxy(), Qt::LeftButton, {}, QPoint(place[0].toInt(), place[1].toInt()));
            EXPECT_TRUE(WaitFor([&] { return opened.size() == link + 1; }));
        }
        const QString mail = u"mailto:a@b.example?body=http:"_s;
        for (const QString &target : {mail, u"HTTPS://example.org/"_s, u"odd:/HTTP"_s})
            EXPECT_EQ(page.OnBeforeNavigate2(QUrl(target)), target != u"odd:/HTTP") << qPrintable(target);
        EXPECT_TRUE(WaitFor([&] { return opened.size() == 4; }));
        EXPECT_EQ(opened, (QStringList{u"https://translator.lumivara.example/"_s, u"mailto:gopy@lumivara.example"_s,
                                       mail, u"https://example.org/"_s}));
        EXPECT_TRUE(WaitFor([&] { return !page.page()->isLoading(); }));
        EXPECT_EQ(page.Evaluate(mark).toString(), u"same"_s) << "nothing refreshes the page";
        // The page takes the keys first.
        page.setFocus();
        QTest::keyClick(page.focusProxy(), Qt::Key_Escape);
        EXPECT_TRUE(WaitFor([&] { return !box.isVisible(); }));
    });
    CheckBoxes({});
}

TEST_F(About, OpensGuideAndInformationWithoutAnyWordOfItsOwn)
{
    const QString information = u"https://lumivara.example/thong-tin"_s;
    Trigger("acHelp");
    Trigger("acFernwhistle");
    Show([&](TfrmGioithieu &box) {
        auto &link = In<TcxLinkLabel>(box, "lbFernwhistle");
        QTest::mouseClick(&link, Qt::LeftButton);
        QTest::mouseClick(&link, Qt::RightButton);
        In<QPushButton>(box, "btnClose").setFocus();
        QTest::keyClick(&box, Qt::Key_Tab, Qt::ShiftModifier);
        EXPECT_TRUE(link.hasFocus()) << "reached by keyboard";
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_A})
            QTest::keyClick(&link, key);
        EXPECT_TRUE(box.isVisible());
    });
    EXPECT_EQ(opened, QStringList{AppPath + u"LumivaraUserGuide.pdf"_s} + QStringList(4, information));
    CheckBoxes({});
}

TEST_F(About, KeepsItsColoursWhereTheyCanBeRead)
{
    const std::pair<const char *, QRgb> labels[]{
        {"lbTarune", 0xFF800000}, {"lbCopyright", 0xFF515151}, {"lbFernwhistle", 0xFF0000FF}};
    Show([&](TfrmGioithieu &box) {
        for (const QRgb ground : {0xFFFFFFFF, 0xFF1E1E1E, 0xFF777777, 0xFF102A5C}) {
            QPalette palette = box.palette();
            palette.setColor(QPalette::Window, ground);
            box.setPalette(palette);
            for (const auto &[name, told] : labels) {
                const QRgb shown = In<QLabel>(box, name).palette().color(QPalette::WindowText).rgb();
                EXPECT_GE(ContrastRatio(shown, ground), 4.5) << name << std::hex << ground;
                EXPECT_EQ(shown == told, ContrastRatio(told, ground) >= 4.5) << name << std::hex << ground;
            }
        }
    });
}
