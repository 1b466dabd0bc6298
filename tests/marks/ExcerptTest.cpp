#include "marks/Excerpt.h"
#include "base/InterfaceLanguage.h"
#include "base/Windows1252.h"
#include "marks/ExcerptFile.h"
#include "marks/MarksFilter.h"
#include "support/SkinSupport.h"
#include "support/TestSupport.h"

#include <QDir>
#include <QFile>
#include <QScopedValueRollback>

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

TEST(Excerpt, PageIsMadeByteForByte)
{
    const QByteArray head = "\xEF\xBB\xBF<HTML>\r\n<head>\r\n<meta http-equiv=\"Content-Type\" content=\"text/html; "
                            "charset=utf-8\" />\r\n<body>\r\n<blockquote>\r\n<font face = \"Segoe UI\">";
    const QByteArray tail = "\r\n</font>\r\n</blockquote>\r\n</body>\r\n</head>\r\n</HTML>\r\n";
    // CR, LF and CR LF end a line; no other sign does.
    const std::pair<QString, QByteArray> rows[]{
        {u""_s, ""},
        {u"<p>Phẩm&nbsp;</p>\U0001F600"_s, "<p>Phẩm&nbsp;</p>\xF0\x9F\x98\x80"},
        {u"\na\rb\nc\r\nd\n\re\u2028f\u000Bg"_s, "\r\na\r\nb\r\nc\r\nd\r\n\r\ne\u2028f\vg"}};
    for (const auto &[selection, middle] : rows)
        EXPECT_EQ(ExcerptFileBytes(ExcerptPage(selection)), head + middle + tail) << qPrintable(selection);
}

TEST(Excerpt, BytesBecomeTheCharactersOfTheSystem)
{
    EXPECT_EQ(FromWindows1252("\xEF\xBB\xBF\x80\x81\x8D\x8F\x90\x9D\x9F\xC4\x81"),
              u"ï»¿€\u0081\u008D\u008F\u0090\u009DŸÄ\u0081"_s);
    EXPECT_EQ(ToWindows1252(u"āa\u0080"_s), "?a?");
}

TEST(Excerpt, DefaultTitleIsThePlainTextBehindTheMark)
{
    const QString x70(70, u'x');
    const std::pair<QString, QString> rows[]{{u"<p>Đại <b>phẩm</b></p>"_s, u"Đạiphẩm"_s},
                                             {x70, x70.left(62)},
                                             {x70.left(61) + u"\U0001F600"_s, x70.left(61)},
                                             {x70.left(60) + u"\U0001F600z"_s, x70.left(60) + u"\U0001F600"_s},
                                             {u"&amp;lt;&nbsp;&#7789;"_s, u"&lt;&nbsp;&#7789;"_s}};
    for (const auto &[selection, title] : rows)
        EXPECT_EQ(DefaultTitle(ExcerptFileBytes(ExcerptPage(selection))), u'\uFEFF' + title) << qPrintable(selection);
    EXPECT_EQ(DefaultTitle("\xFF x"), u"\uFFFD x"_s) << "an excerpt without the mark has none";
}

TEST(Excerpt, IsShownAsItIsUnlessItIsTooLong)
{
    const QByteArray most(LongestShownExcerpt, 'x');
    EXPECT_EQ(ShownExcerpt(most), most);
    for (const auto &[language, words] : {std::pair(0, "dài 23 MB, quá dài"), {1, "is 23 MB long, too long"}}) {
        const QScopedValueRollback rollback(InterfaceLang, language);
        EXPECT_THAT(ShownExcerpt(QByteArray(23'000'000, 'x')).toStdString(), testing::HasSubstr(words));
    }
}

