#include "support/StoreSupport.h"

using namespace Qt::StringLiterals;

namespace {

TEST(ScriptTable, SplitsIntoStatements)
{
    const std::tuple<const char *, QString, QStringList> rows[]{
        {"LinesBelongTogether", u"\n a\n b ;\n\n c;"_s, {u"a\n b"_s, u"c"_s}},
        {"TerminatorInLiteral", u"a ';' b; c ';'';' d;"_s, {u"a ';' b"_s, u"c ';'';' d"_s}},
        {"TerminatorInIdentifier", u"a \"x;y\"; b"_s, {u"a \"x;y\""_s, u"b"_s}},
        {"TerminatorInComment", u"a -- x; y\nb; c /* ; */ d;"_s, {u"a -- x; y\nb"_s, u"c /* ; */ d"_s}},
        {"CommentsBetweenGo", u"-- it's\n/* ; */ a; /* b; */ -- c"_s, {u"a"_s}},
        {"SetTermChangesTheTerminator", u"set term ^ ; a; b ^ SET TERM ; ^ c; d"_s, {u"a; b"_s, u"c"_s, u"d"_s}},
        {"LongTerminator", u"set term !! ;a;!b!!c!!"_s, {u"a;!b"_s, u"c"_s}},
        {"NothingAtAll", u" \r\n-- c"_s, {}}};
    for (const auto &[rule, script, statements] : rows)
        EXPECT_EQ(TpFIBScripter::SplitStatements(script), statements) << rule;
}

TEST_F(StoreTest, AScriptKeepsOnlyWhatItCommitsFromTheStatementOfThatNumberOn)
{
    RunScript(database, u"create table T (ID integer not null primary key);"_s);
    const QString ids = u"select list(ID) from (select ID from T order by ID)"_s;
    TpFIBScripter scripter;
    scripter.SetDatabase(&database);
    scripter.Script() = {
        u"insert into T values (1); insert into T values (2); Commit Work; insert into T values (3);"_s};
    scripter.ExecuteScript(2);
    EXPECT_EQ(Ask(ids).toString(), u"2"_s) << "the end of the run rolls back";
    scripter.Script() = {u"insert into T values (4); rollback work; insert into T values (5);"_s, u"commit work;"_s};
    scripter.ExecuteScript();
    EXPECT_EQ(Ask(ids).toString(), u"2,5"_s);
    scripter.Script() = {u"insert into T values (8); commit /* now */; insert into T values (9);"_s,
                         u"set term ^ ; delete from T where ID = 8^ commit;^"_s};
    scripter.ExecuteScript();
    EXPECT_EQ(Ask(ids).toString(), u"2,5,9"_s) << "the engine commits by its own words, too";
    scripter.Script() = {u"delete from T where ID = 9; commit;"_s};
    scripter.ExecuteScript();
    scripter.Script() = {u"insert into T values (6); insert into T values (6); insert into T values (7); commit;"_s};
    const QString text = FailureOf([&] { scripter.ExecuteScript(); });
    EXPECT_TRUE(text.contains(u"violation of PRIMARY or UNIQUE KEY constraint"_s)) << text.toStdString();
    EXPECT_EQ(Ask(ids).toString(), u"2,5"_s);
}

} // namespace
