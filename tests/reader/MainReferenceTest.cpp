#include "reader/ReaderWindow.h"

#include "toolkit/controls/CxTextEdit.h"

#include <QClipboard>
#include <QCompleter>
#include <QGuiApplication>
#include <QLabel>
#include <QMimeData>

using namespace Qt::StringLiterals;

namespace {

class References : public ReaderWindow
{
protected:
    void SetUp() override
    {
        StartOn(1101);
        Activate();
        ASSERT_TRUE(WaitPage());
    }
    TcxTextEdit &Line() { return Find<TcxTextEdit>("edReference"); }
    /// Types into the opened line and presses Enter.
    void Enter(const QString &text)
    {
        Trigger("acReference");
        Line().clear();
        Type(Line(), text);
        QTest::keyClick(&Line(), Qt::Key_Return);
    }
};

} // namespace

TEST_F(References, ALineOpensATextByNumberReferenceOrName)
{
    EXPECT_TRUE(Line().isHidden());
    for (const auto &[typed, text] :
         {std::pair(u"1201"_s, 1201), {u"1102:1"_s, 1102}, {u"uposatha"_s, 9971}, {u"gioi thu nhat"_s, 1101}}) {
        Enter(typed);
        EXPECT_EQ(CurrentId(), text) << typed.toStdString();
        EXPECT_TRUE(Line().isHidden());
        EXPECT_TRUE(WaitPage());
    }
    Enter(u"4444:1"_s);
    EXPECT_EQ(CurrentId(), 1101);
    EXPECT_FALSE(Line().isHidden()) << "to be typed again";
    EXPECT_EQ(Find<QLabel>("lbFootMessage").text(), u"Không có bài nào như vậy."_s);
    QTest::keyClick(&Line(), Qt::Key_Escape);
    EXPECT_TRUE(Line().isHidden());
    Trigger("acBack");
    EXPECT_EQ(CurrentId(), 9971) << "each was one step";
}

TEST_F(References, TellsCandidatesWhileANameIsTyped)
{
    Trigger("acReference");
    Type(Line(), u"gioi"_s);
    const QAbstractItemModel &rows = *Line().completer()->model();
    ASSERT_EQ(rows.rowCount(), 2);
    EXPECT_EQ(rows.index(1, 0).data().toString(), u"1102  Giới thứ nhì"_s);
    emit Line().completer() -> activated(rows.index(1, 0).data().toString());
    EXPECT_EQ(CurrentId(), 1102);
}

TEST_F(References, ASelectionIsCopiedWithItsSource)
{
    for (const auto &[button, language, told] :
         {std::tuple("btnPali", 0, "pali 1101 (Tạng Luật, Paṭhama 1101:1, Pāli)"),
          {"btnViet", 1, "viet 1101 ngoài (Kelora, Giới thứ nhất 1101:1, Vietnamese)"}}) {
        Click(button);
        InterfaceLang = language;
        EXPECT_TRUE(WaitPage());
        Trigger("acSelectAll");
        EXPECT_TRUE(WaitFor([this] { return Action("acCopyReference").isEnabled(); }));
        Trigger("acCopyReference");
        EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), told);
        EXPECT_TRUE(QGuiApplication::clipboard()->mimeData()->html().contains(u"<p"_s));
    }
    InterfaceLang = 0;
    End();
    Store(u"ReferenceForm"_s, u"[{reference}]"_s);
    Start();
    EXPECT_TRUE(WaitPage());
    Trigger("acSelectAll");
    EXPECT_TRUE(WaitFor([this] { return Action("acCopyReference").isEnabled(); }));
    Trigger("acCopyReference");
    EXPECT_TRUE(QGuiApplication::clipboard()->text().endsWith(u" [1101:1]"_s));
}
