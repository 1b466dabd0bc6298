#include "stores/engine/SqlParameters.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

bool IsNameStart(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_';
}

bool IsNamePart(QChar c)
{
    return IsNameStart(c) || (c >= u'0' && c <= u'9') || c == u'$';
}

qsizetype After(const QString &sql, QStringView end, qsizetype from)
{
    const qsizetype at = sql.indexOf(end, from);
    return at < 0 ? sql.size() : at + end.size();
}

/// Literals of the form q'{ … }', whose closing sign mirrors the opening one.
qsizetype AfterAlternativeLiteral(const QString &sql, qsizetype from)
{
    static const QString open = u"{[(<"_s, close = u"}])>"_s;
    const QChar sign = sql.at(from + 2);
    const qsizetype kind = open.indexOf(sign);
    const QChar end[] = {kind < 0 ? sign : close.at(kind), u'\''};
    return After(sql, QStringView(end, 2), from + 3);
}

bool IsProcedural(const QString &sql)
{
    qsizetype start = 0;
    while (start < sql.size()) {
        if (sql.at(start).isSpace()) {
            ++start;
            continue;
        }
        const bool comment = sql.at(start) == u'/' || sql.at(start) == u'-';
        const qsizetype next = comment ? SkipOpaqueSql(sql, start) : start;
        if (next == start)
            break;
        start = next;
    }
    static const QRegularExpression opening(
        uR"(\A(execute\s+block|(create(\s+or\s+alter)?|recreate|alter)\s+(procedure|trigger|function|package))\b)"_s,
        QRegularExpression::CaseInsensitiveOption);
    return opening.match(QStringView(sql).mid(start)).hasMatch();
}

} // namespace

qsizetype SkipOpaqueSql(const QString &sql, qsizetype from)
{
    const QChar c = sql.at(from);
    const QChar next = from + 1 < sql.size() ? sql.at(from + 1) : QChar();
    if (c == u'\'' || c == u'"')
        return After(sql, QStringView(&c, 1), from + 1); // a doubled quote opens the next piece, which is skipped too
    if (c == u'-' && next == u'-')
        return After(sql, u"\n", from + 2);
    if (c == u'/' && next == u'*')
        return After(sql, u"*/", from + 2);
    const bool wordStart = from == 0 || !IsNamePart(sql.at(from - 1));
    if ((c == u'q' || c == u'Q') && next == u'\'' && wordStart && from + 2 < sql.size())
        return AfterAlternativeLiteral(sql, from);
    return from;
}

PositionalSql ToPositional(const QString &sql)
{
    if (IsProcedural(sql))
        return {sql, {}};
    PositionalSql result;
    result.sql.reserve(sql.size());
    for (qsizetype at = 0; at < sql.size();) {
        qsizetype end = SkipOpaqueSql(sql, at);
        if (end > at) {
            result.sql += QStringView(sql).mid(at, end - at);
        } else if (sql.at(at) == u':' && at + 1 < sql.size() && IsNameStart(sql.at(at + 1))) {
            end = at + 1;
            while (end < sql.size() && IsNamePart(sql.at(end)))
                ++end;
            result.names += sql.mid(at + 1, end - at - 1).toUpper();
            result.sql += u'?';
        } else {
            result.sql += sql.at(at);
            end = at + 1;
        }
        at = end;
    }
    return result;
}
