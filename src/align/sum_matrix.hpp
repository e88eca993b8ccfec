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

// The gap carry of one column, with that column's row-invariant step terms
// kept alongside so that the cell loop reads one record per column.
struct ColCarry {
  std::int32_t score;      // best gapped total reaching down this column
  std::int32_t level;      // structure level already charged to score
  std::int32_t next;       // cell the carry links to, kNoCell until a candidate sets it
  std::int32_t structMin;  // min(colStruct[c - 1], colStruct[c])
  std::int32_t gapCharge;  // gapPen + colGroup[c]
};

// In: a rows x cols matrix. Out: scores zeroed if clearScores is 1; links of
// the last row and last column null; other links untouched.
void sm_mat_init(SumCell* matrix, int rows, int cols, int clearScores);
// In: rowCodes[rows] (codes times 32), colCodes[cols] (codes), a 32 x 32 table.
// Out: every cell's score = table[rowCodes[i] + colCodes[j]] (replaced).
void sm_mat_score(const ScoreTable& table, SumCell* matrix, int rows, int cols, const std::int32_t* rowCodes,
                  const std::int32_t* colCodes);
// The same, added to the scores already in the cells (32-bit wrapping).
void sm_mat_add_score(const ScoreTable& table, SumCell* matrix, int rows, int cols, const std::int32_t* rowCodes,
                      const std::int32_t* colCodes);
// In: pair scores in the cells, structure penalties rowStruct[rows] and
// colStruct[cols], group penalties rowGroup[rows] and colGroup[cols], the gap
// penalties; carries: room for cols entries of scratch.
// Out: every cell but the last row and column holds its best total to the
// path's end and the link to its successor; the rest keep score and link.
void sum_matrix_cells(ColCarry* carries, SumCell* matrix, int rows, int cols, const std::int32_t* rowStruct,
                      const std::int32_t* colStruct, const std::int32_t* rowGroup, const std::int32_t* colGroup,
                      int gapPen, int gapSizePen);
// In: a summed matrix. Out: the element number of the first strictly best
// positive cell, scanning row 0 left to right then column 0 downwards; kNoCell
// when none is positive.
std::int32_t find_path_start(const SumCell* matrix, int rows, int cols);
