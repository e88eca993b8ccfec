#include "treealign/guide_tree.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

struct Clusters {
  int n;
  std::vector<double> d;  // n x n
  std::vector<int> size, node, nearest;
  std::vector<char> active;
  double at(int i, int j) const { return d[static_cast<std::size_t>(i) * n + j]; }
  double& at(int i, int j) { return d[static_cast<std::size_t>(i) * n + j]; }
};

void find_nearest(Clusters& c, int i) {
  int best = -1;
  for (int j = 0; j < c.n; ++j)
    if (j != i && c.active[j] && (best < 0 || c.at(i, j) < c.at(i, best))) best = j;
  c.nearest[i] = best;
}

// The closest pair of active clusters (lowest numbers on ties).
std::pair<int, int> closest_pair(const Clusters& c) {
  int bi = -1;
  for (int i = 0; i < c.n; ++i) {
    if (!c.active[i] || c.nearest[i] < 0) continue;
    if (bi < 0 || c.at(i, c.nearest[i]) < c.at(bi, c.nearest[bi])) bi = i;
  }
  return {std::min(bi, c.nearest[bi]), std::max(bi, c.nearest[bi])};
}

void collect_leaves(const GuideTree& tree, int node, std::vector<int>& out) {
  std::vector<int> stack = {node};
  while (!stack.empty()) {
    const int k = stack.back();
    stack.pop_back();
    const TreeNode& t = tree.nodes[static_cast<std::size_t>(k)];
    if (t.left < 0) {
      out.push_back(t.seq);
      continue;
    }
    stack.push_back(t.right);
    stack.push_back(t.left);
  }
}

}  // namespace

GuideTree upgma_tree(int n, std::vector<double> distances) {
  GuideTree tree;
  tree.nodes.resize(static_cast<std::size_t>(std::max(n, 0)));
  for (int k = 0; k < n; ++k) tree.nodes[static_cast<std::size_t>(k)].seq = k;
  if (n < 1) return tree;
  tree.root = 0;
  Clusters c{n,
             std::move(distances),
             std::vector<int>(n, 1),
             std::vector<int>(n),
             std::vector<int>(n, -1),
             std::vector<char>(n, 1)};
  for (int i = 0; i < n; ++i) c.node[i] = i;
  for (int i = 0; i < n; ++i) find_nearest(c, i);
  for (int joins = 1; joins < n; ++joins) {
    const auto [i, j] = closest_pair(c);
    TreeNode joined;
    joined.left = c.node[i];
    joined.right = c.node[j];
    joined.height = c.at(i, j) / 2;
    joined.leaves = c.size[i] + c.size[j];
    tree.nodes.push_back(joined);
    // The joined cluster takes i's slot; j leaves.
    for (int k = 0; k < n; ++k) {
      if (!c.active[k] || k == i || k == j) continue;
      const double merged = (c.size[i] * c.at(i, k) + c.size[j] * c.at(j, k)) / (c.size[i] + c.size[j]);
      c.at(i, k) = c.at(k, i) = merged;
    }
    c.active[j] = 0;
    c.size[i] += c.size[j];
    c.node[i] = static_cast<int>(tree.nodes.size()) - 1;
    for (int k = 0; k < n; ++k) {
      if (!c.active[k]) continue;
      if (k == i || c.nearest[k] == i || c.nearest[k] == j)
        find_nearest(c, k);
      else if (c.at(k, i) < c.at(k, c.nearest[k]) || (c.at(k, i) == c.at(k, c.nearest[k]) && i < c.nearest[k]))
        c.nearest[k] = i;
    }
  }
  tree.root = static_cast<int>(tree.nodes.size()) - 1;
  return tree;
}

std::vector<int> tree_leaves(const GuideTree& tree, int node) {
  std::vector<int> out;
  collect_leaves(tree, node, out);
  return out;
}

std::vector<int> joins_in_order(const GuideTree& tree) {
  // Every join is numbered after both of its children.
  std::vector<int> order;
  for (std::size_t k = 0; k < tree.nodes.size(); ++k)
    if (tree.nodes[k].left >= 0) order.push_back(static_cast<int>(k));
  return order;
}

std::vector<std::int64_t> tree_weights(const GuideTree& tree) {
  const std::size_t count = tree.nodes.size();
  std::vector<int> parent(count, -1);
  for (std::size_t k = 0; k < count; ++k)
    if (tree.nodes[k].left >= 0) {
      parent[static_cast<std::size_t>(tree.nodes[k].left)] = static_cast<int>(k);
      parent[static_cast<std::size_t>(tree.nodes[k].right)] = static_cast<int>(k);
    }
  // A branch's share for each leaf below it, summed from the root down.
  std::vector<double> share(count, 0.0);
  for (std::size_t k = count; k-- > 0;) {
    const int up = parent[k];
    if (up < 0) continue;
    const TreeNode& node = tree.nodes[k];
    const double branch = std::max(0.0, tree.nodes[static_cast<std::size_t>(up)].height - node.height);
    share[k] = share[static_cast<std::size_t>(up)] + branch / node.leaves;
  }
  std::size_t leaves = 0;
  while (leaves < count && tree.nodes[leaves].left < 0) ++leaves;
  double most = 0.0;
  for (std::size_t k = 0; k < leaves; ++k) most = std::max(most, share[k]);
  std::vector<std::int64_t> weights(leaves, 1000);
  if (most <= 0.0) return weights;
  for (std::size_t k = 0; k < leaves; ++k)
    weights[k] = std::max<std::int64_t>(1, std::llround(1000.0 * share[k] / most));
  return weights;
}
