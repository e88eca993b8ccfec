// Sections: the joining order, the workers, the members' columns.
#include "treealign/profile_joins.hpp"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <optional>
#include <set>
#include <thread>

#include "malign/pair_stage.hpp"

namespace {

// Each node's place in a left-first walk; the workers take the ready join
// that comes first in it, so few groups are alive at a time.
std::vector<int> walk_ranks(const GuideTree& tree) {
  std::vector<int> rank(tree.nodes.size(), 0);
  std::vector<std::pair<int, bool>> stack = {{tree.root, false}};
  int next = 0;
  while (!stack.empty()) {
    const auto [node, childrenDone] = stack.back();
    stack.pop_back();
    const TreeNode& t = tree.nodes[static_cast<std::size_t>(node)];
    if (t.left < 0 || childrenDone) {
      rank[static_cast<std::size_t>(node)] = next++;
      continue;
    }
    stack.push_back({node, true});
    stack.push_back({t.right, false});
    stack.push_back({t.left, false});
  }
  return rank;
}

struct JoinState {
  JoinState(const JoinContext& c, const GuideTree& t, std::span<const SeqRecord> s)
      : context(c),
        tree(t),
        seqs(s),
        rank(walk_ranks(t)),
        parent(t.nodes.size(), -1),
        waiting(t.nodes.size(), 0),
        profiles(t.nodes.size()),
        paths(t.nodes.size()) {}
  const JoinContext& context;
  const GuideTree& tree;
  std::span<const SeqRecord> seqs;
  std::vector<int> rank, parent, waiting;  // waiting: children still to join
  std::vector<std::optional<GroupProfile>> profiles;
  std::vector<JoinPath> paths;
  std::set<std::pair<int, int>> ready;  // (rank, node)
  std::mutex lock;
  std::condition_variable changed;
  bool finished = false;
  std::exception_ptr failure;
};

GroupProfile take_profile(JoinState& state, int node) {
  const TreeNode& t = state.tree.nodes[static_cast<std::size_t>(node)];
  if (t.left < 0)
    return group_profile(state.context, single_group(t.seq, state.seqs[static_cast<std::size_t>(t.seq)].numRes));
  std::optional<GroupProfile>& kept = state.profiles[static_cast<std::size_t>(node)];
  GroupProfile profile = std::move(*kept);
  kept.reset();
  return profile;
}

void join_node(JoinState& state, int node) {
  const TreeNode& t = state.tree.nodes[static_cast<std::size_t>(node)];
  GroupProfile a, b;
  {
    // The children are done and no one else reads them.
    std::lock_guard<std::mutex> guard(state.lock);
    a = take_profile(state, t.left);
    b = take_profile(state, t.right);
  }
  JoinPath path = align_profiles(state.context, a, b, nullptr, nullptr);
  GroupProfile joined = joined_profile(a, b, path);
  std::lock_guard<std::mutex> guard(state.lock);
  state.profiles[static_cast<std::size_t>(node)] = std::move(joined);
  state.paths[static_cast<std::size_t>(node)] = std::move(path);
  const int up = state.parent[static_cast<std::size_t>(node)];
  if (up < 0)
    state.finished = true;
  else if (--state.waiting[static_cast<std::size_t>(up)] == 0)
    state.ready.insert({state.rank[static_cast<std::size_t>(up)], up});
  state.changed.notify_all();
}

void work(JoinState& state) {
  for (;;) {
    int node = -1;
    {
      std::unique_lock<std::mutex> guard(state.lock);
      state.changed.wait(guard, [&] { return state.finished || state.failure || !state.ready.empty(); });
      if (state.finished || state.failure) return;
      node = state.ready.begin()->second;
      state.ready.erase(state.ready.begin());
    }
    try {
      join_node(state, node);
    } catch (...) {
      std::lock_guard<std::mutex> guard(state.lock);
      if (!state.failure) state.failure = std::current_exception();
      state.changed.notify_all();
      return;
    }
  }
}

// Each member's columns in the root's numbering, from the root down.
Group members_columns(const JoinState& state) {
  const GuideTree& tree = state.tree;
  std::vector<std::vector<std::int32_t>> toRoot(tree.nodes.size());
  Group group;
  group.len = state.paths[static_cast<std::size_t>(tree.root)].len;
  toRoot[static_cast<std::size_t>(tree.root)].resize(static_cast<std::size_t>(group.len));
  for (int c = 0; c < group.len; ++c) toRoot[static_cast<std::size_t>(tree.root)][static_cast<std::size_t>(c)] = c;
  std::vector<int> stack = {tree.root};
  while (!stack.empty()) {
    const int node = stack.back();
    stack.pop_back();
    const TreeNode& t = tree.nodes[static_cast<std::size_t>(node)];
    std::vector<std::int32_t> mine = std::move(toRoot[static_cast<std::size_t>(node)]);
    if (t.left < 0) {
      group.members.push_back(t.seq);
      group.cols.push_back(std::move(mine));
      continue;
    }
    const JoinPath& path = state.paths[static_cast<std::size_t>(node)];
    for (const auto& [child, to] : {std::pair{t.left, &path.toA}, std::pair{t.right, &path.toB}}) {
      std::vector<std::int32_t>& cols = toRoot[static_cast<std::size_t>(child)];
      cols.resize(to->size());
      for (std::size_t c = 0; c < to->size(); ++c) cols[c] = mine[static_cast<std::size_t>((*to)[c])];
    }
    stack.push_back(t.right);
    stack.push_back(t.left);
  }
  return group;
}

}  // namespace

Group join_profiles_up_tree(const JoinContext& context, const GuideTree& tree, std::span<const SeqRecord> seqs,
                            int threads) {
  const std::size_t count = tree.nodes.size();
  const TreeNode& top = tree.nodes[static_cast<std::size_t>(tree.root)];
  if (top.left < 0) return single_group(top.seq, seqs[static_cast<std::size_t>(top.seq)].numRes);
  JoinState state(context, tree, seqs);
  for (std::size_t k = 0; k < count; ++k) {
    const TreeNode& t = tree.nodes[k];
    if (t.left < 0) continue;
    for (const int child : {t.left, t.right}) {
      state.parent[static_cast<std::size_t>(child)] = static_cast<int>(k);
      if (tree.nodes[static_cast<std::size_t>(child)].left >= 0) ++state.waiting[k];
    }
    if (state.waiting[k] == 0) state.ready.insert({state.rank[k], static_cast<int>(k)});
  }
  const int workers = std::max(1, pair_threads(threads));
  std::vector<std::thread> pool;
  for (int w = 1; w < workers; ++w) pool.emplace_back([&] { work(state); });
  work(state);
  for (std::thread& thread : pool) thread.join();
  if (state.failure) std::rethrow_exception(state.failure);
  return members_columns(state);
}
