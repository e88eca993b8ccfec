// Sections: public routines (sum_lanes, the per-lane readers, the pairwise
// batch), then private helpers (workspace growth, profiles, operands).
#include "align/lane_align.hpp"

#include <algorithm>
#include <cstddef>
#include <new>
#include <stdexcept>

#include "align/lane_kernel.hpp"
#include "align/penalties.hpp"
#include "align/score_codes.hpp"
#include "align/traceback.hpp"
#include "align/wrap_arith.hpp"

namespace {

const char* const kMatrixLabel = "calc_pair_align: sm";
const char* const kWorkLabel = "do_pair_align";

AlignStatus reserve_lanes(LaneWorkspace& ws, bool withSs) {
  const std::size_t rows = static_cast<std::size_t>(ws.rows), cols = static_cast<std::size_t>(ws.cols);
  const std::size_t lanes = static_cast<std::size_t>(ws.lanes);
  const std::size_t row = cols * lanes;
  const std::size_t entries = (rows > 1 ? rows - 1 : 0) * cols * lane_entry_bytes(ws.lanes);
  if (!grow(ws.bits, entries) || !grow(ws.wtProfile, kTableDim * row) ||
      (withSs && !grow(ws.ssProfile, kTableDim * row)))
    return {AlignFault::outOfMemory, 0, kMatrixLabel};
  if (!grow(ws.colState, row * kColFields) || !grow(ws.rowA, row) || !grow(ws.rowB, row) || !grow(ws.zeroRow, row) ||
      !grow(ws.colZeroSums, rows * lanes) || !grow(ws.rowWtCode, rows) || !grow(ws.rowSsCode, rows) ||
      !grow(ws.rowStructMin, rows) || !grow(ws.rowGapCharge, rows))
    return {AlignFault::outOfMemory, 0, kWorkLabel};
  return {};
}

// Pair scores by row code: profile[code][j][l] for the codes the row uses.
void fill_profile(std::int32_t* profile, const ScoreTable& table, const bool (&used)[kTableDim],
                  const LaneWorkspace& ws, std::span<const LaneOperand> cols, bool structure) {
  const std::size_t W = static_cast<std::size_t>(ws.lanes);
  const std::size_t rowStride = static_cast<std::size_t>(ws.cols) * W;
  for (int code = 0; code < kTableDim; ++code) {
    if (!used[code]) continue;
    std::int32_t* out = profile + static_cast<std::size_t>(code) * rowStride;
    std::fill_n(out, rowStride, 0);
    for (std::size_t l = 0; l < cols.size(); ++l) {
      const std::int32_t* codes = structure ? cols[l].ssCodes : cols[l].wtCodes;
      if (codes == nullptr) continue;
      const std::size_t start = static_cast<std::size_t>(ws.laneStart[l]);
      for (int jr = 0; jr < cols[l].n; ++jr) {
        const auto index = static_cast<std::uint32_t>(add32(code * kTableDim, codes[jr])) & (kTableSize - 1);
        out[(start + static_cast<std::size_t>(jr)) * W + l] = table[index];
      }
    }
  }
}

void fill_column_terms(LaneWorkspace& ws, std::span<const LaneOperand> cols, int gapPen) {
  const std::size_t W = static_cast<std::size_t>(ws.lanes);
  const std::size_t stride = kColFields * W;
  for (std::size_t c = 0; c < static_cast<std::size_t>(ws.cols); ++c) {
    std::fill_n(ws.colState.begin() + static_cast<std::ptrdiff_t>(c * stride + kColStructMin * W), W, 0);
    std::fill_n(ws.colState.begin() + static_cast<std::ptrdiff_t>(c * stride + kColGapCharge * W), W, gapPen);
  }
  for (std::size_t l = 0; l < cols.size(); ++l) {
    const LaneOperand& op = cols[l];
    const std::size_t start = static_cast<std::size_t>(ws.laneStart[l]);
    for (int jr = 0; jr < op.n; ++jr) {
      std::int32_t* col = ws.colState.data() + (start + static_cast<std::size_t>(jr)) * stride + l;
      col[kColStructMin * W] = jr >= 1 ? std::min(op.structPen[jr - 1], op.structPen[jr]) : 0;
      col[kColGapCharge * W] = add32(gapPen, op.groupPen[jr]);
    }
  }
}

void fill_row_terms(LaneWorkspace& ws, const LaneOperand& row, int gapPen) {
  for (int i = 0; i < row.n; ++i) {
    ws.rowWtCode[i] = row.wtCodes[i] & (kTableDim - 1);
    ws.rowSsCode[i] = row.ssCodes ? row.ssCodes[i] & (kTableDim - 1) : 0;
    const bool last = i + 1 >= row.n;
    ws.rowStructMin[i] = last ? 0 : std::min(row.structPen[i], row.structPen[i + 1]);
    ws.rowGapCharge[i] = last ? gapPen : add32(gapPen, row.groupPen[i + 1]);
  }
}

const std::int32_t* run_kernel(KernelKind kind, const LaneBatch& batch) {
  switch (kind) {
    case KernelKind::avx512:
      return lane_sum_avx512(batch);
    case KernelKind::avx2:
      return lane_sum_avx2(batch);
    default:
      return lane_sum_sse41(batch);
  }
}

bool entry_bit(const LaneWorkspace& ws, int i, int j, int field, int lane) {
  const std::size_t bytes = lane_entry_bytes(ws.lanes);
  const unsigned char* at = ws.bits.data() + (static_cast<std::size_t>(i) * ws.cols + j) * bytes;
  const int bit = field * ws.lanes + lane;
  return (at[bit / 8] >> (bit % 8)) & 1;
}

// The column operand of one pair: codes, structure codes when both
// sequences have a structure, structure penalties; zero groups.
LaneOperand make_operand(const OperandText& text, bool structScores, std::vector<std::int32_t>& wt,
                         std::vector<std::int32_t>& ss, std::vector<std::int32_t>& structPen,
                         const std::vector<std::int32_t>& zeros, const PairParams& params) {
  const int n = text.n;
  codes_to_indices(text.res.data(), n, wt.data(), kOtherCode);
  if (structScores) codes_to_indices(text.sRes.data(), n, ss.data(), kOtherCode);
  calc_struct_scores(text.sRes.data(), n, structPen.data(), params.midPen, params.endPen, params.reach);
  return {n, wt.data(), structScores ? ss.data() : nullptr, structPen.data(), zeros.data()};
}

bool grow_operand(std::vector<std::int32_t>& wt, std::vector<std::int32_t>& ss, std::vector<std::int32_t>& st, int n) {
  const auto size = static_cast<std::size_t>(n);
  return grow(wt, size) && grow(ss, size) && grow(st, size);
}

}  // namespace

