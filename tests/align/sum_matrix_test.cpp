#include "align/sum_matrix.hpp"

#include <string>
#include <tuple>
#include <vector>

#include "support/test_support.hpp"

namespace {

using Cells = std::vector<std::int32_t>;

// A small matrix given by its pair scores (row by row), summed with the given
// penalties; empty structure and group vectors stand for all zeros.
struct SumCase {
  int rows, cols;
  Cells pairScores;
  int gapPen = 0, gapSizePen = 0;
  Cells rowStruct = {}, colStruct = {}, rowGroup = {}, colGroup = {};
};

Cells or_zeros(const Cells& v, int n) { return v.empty() ? Cells(static_cast<std::size_t>(n), 0) : v; }

// Links start as garbage so that a link the summation forgets shows up.
std::vector<SumCell> summed(const SumCase& c) {
  std::vector<SumCell> m(static_cast<std::size_t>(c.rows * c.cols));
  for (std::size_t k = 0; k < m.size(); ++k) m[k] = {c.pairScores[k], 12345};
  sm_mat_init(m.data(), c.rows, c.cols, 0);
  const Cells rs = or_zeros(c.rowStruct, c.rows), cs = or_zeros(c.colStruct, c.cols);
  const Cells rg = or_zeros(c.rowGroup, c.rows), cg = or_zeros(c.colGroup, c.cols);
  std::vector<ColCarry> carries(static_cast<std::size_t>(std::max(c.cols, 1)));
  sum_matrix_cells(carries.data(), m.data(), c.rows, c.cols, rs.data(), cs.data(), rg.data(), cg.data(), c.gapPen,
                   c.gapSizePen);
  return m;
}

// The matrix row by row as "score>next" words, the score alone where the link is null.
std::string shown(const std::vector<SumCell>& m) {
  std::string out;
  for (const SumCell& c : m) {
    out += (out.empty() ? "" : " ") + std::to_string(c.score) + (c.next == kNoCell ? "" : ">" + std::to_string(c.next));
  }
  return out;
}

SumCase transposed(const SumCase& c) {
  Cells t(c.pairScores.size());
  for (int i = 0; i < c.rows; ++i)
    for (int j = 0; j < c.cols; ++j) t[j * c.rows + i] = c.pairScores[i * c.cols + j];
  return {c.cols, c.rows, t, c.gapPen, c.gapSizePen, c.colStruct, c.rowStruct, c.colGroup, c.rowGroup};
}

constexpr std::int32_t N = kNoCell;

// Two rows, four columns, gap penalty 3, size penalty 1: (0,0) pairs its 8
// with the 9 at (1,3), skipping two columns for 3 + 2 x 1.
const SumCase kWorked = {2, 4, {8, 0, 0, 0, 0, 0, 0, 9}, 3, 1};

}  // namespace

TEST(SumMatrix, SumsAndLinks) {
  SumCase groupBehindGap = kWorked;
  groupBehindGap.rowGroup = {0, 2};
  // Column structure 3 3 3 2 4 4 0 gives step levels (j = 0..5) 3 3 2 2 4 0.
  // The carry from (1,6) = 20 is 17, 16 after its length charge; the level 4
  // at j = 4 costs 4 once. At j = 3 the candidate 18 - 3 - 2 = 13 replaces it
  // with level 2, so the level 3 at j = 1 costs only 1 more.
  const SumCase levels = {2, 7, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 18, 0, 20}, 3, 1, {}, {3, 3, 3, 2, 4, 4, 0}};
  const std::tuple<const char*, SumCase, std::string> cases[] = {
      {"the worked example", kWorked, "12>7 5>7 9>7 0 0 0 0 9"},
      {"a group behind the gap is charged once along a row", groupBehindGap, "10>7 3>7 9>7 0 0 0 0 9"},
      {"and along a column", transposed(groupBehindGap), "10>7 0 3>7 0 9>7 0 0 9"},
      // (0,1): the diagonal (1,2) holds 5 and so does the row carry from (1,3).
      // The equal candidate 5 from (1,2) does not replace the carry either, so
      // (0,0) still links to (1,3).
      {"the diagonal wins a tie with a carry", {2, 4, {0, 0, 0, 0, 0, 0, 5, 5}}, "5>7 5>6 5>7 0 0 0 5 5"},
      // (0,0): its diagonal (1,1) sums to 0; the row carry offers (1,2) = 5 and
      // the column carry (2,1) = 5.
      {"the row carry wins a tie with the column carry",
       {3, 3, {0, 0, 0, 0, 0, 5, 0, 5, 0}},
       "5>5 5>5 0 5>7 0>8 5 0 5 0"},
      {"a structure level rise is charged once, a new candidate resets it", levels,
       "9>11 11>11 12>11 18>11 16>13 20>13 0 0 0 0 0 18 0 20"},
      {"the same along a column", transposed(levels), "9>9 0 11>9 0 12>9 0 18>9 0 16>13 18 20>13 0 0 20"},
      {"one row keeps its pair scores", {1, 4, {-1, 3, 7, 7}, 3, 1}, "-1 3 7 7"},
      {"one column too", {4, 1, {-1, 3, 7, 7}, 3, 1}, "-1 3 7 7"},
  };
  for (const auto& [what, input, expected] : cases) {
    SCOPED_TRACE(what);
    EXPECT_EQ(shown(summed(input)), expected);
  }
  // One more on the column carry's side and it wins.
  EXPECT_THAT(shown(summed({3, 3, {0, 0, 0, 0, 0, 5, 0, 6, 0}})), ::testing::StartsWith("6>7 "));
}

TEST(SumMatrix, CarriesServeOnlyOnceACandidateHasSetTheirLink) {
  // Sums far below -10000: a carry is used only after a candidate of its own
  // row (or column) set its link, so every path stays whole. (1,1) and (0,1)
  // go diagonally although no carry was set yet; (0,0) takes column 1's carry,
  // set from (2,1), and skips row 1.
  const std::int32_t low = -20000;
  const auto m = summed({3, 3, {0, 0, low, low, low, low, low, 0, low}, 0, 1});
  EXPECT_EQ(shown(m), "-1>7 -20000>5 -20000 -20000>7 -40000>8 -20000 -20000 0 -20000");
}

TEST(FindPathStart, FirstMaximumInScanOrderRowZeroThenColumnZeroElseNull) {
  EXPECT_EQ(find_path_start(summed(kWorked).data(), 2, 4), 0);
  // Equal maxima on row 0 and column 0: row 0's wins; the larger inner cell is not a start.
  std::vector<SumCell> m = {{1, N}, {0, N}, {6, N}, {6, N}, {9, N}, {0, N}, {6, N}, {0, N}, {0, N}};
  EXPECT_EQ(find_path_start(m.data(), 3, 3), 2);
  m[2].score = 5;  // then the upper of column 0's equal maxima
  EXPECT_EQ(find_path_start(m.data(), 3, 3), 3);
  const std::vector<SumCell> flat = {{0, N}, {-4, N}, {-1, N}, {50, N}};
  EXPECT_EQ(find_path_start(flat.data(), 2, 2), kNoCell);
}
