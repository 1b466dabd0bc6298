#pragma once

#include <QString>

/// The reader's rules: which clause filters the tree, which names the tree shows.

enum class NameColumn { None, Pali, Vietnamese, English };
/// The clause appended to the tree's statement to filter the visible column; empty for None. Its parameter:
/// SEARCH_TEXT.
QString TreeFilterClause(NameColumn column);
/// The value of SEARCH_TEXT: "%", the text in lower case by the full Unicode rule, "%".
QString TreeFilterValue(const QString &trimmedText);

/// Whether a row of the tree, with its ID_VIC and TREE_ID, is a group.
bool IsGroupRow(qint64 idVic, const QString &treeId);

/// The state that ViewSuttaName(mode) gives to the tree's columns, toggles and margin controls.
struct NameView
{
    NameColumn column = NameColumn::None;
    NameColumn toggle = NameColumn::None;
    bool marginEnabled = true;
};
NameView NameViewOfMode(int mode);

/// The running number of a randomly opened text: 1 to 204 inclusive, from one random 32-bit number.
int RandomSuttaNumber(quint32 drawn);

/// Title and text of a box in the interface language; empty for languages other than 0 and 1.
struct BoxText
{
    QString title;
    QString text;
};
BoxText QuitPrompt(int interfaceLang);
QString ClientDatabaseNotOpenText(int interfaceLang);