AlignStatus sum_lanes(LaneWorkspace& ws, KernelKind kind, const LaneOperand& row, std::span<const LaneOperand> cols,
                      const ScoreTable& wtTable, const ScoreTable& ssTable, int gapPen, int gapSizePen) {
  ws.lanes = kernel_lanes(kind);
  ws.rows = row.n;
  ws.cols = 0;
  for (const LaneOperand& op : cols) ws.cols = std::max(ws.cols, op.n);
  for (int l = 0; l < ws.lanes; ++l) {
    const bool real = static_cast<std::size_t>(l) < cols.size();
    ws.laneCols[l] = real ? cols[l].n : 0;
    ws.laneStart[l] = ws.cols - ws.laneCols[l];
  }
  ws.firstRow = nullptr;
  if (ws.rows < 1 || ws.cols < 1) return {};
  const bool withSs = row.ssCodes != nullptr;
  const AlignStatus status = reserve_lanes(ws, withSs);
  if (align_failed(status)) return status;

  bool usedWt[kTableDim] = {}, usedSs[kTableDim] = {};
  fill_row_terms(ws, row, gapPen);
  for (int i = 0; i < ws.rows; ++i) {
    usedWt[ws.rowWtCode[i]] = true;
    usedSs[ws.rowSsCode[i]] = true;
  }
  fill_profile(ws.wtProfile.data(), wtTable, usedWt, ws, cols, false);
  if (withSs) fill_profile(ws.ssProfile.data(), ssTable, usedSs, ws, cols, true);
  fill_column_terms(ws, cols, gapPen);

  LaneBatch batch;
  batch.rows = ws.rows;
  batch.cols = ws.cols;
  batch.lanes = ws.lanes;
  batch.gapSizePen = gapSizePen;
  batch.rowWtCode = ws.rowWtCode.data();
  batch.rowSsCode = withSs ? ws.rowSsCode.data() : nullptr;
  batch.rowStructMin = ws.rowStructMin.data();
  batch.rowGapCharge = ws.rowGapCharge.data();
  batch.wtProfile = ws.wtProfile.data();
  batch.ssProfile = withSs ? ws.ssProfile.data() : nullptr;
  batch.laneStart = ws.laneStart.data();
  batch.zeroRow = ws.zeroRow.data();
  batch.rowA = ws.rowA.data();
  batch.rowB = ws.rowB.data();
  batch.colState = ws.colState.data();
  batch.colZeroSums = ws.colZeroSums.data();
  batch.bits = ws.bits.data();
  ws.firstRow = run_kernel(kind, batch);
  return {};
}

