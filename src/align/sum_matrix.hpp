// The dynamic-programming sum matrix shared by pairwise and progressive
// alignment: rows x cols cells stored row by row, summed backwards from the
// bottom-right corner with gap carries, each cell linked to its successor.
#pragma once

#include <cstdint>

#include "matrix/weight_matrix.hpp"

inline constexpr std::int32_t kNoCell = -1;

struct SumCell {
  std::int32_t score;  // pair score, then the best total from here to the path's end
  std::int32_t next;   // element number of the successor cell, kNoCell where the path ends
};

void sm_mat_init(SumCell* matrix, int rows, int cols, int clearScores);
void sm_mat_score(const ScoreTable& table, SumCell* matrix, int rows, int cols, const std::int32_t* rowCodes,
                  const std::int32_t* colCodes);
void sm_mat_add_score(const ScoreTable& table, SumCell* matrix, int rows, int cols, const std::int32_t* rowCodes,
                      const std::int32_t* colCodes);
void sm_mat_sum(SumCell* matrix, int rows, int cols, const std::int32_t* rowStruct, const std::int32_t* colStruct,
                const std::int32_t* rowGroup, const std::int32_t* colGroup, int gapPen, int gapSizePen);
// Element number of the best path's start cell, or kNoCell.
std::int32_t find_path_start(const SumCell* matrix, int rows, int cols);
