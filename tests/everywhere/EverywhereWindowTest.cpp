#include "everywhere/EverywhereWindow.h"

#include "reader/ReaderWindow.h"
#include "toolkit/browser/FindBar.h"
#include "toolkit/controls/BarCombo.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QClipboard>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QListView>
#include <QMimeData>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

class Everywhere : public ReaderWindow
{
protected:
    void Open(int interfaceLang = 0)
    {
        StartOn(9971, 1, interfaceLang);
        ASSERT_TRUE(WaitPage());
        Trigger("acFindEverywhere");
        form = qobject_cast<TfrmFindEverywhere *>(FindForm(u"frmFindEverywhere"_s));
        ASSERT_TRUE(form);
    }
    template <typename T>
    T &In(const char *name)
    {
        return ReaderWindow::In<T>(*form, name);
    }
    QLineEdit &Edit() { return In<QLineEdit>("edEverywhere"); }
    QListView &List() { return In<QListView>("lstHits"); }
    std::string Counts() { return In<QLabel>("lbHitCount").text().toStdString(); }
    /// Types, and waits until everything has been looked at.
    void Seek(const QString &words)
    {
        Edit().setText(words);
        EXPECT_TRUE(WaitFor([this] {
            return Counts().find("đã xem") == std::string::npos && Counts().find("looked at") == std::string::npos;
        }));
    }
    std::string Line(int row) { return List().model()->index(row, 0).data().toString().toStdString(); }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&Edit(), key, modifiers); }
    QVariant Value(const QString &script) { return Browser().Evaluate(script); }
    /// Waits until so many places are marked, and the reader is at one of them, from 0; -1 for none.
    bool IsAt(int place, int marked)
    {
        return WaitFor([&] {
            return Value(u"document.querySelectorAll('lumivara-find').length"_s).toInt() == marked &&
                   Value(u"[...document.querySelectorAll('lumivara-find')].findIndex((e) => "
                         "getSelection().toString() && e.contains(getSelection().anchorNode))"_s)
                           .toInt() == place;
        });
    }

    QPointer<TfrmFindEverywhere> form;
};

} // namespace

