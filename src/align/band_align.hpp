// One alignment on a vector kernel, several rows at a time (the progressive
// stage aligns one pair per step, so the lanes cannot hold pairs). Same sums,
// links and templates as sum_matrix_cells, with the compact traceback of the
// lane kernels.
#pragma once

#include <cstdint>
#include <vector>

#include "align/align_status.hpp"
#include "align/kernel_select.hpp"

// Scratch of the band kernel, grown as needed and never shrunk.
struct BandWorkspace {
  std::vector<std::int32_t> rowStructMin, rowGapCharge, colStructMin, colGapCharge;
  std::vector<std::int32_t> belowRow, carryScore, carryLevel, carryUsable;
  std::vector<std::int32_t> skewPairs, skewOut, skewScore, skewLevel, skewUsable;
  std::vector<std::int32_t> colZeroSums, firstRow;
  std::vector<unsigned char> bits;
  int rows = 0, cols = 0, lanes = 0, steps = 0;
};

// In: a vector kernel, pair scores [rows][cols] row by row, the structure and
// group penalties and gap penalties of sum_matrix_cells.
// Out: ws holds the summed matrix in compact form; or outOfMemory.
AlignStatus sum_band(BandWorkspace& ws, KernelKind kind, const std::int32_t* scores, int rows, int cols,
                     const std::int32_t* rowStruct, const std::int32_t* colStruct, const std::int32_t* rowGroup,
                     const std::int32_t* colGroup, int gapPen, int gapSizePen);
// After sum_band (cells numbered row * cols + column): the sum of a cell in
// row 0 or column 0; the path start (as find_path_start); a cell's successor.
std::int32_t band_edge_sum(const BandWorkspace& ws, std::int32_t cell);
std::int32_t band_path_start(const BandWorkspace& ws);
std::int32_t band_next_cell(const BandWorkspace& ws, std::int32_t cell);
