#pragma once

#include <QString>
#include <QStringList>

/// A statement with its named parameters replaced by positional ones.
struct PositionalSql
{
    QString sql;
    /// Names in upper case, without the colon, one for each "?"; a name used twice is there twice.
    QStringList names;
};

/// Replaces `:NAME` by "?". Literals, quoted identifiers and comments of both kinds are copied unchanged, and so is a
/// whole statement that defines or runs procedural code, where a colon marks a variable. Never throws.
PositionalSql ToPositional(const QString &sql);

/// Index just past the literal, quoted identifier or comment that begins at `from`; `from` itself where none begins.
/// An unclosed one ends with the text.
qsizetype SkipOpaqueSql(const QString &sql, qsizetype from);
