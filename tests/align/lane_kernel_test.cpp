// Every vector kernel against the scalar reference (sum_matrix_cells) on
// random cases built to stress exactness: ties, structure levels, groups,
// wrapping sums, sums near the carry floor, very short and very long operands.
#include <algorithm>
#include <climits>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "align/band_align.hpp"
#include "align/lane_align.hpp"
#include "align/traceback.hpp"
#include "support/test_support.hpp"

namespace {

using Ints = std::vector<std::int32_t>;

struct Operand {
  Ints wt, ss, structPen, group;
  bool hasSs = false;
  LaneOperand view() const {
    return {static_cast<int>(wt.size()), wt.data(), hasSs ? ss.data() : nullptr, structPen.data(), group.data()};
  }
};

// Value ranges of one case: small ranges make ties common, huge ones wrap.
struct Ranges {
  int tableLo, tableHi, structLo, structHi, groupLo, groupHi, gapLo, gapHi;
};

const Ranges kStyles[] = {
    {-2, 2, 0, 0, 0, 0, 0, 2},                                                 // ties everywhere
    {-3, 3, 0, 3, 0, 0, 0, 3},                                                 // structure levels
    {-50, 50, 0, 500, 0, 5000, 0, 50},                                         // the program's own ranges
    {-10, 10, 0, 2, -2, 6, 0, 4},                                              // group penalties
    {-(1 << 25), 0, 0, 1 << 20, 0, 1 << 20, 0, 1 << 20},                       // sums near the carry floor
    {INT_MIN, INT_MAX, INT_MIN, INT_MAX, INT_MIN, INT_MAX, INT_MIN, INT_MAX},  // wrapping everywhere
};

struct Case {
  Ranges r;
  ScoreTable wt{}, ss{};
  Operand row;
  std::vector<Operand> cols;
  int gapPen = 0, gapSizePen = 0;
};

std::int32_t pick(std::mt19937& rng, int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); }

Operand random_operand(std::mt19937& rng, const Ranges& r, int n, bool anySs) {
  Operand op;
  const int alphabet = pick(rng, 1, 32);  // few codes: more equal scores
  for (int p = 0; p < n; ++p) {
    op.wt.push_back(pick(rng, 0, alphabet - 1));
    op.ss.push_back(pick(rng, 0, 31));
    // Runs of equal penalties, as structure strings give.
    op.structPen.push_back(p > 0 && pick(rng, 0, 2) ? op.structPen.back() : pick(rng, r.structLo, r.structHi));
    op.group.push_back(pick(rng, 0, 3) ? 0 : pick(rng, r.groupLo, r.groupHi));
  }
  op.hasSs = anySs && pick(rng, 0, 1);
  return op;
}

Case random_case(std::mt19937& rng, int lanes, int style, int rows, int maxCols) {
  Case c;
  c.r = kStyles[style];
  for (auto* table : {&c.wt, &c.ss})
    for (std::int32_t& v : *table) v = pick(rng, c.r.tableLo, c.r.tableHi);
  const bool anySs = pick(rng, 0, 1);
  c.row = random_operand(rng, c.r, rows, anySs);
  c.row.hasSs = anySs;
  const int count = pick(rng, 1, lanes);
  for (int l = 0; l < count; ++l) c.cols.push_back(random_operand(rng, c.r, pick(rng, 1, maxCols), anySs));
  c.gapPen = pick(rng, c.r.gapLo, c.r.gapHi);
  c.gapSizePen = pick(rng, c.r.gapLo, c.r.gapHi) / 4;
  return c;
}

// One lane's pair scored by the scalar code: the pair scores alone, or
// summed into the reference matrix.
std::vector<SumCell> reference(const Case& c, const Operand& col, bool summed = true) {
  const int rows = static_cast<int>(c.row.wt.size()), cols = static_cast<int>(col.wt.size());
  std::vector<SumCell> m(static_cast<std::size_t>(rows) * cols, SumCell{0, 12345});
  Ints rowCodes(c.row.wt), rowSs(c.row.ss);
  for (auto& v : rowCodes) v *= kTableDim;
  for (auto& v : rowSs) v *= kTableDim;
  sm_mat_init(m.data(), rows, cols, 0);
  sm_mat_score(c.wt, m.data(), rows, cols, rowCodes.data(), col.wt.data());
  if (c.row.hasSs && col.hasSs) sm_mat_add_score(c.ss, m.data(), rows, cols, rowSs.data(), col.ss.data());
  if (!summed) return m;
  std::vector<ColCarry> carries(static_cast<std::size_t>(cols));
  sum_matrix_cells(carries.data(), m.data(), rows, cols, c.row.structPen.data(), col.structPen.data(),
                   c.row.group.data(), col.group.data(), c.gapPen, c.gapSizePen);
  return m;
}

