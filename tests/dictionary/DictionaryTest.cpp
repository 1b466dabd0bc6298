#include "dictionary/DictionaryWindow.h"

#include "dictionary/DictionaryDM.h"
#include "stores/Modules.h"
#include "stores/engine/Scripter.h"
#include "support/PageInput.h"
#include "toolkit/bound/CxGridDBTableView.h"
#include "toolkit/controls/BarCombo.h"
#include "toolkit/skin/SkinController.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QProperty>

using namespace Qt::StringLiterals;

namespace {

const QString Blank = u"<font face=\"Segoe UI\">\r\n</ul>"_s; ///< of the page of an entry without lines

class Dictionary : public DictionaryWindow
{
protected:
    void Open(int kind, int interfaceLang = 0)
    {
        StartReader(0, interfaceLang);
        OpenOn(kind);
    }
    void Pick(const char *action) { In<QAction>(action).trigger(); }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&Edit(), key, modifiers); }
    QToolButton &Multi() { return In<QToolButton>("bMultiDictionary"); }
    bool HasPartner() { return Entry().Source().contains("partner"); }
};

} // namespace

TEST_F(Dictionary, OpensOnItsKindUnderACaption)
{
    for (const auto &[kind, interfaceLang, multi, caption, multiCaption, word] :
         {std::tuple(0, 0, false, u"Từ điển"_s, u"Đa ngôn ngữ"_s, u""_s),
          {2, 1, true, u"Vietnamese-English"_s, u"+ Pāli"_s, u"bus"_s},
          {8, 2, false, u""_s, u"Đa ngôn ngữ"_s, u"dhamma"_s}}) {
        SCOPED_TRACE(kind);
        StartReader(0, interfaceLang);
        MultiDictionary = multi;
        OpenOn(kind);
        EXPECT_EQ(Caption(), caption);
        EXPECT_EQ(Multi().text(), multiCaption);
        EXPECT_EQ(Multi().isChecked(), multi);
        EXPECT_EQ(Word(), word);
        EXPECT_EQ(Entry().Source().isEmpty(), word.isEmpty());
        EXPECT_EQ(form->size(), QSize(734, 462));
        EXPECT_FALSE(In<TcxGridDBTableView>("gtvWords").horizontalHeader()->isVisible());
        End();
    }
}

TEST_F(Dictionary, SpeaksTheLanguageOfTheInterfaceUntilAKindNamesItself)
{
    AddLanguage(u"English.lng"_s, "LANGID=1033\n[frmDictionary]\n1=Words\n2=Many\n8=Pick one\n21=Go to word\n");
    Open(0, 1);
    EXPECT_EQ(form->windowTitle(), u"Words"_s);
    EXPECT_EQ(Caption() + Multi().text() + In<QToolButton>("bGotoWord").text(), u"Pick oneManyGo to word"_s);
    form->close();
    OpenOn(5);
    EXPECT_EQ(Caption() + Multi().text(), u"Pāli-VietnameseMulti Dictionary"_s);
}

TEST_F(Dictionary, NamesItsKindInEachLanguageThatIsChosenMeanwhile)
{
    AddLanguage(u"English.lng"_s, "LANGID=1033\n[frmDictionary]\n2=Many\n8=Pick one\n");
    Open(0);
    const auto both = [this](int language) {
        ReaderWindow::In<TBarCombo>(*window, "bcbLanguage").SetItemIndex(language);
        return (Caption() + u'|' + Multi().text()).toStdString();
    };
    EXPECT_EQ(both(1), "Pick one|Many") << "no kind yet";
    EXPECT_EQ(both(0), "Từ điển|Đa ngôn ngữ");
    Pick("acPaliViet");
    EXPECT_EQ(both(1), "Pāli-Vietnamese|Multi Dictionary");
    Multi().click();
    EXPECT_EQ(both(0), "Pāli-Việt|+ Anh");
    EXPECT_EQ(both(1), "Pāli-Vietnamese|+ English");
    Pick("acEVShow");
    EXPECT_EQ(both(0), "Anh-Việt|+ Pāli");
    form->close();
    OpenOn(7);
    EXPECT_EQ(both(1), "Pāli-English|+ Vietnamese") << "under the caption that it opened with";
}

TEST_F(Dictionary, ItsButtonsAreEasyToHitWithoutASkin)
{
    Open(5);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(form));
    for (const char *name : {"btnDicts", "bMultiDictionary", "bCopy", "bSelectAll", "bGotoWord"})
        EXPECT_GE(In<QToolButton>(name).height(), 24) << name;
}

