// The join kernel on paths worked out by hand: what a profile join needs that
// a pairwise alignment does not (insertions of both sides next to each other,
// cheap gaps opposite nearly empty columns), free ends, and the fixed charge
// that keeps a gap out of a gap-free group.
#include "treealign/join_kernel.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Gap costs of a side: every inner position opens at `opening` (plus the
// fixed charges given), filled[c] of 1024 members in column c.
SideGapCosts costs(const std::vector<std::int32_t>& filled, std::int32_t opening,
                   std::vector<std::int32_t> fixed = {}) {
  const std::size_t len = filled.size();
  SideGapCosts c;
  c.open = fixed.empty() ? std::vector<std::int32_t>(len + 1, 0) : fixed;
  c.opening.assign(len + 1, opening);
  c.opening.front() = c.opening.back() = 0;
  c.filled = filled;
  c.skip.assign(len, 0);
  c.skipLevel.assign(len, 0);
  return c;
}

std::string steps(const std::vector<JoinStep>& path) {
  std::string out;
  for (const JoinStep s : path) out += static_cast<char>(s);
  return out;
}

struct JoinCase {
  const char* what;
  int colsA, colsB;
  std::vector<std::int32_t> scores;
  SideGapCosts a, b;
  std::string path;
};

TEST(JoinKernel, FindsTheHandWorkedPath) {
  const std::vector<std::int32_t> full3 = {1024, 1024, 1024};
  const std::vector<std::int32_t> insertion = {1024, 100, 1024};  // a tenth of the members in the middle
  const JoinCase cases[] = {
      {"columns matched one to one",
       3,
       3,
       {10, -9, -9, -9, 10, -9, -9, -9, 10},
       costs(full3, 50),
       costs(full3, 50),
       "MMM"},
      // Each middle column is one group's own insertion: matching them scores
      // -20, a gap opposite each costs a tenth of 50, so they stand side by
      // side (ties go to the first side's gap last).
      {"two groups' insertions side by side",
       3,
       3,
       {10, -9, -9, -9, -20, -9, -9, -9, 10},
       costs(insertion, 50),
       costs(insertion, 50),
       "MBAM"},
      // The same middle columns full: two gaps cost 100, more than the -20.
      {"full columns rather matched",
       3,
       3,
       {10, -9, -9, -9, -20, -9, -9, -9, 10},
       costs(full3, 50),
       costs(full3, 50),
       "MMM"},
      {"ends free however dear a gap",
       2,
       4,
       {-5, -5, 10, -5, -5, -5, -5, 10},
       costs({1024, 1024}, 900),
       costs({1024, 1024, 1024, 1024}, 900),
       "BBMM"},
      // The second side's first inner position is in a gap-free group: the
      // first side's extra column goes against the next one.
      {"gap kept out of a group",
       3,
       2,
       {10, -9, 0, 1, -9, 10},
       costs(full3, 5),
       costs({1024, 1024}, 5, {0, 10000, 0}),
       "MMA"},
  };
  for (const JoinCase& c : cases) EXPECT_EQ(steps(join_path(c.scores, c.colsA, c.colsB, c.a, c.b)), c.path) << c.what;
}

}  // namespace
