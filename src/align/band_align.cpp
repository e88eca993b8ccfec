// Sections: public routines (sum_band, the readers), then private helpers.
#include "align/band_align.hpp"

#include <algorithm>
#include <cstddef>
#include <new>
#include <stdexcept>

#include "align/lane_kernel.hpp"
#include "align/score_codes.hpp"
#include "align/sum_matrix.hpp"
#include "align/traceback.hpp"
#include "align/wrap_arith.hpp"

namespace {

const char* const kLabel = "sm";

bool reserve_band(BandWorkspace& ws) {
  const auto rows = static_cast<std::size_t>(ws.rows), cols = static_cast<std::size_t>(ws.cols);
  const auto lanes = static_cast<std::size_t>(ws.lanes), steps = static_cast<std::size_t>(ws.steps);
  const std::size_t bands = rows > 1 ? (rows - 2) / lanes + 1 : 0;
  const std::size_t skew = steps * lanes;
  return grow(ws.bits, bands * steps * lane_entry_bytes(ws.lanes)) && grow(ws.rowStructMin, rows) &&
         grow(ws.rowGapCharge, rows) && grow(ws.colStructMin, cols + 2 * lanes) &&
         grow(ws.colGapCharge, cols + 2 * lanes) && grow(ws.belowRow, cols) && grow(ws.carryScore, cols) &&
         grow(ws.carryLevel, cols) && grow(ws.carryUsable, cols) && grow(ws.skewPairs, skew) &&
         grow(ws.skewOut, skew) && grow(ws.skewScore, skew) && grow(ws.skewLevel, skew) && grow(ws.skewUsable, skew) &&
         grow(ws.colZeroSums, rows) && grow(ws.firstRow, cols);
}

void run_band_kernel(KernelKind kind, const BandBatch& batch) {
  switch (kind) {
    case KernelKind::avx512:
      band_sum_avx512(batch);
      break;
    case KernelKind::avx2:
      band_sum_avx2(batch);
      break;
    default:
      band_sum_sse41(batch);
      break;
  }
}

bool entry_bit(const BandWorkspace& ws, int i, int j, int field) {
  const int fromBottom = ws.rows - 2 - i;
  const int band = fromBottom / ws.lanes, lane = fromBottom % ws.lanes;
  const int step = ws.cols - 2 - j + lane;
  const unsigned char* at =
      ws.bits.data() + (static_cast<std::size_t>(band) * ws.steps + step) * lane_entry_bytes(ws.lanes);
  const int bit = field * ws.lanes + lane;
  return (at[bit / 8] >> (bit % 8)) & 1;
}

}  // namespace

AlignStatus sum_band(BandWorkspace& ws, KernelKind kind, const std::int32_t* scores, int rows, int cols,
                     const std::int32_t* rowStruct, const std::int32_t* colStruct, const std::int32_t* rowGroup,
                     const std::int32_t* colGroup, int gapPen, int gapSizePen) {
  ws.lanes = kernel_lanes(kind);
  ws.rows = std::max(rows, 0);
  ws.cols = std::max(cols, 0);
  ws.steps = ws.cols + ws.lanes - 2;
  if (ws.rows < 1 || ws.cols < 1) return {};
  if (!reserve_band(ws)) return {AlignFault::outOfMemory, 0, kLabel};
  const std::size_t C = static_cast<std::size_t>(ws.cols);
  if (ws.rows < 2 || ws.cols < 2) {
    // Nothing to sum: every cell keeps its pair score.
    for (int i = 0; i < ws.rows; ++i) ws.colZeroSums[i] = scores[static_cast<std::size_t>(i) * C];
    std::copy_n(scores, C, ws.firstRow.begin());
    return {};
  }
  for (int i = 0; i + 1 < ws.rows; ++i) {
    ws.rowStructMin[i] = std::min(rowStruct[i], rowStruct[i + 1]);
    ws.rowGapCharge[i] = add32(gapPen, rowGroup[i + 1]);
  }
  const std::size_t pad = static_cast<std::size_t>(ws.lanes);
  std::fill_n(ws.colStructMin.begin(), C + 2 * pad, 0);
  std::fill_n(ws.colGapCharge.begin(), C + 2 * pad, gapPen);
  for (int c = 1; c < ws.cols; ++c) {
    ws.colStructMin[pad + c] = std::min(colStruct[c - 1], colStruct[c]);
    ws.colGapCharge[pad + c] = add32(gapPen, colGroup[c]);
  }
  BandBatch batch;
  batch.rows = ws.rows;
  batch.cols = ws.cols;
  batch.lanes = ws.lanes;
  batch.gapSizePen = gapSizePen;
  batch.scores = scores;
  batch.rowStructMin = ws.rowStructMin.data();
  batch.rowGapCharge = ws.rowGapCharge.data();
  batch.colStructMin = ws.colStructMin.data();
  batch.colGapCharge = ws.colGapCharge.data();
  batch.belowRow = ws.belowRow.data();
  batch.carryScore = ws.carryScore.data();
  batch.carryLevel = ws.carryLevel.data();
  batch.carryUsable = ws.carryUsable.data();
  batch.skewPairs = ws.skewPairs.data();
  batch.skewOut = ws.skewOut.data();
  batch.skewScore = ws.skewScore.data();
  batch.skewLevel = ws.skewLevel.data();
  batch.skewUsable = ws.skewUsable.data();
  batch.colZeroSums = ws.colZeroSums.data();
  batch.firstRow = ws.firstRow.data();
  batch.bits = ws.bits.data();
  run_band_kernel(kind, batch);
  return {};
}

std::int32_t band_edge_sum(const BandWorkspace& ws, std::int32_t cell) {
  const int i = cell / ws.cols, j = cell % ws.cols;
  return i == 0 ? ws.firstRow[static_cast<std::size_t>(j)] : ws.colZeroSums[static_cast<std::size_t>(i)];
}

std::int32_t band_path_start(const BandWorkspace& ws) {
  return edge_path_start(ws.rows, ws.cols, [&ws](std::int32_t cell) { return band_edge_sum(ws, cell); });
}

std::int32_t band_next_cell(const BandWorkspace& ws, std::int32_t cell) {
  return compact_next_cell(cell, ws.rows, ws.cols,
                           [&ws](int i, int j, int field) { return entry_bit(ws, i, j, field); });
}