TEST_F(Dictionary, KeepsTheSearchTextOfTwoKindsAndLendsOneOfThem)
{
    Open(1);
    const std::tuple<QString, const char *, int, QString> steps[]{
        {u"dog"_s, "acEngPali", 7, u"dog"_s},    {u"other"_s, "acEVShow", 1, u"dog"_s},
        {u"dogm"_s, "acPaliViet", 5, QString()}, {u"nib"_s, "acVEShow", 2, QString()},
        {u"bus"_s, "acPaliEng", 8, u"dogm"_s},   {u"sīla"_s, "acVEShow", 2, u"bus"_s},
        {u"chó"_s, "acVEShow", 2, u"chó"_s}};
    for (const auto &[typed, action, kind, text] : steps) {
        Edit().setText(typed);
        Pick(action);
        EXPECT_EQ(form->vTypeDict, kind) << action;
        EXPECT_EQ(Edit().text(), text) << action;
    }
    EXPECT_EQ(Words(), QStringList{u"chó"_s});
    EXPECT_EQ(Caption(), u"Việt-Anh"_s);
    EXPECT_FALSE(form->TimerDelta.isActive()) << "no key was pressed";
}

TEST_F(Dictionary, ListsTheWordsThatBeginWithOneOfTwoForms)
{
    Open(5);
    const std::tuple<int, QString, QString> rows[]{{5, u"nib"_s, u"nibbāna Nibbānapura"_s},
                                                   {5, u" NIB\t"_s, u"nibbāna"_s},
                                                   {2, u"đạo"_s, u"đạo Đạo Phật"_s},
                                                   {2, u"ĐẠO"_s, {}},
                                                   {5, u"nibba\u0304"_s, {}},
                                                   {5, u"nib%"_s, {}},
                                                   {5, u"v' or '1'='1"_s, {}},
                                                   {5, u"\U0001F600"_s, {}},
                                                   {5, QString(10'000, u'ā'), {}},
                                                   {0, u" \t"_s, u"zero"_s}};
    for (const auto &[kind, text, words] : rows) {
        SCOPED_TRACE(text.left(20).toStdString());
        form->vTypeDict = kind;
        Search(text);
        EXPECT_EQ(Words().join(u' '), words);
        EXPECT_EQ(LastWord, Words().value(0));
        EXPECT_EQ(Entry().Source().contains(Blank.toUtf8()), words.isEmpty());
    }
}

TEST_F(Dictionary, ABurstOfKeysSearchesOnceAndOtherKeysNever)
{
    Open(5);
    int searches = 0;
    form->qryWords.AfterOpen = [&] { ++searches; };
    QGuiApplication::clipboard()->setText(u"pasted"_s);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_F5, Qt::Key_Left, Qt::Key_Shift, Qt::Key_Home, Qt::Key_Insert})
        Key(key, Qt::ShiftModifier);
    EXPECT_FALSE(form->TimerDelta.isActive());
    EXPECT_EQ(Edit().text(), u"pasted"_s) << "they keep their ordinary meaning";
    Edit().clear();
    Type(Edit(), u"niX"_s);
    Key(Qt::Key_Backspace);
    Type(Edit(), u"b"_s);
    Key(Qt::Key_Down); // does not keep it from coming
    EXPECT_EQ(searches, 0);
    EXPECT_TRUE(WaitFor([&] { return searches == 1; }));
    EXPECT_EQ(Words(), (QStringList{u"nibbāna"_s, u"Nibbānapura"_s}));
    int ticks = 0;
    const QObject scope;
    QObject::connect(&form->TimerDelta, &QTimer::timeout, &scope, [&] { ++ticks; });
    form->TimerDelta.setInterval(0);
    EXPECT_TRUE(WaitFor([&] { return ticks > 100; }));
    EXPECT_EQ(searches, 1) << "the clock runs on, but does not meet its time again";
    QInputMethodEvent commit;
    commit.setCommitString(u"ā"_s);
    QCoreApplication::sendEvent(&Edit(), &commit);
    EXPECT_TRUE(WaitFor([&] { return searches == 2; }));
    EXPECT_TRUE(Words().isEmpty());
    commit.setCommitString({}, -1, 1);
    QCoreApplication::sendEvent(&Edit(), &commit);
    EXPECT_TRUE(WaitFor([&] { return searches == 3; })) << "what an input method takes away counts, too";
}