// Compares a kernel's edge sums, links, path start and templates with the
// reference matrix; returns the first difference found.
template <typename EdgeSum, typename Next>
std::string compare(EdgeSum edgeSum, Next next, std::int32_t start, const std::vector<SumCell>& m, int rows, int cols) {
  for (int j = 0; j < cols; ++j)
    if (edgeSum(j) != m[j].score) return "row 0 sum at column " + std::to_string(j);
  for (int i = 1; i < rows; ++i)
    if (edgeSum(i * cols) != m[static_cast<std::size_t>(i) * cols].score)
      return "column 0 sum at row " + std::to_string(i);
  for (std::int32_t cell = 0; cell < rows * cols; ++cell)
    if (next(cell) != m[cell].next) return "link of cell " + std::to_string(cell);
  const std::int32_t refStart = find_path_start(m.data(), rows, cols);
  if (start != refStart) return "path start";
  std::string a(8000, '-'), b(8000, '-'), c(8000, '-'), d(8000, '-');
  const int refLen = walk_path(
      refStart, rows, cols, [&m](std::int32_t k) { return m[k].next; }, a, b);
  if (walk_path(start, rows, cols, next, c, d) != refLen || a != c || b != d) return "templates";
  return "";
}

// Checks count random cases on the kernel's lanes or, for band, on its
// banded kernel (one pair at a time) against the scalar reference.
void check_cases(KernelKind kind, bool band, unsigned seed, int count, int maxRows, int maxCols) {
  std::mt19937 rng(seed);
  LaneWorkspace lanes;
  BandWorkspace bands;
  for (int n = 0; n < count; ++n) {
    const int style = n % static_cast<int>(std::size(kStyles));
    const Case c = random_case(rng, band ? 1 : kernel_lanes(kind), style, pick(rng, 1, maxRows), maxCols);
    std::vector<LaneOperand> views;
    for (const Operand& op : c.cols) views.push_back(op.view());
    const LaneOperand row = c.row.view();
    if (band) {
      const Operand& col = c.cols[0];
      Ints scores;
      for (const SumCell& cell : reference(c, col, false)) scores.push_back(cell.score);
      ASSERT_FALSE(
          align_failed(sum_band(bands, kind, scores.data(), row.n, views[0].n, c.row.structPen.data(),
                                col.structPen.data(), c.row.group.data(), col.group.data(), c.gapPen, c.gapSizePen)));
    } else {
      ASSERT_FALSE(align_failed(sum_lanes(lanes, kind, row, views, c.wt, c.ss, c.gapPen, c.gapSizePen)));
    }
    for (std::size_t l = 0; l < c.cols.size(); ++l) {
      const int rows = row.n, cols = views[l].n;
      const int lane = static_cast<int>(l);
      const std::vector<SumCell> expected = reference(c, c.cols[l]);
      const std::string diff = band ? compare([&](std::int32_t k) { return band_edge_sum(bands, k); },
                                              [&](std::int32_t k) { return band_next_cell(bands, k); },
                                              band_path_start(bands), expected, rows, cols)
                                    : compare([&](std::int32_t k) { return lane_edge_sum(lanes, lane, k); },
                                              [&](std::int32_t k) { return lane_next_cell(lanes, lane, k); },
                                              lane_path_start(lanes, lane), expected, rows, cols);
      ASSERT_EQ(diff, "") << kernel_name(kind) << (band ? " band" : "") << " case " << n << " style " << style
                          << " lane " << l << " of " << rows << " x " << cols;
    }
  }
}

// Runs check on every vector kernel the machine has; skips the test when there is none.
template <class Check>
void on_vector_kernels(Check check) {
  int tested = 0;
  for (KernelKind kind : {KernelKind::sse41, KernelKind::avx2, KernelKind::avx512}) {
    if (!kernel_supported(kind)) continue;
    ++tested;
    check(kind);
  }
  if (tested == 0) GTEST_SKIP() << "no vector kernel on this machine";
}

}  // namespace

TEST(LaneKernel, LanesAndBandsAgreeWithTheScalarKernel) {
  on_vector_kernels([](KernelKind kind) {
    check_cases(kind, false, 11u, 600, 12, 12);  // small: every tie shape many times
    check_cases(kind, false, 12u, 120, 70, 70);  // mid-sized, with long gaps
    check_cases(kind, false, 13u, 3, 3000, 6);   // 3,000 rows against short columns
    check_cases(kind, false, 14u, 3, 4, 3000);   // and the other way round
    check_cases(kind, true, 21u, 1500, 40, 12);  // bands of every fill, short rows
    check_cases(kind, true, 22u, 150, 90, 90);
    check_cases(kind, true, 23u, 2, 3000, 5);
    check_cases(kind, true, 24u, 2, 5, 3000);
  });
}
