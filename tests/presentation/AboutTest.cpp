#include "presentation/About.h"

#include "presentation/Contrast.h"
#include "presentation/GlobalUnit.h"
#include "reader/ReaderWindow.h"
#include "support/WaitFor.h"
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
    static QString Caption(TfrmGioithieu &box, const char *name) { return In<QLabel>(box, name).text(); }

    static void ClickLink(TBrowserControl &page, int number)
    {
        const QVariantList place =
            page.Evaluate(u"(() => { const r = document.links[%1].getClientRects()[0];"
                          " return [(r.left + r.right) / 2, (r.top + r.bottom) / 2]; })()"_s.arg(number))
                .toList();
        QTest::mouseClick(page.focusProxy(), Qt::LeftButton, {}, QPoint(place[0].toInt(), place[1].toInt()));
    }
};

} // namespace

TEST_F(About, ShowsThePageOfItsMemoAnewEachTimeInBothLanguages)
{
    const char *const captions[2][3] = {{"© 2026 Nhóm tác giả Lumivara", "Thông tin thêm...", "Đó&ng"},
                                        {"© 2026 The Lumivara authors", "More information...", "&Close"}};
    QByteArray page;
    for (int language : {0, 1}) {
        Find<TBarCombo>("bcbLanguage").SetItemIndex(language);
        Show([&](TfrmGioithieu &box) {
            EXPECT_EQ(box.windowTitle(), u"Lumivara"_s);
            EXPECT_EQ(box.size(), QSize(444, 528));
            EXPECT_EQ(box.minimumSize(), box.maximumSize());
            EXPECT_EQ(Caption(box, "lbTarune"), u"Lumivara"_s);
            EXPECT_EQ(Caption(box, "lbVersion"), u"Version 1.1"_s);
            EXPECT_EQ(Caption(box, "lbCopyright").toStdString(), captions[language][0]);
            EXPECT_EQ(Caption(box, "lbFernwhistle").toStdString(), captions[language][1]);
            EXPECT_EQ(In<QPushButton>(box, "btnClose").text().toStdString(), captions[language][2]);
            EXPECT_FALSE(In<QPlainTextEdit>(box, "mmAbout").isVisible());
            auto &browser = In<TBrowserControl>(box, "wbAbout");
            EXPECT_EQ(browser.size(), QSize(390, 342));
            EXPECT_EQ(browser.Source(), In<QPlainTextEdit>(box, "mmAbout").toPlainText().toUtf8());
            EXPECT_TRUE(page.isEmpty() || page == browser.Source()) << "the page is not translated";
            page = browser.Source();
            EXPECT_TRUE(
                std::all_of(page.cbegin(), page.cend(), [](char c) { return c == '\n' || (c >= 32 && c < 127); }));
            const auto value = [&](const QString &expression) { return browser.Evaluate(expression).toString(); };
            EXPECT_EQ(value(u"document.querySelectorAll('p.western').length"_s), u"5"_s);
            EXPECT_TRUE(value(u"document.body.textContent"_s).contains(u"tiếng Pāli và tiếng Việt"_s));
            EXPECT_EQ(value(u"(e => e.scrollHeight <= 342 && e.scrollWidth <= 390)(document.documentElement)"_s),
                      u"true"_s)
                << "no word is cut off";
            EXPECT_EQ(value(u"getComputedStyle(document.documentElement).backgroundColor"_s), u"rgb(255, 255, 255)"_s);
            QTest::mouseClick(&In<QPushButton>(box, "btnClose"), Qt::LeftButton);
            EXPECT_EQ(box.result(), QDialog::Accepted);
        });
    }
    CheckBoxes({});
    EXPECT_TRUE(opened.isEmpty());
}

TEST_F(About, GrowsWithTheFontAndItsPageAlike)
{
    Show([&](TfrmGioithieu &box) {
        QFont font = box.font();
        font.setPixelSize(20);
        box.setFont(font);
        EXPECT_GE(box.width(), 444 * 20 / 13);
        auto &browser = In<TBrowserControl>(box, "wbAbout");
        EXPECT_TRUE(WaitFor([&] { return browser.Evaluate(u"Math.abs(innerWidth - 390) < 2"_s).toBool(); }));
    });
}