TEST_F(Dictionary, VelthuisLettersBecomePaliOnesInTheKindsOfPaliWords)
{
    Open(5);
    Trigger("acVelthuis");
    for (const auto &[kind, text] : {std::pair(5, u"nibbāna.h ṃ"_s),
                                     {8, u"nibbāna.h ṃ"_s},
                                     {6, u"nibbaana.h .m"_s},
                                     {7, u"nibbaana.h .m"_s},
                                     {1, u"nibbaana.h .m"_s}}) {
        form->vTypeDict = kind;
        Edit().clear();
        Type(Edit(), u"nibbaana.h .m"_s);
        EXPECT_EQ(Edit().text(), text) << kind;
    }
    form->vTypeDict = 5;
    Edit().clear();
    Type(Edit(), u"nibbaa"_s);
    EXPECT_TRUE(WaitFor([&] { return Words() == (QStringList{u"nibbāna"_s, u"Nibbānapura"_s}); }));
}

TEST_F(Dictionary, KeysWalkTheListAndTheEntryComesWhenItRests)
{
    Open(5);
    ASSERT_TRUE(EntryShows(u"pháp"_s));
    Search(u"v"_s);
    const QByteArray page = Entry().Source();
    const Qt::Key keys[]{Qt::Key_Up,       Qt::Key_Down,     Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_PageUp,
                         Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_Down};
    QStringList rows;
    int starts = 0;
    const auto counting =
        form->TimerEndScroll.bindableActive().onValueChanged([&] { starts += form->TimerEndScroll.isActive(); });
    for (const Qt::Key key : keys) {
        const int row = form->qryWords.RecNo(), before = starts;
        Key(key);
        rows.append(QString::number(form->qryWords.RecNo()));
        EXPECT_EQ(starts > before, form->qryWords.RecNo() != row) << "each move puts it off";
    }
    EXPECT_EQ(rows.join(u' '), u"0 1 25 1 0 24 48 59 59"_s);
    EXPECT_EQ(Entry().Source(), page);
    auto &list = In<TcxGridDBTableView>("gtvWords");
    EXPECT_TRUE(EntryShows(u"sense of v59"_s));
    EXPECT_EQ(LastWord, u"v59"_s);
    QTest::keyClick(&list, Qt::Key_Home);
    EXPECT_TRUE(EntryShows(u"sense of v0<"_s));
    EXPECT_EQ(Edit().text(), u"v"_s);
    form->qryWords.Close();
    for (const Qt::Key key : keys)
        Key(key);
}

TEST_F(Dictionary, TellsTheListWhatIsSoughtBeforeEachOpening)
{
    Open(5);
    const auto told = [] {
        TpFIBDataSet variables;
        variables.SetDatabase(&frmDictionaryDM->dbDictionary);
        variables.SetTransaction(&frmDictionaryDM->trDictionary);
        variables.SelectSQL() = {u"select rdb$get_context('USER_TRANSACTION', 'SEARCHTEXT') A, "
                                 "rdb$get_context('USER_TRANSACTION', 'SEARCHTEXT_MIXER') B from rdb$database"_s};
        variables.Open();
        return variables.FieldByName(u"A"_s).AsString() + u'|' + variables.FieldByName(u"B"_s).AsString();
    };
    EXPECT_EQ(told(), u"|"_s) << "the whole list";
    for (const auto &[text, forms] : {std::pair(u"đạO "_s, u"đạo|ĐạO "_s),
                                      {u" "_s, u"|"_s},
                                      {u"nib"_s, u"nib|Nib"_s},
                                      {QString(64, u'n'), u"|"_s},
                                      {QString(63, u'n'), QString(63, u'n') + u"|N"_s + QString(62, u'n')},
                                      {u""_s, u"|"_s}}) {
        Search(text);
        EXPECT_EQ(told(), forms) << text.toStdString();
    }
    Search(u"nib"_s);
    Pick("acVietPali");
    EXPECT_EQ(told(), u"|"_s) << "a kind that starts with an empty box";
}

