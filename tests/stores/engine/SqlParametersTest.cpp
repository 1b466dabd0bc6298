#include "stores/engine/SqlParameters.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

TEST(SqlParametersTable, BecomePositional)
{
    const std::tuple<const char *, QString, QString, QStringList> rows[]{
        {"NamesAreUpperCased", u"a = :Id_b$1 and c"_s, u"a = ? and c"_s, {u"ID_B$1"_s}},
        {"RepeatedNameStandsTwice", u":A, :B,:a"_s, u"?, ?,?"_s, {u"A"_s, u"B"_s, u"A"_s}},
        {"OldPrefixIsPartOfTheName", u"K=:K where K=:OLD_K"_s, u"K=? where K=?"_s, {u"K"_s, u"OLD_K"_s}},
        {"DoubledQuoteDoesNotEndALiteral", u"'it'':A' = :B"_s, u"'it'':A' = ?"_s, {u"B"_s}},
        {"AlternativeLiteralStays", u"q'{it's :A}' = :B"_s, u"q'{it's :A}' = ?"_s, {u"B"_s}},
        {"LetterBeforeLiteralIsNoAlternative", u"seq':A' = :B"_s, u"seq':A' = ?"_s, {u"B"_s}},
        {"QuotedIdentifierStays", u"\"x:A\" = :B"_s, u"\"x:A\" = ?"_s, {u"B"_s}},
        {"LineCommentStays", u"1 -- it's :A\n, :B"_s, u"1 -- it's :A\n, ?"_s, {u"B"_s}},
        {"BlockCommentStays", u"/* ' :A */ :B"_s, u"/* ' :A */ ?"_s, {u"B"_s}},
        {"UnclosedLiteralEndsWithTheText", u":B = ':A"_s, u"? = ':A"_s, {u"B"_s}},
        {"UnclosedCommentEndsWithTheText", u":B /* :A"_s, u"? /* :A"_s, {u"B"_s}},
        {"SubscriptIsNoName", u"a[1:2] = :B"_s, u"a[1:2] = ?"_s, {u"B"_s}},
        {"ProceduralCodeStays",
         u"-- c\n/**/ Execute  block as begin :a = 1; end"_s,
         u"-- c\n/**/ Execute  block as begin :a = 1; end"_s,
         {}},
        {"ProcedureDefinitionStays",
         u"create procedure P as begin select 1 from T into :A; end"_s,
         u"create procedure P as begin select 1 from T into :A; end"_s,
         {}},
        {"ProcedureCallIsScanned", u"execute procedure P(:A)"_s, u"execute procedure P(?)"_s, {u"A"_s}},
        {"EmptyText", u""_s, u""_s, {}}};
    for (const auto &[rule, sql, positional, names] : rows) {
        SCOPED_TRACE(rule);
        const PositionalSql result = ToPositional(sql);
        EXPECT_EQ(result.sql, positional);
        EXPECT_EQ(result.names, names);
    }
}

} // namespace
