#include "dictionary/DictionaryWindow.h"

#include "dictionary/FormsList.h"
#include "toolkit/bound/CxGridDBTableView.h"
#include "toolkit/controls/BarCombo.h"

#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace {

const QString MoreWords = uR"(
insert into WORDS values (5, 201, 'kāya', '- thân');
insert into WORDS values (6, 201, 'tỳ khưu', '- bhikkhu'); insert into WORDS values (6, 202, 'Đại Ca Diếp', '- Mahākassapa');
insert into WORDS values (8, 201, 'saṃsagga', '- contact');
commit work;
)"_s;

class Strip : public DictionaryWindow
{
protected:
    /// Opens the window on a kind of the dictionary with more words.
    void Open(int kind, int interfaceLang = 0, const QString &script = {})
    {
        StartReader(0, interfaceLang);
        RunScript(MoreWords + script);
        OpenOn(kind);
        form->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    }
    TFormsList &Forms() { return In<TFormsList>("lstForms"); }
    /// The lines of the strip that is seen, one behind the other.
    std::string Lines()
    {
        QStringList lines;
        for (int row = 0; row < Forms().count(); ++row)
            lines.append(Forms().item(row)->text().replace(u'\n', u' '));
        EXPECT_EQ(Forms().isVisible(), !lines.isEmpty());
        return lines.join(u" | "_s).toStdString();
    }
    bool Shows(const std::string &lines)
    {
        return WaitFor([&] { return Lines() == lines; });
    }
    /// What the strip holds when nothing more will come.
    std::string LinesAtLast()
    {
        EXPECT_TRUE(WaitFor([&] { return !form->TimerForms.isActive(); }));
        return Lines();
    }
    std::string LookedUp(const QString &text, const Neighbours &around = {})
    {
        form->SearchingText(text, around);
        return LinesAtLast();
    }
    /// A key where the focus is.
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        ASSERT_TRUE(QApplication::focusWidget());
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    /// The word on show, its kind and the dictionary that the bar names.
    std::string Shown() { return (Word() + u' ' + QString::number(form->vTypeDict) + u' ' + Caption()).toStdString(); }
    void ClickLine(int row)
    {
        QTest::mouseClick(Forms().viewport(), Qt::LeftButton, {}, Forms().visualItemRect(Forms().item(row)).center());
    }
};

const char Compound[] = "kāya · Pāli-Việt kāyasaṁsaggaṁ → kāya + saṃsagga | "
                        "saṃsagga · Pāli-Anh kāyasaṁsaggaṁ → kāya + saṃsagga";

} // namespace

TEST_F(Strip, IsFilledForATypedFormThatTheListLacks)
{
    Open(5, 1);
    Type(Edit(), u"dhammānaṁ"_s);
    EXPECT_TRUE(Shows("dhamma · Pāli-Vietnamese dhammānaṁ → dhamma, genitive plural"));
    EXPECT_TRUE(Words().isEmpty());
    EXPECT_TRUE(Edit().hasFocus());
    for (const auto &[text, lines] :
         {std::pair(u"dhamma"_s, ""),
          {u" Dhamma "_s, ""},
          {u"nib"_s, ""},
          {u"nibba\u0304naṁ"_s, "nibbāna · Pāli-Vietnamese nibbānaṁ → nibbāna, accusative singular"},
          {u""_s, ""},
          {u"KĀYA"_s, "kāya · Pāli-Vietnamese"}}) {
        SCOPED_TRACE(text.toStdString());
        Edit().setText(text);
        form->RunWordSearch();
        EXPECT_EQ(LinesAtLast(), lines);
    }
}

TEST_F(Strip, ALineOpensItsWordByMouseAndKeys)
{
    Open(5);
    EXPECT_EQ(LookedUp(u"kāyasaṁsaggaṁ"_s), Compound);
    EXPECT_TRUE(WaitFor([&] { return Forms().verticalScrollBar()->maximum() == 0; })) << "all lines are seen";
    ClickLine(1);
    EXPECT_EQ(Shown(), "saṃsagga 8 Pāli-Anh");
    EXPECT_EQ(Edit().text(), u"saṃsagga"_s);
    EXPECT_TRUE(EntryShows(u"contact"_s));
    EXPECT_EQ(LinesAtLast(), Compound) << "the others stay";
    Press(Qt::Key_Up);
    Press(Qt::Key_Return);
    EXPECT_EQ(Shown(), "kāya 5 Pāli-Việt");
    EXPECT_TRUE(EntryShows(u"thân"_s));
    for (const Qt::Key enter : {Qt::Key_Return, Qt::Key_Enter}) {
        Edit().setFocus();
        LookedUp(u"dhammānaṁ"_s);
        Press(Qt::Key_F6);
        EXPECT_TRUE(Forms().hasFocus());
        Press(enter);
        EXPECT_EQ(Shown(), "dhamma 5 Pāli-Việt");
        Press(Qt::Key_F6);
        EXPECT_TRUE(Edit().hasFocus());
    }
    In<TcxGridDBTableView>("gtvWords").setFocus();
    Press(Qt::Key_Tab);
    EXPECT_TRUE(Forms().hasFocus());
    EXPECT_EQ(LookedUp(u"dhamma"_s), "");
    EXPECT_TRUE(Edit().hasFocus()) << "not lost with the strip";
    Press(Qt::Key_F6);
    EXPECT_TRUE(Edit().hasFocus());
}