TEST_F(Dictionary, TheLastWordIsRestoredOnceAndStoredOnClosing)
{
    Open(5);
    Search(u"nil"_s);
    EXPECT_EQ(LastWord, u"nil"_s);
    Search({});
    EXPECT_EQ(Word(), u"dhamma"_s) << "a search does not go back to it";
    LastWord = u"v42"_s;
    EXPECT_EQ(Stored(u"Dictionary"_s), QVariant());
    const auto open = [this](int kind, const QString &lastWord) {
        LastWord = lastWord;
        OpenOn(kind);
        return Word();
    };
    const auto closeStores = [this](int kind, const QString &lastWord) {
        form->close();
        EXPECT_EQ(Stored(u"Dictionary"_s).toString() + Stored(u"LastWord"_s).toString(),
                  QString::number(kind) + lastWord);
    };
    closeStores(5, u"v42"_s);
    EXPECT_EQ(DictionaryKind, 5);
    EXPECT_EQ(open(5, u"v42"_s), u"v42"_s);
    EXPECT_TRUE(EntryShows(u"sense of v42"_s));
    form->close();
    EXPECT_EQ(open(5, u"V42"_s), u"dhamma"_s);
    form->close();
    EXPECT_EQ(open(0, u"kept"_s), QString());
    closeStores(0, u"kept"_s);
    CollectionMode = 2; // keeps its own
    open(6, {});
    form->close();
    CollectionMode = 1;
    EXPECT_EQ(Stored(u"Dictionary"_s), QVariant(0));
    EXPECT_EQ(DictionaryKind, 6);
}

TEST_F(Dictionary, ATextHandedOverIsSearchedInItsPair)
{
    Open(1);
    for (const auto &[text, kind, box, word] : {std::tuple(u"null"_s, 1, u"null"_s, u""_s),
                                                {u"none"_s, 1, u"none"_s, u""_s},
                                                {u"\x01 chó\n"_s, 2, u"chó"_s, u"chó"_s},
                                                {u"dogs"_s, 1, u"dog"_s, u"dog"_s}}) {
        form->SearchingText(text);
        EXPECT_EQ(form->vTypeDict, kind);
        EXPECT_EQ(Edit().text() + u'|' + Word(), box + u'|' + word);
    }
    EXPECT_FALSE(form->TimerDelta.isActive()) << "a text handed over is no key";
    EXPECT_THROW(form->SearchingText(u"bad"_s), std::exception);
}

TEST_F(Dictionary, SeveralDictionariesShowAtThePressOfTheButton)
{
    Open(5);
    form->qryWords.MoveTo(1);
    ASSERT_TRUE(EntryShows(u"tịch tịnh"_s));
    EXPECT_FALSE(HasPartner());
    Multi().click();
    EXPECT_TRUE(EntryShows(u"partner"_s));
    EXPECT_EQ(Multi().text(), u"+ Anh"_s);
    EXPECT_EQ(form->qryWords.RecNo(), 1);
    Key(Qt::Key_Up);
    EXPECT_TRUE(EntryShows(u"pháp"_s) && HasPartner());
    Multi().click();
    EXPECT_TRUE(WaitFor([&] { return !HasPartner(); }));
    EXPECT_EQ(Multi().text(), u"Hiển thị nhiều từ điển"_s);
    form->close();
    OpenOn(0);
    Multi().click();
    EXPECT_TRUE(EntryShows(Blank)) << "without a list";
}

TEST_F(Dictionary, BadEntriesAreBlankOrToldAndHugeOnesShow)
{
    Open(5);
    for (const QString &word : {u"nil"_s, u"gone"_s}) {
        Search(word);
        EXPECT_TRUE(EntryShows(Blank));
        EXPECT_EQ(LastWord, word);
    }
    Search({});
    ASSERT_TRUE(EntryShows(u"pháp"_s));
    EXPECT_TRUE(boxes.isEmpty());
    form->qryWords.MoveTo(4);
    Key(Qt::Key_Down);
    EXPECT_EQ(Word(), u"bad"_s);
    EXPECT_THAT(TakeBox(), testing::HasSubstr("the entry is broken"));
    Key(Qt::Key_Down);
    EXPECT_TRUE(EntryShows(u"word word"_s));
    EXPECT_EQ(Entry().Evaluate(u"document.body.innerText.length > 1000000"_s), QVariant(true));
    Key(Qt::Key_Down);
    EXPECT_TRUE(EntryShows(u"tiếng pali"_s));
}

