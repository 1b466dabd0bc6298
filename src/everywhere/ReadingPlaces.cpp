#include "everywhere/ReadingPlaces.h"

#include <QHash>

#include <algorithm>

namespace {

constexpr int Root = -1;
constexpr int GroupRow = 1000; ///< ID_VIC of a group's row, less its ID_VIT

struct Node
{
    qint64 idVic = 0;
    int group = Root; ///< ID_VIT, for a group
    int text = -1;    ///< index, for a text
};

/// The last first, as a stack gives them back.
bool IsLater(const Node &left, const Node &right)
{
    return left.idVic > right.idVic;
}

} // namespace

std::vector<int> ReadingOrder(const std::vector<TreeGroup> &groups, const std::vector<TreeText> &texts)
{
    QHash<int, std::vector<Node>> children;
    for (const TreeGroup &group : groups)
        children[group.parent].push_back({.idVic = qint64{GroupRow} + group.idVit, .group = group.idVit});
    for (std::size_t text = 0; text < texts.size(); ++text)
        children[texts[text].idVit].push_back({.idVic = texts[text].idVic, .text = static_cast<int>(text)});

    std::vector<int> order;
    order.reserve(texts.size());
    std::vector<Node> waiting;
    const auto visit = [&](std::vector<Node> nodes) {
        std::stable_sort(nodes.begin(), nodes.end(), IsLater);
        waiting.insert(waiting.end(), nodes.begin(), nodes.end());
    };
    const auto walk = [&] {
        while (!waiting.empty()) {
            const Node node = waiting.back();
            waiting.pop_back();
            if (node.text >= 0)
                order.push_back(node.text);
            else
                visit(children.take(node.group)); // each once
        }
    };
    visit(children.take(Root));
    walk();
    std::vector<Node> lost;
    for (const std::vector<Node> &nodes : std::as_const(children))
        std::copy_if(nodes.begin(), nodes.end(), std::back_inserter(lost),
                     [](const Node &node) { return node.text >= 0; });
    visit(std::move(lost));
    walk();
    return order;
}
