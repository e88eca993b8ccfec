#include "align/sum_matrix.hpp"

#include <vector>

#include "support/test_support.hpp"

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

namespace {

// A small matrix given by its pair scores, summed with the given penalties.
struct SumCase {
  int rows;
  int cols;
  std::vector<std::int32_t> pairScores;  // row by row
  std::vector<std::int32_t> rowStruct;
  std::vector<std::int32_t> colStruct;
  std::vector<std::int32_t> rowGroup;
  std::vector<std::int32_t> colGroup;
  int gapPen;
  int gapSizePen;
};

std::vector<std::int32_t> zeros(int n) { return std::vector<std::int32_t>(static_cast<std::size_t>(n), 0); }

SumCase plain_case(int rows, int cols, std::vector<std::int32_t> scores, int gapPen, int gapSizePen) {
  return {rows, cols, std::move(scores), zeros(rows), zeros(cols), zeros(rows), zeros(cols), gapPen, gapSizePen};
}

// Links start as garbage so that a link the summation forgets shows up.
std::vector<SumCell> summed(const SumCase& c) {
  std::vector<SumCell> m(static_cast<std::size_t>(c.rows * c.cols));
  for (std::size_t k = 0; k < m.size(); ++k) m[k] = {c.pairScores[k], 12345};
  sm_mat_init(m.data(), c.rows, c.cols, 0);
  sm_mat_sum(m.data(), c.rows, c.cols, c.rowStruct.data(), c.colStruct.data(), c.rowGroup.data(), c.colGroup.data(),
             c.gapPen, c.gapSizePen);
  return m;
}

std::vector<std::int32_t> sums(const std::vector<SumCell>& m) {
  std::vector<std::int32_t> out;
  for (const SumCell& cell : m) out.push_back(cell.score);
  return out;
}

std::vector<std::int32_t> links(const std::vector<SumCell>& m) {
  std::vector<std::int32_t> out;
  for (const SumCell& cell : m) out.push_back(cell.next);
  return out;
}

std::vector<std::int32_t> transposed(const std::vector<std::int32_t>& v, int rows, int cols) {
  std::vector<std::int32_t> t(v.size());
  for (int i = 0; i < rows; ++i)
    for (int j = 0; j < cols; ++j) t[j * rows + i] = v[i * cols + j];
  return t;
}

SumCase transposed(const SumCase& c) {
  return {c.cols,      c.rows,      transposed(c.pairScores, c.rows, c.cols),
          c.colStruct, c.rowStruct, c.colGroup,
          c.rowGroup,  c.gapPen,    c.gapSizePen};
}

constexpr std::int32_t N = kNoCell;

}  // namespace

// Two rows, four columns, gap penalty 3, size penalty 1: (0,0) pairs its 8
// with the 9 at (1,3), skipping two columns for 3 + 2 x 1.
class WorkedExample : public ::testing::Test {
 protected:
  SumCase input = plain_case(2, 4, {8, 0, 0, 0, 0, 0, 0, 9}, 3, 1);
};

TEST_F(WorkedExample, WholeMatrixOfSumsAndLinks) {
  const auto m = summed(input);
  EXPECT_THAT(sums(m), ElementsAre(12, 5, 9, 0, 0, 0, 0, 9));
  EXPECT_THAT(links(m), ElementsAre(7, 7, 7, N, N, N, N, N));
  EXPECT_EQ(find_path_start(m.data(), 2, 4), 0);
}

TEST_F(WorkedExample, GroupBehindTheGapIsChargedOnceAlongRowsAndColumns) {
  input.rowGroup = {0, 2};
  EXPECT_THAT(sums(summed(input)), ElementsAre(10, 3, 9, 0, 0, 0, 0, 9));
  // Transposed, the column carry does the same with colGroup.
  const auto m = summed(transposed(input));
  EXPECT_THAT(sums(m), ElementsAre(10, 0, 3, 0, 9, 0, 0, 9));
  EXPECT_THAT(links(m), ElementsAre(7, N, 7, N, 7, N, N, N));
}

TEST(SumMatrixTies, DiagonalWinsATieWithACarry) {
  // (0,1): the diagonal (1,2) holds 5 and so does the row carry from (1,3).
  // The equal candidate 5 from (1,2) does not replace the carry either, so
  // (0,0) still links to (1,3).
  const auto m = summed(plain_case(2, 4, {0, 0, 0, 0, 0, 0, 5, 5}, 0, 0));
  EXPECT_THAT(links(m), ElementsAre(7, 6, 7, N, N, N, N, N));
  EXPECT_THAT(sums(m), ElementsAre(5, 5, 5, 0, 0, 0, 5, 5));
}

TEST(SumMatrixTies, RowCarryWinsATieWithTheColumnCarry) {
  // (0,0): its diagonal (1,1) sums to 0; the row carry offers (1,2) = 5 and the
  // column carry (2,1) = 5.
  const auto m = summed(plain_case(3, 3, {0, 0, 0, 0, 0, 5, 0, 5, 0}, 0, 0));
  EXPECT_THAT(sums(m), ElementsAre(5, 5, 0, 5, 0, 5, 0, 5, 0));
  EXPECT_THAT(links(m), ElementsAre(5, 5, N, 7, 8, N, N, N, N));
  // One more on the column carry's side and it wins.
  const auto strict = summed(plain_case(3, 3, {0, 0, 0, 0, 0, 5, 0, 6, 0}, 0, 0));
  EXPECT_EQ(strict[0].score, 6);
  EXPECT_EQ(strict[0].next, 7);
}