TEST_F(Dictionary, AWordSelectedInTheEntryIsLookedUpByItsMenu)
{
    Open(5);
    Search(u"pali"_s);
    ASSERT_TRUE(EntryShows(u"tiếng pali"_s));
    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    EXPECT_TRUE(Edit().hasFocus());
    const auto areEnabled = [this](bool enabled) {
        return WaitFor([=, this] {
            return In<QAction>("acGotoWord").isEnabled() == enabled && In<QAction>("acCopy").isEnabled() == enabled;
        });
    };
    EXPECT_TRUE(areEnabled(false));
    EXPECT_TRUE(TakesInput(Entry()));
    for (const Qt::KeyboardModifier modifier : {Qt::NoModifier, Qt::ControlModifier}) {
        QTest::mouseClick(Entry().focusProxy(), Qt::RightButton, modifier, QPoint(40, 60));
        EXPECT_TRUE(WaitFor([&] { return In<QMenu>("ppContent").isVisible(); })) << "with Ctrl as well";
        In<QMenu>("ppContent").close();
    }
    Pick("acSelectAll");
    EXPECT_TRUE(areEnabled(true));
    Pick("acGotoWord");
    EXPECT_EQ(Edit().text(), u"tiếng pali"_s);
    EXPECT_TRUE(EntryShows(Blank));
    EXPECT_TRUE(areEnabled(false));
}

TEST_F(Dictionary, LinksLeaveForTheSystemOnlyWhileAnEntryIsNotShownWhole)
{
    Open(1);
    ASSERT_TRUE(EntryShows(u"example.org"_s));
    const QUrl link(u"https://example.org/dog"_s);
    EXPECT_FALSE(Entry().OnBeforeNavigate2(link)) << "opens inside";
    const QByteArray page = form->vHTMLString;
    dictionary->dbDictionary.SetConnected(false);
    form->ShowWordContent();
    EXPECT_EQ(form->vHTMLString, page);
    EXPECT_TRUE(Entry().OnBeforeNavigate2(link));
    EXPECT_TRUE(WaitFor([&] { return opened == QStringList{link.toString()}; }));
}

TEST_F(Dictionary, ClosedOnTheWayItGoesWithoutATrace)
{
    StartReader();
    for (const bool waitsForEntry : {false, true}) {
        OpenOn(5);
        Type(Edit(), u"dham"_s);
        Key(Qt::Key_Down);
        EXPECT_TRUE(form->TimerDelta.isActive() && form->TimerEndScroll.isActive());
        if (waitsForEntry) {
            Search(u"huge"_s);
            Multi().click();
        }
        form->close();
        EXPECT_FALSE(form->TimerDelta.isActive() || form->TimerEndScroll.isActive());
        // The program's own loop deletes it on its next turn.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_FALSE(form);
    }
    OpenOn(5);
    Search(u"huge"_s);
    End();
    EXPECT_FALSE(form);
}

TEST_F(Dictionary, AFileThatCannotServeIsSilentUntilTheWindowOpens)
{
    StartReader();
    TpFIBScripter script;
    script.SetDatabase(&dictionary->dbDictionary);
    script.Script() = {u"drop procedure SP_GET_LIST_WORDS;"_s, u"commit;"_s};
    script.ExecuteScript();
    EXPECT_TRUE(boxes.isEmpty());
    OpenOn(5);
    TakeBox();
    EXPECT_EQ(Caption(), u"Pāli-Việt"_s);
    Type(Edit(), u"d"_s);
    EXPECT_TRUE(WaitFor([&] { return !boxes.isEmpty(); })) << "each search tells it";
    TakeBox();
}

namespace {

class DarkEntry : public Dictionary
{
protected:
    DarkEntry() { SetSkins(SkinDocument({WholeSkin(u"Light"_s), WholeSkin(u"Night"_s, true)})); }
    ~DarkEntry() override
    {
        End();
        TdxSkinController controller;
        controller.NativeStyle = true;
        controller.Refresh();
    }
};

} // namespace

TEST_F(DarkEntry, FollowsTheSkinOnTheScreenAlone)
{
    Open(1);
    const QByteArray source = Entry().Source();
    const QString style = Entry().HostCSS();
    for (const int skin : {1, 0, 1}) {
        Find<TBarCombo>("bcbInterface").SetItemIndex(skin);
        const QString ground = skin == 1 ? u"rgb(16, 16, 16)"_s : u"rgba(0, 0, 0, 0)"_s;
        EXPECT_TRUE(WaitFor([&] {
            return Entry().IsComplete() &&
                   Entry().Evaluate(u"getComputedStyle(document.body).backgroundColor"_s).toString() == ground;
        })) << skin;
        EXPECT_EQ(Entry().page()->backgroundColor(), skin == 1 ? QColor(16, 16, 16) : QColor(Qt::white));
        EXPECT_EQ(Entry().Source(), source);
        EXPECT_EQ(Entry().HostCSS(), style);
    }
}
