#pragma once

#include <QString>

/// The reader's small rules: which clause filters the tree, which names the tree shows. Values in,
/// values out.

enum class NameColumn { None, Pali, Vietnamese, English };
/// The clause appended to the tree's statement to filter the column that shows; empty for None. Names SEARCH_TEXT.
QString TreeFilterClause(NameColumn column);
/// The value of SEARCH_TEXT: "%", the text in lower case by the full Unicode rule, "%".
QString TreeFilterValue(const QString &trimmedText);

/// What ViewSuttaName(mode) does to the tree's columns, toggles and margin controls.
struct NameView
{
    NameColumn column = NameColumn::None;
    NameColumn toggle = NameColumn::None;
    bool marginEnabled = true;
};
NameView NameViewOfMode(int mode);

/// The running number that a random opening seeks: 1 to 204 inclusive, from one drawn 32-bit number.
int RandomSuttaNumber(quint32 drawn);

/// Titles and texts chosen by the interface language: empty beyond 0 and 1.
struct BoxText
{
    QString title;
    QString text;
};
BoxText QuitPrompt(int interfaceLang);
QString ClientDatabaseNotOpenText(int interfaceLang);