TEST_F(Strip, BringsWordsOfSeveralSyllablesAndTheirCapitals)
{
    Open(6);
    EXPECT_EQ(LookedUp(u"tỳ"_s, {{u"vị"_s}, {u"khưu"_s}}), "tỳ khưu · Việt-Pāli tỳ → tỳ khưu");
    EXPECT_EQ(Word(), u"tỳ khưu"_s) << "the list is filtered by the syllable alone";
    EXPECT_EQ(LookedUp(u"khưu"_s, {{u"tỳ"_s}, {}}), "tỳ khưu · Việt-Pāli khưu → tỳ khưu");
    ClickLine(0);
    EXPECT_EQ(Shown(), "tỳ khưu 6 Việt-Pāli");
    EXPECT_EQ(LookedUp(u"đại ca diếp"_s), "Đại Ca Diếp · Việt-Pāli đại ca diếp → Đại Ca Diếp");
    EXPECT_TRUE(Words().isEmpty());
    ClickLine(0);
    EXPECT_EQ(Shown(), "Đại Ca Diếp 6 Việt-Pāli");
    EXPECT_TRUE(EntryShows(u"Mahākassapa"_s));
}

TEST_F(Strip, PutsFormsOfTheDictionaryFirstWhereItHasThem)
{
    Open(5, 0, uR"(
set term ^ ;
create procedure SP_GET_FORMS (TYPE_DICT integer, A_FORM varchar(63) character set unicode_fss)
returns (WORD varchar(63) character set unicode_fss) as begin
    if (TYPE_DICT = 5 and A_FORM = 'dhammānaṁ') then begin
        WORD = 'Nibbānapura'; suspend;
        WORD = 'nowhere'; suspend;
    end
end^
set term ; ^
commit work;
)"_s);
    EXPECT_EQ(LookedUp(u"Dhammānaṁ"_s), "Nibbānapura · Pāli-Việt dhammānaṁ → Nibbānapura, dạng mà từ điển ghi | "
                                        "dhamma · Pāli-Việt dhammānaṁ → dhamma, sở hữu cách số nhiều");
    ClickLine(0);
    EXPECT_EQ(Shown(), "Nibbānapura 5 Pāli-Việt");
}

TEST_F(Strip, ShowsTheNewestFormAloneInTheLanguageOfTheInterface)
{
    AddLanguage(u"English.lng"_s, "LANGID=1033\n");
    Open(5);
    form->SearchingText(u"kāyasaṁsaggaṁ"_s);
    EXPECT_EQ(LookedUp(u"kāyassa"_s), "kāya · Pāli-Việt kāyassa → kāya, sở hữu cách số ít");
    ReaderWindow::In<TBarCombo>(*window, "bcbLanguage").SetItemIndex(1);
    EXPECT_TRUE(Shows("kāya · Pāli-Vietnamese kāyassa → kāya, genitive singular"));
    form->SearchingText(u"dhammānaṁ"_s);
    EXPECT_EQ(Lines(), "");
    form->close();
    EXPECT_FALSE(form->TimerForms.isActive());
}

TEST_F(Strip, StaysEmptyWithoutAWordOfAllAndTellsNoFailure)
{
    for (const int kind : {0, 5, 8}) {
        Open(kind);
        Edit().setText(kind == 8 ? u"bad"_s : u"xqxānaṁ"_s); // a test for the one fails
        form->RunWordSearch();
        EXPECT_EQ(LinesAtLast(), "") << kind;
        End();
    }
}

TEST_F(Strip, KeysLeadBackAndForthOverTheWordsShown)
{
    Open(5);
    const auto isEnabled = [this](const char *action) { return In<QAction>(action).isEnabled(); };
    EXPECT_FALSE(isEnabled("acWordBack") || isEnabled("acWordForward"));
    Search(u"nib"_s);
    In<QAction>("acPaliEng").trigger();
    EXPECT_EQ(Shown(), "dhamma 8 Pāli-Anh");
    const std::function<QWidget *()> places[]{[this] { return &Edit(); },
                                              [this] { return &In<TcxGridDBTableView>("gtvWords"); },
                                              [this] { return Entry().focusProxy(); }};
    for (const auto &place : places) {
        const auto press = [&](Qt::Key key) {
            place()->setFocus();
            QTest::keyClick(place(), key, Qt::AltModifier);
            return Shown();
        };
        for (const char *shown : {"nibbāna 5 Pāli-Việt", "dhamma 5 Pāli-Việt", "dhamma 5 Pāli-Việt"})
            EXPECT_EQ(press(Qt::Key_Left), shown);
        EXPECT_FALSE(isEnabled("acWordBack"));
        for (const char *shown : {"nibbāna 5 Pāli-Việt", "dhamma 8 Pāli-Anh"})
            EXPECT_EQ(press(Qt::Key_Right), shown);
        EXPECT_FALSE(isEnabled("acWordForward"));
    }
    Edit().setFocus();
    Press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_TRUE(EntryShows(u"tịch tịnh"_s));
    Search(u"xyz"_s);
    Press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(Shown(), "nibbāna 5 Pāli-Việt") << "from an empty list to the last word";
    LookedUp(u"kāyassa"_s);
    ClickLine(0);
    EXPECT_FALSE(isEnabled("acWordForward")) << "another word ends what was ahead";
    Press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(Shown(), "nibbāna 5 Pāli-Việt");
}

TEST_F(Strip, AWordOfTheListOnShowIsReachedWithinIt)
{
    Open(5);
    Search(u"v"_s);
    for (const char *sense : {"sense of v1<", "sense of v2<"}) {
        Press(Qt::Key_Down);
        ASSERT_TRUE(EntryShows(QString::fromUtf8(sense)));
    }
    Press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(Shown() + " in " + Edit().text().toStdString(), "v1 5 Pāli-Việt in v");
    EXPECT_TRUE(Entry().Source().contains("sense of v1<"));
    EXPECT_FALSE(form->TimerEndScroll.isActive()) << "shown at once";
    Press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(form->qryWords.RecNo(), 2);
}