TEST_F(Everywhere, FindsInEveryLanguageAndInNamesWithoutRegardToCaseAndMarks)
{
    Open();
    const QAbstractItemModelTester tester(List().model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (const auto &[words, counts] : {std::pair(u"NGOAI"_s, "1 chỗ trong 1 bài"),
                                        {u"viet"_s, "3 chỗ trong 3 bài"},
                                        {u"kinh"_s, "3 chỗ trong 1 bài"},
                                        {u"english"_s, "1 chỗ trong 1 bài"},
                                        {u"chuong le"_s, "2 chỗ trong 1 bài"},
                                        {u"pathama"_s, "1 chỗ trong 1 bài"},
                                        {u"xyzzy"_s, "Không tìm thấy"},
                                        {u" "_s, ""}}) {
        Seek(words);
        EXPECT_EQ(Counts(), counts) << words.toStdString();
        EXPECT_EQ(In<QPushButton>("btnCopyList").isEnabled(), Counts().find("chỗ") != std::string::npos);
    }
    Seek(u"pali"_s);
    EXPECT_EQ(Line(0), "Giới thứ nhất. Bất cộng trụ. 1 chỗ");
    EXPECT_EQ(Line(1), "pali 1101. Pāli. Giới thứ nhất. Bất cộng trụ");
    In<QCheckBox>("cbPaliPages").setChecked(false);
    Seek(u"pali"_s);
    EXPECT_EQ(Counts(), "Không tìm thấy");
    In<QCheckBox>("cbExactMarks").setChecked(true);
    Seek(u"ngoai"_s);
    EXPECT_EQ(Counts(), "Không tìm thấy");
    EXPECT_EQ(
        In<QLabel>("lbSought").text().toStdString(),
        "Tìm “ngoai”; hoa thường như nhau, đúng dấu; trong trang tiếng Việt, trang tiếng Anh, tên bài và ghi chép "
        "của bạn.");
}

TEST_F(Everywhere, UpAndDownWalkThePlacesAndThePageFollows)
{
    Open();
    Seek(u"kinh"_s);
    EXPECT_EQ(CurrentId(), 9971) << "typing moves nothing";
    for (const int place : {0, 1, 2, 0}) {
        Press(Qt::Key_Down);
        EXPECT_EQ(CurrentId(), 1201);
        EXPECT_TRUE(IsAt(place, 3)) << place;
    }
    Press(Qt::Key_Up);
    EXPECT_TRUE(IsAt(2, 3));
    GoTo(1101);
    ASSERT_TRUE(WaitPage());
    EXPECT_TRUE(IsAt(-1, 0));
    Press(Qt::Key_Return);
    EXPECT_EQ(CurrentId(), 1201);
    EXPECT_TRUE(IsAt(2, 3));
    EXPECT_TRUE(WaitFor([this] { return window->isActiveWindow(); }));
    const QWidget *focus = window->focusWidget();
    EXPECT_TRUE(focus == &Browser() || Browser().isAncestorOf(focus));
    Seek(u"viet"_s);
    Press(Qt::Key_Up);
    EXPECT_EQ(CurrentId(), 1201) << "from the last";
    Press(Qt::Key_Escape);
    EXPECT_FALSE(FindForm(u"frmFindEverywhere"_s));
    EXPECT_TRUE(WaitFor([this] { return !Value(u"!!document.querySelector('lumivara-find')"_s).toBool(); }));
}

TEST_F(Everywhere, APlaceIsShownInItsOwnLanguageAndOtherTextsInTheReaders)
{
    Open();
    Seek(u"english"_s);
    Press(Qt::Key_Down);
    ASSERT_TRUE(WaitPage());
    EXPECT_THAT(Page(), testing::HasSubstr("english 1101"));
    EXPECT_TRUE(IsAt(0, 1));
    EXPECT_FALSE(Find<TcxButton>("btnViet").isChecked());
    Click("btnViet");
    EXPECT_THAT(Page(), testing::HasSubstr("viet 1101"));
    Seek(u"pali"_s);
    Press(Qt::Key_Down);
    EXPECT_THAT(Page(), testing::HasSubstr("pali 1101"));
    EXPECT_TRUE(Find<TcxButton>("btnPali").isChecked());
    GoTo(1102);
    EXPECT_THAT(Page(), testing::HasSubstr("viet 1102"));
    EXPECT_TRUE(Find<TcxButton>("btnViet").isChecked());
    EXPECT_EQ(Stored(u"LanguageSutta"_s).toInt(), 1);
}

TEST_F(Everywhere, AFilteredTreeIsWholeAgainBeforeAPlaceOpens)
{
    Open();
    auto &filter = Find<QLineEdit>("edFilterSutta");
    filter.setText(u"Chương lớn"_s);
    QTest::keyClick(&filter, Qt::Key_Space);
    ASSERT_EQ(PassageNames(), QStringList{u"Chương lớn"_s});
    Seek(u"ngoai"_s);
    Press(Qt::Key_Down);
    EXPECT_EQ(CurrentId(), 1101);
    EXPECT_EQ(filter.text(), QString());
    EXPECT_EQ(PassageNames().size(), 4);
    EXPECT_TRUE(IsAt(0, 1));
    EXPECT_FALSE(window->OpenPlace(4711, std::nullopt, 0));
    EXPECT_NE(Find<QLabel>("lbFootMessage").text(), QString()) << "told, not silent";
}

TEST_F(Everywhere, F3GoesOnWithTheSearchThatBeganLast)
{
    Open();
    Seek(u"viet"_s);
    Press(Qt::Key_Down);
    EXPECT_EQ(CurrentId(), 1101);
    Activate();
    QTest::keyClick(&Tree(), Qt::Key_F3);
    EXPECT_EQ(CurrentId(), 1102) << "on to the next text";
    QTest::keyClick(&Tree(), Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(CurrentId(), 1101);
    EXPECT_TRUE(IsAt(0, 1));
    Trigger("acFindDialog");
    auto &bar = Find<FindBar>("dlgFind");
    Find<QLineEdit>("edFindText").setText(u"1"_s);
    QTest::keyClick(&Tree(), Qt::Key_F3);
    EXPECT_TRUE(WaitFor([this] { return Find<QLabel>("lbFindCount").text() == u"2/3"_s; })) << "the bar's";
    EXPECT_EQ(CurrentId(), 1101);
    QTest::keyClick(&List(), Qt::Key_Down);
    EXPECT_EQ(CurrentId(), 1102);
    EXPECT_FALSE(bar.isVisible());
    EXPECT_TRUE(IsAt(0, 1));
    window->SetSoughtWords(u"viet"_s); // as the window of the text search does
    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    QTest::keyClick(&List(), Qt::Key_F3);
    EXPECT_EQ(CurrentId(), 1102) << "the coloured places of the page";
}

TEST_F(Everywhere, TheListIsCopiedAndSavedInThreeForms)
{
    AddEnglish();
    Open(1);
    Seek(u"kinh"_s);
    QGuiApplication::clipboard()->clear();
    In<QPushButton>("btnCopyList").click();
    ASSERT_TRUE(WaitFor([] { return QGuiApplication::clipboard()->mimeData()->hasHtml(); }));
    EXPECT_THAT(QGuiApplication::clipboard()->text().toStdString(), testing::HasSubstr("\nMahākhandhaka"));
    const ScratchFolder folder;
    for (const auto &[name, part] : {std::pair(u"list.txt"_s, "\n  Vietnamese: viet 1201 kinh kinh kinh\n"),
                                     {u"list.tsv"_s, "\tVietnamese\tviet 1201 kinh \tkinh\t kinh\n"},
                                     {u"list.html"_s, "kinh <b>kinh</b> kinh</p>"}}) {
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &poll, [&, path = folder.Path(name)] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!dialog || dialog->objectName() != u"dlgSave"_s)
                return;
            poll.stop();
            dialog->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path);
            dialog->metaObject()->invokeMethod(dialog, "accept");
        });
        poll.start(5);
        In<QPushButton>("btnSaveList").click();
        ASSERT_TRUE(WaitFor([&, path = folder.Path(name)] { return QFile::exists(path); })) << part;
        QFile file(folder.Path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_THAT(file.readAll().toStdString(), testing::HasSubstr(part));
    }
}

TEST_F(Everywhere, FollowsTheInterfaceLanguageWhileItIsOpen)
{
    AddEnglish();
    Open();
    Seek(u"ngoai"_s);
    Find<TBarCombo>("bcbLanguage").SetItemIndex(1);
    EXPECT_EQ(form->windowTitle(), u"Find everywhere"_s);
    EXPECT_EQ(Counts(), "1 place in 1 text");
    EXPECT_THAT(In<QLabel>("lbSought").text().toStdString(), testing::StartsWith("Looking for “ngoai”"));
    EXPECT_EQ(Line(0), "Paṭhama. Pārājika. 1 place");
}
