#include "reader/MarksInText.h"

#include "marks/FocusHighlight.h"
#include "marks/MarksWindow.h"
#include "reader/LongCanon.h"
#include "toolkit/controls/MarkStrip.h"

#include <QLabel>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

class MarksBesideThePage : public MarksWindow
{
protected:
    MarksBesideThePage()
    {
        program = LongCanon().Path(u"Lumivara"_s);
        skinFile = LongCanon().Path(u"AllSkins.skinres"_s);
        SetSkins({});
    }
    void SetUp() override
    {
        Open(1101);
        Activate();
        AnotherCopy(); // lists the texts
        Marks().Open();
    }
    TMarkStrip &Strip() { return Find<TMarkStrip>("stripMarks"); }
    void Mark(const QString &title, const QByteArray &excerpt, int priority, int number = 1101)
    {
        Marks().Insert();
        for (const auto &[field, value] : {std::pair("PRIORITY_FOC", priority), {"NIK_SUT", 6}, {"NIC_SUT", number}})
            Marks().FieldByName(QLatin1StringView(field)).SetAsInteger(value);
        Marks().FieldByName(u"NAME_FOC"_s).SetAsString(title);
        Marks().FieldByName(u"DESC_FOC"_s).SetAsString(u"note of "_s + title);
        Marks().FieldByName(u"TEXT_FOC"_s).SetAsBytes(excerpt);
        Marks().Post();
    }
    /// The lines of the strip once nothing is left to be done, as "title kind|title kind".
    std::string Lines()
    {
        EXPECT_TRUE(WaitPage());
        EXPECT_TRUE(WaitFor([this] { return window->Marks().IsIdle(); }));
        QStringList lines;
        for (const TMarkStrip::Line &line : Strip().Lines())
            lines.append(line.hint.section(u'\n', 0, 0) + u' ' + QString::number(static_cast<int>(line.kind)));
        return lines.join(u'|').toStdString();
    }
    /// True once a line stands where a paragraph of the page begins.
    bool StandsAt(qsizetype line, int block)
    {
        return WaitFor([&] {
            const double height = Browser()
                                      .Evaluate(u"(document.querySelectorAll('p')[%1].getBoundingClientRect().top + "
                                                "scrollY) / document.scrollingElement.scrollHeight"_s.arg(block))
                                      .toDouble();
            return line < Strip().Lines().size() && std::abs(Strip().Lines()[line].height - height) < 0.004;
        });
    }
    int TopBlock()
    {
        int block = -1;
        EXPECT_TRUE(Browser().AskPlace([&](const PagePlace &place) { block = place.block; }));
        EXPECT_TRUE(WaitFor([&] { return block >= 0; }));
        return block;
    }
    std::string Told() { return Find<QLabel>("lbFootText").text().toStdString(); }
};

} // namespace

TEST_F(MarksBesideThePage, LinesStandWhereTheirWordsDoInAnyDress)
{
    EXPECT_EQ(Lines(), "");
    EXPECT_EQ(Told(), "Bai 1101  ·  1101  ·  Nhom");
    Mark(u"a"_s, "\xEF\xBB\xBF<HTML><body>\r\n<p>40  <b>vi</b>et viet</p>", 1);
    EXPECT_EQ(Told(), "Bai 1101  ·  1101  ·  1 dấu  ·  Nhom");
    Mark(u"b"_s, "<p>10 viet", 4);
    Mark(u"nowhere"_s, "<p>81 viet viet", 2);
    Mark(u"other"_s, "<p>20 viet", 2, 1102);
    EXPECT_EQ(Lines(), "b 3|a 0") << "in the order of the page";
    EXPECT_EQ(Strip().Lines().first().hint, u"b\nnote of b"_s);
    EXPECT_EQ(Told(), "Bai 1101  ·  1101  ·  3 dấu  ·  Nhom");
    EXPECT_EQ(Strip().accessibleDescription(), u"3 dấu"_s);
    EXPECT_TRUE(StandsAt(0, 10) && StandsAt(1, 40));
    Browser().SetZoomPercent(170);
    EXPECT_TRUE(StandsAt(0, 10) && StandsAt(1, 40));
    Browser().SetZoomPercent(100);
    window->showNormal();
    window->resize(800, 600);
    EXPECT_TRUE(StandsAt(0, 10) && StandsAt(1, 40));
    Trigger("acMarginWidth3");
    EXPECT_EQ(Lines(), "b 3|a 0");
    EXPECT_TRUE(StandsAt(0, 10) && StandsAt(1, 40));
    Click("btnPali");
    EXPECT_EQ(Lines(), "") << "these words are in Vietnamese";
    EXPECT_EQ(Told(), "Bai 1101  ·  1101  ·  3 dấu  ·  Nhom");
    Click("btnViet");
    GoTo(1102);
    EXPECT_EQ(Lines(), "other 1");
    EXPECT_TRUE(StandsAt(0, 20));
}

