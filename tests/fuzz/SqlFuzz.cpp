#include "fuzz/Fuzz.h"

#include "stores/engine/SqlParameters.h"

FUZZ_TARGET(Sql)
{
    const QString sql = QString::fromUtf8(input);
    const PositionalSql first = ToPositional(sql);
    REQUIRE(first.sql.count(u'?') - sql.count(u'?') == first.names.size());
    for (const QString &name : first.names)
        REQUIRE(!name.isEmpty() && name == name.toUpper() && !name.startsWith(u':'));
    REQUIRE(ToPositional(first.sql).names.isEmpty());
    for (qsizetype i = 0; i < sql.size(); ++i) {
        const qsizetype next = SkipOpaqueSql(sql, i);
        REQUIRE(next >= i && next <= sql.size());
        i = std::max(i, next - 1);
    }
}