TEST_F(About, SendsLinksToTheSystemAndStays)
{
    const QString translator = u"https://translator.lumivara.example/"_s;
    const QString mail = u"mailto:gopy@lumivara.example"_s;
    Show([&](TfrmGioithieu &box) {
        auto &page = In<TBrowserControl>(box, "wbAbout");
        const QUrl address = page.url();
        for (int link : {0, 1}) {
            ClickLink(page, link);
            EXPECT_TRUE(WaitFor([&] { return opened.size() == link + 1; }));
        }
        EXPECT_EQ(opened, (QStringList{translator, mail}));
        for (const auto &[target, isCancelled] :
             {std::pair{u"odd:/see/http/there"_s, true},
              {u"mailto:a@b.example?body=http:"_s, true},
              {u"HTTPS://example.org/"_s, true}, // the engine's form is in small letters
              {u"odd:/HTTP"_s, false},
              {mail, false}})
            EXPECT_EQ(page.OnBeforeNavigate2(QUrl(target)), isCancelled) << qPrintable(target);
        EXPECT_TRUE(WaitFor([&] { return opened.size() == 5; }));
        EXPECT_EQ(opened.mid(2), (QStringList{u"odd:/see/http/there"_s, u"mailto:a@b.example?body=http:"_s,
                                              u"https://example.org/"_s}));
        const QString mark = u"document.body.dataset.mark"_s;
        page.Evaluate(mark + u" = 'same'"_s);
        for (const QKeySequence keys : {u"F5"_s, u"Ctrl+R"_s, u"Ctrl+F5"_s, u"Refresh"_s, u"Alt+Left"_s})
            QTest::keyClick(page.focusProxy(), keys[0].key(), keys[0].keyboardModifiers());
        page.reload();
        Pause(200);
        EXPECT_EQ(page.Evaluate(mark).toString(), u"same"_s) << "nothing refreshes the page";
        EXPECT_EQ(page.url(), address);
        EXPECT_TRUE(box.isVisible());
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
    EXPECT_EQ(opened, (QStringList{AppPath + u"LumivaraUserGuide.pdf"_s, information}));
    Show([&](TfrmGioithieu &box) {
        opened.clear();
        auto &link = In<TcxLinkLabel>(box, "lbFernwhistle");
        EXPECT_EQ(link.cursor().shape(), Qt::PointingHandCursor);
        QTest::mouseClick(&link, Qt::LeftButton);
        QTest::mouseClick(&link, Qt::RightButton);
        In<QPushButton>(box, "btnClose").setFocus();
        QTest::keyClick(&box, Qt::Key_Tab, Qt::ShiftModifier);
        EXPECT_TRUE(link.hasFocus()) << "reached by keyboard";
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_A})
            QTest::keyClick(&link, key);
        EXPECT_EQ(opened, QStringList(3, information));
        EXPECT_TRUE(box.isVisible());
    });
    CheckBoxes({});
}

TEST_F(About, KeepsItsColoursWhereTheyCanBeRead)
{
    const std::pair<const char *, QRgb> labels[] = {
        {"lbTarune", 0xFF800000}, {"lbCopyright", 0xFF515151}, {"lbFernwhistle", 0xFF0000FF}};
    Show([&](TfrmGioithieu &box) {
        for (const QRgb ground : {0xFFFFFFFF, 0xFF1E1E1E, 0xFF000000, 0xFF777777, 0xFF102A5C, 0xFFF5F2EC}) {
            QPalette palette = box.palette();
            palette.setColor(QPalette::Window, ground);
            box.setPalette(palette);
            for (const auto &[name, told] : labels) {
                const QRgb shown = In<QLabel>(box, name).palette().color(QPalette::WindowText).rgb();
                EXPECT_GE(ContrastRatio(shown, ground), 4.5) << name << " on " << std::hex << ground;
                EXPECT_EQ(shown == told, ContrastRatio(told, ground) >= 4.5) << name << " on " << std::hex << ground;
            }
        }
    });
}