TEST_F(MarksBesideThePage, FollowWhatIsDoneToMarks)
{
    Mark(u"a"_s, "<p>40 viet viet", 1);
    EXPECT_EQ(Lines(), "a 0");
    Marks().Edit();
    Marks().FieldByName(u"PRIORITY_FOC"_s).SetAsInteger(4);
    Marks().FieldByName(u"NAME_FOC"_s).SetAsString(u"edited"_s);
    EXPECT_EQ(Lines(), "a 0") << "not stored yet";
    Marks().Post();
    EXPECT_EQ(Lines(), "edited 3");
    Marks().Edit();
    Marks().FieldByName(u"NAME_FOC"_s).SetAsString(u"taken back"_s);
    Marks().Cancel();
    EXPECT_EQ(Lines(), "edited 3");
    answers = {true};
    Marks().Delete();
    TakeBox();
    EXPECT_EQ(Lines(), "");
    EXPECT_EQ(Told(), "Bai 1101  ·  1101  ·  Nhom");
}

TEST_F(MarksBesideThePage, WhatBelongsToAPageThatHasGoneIsDropped)
{
    Mark(u"a"_s, "<p>40 viet viet", 1);
    GoTo(1102);
    GoTo(1103);
    EXPECT_EQ(Lines(), "");
    GoTo(1101);
    Click("btnPali");
    Click("btnViet");
    EXPECT_EQ(Lines(), "a 0");
    EXPECT_TRUE(StandsAt(0, 40));
}

TEST_F(MarksBesideThePage, HitsOfASearchHaveLinesOfTheirOwn)
{
    Mark(u"a"_s, "<p>40 viet viet", 1);
    window->SetSoughtWords(u"7 viet"_s);
    GoTo(1102);
    GoTo(1101);
    const std::string hit = "Chỗ gặp của tìm kiếm 4|", hits = hit + hit + hit + hit + hit + hit;
    EXPECT_EQ(Lines(), hits + "a 0");
    EXPECT_TRUE(StandsAt(0, 7) && StandsAt(5, 57));
    Browser().ShowPlaces(
        [](const QString &text) {
            const qsizetype at = text.indexOf(u"33 viet"_s);
            return QList<TextRange>{{at, at + 7}};
        },
        -1);
    EXPECT_TRUE(WaitFor([&] { return Lines() == hits + hit + "a 0"; }));
    EXPECT_TRUE(StandsAt(3, 33));
    Browser().ClearPlaces();
    EXPECT_TRUE(WaitFor([&] { return Lines() == hits + "a 0"; }));
    window->SetSoughtWords({});
}

TEST_F(MarksBesideThePage, AClickLeadsThereAsOneStepAndThePageIsAsItWas)
{
    const QString page = Browser().Evaluate(u"document.documentElement.outerHTML"_s).toString();
    Mark(u"a"_s, "<p>40 viet viet", 1);
    EXPECT_EQ(Lines(), "a 0");
    QTest::mouseClick(&Strip(), Qt::LeftButton, {}, Strip().RectOf(0).center());
    EXPECT_TRUE(WaitFor([this] { return TopBlock() == 40; }));
    EXPECT_EQ(Browser().Evaluate(u"document.documentElement.outerHTML"_s).toString(), page);
    EXPECT_EQ(Browser().GetSelectedText(), QString());
    Trigger("acBack");
    EXPECT_TRUE(WaitFor([this] { return TopBlock() == 0; }));
    EXPECT_EQ(CurrentId(), 1101);
    Trigger("acForward");
    EXPECT_TRUE(WaitFor([this] { return TopBlock() == 40; }));
}

TEST_F(MarksBesideThePage, ADoubleClickOpensTheBrowserOfMarksAtIt)
{
    Mark(u"a"_s, "<p>40 viet viet", 1);
    Mark(u"b"_s, "<p>10 viet viet", 2);
    Mark(u"c"_s, "<p>20 viet viet", 2, 1102);
    EXPECT_EQ(Lines(), "b 1|a 0");
    const auto open = [this](qsizetype line) {
        QTest::mouseDClick(&Strip(), Qt::LeftButton, {}, Strip().RectOf(line).center());
        form = FindForm(u"frmFocusHighlight"_s);
        return form ? Value("NAME_FOC").toStdString() : std::string();
    };
    EXPECT_EQ(open(1), "a");
    EXPECT_EQ(open(0), "b");
    ASSERT_TRUE(form);
    InMarks<QLineEdit>("edSearch").setText(u"c"_s);
    static_cast<TfrmFocusHighlight &>(*form).LoadFocusHighLight();
    EXPECT_TRUE(WaitFor([this] { return Value("NAME_FOC") == u"c"_s; }));
    EXPECT_EQ(open(1), "a") << "the search box had left it out";
    EXPECT_EQ(InMarks<QLineEdit>("edSearch").text(), QString());
}

TEST_F(MarksBesideThePage, TheFindBarOpensBelowPageAndStrip)
{
    Trigger("acFindDialog");
    auto &bar = Find<QWidget>("dlgFind");
    EXPECT_TRUE(bar.isVisible());
    const auto topOf = [this](QWidget &widget) { return widget.mapTo(window.get(), QPoint()).y(); };
    EXPECT_TRUE(WaitFor([&] { return topOf(bar) >= topOf(Browser()) + Browser().height(); }));
    EXPECT_EQ(Strip().height(), Browser().height());
    EXPECT_EQ(bar.width(), Browser().width() + Strip().width());
}