TEST(SumMatrixCarries, RowCarryLinkStartsAtTheCornerAndIsKeptAcrossRows) {
  // Sums below the carries' -10000 floor make a row carry serve before any
  // candidate has set its link: (1,1) gets the bottom-right corner, (0,1) the
  // link (2,1) that row 1's carry took last.
  const std::int32_t low = -20000;
  const auto m = summed(plain_case(3, 3, {0, 0, low, low, low, low, low, 0, low}, 0, 1));
  EXPECT_EQ(m[4].next, 8);
  EXPECT_EQ(m[1].next, 7);
  EXPECT_EQ(m[1].score, -10000);
}

TEST(SumMatrixStructure, LevelRiseIsChargedOnceAndANewCandidateResetsIt) {
  // Column structure 3 3 3 2 4 4 0 gives step levels (j = 0..5) 3 3 2 2 4 0.
  // The carry from (1,6) = 20 is 17, 16 after its length charge; the level 4
  // at j = 4 costs 4 once. At j = 3 the candidate 18 - 3 - 2 = 13 replaces it
  // with level 2, so the level 3 at j = 1 costs only 1 more.
  SumCase c = plain_case(2, 7, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 18, 0, 20}, 3, 1);
  c.colStruct = {3, 3, 3, 2, 4, 4, 0};
  const auto m = summed(c);
  EXPECT_THAT(sums(m), ElementsAre(9, 11, 12, 18, 16, 20, 0, 0, 0, 0, 0, 18, 0, 20));
  EXPECT_THAT(links(m), ElementsAre(11, 11, 11, 11, 13, 13, N, N, N, N, N, N, N, N));

  // The same along a column, with the row structure.
  const auto t = summed(transposed(c));
  EXPECT_THAT(sums(t), ElementsAreArray(transposed(sums(m), 2, 7)));
}

TEST(SumMatrixShapes, OneRowOrOneColumnKeepsPairScoresAndNullLinks) {
  for (const auto& [rows, cols] : {std::pair{1, 4}, std::pair{4, 1}}) {
    const auto m = summed(plain_case(rows, cols, {-1, 3, 7, 7}, 3, 1));
    EXPECT_THAT(sums(m), ElementsAre(-1, 3, 7, 7));
    EXPECT_THAT(links(m), ElementsAre(N, N, N, N));
    EXPECT_EQ(find_path_start(m.data(), rows, cols), 2);
  }
}

TEST(SumMatrixInit, ClearsScoresOnRequestAndLinksOfTheLastRowAndColumn) {
  std::vector<SumCell> m(6, SumCell{4, 9});
  sm_mat_init(m.data(), 2, 3, 0);
  EXPECT_THAT(sums(m), ElementsAre(4, 4, 4, 4, 4, 4));
  EXPECT_THAT(links(m), ElementsAre(9, 9, N, N, N, N));
  sm_mat_init(m.data(), 2, 3, 1);
  EXPECT_THAT(sums(m), ElementsAre(0, 0, 0, 0, 0, 0));
  sm_mat_init(m.data(), 0, 3, 1);  // no cells: nothing touched
}

TEST(SumMatrixScore, LooksUpRowCodePlusColumnCodeAndAdds) {
  ScoreTable table{};
  table[1 * 32 + 2] = 5;
  table[1 * 32 + 0] = -3;
  table[31 * 32 + 31] = 10000;
  const std::vector<std::int32_t> rowCodes{32, 31 * 32};
  const std::vector<std::int32_t> colCodes{2, 0, 31};
  std::vector<SumCell> m(6, SumCell{7, 0});
  sm_mat_score(table, m.data(), 2, 3, rowCodes.data(), colCodes.data());
  EXPECT_THAT(sums(m), ElementsAre(5, -3, 0, 0, 0, 10000));
  sm_mat_add_score(table, m.data(), 2, 3, rowCodes.data(), colCodes.data());
  EXPECT_THAT(sums(m), ElementsAre(10, -6, 0, 0, 0, 20000));
}

TEST(FindPathStart, FirstMaximumInScanOrderRowZeroThenColumnZero) {
  // Equal maxima on row 0 and column 0: row 0's wins; the larger inner cell is not a start.
  std::vector<SumCell> m = {{1, N}, {0, N}, {6, N}, {2, N}, {9, N}, {0, N}, {6, N}, {0, N}, {0, N}};
  EXPECT_EQ(find_path_start(m.data(), 3, 3), 2);
  m[2].score = 5;
  EXPECT_EQ(find_path_start(m.data(), 3, 3), 6);
  // Equal maxima down column 0: the upper one.
  m[3].score = 6;
  EXPECT_EQ(find_path_start(m.data(), 3, 3), 3);
}

TEST(FindPathStart, NoPositiveSumOnTheEdgesGivesNull) {
  std::vector<SumCell> m = {{0, N}, {-4, N}, {-1, N}, {50, N}};
  EXPECT_EQ(find_path_start(m.data(), 2, 2), kNoCell);
  EXPECT_EQ(find_path_start(m.data(), 0, 2), kNoCell);
}

TEST(SumMatrixArithmetic, SumsWrapAtThirtyTwoBits) {
  // Far outside any real table, but the kernel must not trip over it.
  const std::int32_t big = 2147483000;
  const auto m = summed(plain_case(2, 2, {big, 0, 0, big}, -2000000000, -2000000000));
  EXPECT_EQ(m[0].score, static_cast<std::int32_t>(2u * static_cast<std::uint32_t>(big)));
}
