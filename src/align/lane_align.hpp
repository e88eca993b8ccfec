// Pairwise alignment of one row sequence against several column sequences
// at once on a vector kernel, with a compact traceback: the results are those
// of align_pair, pair for pair, byte for byte.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "align/align_status.hpp"
#include "align/kernel_select.hpp"
#include "align/pair_align.hpp"

inline constexpr int kMaxLanes = 16;

// One operand as the kernel takes it: n positions of table codes 0..31,
// structure codes (null: no structure scores for this pair), structure and
// group penalties.
struct LaneOperand {
  int n = 0;
  const std::int32_t* wtCodes = nullptr;
  const std::int32_t* ssCodes = nullptr;
  const std::int32_t* structPen = nullptr;
  const std::int32_t* groupPen = nullptr;
};

// Scratch of one worker for the vector kernels; grown as needed, never shrunk.
struct LaneWorkspace {
  std::vector<std::int32_t> wtProfile, ssProfile, colState;
  std::vector<std::int32_t> zeroRow;  // stays all zero
  std::vector<std::int32_t> rowA, rowB, colZeroSums;
  std::vector<std::int32_t> rowWtCode, rowSsCode, rowStructMin, rowGapCharge;
  std::vector<unsigned char> bits;
  std::array<std::int32_t, kMaxLanes> laneStart{};
  std::array<int, kMaxLanes> laneCols{};
  int rows = 0, cols = 0, lanes = 0;
  const std::int32_t* firstRow = nullptr;  // row 0's sums, [cols][lanes]
  // Per lane: the column operand's codes and penalties (pairwise stage).
  std::array<std::vector<std::int32_t>, kMaxLanes> laneWt, laneSs, laneStruct;
  std::vector<std::int32_t> rowWt, rowSs, rowStruct, zeros;
  AlignTemplate first{}, second{};
};

// In: a vector kernel, the row operand, at most kernel_lanes(kind) column
// operands, the tables, the gap penalties.
// Out: ws holds every lane's summed matrix in compact form; or outOfMemory.
AlignStatus sum_lanes(LaneWorkspace& ws, KernelKind kind, const LaneOperand& row, std::span<const LaneOperand> cols,
                      const ScoreTable& wtTable, const ScoreTable& ssTable, int gapPen, int gapSizePen);
// After sum_lanes, for lane l (cells numbered row * n + column of that lane's
// own operand): the sum of a cell in row 0 or column 0; the path start
// (as find_path_start); the successor of any cell (as its SumCell link).
std::int32_t lane_edge_sum(const LaneWorkspace& ws, int lane, std::int32_t cell);
std::int32_t lane_path_start(const LaneWorkspace& ws, int lane);
std::int32_t lane_next_cell(const LaneWorkspace& ws, int lane, std::int32_t cell);

// In: A (rows), up to kernel_lanes(kind) sequences B with their records
// (seqs tables made and indices set), the stage's settings.
// Out: each record filled as align_pair fills it, and each pair's status.
void align_pairs_lanes(LaneWorkspace& ws, KernelKind kind, const SeqRecord& A, std::span<const SeqRecord* const> Bs,
                       std::span<AlignRecord* const> records, std::span<AlignStatus> statuses,
                       const PairParams& params);
