#pragma once

#include <vector>

/// A group and a text as the tree's rows have them.
struct TreeGroup
{
    int idVit = 0;
    int parent = 0; ///< ID_VIT of its group; -1 at the root
};
struct TreeText
{
    int idVic = 0;
    int idVit = 0; ///< its group
};

/// The order in which texts are read, as indices into `texts`: that of the tree from top to bottom, in which groups and
/// texts of a group follow each other by the ID_VIC of their rows. Texts that no way from the root leads to come last,
/// by ID_VIC. Any numbers are allowed, circles too.
std::vector<int> ReadingOrder(const std::vector<TreeGroup> &groups, const std::vector<TreeText> &texts);
