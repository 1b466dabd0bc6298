#include "stores/SqlParameters.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

struct Row
{
    const char *rule;
    QString sql;
    QString positional;
    QStringList names;
};

class SqlParametersTable : public testing::TestWithParam<Row>
{};

TEST_P(SqlParametersTable, BecomePositional)
{
    const PositionalSql result = ToPositional(GetParam().sql);
    EXPECT_EQ(result.sql, GetParam().positional);
    EXPECT_EQ(result.names, GetParam().names);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, SqlParametersTable,
    testing::Values(Row{"NamesAreUpperCased", u"a = :Id_b$1 and c"_s, u"a = ? and c"_s, {u"ID_B$1"_s}},
                    Row{"RepeatedNameStandsTwice", u":A, :B,:a"_s, u"?, ?,?"_s, {u"A"_s, u"B"_s, u"A"_s}},
                    Row{"OldPrefixIsPartOfTheName", u"K=:K where K=:OLD_K"_s, u"K=? where K=?"_s, {u"K"_s, u"OLD_K"_s}},
                    Row{"LiteralStays", u"':A' || :B"_s, u"':A' || ?"_s, {u"B"_s}},
                    Row{"DoubledQuoteDoesNotEndALiteral", u"'it'':A' = :B"_s, u"'it'':A' = ?"_s, {u"B"_s}},
                    Row{"AlternativeLiteralStays", u"q'{it's :A}' = :B"_s, u"q'{it's :A}' = ?"_s, {u"B"_s}},
                    Row{"LetterBeforeLiteralIsNoAlternative", u"seq':A' = :B"_s, u"seq':A' = ?"_s, {u"B"_s}},
                    Row{"QuotedIdentifierStays", u"\"x:A\" = :B"_s, u"\"x:A\" = ?"_s, {u"B"_s}},
                    Row{"LineCommentStays", u"1 -- it's :A\n, :B"_s, u"1 -- it's :A\n, ?"_s, {u"B"_s}},
                    Row{"BlockCommentStays", u"/* ' :A */ :B"_s, u"/* ' :A */ ?"_s, {u"B"_s}},
                    Row{"UnclosedLiteralEndsWithTheText", u":B = ':A"_s, u"? = ':A"_s, {u"B"_s}},
                    Row{"UnclosedCommentEndsWithTheText", u":B /* :A"_s, u"? /* :A"_s, {u"B"_s}},
                    Row{"SubscriptIsNoName", u"a[1:2] = :B"_s, u"a[1:2] = ?"_s, {u"B"_s}},
                    Row{"LoneColonStays", u": :"_s, u": :"_s, {}},
                    Row{"ProceduralCodeStays",
                        u"-- c\n/**/ Execute  block as declare a int; begin :a = 1; end"_s,
                        u"-- c\n/**/ Execute  block as declare a int; begin :a = 1; end"_s,
                        {}},
                    Row{"ProcedureDefinitionStays",
                        u"create or alter procedure P as begin select 1 from T into :A; end"_s,
                        u"create or alter procedure P as begin select 1 from T into :A; end"_s,
                        {}},
                    Row{"ProcedureCallIsScanned", u"execute procedure P(:A)"_s, u"execute procedure P(?)"_s, {u"A"_s}},
                    Row{"EmptyText", u""_s, u""_s, {}}),
    [](const auto &row) { return std::string(row.param.rule); });

} // namespace
