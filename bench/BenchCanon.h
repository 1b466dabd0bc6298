#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

/// Number of the first passage of a measured canon; the others follow it.
inline constexpr int FirstBenchText = 1101;

/// Makes a canon file for measuring: `texts` passages in groups of 20 in Vietnamese, the first with a
/// short page and each other one with `page` (UTF-8 HTML). Throws DatabaseError.
void MakeCanon(const QString &clientLibrary, const QString &path, int texts, const QByteArray &page);

/// The same with a page for each passage, asked for by its number from 0.
void MakeCanon(const QString &clientLibrary, const QString &path, int texts,
               const std::function<QByteArray(int text)> &page);

/// A page of plain paragraphs of about `bytes` bytes, with the literals that the composer replaces. UTF-8.
QByteArray PlainPage(qsizetype bytes);
