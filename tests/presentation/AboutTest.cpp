#include "presentation/About.h"

#include "presentation/GlobalUnit.h"
#include "reader/ReaderWindow.h"
#include "support/WaitFor.h"
#include "toolkit/BarCombo.h"
#include "toolkit/BrowserControl.h"
#include "toolkit/CxLinkLabel.h"

#include <QFile>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

class About : public ReaderWindow
{
protected:
    void SetUp() override
    {
        QFile english(ProductFolder() + u"English.lng"_s);
        EXPECT_TRUE(english.open(QIODevice::ReadOnly));
        AddLanguage(u"English.lng"_s, english.readAll());
        StoreDefaults(1, 1101);
        Start();
        // Nothing that the door answers shows in the program.
        Doors().openDocument = [this](const QString &target) {
            opened.append(target);
            return false;
        };
    }

    /// Runs the command, and `inside` once the box stands with its page; what that leaves open is closed.
    void Show(const std::function<void(TfrmGioithieu &)> &inside)
    {
        bool wasOpen = false;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
            const QPointer<TfrmGioithieu> box = window->findChild<TfrmGioithieu *>();
            if (!box || !box->isVisible())
                return;
            poll.stop();
            wasOpen = true;
            EXPECT_TRUE(QTest::qWaitForWindowActive(box));
            EXPECT_TRUE(WaitFor([&] { return In<TBrowserControl>(*box, "wbAbout").IsComplete(); }, 15000));
            inside(*box);
            if (box && box->isVisible())
                box->reject();
        });
        poll.start(10);
        Trigger("acAbout");
        EXPECT_TRUE(wasOpen);
        EXPECT_FALSE(window->findChild<TfrmGioithieu *>()) << "the box is freed";
    }

    template <typename T>
    static T &In(TfrmGioithieu &box, const char *name)
    {
        return *box.findChild<T *>(QLatin1StringView(name));
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

double Contrast(const QColor &one, const QColor &other)
{
    const auto luminance = [](const QColor &colour) {
        const auto part = [](double p) { return p <= 0.04045 ? p / 12.92 : std::pow((p + 0.055) / 1.055, 2.4); };
        return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF()) + 0.05;
    };
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    return high / low;
}

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
            EXPECT_EQ(browser.Evaluate(u"document.querySelectorAll('p.western').length"_s).toInt(), 5);
            EXPECT_TRUE(
                browser.Evaluate(u"document.body.textContent"_s).toString().contains(u"tiếng Pāli và tiếng Việt"_s));
            EXPECT_LE(browser.Evaluate(u"document.documentElement.scrollHeight"_s).toInt(), 342)
                << "no word is cut off";
            EXPECT_LE(browser.Evaluate(u"document.documentElement.scrollWidth"_s).toInt(), 390);
            EXPECT_EQ(browser.Evaluate(u"getComputedStyle(document.documentElement).backgroundColor"_s).toString(),
                      u"rgb(255, 255, 255)"_s);
            QTest::mouseClick(&In<QPushButton>(box, "btnClose"), Qt::LeftButton);
            EXPECT_EQ(box.result(), QDialog::Accepted);
        });
    }
    CheckBoxes({});
    EXPECT_TRUE(opened.isEmpty());
}

TEST_F(About, GrowsWithTheFontAndClipsNothing)
{
    Show([&](TfrmGioithieu &box) {
        QFont font = box.font();
        font.setPixelSize(20);
        box.setFont(font);
        EXPECT_GE(box.width(), 444 * 20 / 13);
        for (const char *name : {"lbTarune", "lbVersion", "lbCopyright", "lbFernwhistle"}) {
            auto &label = In<QLabel>(box, name);
            EXPECT_GE(label.width(), label.sizeHint().width()) << name;
            EXPECT_GE(label.height(), label.fontMetrics().height()) << name;
        }
        auto &browser = In<TBrowserControl>(box, "wbAbout");
        EXPECT_TRUE(WaitFor([&] { return browser.Evaluate(u"Math.abs(innerWidth - 390) < 2"_s).toBool(); }))
            << "the page grows alike";
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
        for (const QKeySequence &keys : {QKeySequence(u"F5"_s), QKeySequence(u"Ctrl+R"_s), QKeySequence(u"Ctrl+F5"_s),
                                         QKeySequence(Qt::Key_Reload), QKeySequence(u"Alt+Left"_s)})
            QTest::sendKeyEvent(QTest::Click, page.focusProxy(), keys[0].key(), QString(), keys[0].keyboardModifiers());
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
    struct Label
    {
        const char *name;
        QColor told;
    };
    const Label labels[] = {{"lbTarune", 0x800000}, {"lbCopyright", 0x515151}, {"lbFernwhistle", 0x0000ff}};
    Show([&](TfrmGioithieu &box) {
        for (const QColor ground : {QColor(u"#ffffff"_s), QColor(u"#1e1e1e"_s), QColor(u"#000000"_s),
                                    QColor(u"#777777"_s), QColor(u"#102a5c"_s), QColor(u"#f5f2ec"_s)}) {
            QPalette palette = box.palette();
            palette.setColor(QPalette::Window, ground);
            box.setPalette(palette);
            for (const Label &label : labels) {
                const QColor shown = In<QLabel>(box, label.name).palette().color(QPalette::WindowText);
                EXPECT_GE(Contrast(shown, ground), 4.5) << label.name << qPrintable(ground.name());
                if (Contrast(label.told, ground) >= 4.5) {
                    EXPECT_EQ(shown, label.told) << label.name << qPrintable(ground.name());
                }
            }
        }
    });
}