TEST(MarksFilter, StatementGrowsByTheClausesThatApply)
{
    const QString search = u" ((upper(F.NAME_FOC) like :SEARCH_TEXT) or  (upper(F.KEYWORD_FOC) like :SEARCH_TEXT))"_s;
    const std::tuple<MarksFilter, QString, QString> rows[]{
        {{1, 3, u" \t"_s}, u"S where F.NIK_SUT = 6"_s, u"%%"_s},
        {{1, 0, u" Đại phẩm "_s}, u"S where F.NIK_SUT = 6 and "_s + search, u"%ĐẠI PHẨM%"_s},
        {{2, 0, u""_s}, u"S"_s, u"%%"_s},
        {{2, 0, u"a"_s}, u"S where "_s + search, u"%A%"_s},
        {{2, 3, u"straße ﬁ \U00010428"_s}, u"S where F.NIK_SUT = :A_NIK  and "_s + search, u"%STRAßE ﬁ \U00010400%"_s},
        {{2, 3, u""_s}, u"S where F.NIK_SUT = :A_NIK "_s, u"%%"_s},
    };
    for (const auto &[filter, sql, pattern] : rows) {
        EXPECT_EQ(filter.Statement(u"S"_s), sql);
        EXPECT_EQ(filter.SearchPattern(), pattern);
    }
}

namespace {

class WorkFile : public testing::Test
{
protected:
    QString Path() const { return folder.Path(u"tmpfocus.html"_s); }
    QString Folder() const { return folder.Path(QString()) + u'/'; }
    std::string SaveFails(const QByteArray &bytes)
    {
        try {
            file.Save(bytes);
        } catch (const std::exception &failure) {
            return failure.what();
        }
        return {};
    }

    ScratchFolder folder;
    ExcerptFile file{Folder()};
    QScopedValueRollback<int> language{InterfaceLang, 1};
};

} // namespace

TEST_F(WorkFile, IsReplacedAndReadWhole)
{
    EXPECT_THROW(file.Load(), std::exception);
    for (const QByteArray &bytes : {QByteArray("one\0two", 7), QByteArray(), QByteArray(20'000'000, 'x')}) {
        file.Save(bytes);
        EXPECT_EQ(file.Load(), bytes);
    }
}

TEST_F(WorkFile, NoLinkIsFollowed)
{
    const QString victim = folder.Path(u"victim"_s);
    EXPECT_TRUE(WriteBytes(victim, "mine") && QFile::link(victim, Path()));
    EXPECT_THROW(file.Load(), std::exception);
    file.Save("excerpt");
    EXPECT_EQ(QFileInfo(victim).size(), 4);
    EXPECT_FALSE(QFileInfo(Path()).isSymLink());
    EXPECT_EQ(file.Load(), "excerpt");
}

TEST_F(WorkFile, AFailureNamesItsCauseAndLeavesNothingBeside)
{
    const QDir place(Folder());
    EXPECT_TRUE(place.mkdir(u"tmpfocus.html"_s));
    EXPECT_THAT(SaveFails("x"), testing::AllOf(testing::StartsWith("Nothing was marked. See that"),
                                               testing::EndsWith("cannot be written: Is a directory")));
    EXPECT_THROW(file.Load(), std::exception);
    EXPECT_TRUE(place.rmdir(u"tmpfocus.html"_s));
    EXPECT_EQ(::mkfifo(QFile::encodeName(Path()).constData(), 0600), 0);
    EXPECT_EQ(SaveFails("x"), "") << "a pipe is replaced, not written to";
    EXPECT_EQ(place.entryList(QDir::Files | QDir::System), QStringList{u"tmpfocus.html"_s});
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may write everywhere";
    EXPECT_TRUE(QFile::setPermissions(Folder(), QFile::ReadOwner | QFile::ExeOwner));
    EXPECT_THAT(SaveFails("y"), testing::EndsWith("cannot be written: Permission denied"));
    EXPECT_TRUE(QFile::setPermissions(Folder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    EXPECT_EQ(file.Load(), "x");
}

TEST_F(WorkFile, OnlyOneCopyHasItAtATime)
{
    auto first = std::make_unique<ExcerptFile>(Folder());
    first->Save("first");
    EXPECT_THAT(SaveFails("second"), testing::HasSubstr("another copy of the program"));
    InterfaceLang = 0;
    EXPECT_THAT(SaveFails("second"),
                testing::MatchesRegex("Chưa đánh dấu được. Hãy đóng(.|\n)*một bản khác của chương trình.*"));
    EXPECT_EQ(file.Load(), "first");
    first.reset();
    file.Save("second");
    EXPECT_EQ(file.Load(), "second");
}
