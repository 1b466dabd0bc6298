#pragma once

#include <QList>
#include <QStringList>

#include <optional>

/// The order in which a collection is read, which is that of the tree: depth first over the groups, in each first its
/// groups and then its texts.
namespace ReadingOrder {

struct Text
{
    qsizetype group = -1;      ///< its place in the list of groups, -1 for none
    std::optional<int> number; ///< in the whole collection, as a table gives it
    QStringList names;         ///< of several kinds, the best first; all texts have the same kinds
};

/// Places of the texts in that order. `parents` holds each group's parent by its place in that list, -1 at the root;
/// siblings stand there in their own order. If all texts have numbers, these alone decide. Otherwise the numbered texts
/// of a group come first, and the others follow by the first kind of names that numbers all of them, 1.2 before 1.10;
/// without one as they stand in `texts` if the source `tells` that order, else by the first kind of names.
QList<qsizetype> Of(const QList<qsizetype> &parents, const QList<Text> &texts, bool tells);

} // namespace ReadingOrder
