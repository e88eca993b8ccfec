#include "align/traceback.hpp"

#include <string>
#include <utility>
#include <vector>

#include "support/test_support.hpp"

namespace {

constexpr std::int32_t N = kNoCell;
constexpr int kGuard = 8;

// The two templates, each with room for maxLen + 1 characters and a guard behind.
struct Templates {
  std::string first, second;
};

// Traces a matrix whose only meaningful content is its links; returns the length.
int traced(std::int32_t start, int rows, int cols, const std::vector<std::pair<int, int>>& links, int maxLen, int limit,
           Templates& t) {
  std::vector<SumCell> m(static_cast<std::size_t>(rows * cols), SumCell{0, N});
  for (const auto& [from, to] : links) m[from].next = to;
  t.first.assign(maxLen + 1 + kGuard, '#');
  t.second.assign(maxLen + 1 + kGuard, '#');
  const auto room = static_cast<std::size_t>(maxLen + 1);
  int len = 0;
  const AlignStatus status =
      trace_best_align(start, m.data(), rows, cols, {t.first.data(), room}, {t.second.data(), room}, limit, len);
  if (align_failed(status)) report_align_fault(status);
  return len;
}

bool guards_intact(const Templates& t) {
  const std::string guard(kGuard, '#');
  return t.first.ends_with(guard) && t.second.ends_with(guard);
}

}  // namespace

TEST(FindBestAlign, ExactlyTheLimitFitsAndShortBuffersAreNeverOverrun) {
  Templates t;
  EXPECT_EQ(traced(N, 3, 3, {}, 6, 6, t), 6);
  EXPECT_EQ(t.first.substr(0, 7), std::string("XXX   \0", 7));
  EXPECT_TRUE(guards_intact(t));
  // With a limit above the buffers nothing is written past them, yet the
  // whole length is returned.
  EXPECT_EQ(traced(N, 3, 3, {}, 3, 100, t), 6);
  EXPECT_EQ(t.first.substr(0, 4), "XXX ");
  EXPECT_TRUE(guards_intact(t));
}