std::int32_t lane_edge_sum(const LaneWorkspace& ws, int lane, std::int32_t cell) {
  const int n = ws.laneCols[lane];
  const int i = cell / n, jr = cell % n;
  if (i == 0) return ws.firstRow[static_cast<std::size_t>(ws.laneStart[lane] + jr) * ws.lanes + lane];
  return ws.colZeroSums[static_cast<std::size_t>(i) * ws.lanes + lane];
}

std::int32_t lane_path_start(const LaneWorkspace& ws, int lane) {
  return edge_path_start(ws.rows, ws.laneCols[lane],
                         [&ws, lane](std::int32_t cell) { return lane_edge_sum(ws, lane, cell); });
}

// Cells of a lane count from its real column 0, laneStart[lane] columns into the entries.
std::int32_t lane_next_cell(const LaneWorkspace& ws, int lane, std::int32_t cell) {
  const int start = ws.laneStart[lane];
  return compact_next_cell(cell, ws.rows, ws.laneCols[lane], [&ws, lane, start](int i, int j, int field) {
    return entry_bit(ws, i, j + start, field, lane);
  });
}

void align_pairs_lanes(LaneWorkspace& ws, KernelKind kind, const SeqRecord& A, std::span<const SeqRecord* const> Bs,
                       std::span<AlignRecord* const> records, std::span<AlignStatus> statuses,
                       const PairParams& params) {
  OperandText a;
  fit_operand(A, a);
  std::array<OperandText, kMaxLanes> b;
  std::array<LaneOperand, kMaxLanes> ops;
  std::array<int, kMaxLanes> pairOfLane{};
  int lanes = 0;
  const bool rowStruct = A.hasSRes == 1;
  std::size_t longest = static_cast<std::size_t>(a.n);
  for (const SeqRecord* B : Bs) longest = std::max(longest, static_cast<std::size_t>(std::max(B->numRes, 0)));
  if (!grow_operand(ws.rowWt, ws.rowSs, ws.rowStruct, a.n) || !grow(ws.zeros, longest)) {
    std::fill(statuses.begin(), statuses.end(), AlignStatus{AlignFault::outOfMemory, 0, kWorkLabel});
    return;
  }
  std::fill_n(ws.zeros.begin(), longest, 0);

  for (std::size_t p = 0; p < Bs.size(); ++p) {
    statuses[p] = {};
    fit_operand(*Bs[p], b[lanes]);
    // Every template holds all of its operand's positions, so a sequence
    // longer than the limit can only give an over-long alignment.
    if (std::max(a.n, b[lanes].n) > kMaxAlignLen) {
      statuses[p] = {AlignFault::alignTooLong, kMaxAlignLen};
      continue;
    }
    if (!grow_operand(ws.laneWt[lanes], ws.laneSs[lanes], ws.laneStruct[lanes], b[lanes].n)) {
      statuses[p] = {AlignFault::outOfMemory, 0, kWorkLabel};
      continue;
    }
    ops[lanes] = make_operand(b[lanes], rowStruct && Bs[p]->hasSRes == 1, ws.laneWt[lanes], ws.laneSs[lanes],
                              ws.laneStruct[lanes], ws.zeros, params);
    pairOfLane[lanes++] = static_cast<int>(p);
  }
  if (lanes == 0) return;
  const LaneOperand row = make_operand(a, rowStruct, ws.rowWt, ws.rowSs, ws.rowStruct, ws.zeros, params);
  const AlignStatus summed = sum_lanes(ws, kind, row, std::span(ops.data(), static_cast<std::size_t>(lanes)),
                                       *params.wtTable, *params.ssTable, params.gapPen, params.gapSizePen);
  for (int l = 0; l < lanes; ++l) {
    const std::size_t p = static_cast<std::size_t>(pairOfLane[l]);
    if (align_failed(summed)) {
      statuses[p] = summed;
      continue;
    }
    int len = 0;
    statuses[p] = trace_path(
        lane_path_start(ws, l), a.n, b[l].n, [&ws, l](std::int32_t cell) { return lane_next_cell(ws, l, cell); },
        ws.first, ws.second, kMaxAlignLen, len);
    if (!align_failed(statuses[p]))
      statuses[p] = save_pair_result(*records[p], A, a, *Bs[p], b[l], ws.first, ws.second, len, params);
  }
}
