// The guide tree: sequences joined by average linkage (UPGMA) on their
// distances, and sequence weights from the tree's branches so that a crowd
// of near-duplicates counts about as much as one distinct sequence.
#pragma once

#include <cstdint>
#include <vector>

struct TreeNode {
  int left = -1, right = -1;  // children (node numbers); -1 for a leaf
  int seq = -1;               // a leaf's sequence
  double height = 0.0;        // half the average distance between its two sides
  int leaves = 1;
};

// Leaves are nodes 0 .. n-1 (node k is sequence k); each join adds a node,
// the last one the root.
struct GuideTree {
  std::vector<TreeNode> nodes;
  int root = -1;
};

// In: n sequences and their distances, n x n row by row (symmetric).
// Out: the tree; ties join the lowest-numbered clusters first.
GuideTree upgma_tree(int n, std::vector<double> distances);

// The leaves below a node, left before right.
std::vector<int> tree_leaves(const GuideTree& tree, int node);

// Nodes in an order where both children come before their parent.
std::vector<int> joins_in_order(const GuideTree& tree);

// Weights of the leaves: each branch's length shared among the leaves below
// it, summed from the leaf to the root; scaled to whole numbers 1 .. 1000.
std::vector<std::int64_t> tree_weights(const GuideTree& tree);
