// Sections: public routines (init, score, add score, sum, path start), then
// the summation's private helpers.
#include "align/sum_matrix.hpp"

#include <algorithm>
#include <vector>

#include "align/score_codes.hpp"
#include "align/traceback.hpp"
#include "align/wrap_arith.hpp"
#include "shell/errors.hpp"

namespace {

// A table element for any code pair stays inside the table, whatever the codes.
inline std::int32_t table_at(const ScoreTable& table, std::int32_t rowCode, std::int32_t colCode) {
  return table[static_cast<std::uint32_t>(add32(rowCode, colCode)) & (kTableSize - 1)];
}

void init_col_carries(ColCarry* carries, int cols, const std::int32_t* colStruct, const std::int32_t* colGroup,
                      int gapPen) {
  for (int c = 0; c < cols; ++c) {
    carries[c].score = kCarryFloor;
    carries[c].level = 0;
    carries[c].next = kNoCell;  // not usable until a candidate sets it
    carries[c].structMin = c >= 1 ? std::min(colStruct[c - 1], colStruct[c]) : 0;
    carries[c].gapCharge = add32(gapPen, colGroup[c]);
  }
}

bool has_cells(int rows, int cols) { return rows > 0 && cols > 0; }

}  // namespace

void sm_mat_init(SumCell* matrix, int rows, int cols, int clearScores) {
  if (!has_cells(rows, cols)) return;
  const std::size_t cells = static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols);
  if (clearScores == 1)
    for (std::size_t k = 0; k < cells; ++k) matrix[k].score = 0;
  for (int i = 0; i < rows; ++i) matrix[static_cast<std::size_t>(i) * cols + (cols - 1)].next = kNoCell;
  SumCell* lastRow = matrix + static_cast<std::size_t>(rows - 1) * cols;
  for (int j = 0; j < cols; ++j) lastRow[j].next = kNoCell;
}

void sm_mat_score(const ScoreTable& table, SumCell* matrix, int rows, int cols, const std::int32_t* rowCodes,
                  const std::int32_t* colCodes) {
  for (int i = 0; i < rows; ++i) {
    SumCell* row = matrix + static_cast<std::size_t>(i) * cols;
    const std::int32_t rowCode = rowCodes[i];
    for (int j = 0; j < cols; ++j) row[j].score = table_at(table, rowCode, colCodes[j]);
  }
}

void sm_mat_add_score(const ScoreTable& table, SumCell* matrix, int rows, int cols, const std::int32_t* rowCodes,
                      const std::int32_t* colCodes) {
  for (int i = 0; i < rows; ++i) {
    SumCell* row = matrix + static_cast<std::size_t>(i) * cols;
    const std::int32_t rowCode = rowCodes[i];
    for (int j = 0; j < cols; ++j) row[j].score = add32(row[j].score, table_at(table, rowCode, colCodes[j]));
  }
}

void sum_matrix_cells(ColCarry* carries, SumCell* matrix, int rows, int cols, const std::int32_t* rowStruct,
                      const std::int32_t* colStruct, const std::int32_t* rowGroup, const std::int32_t* colGroup,
                      int gapPen, int gapSizePen) {
  // A single row (or none) has no successor row: the pair scores stay as they are.
  if (rows - 1 < 1 || cols < 1) return;
  init_col_carries(carries, cols, colStruct, colGroup, gapPen);
  ColCarry* const col = carries;

  // Backwards over T = (i, j), with D = (i+1, j+1), cur = D.score (final), c = j + 1:
  //   T.score += max of  cur           -> next = D              (wins every tie)
  //                      colScore[c]   -> next = colNext[c]     (only if > rowScore)
  //                      rowScore      -> next = rowNext
  //   A carry takes part only once a candidate has set its link (in this row,
  //   for the row carry): the carries start far below any real sum, so this
  //   only matters for sums no table can produce, but it keeps every path whole.
  //   s = min(colStruct[j], colStruct[c]) + min(rowStruct[i], rowStruct[i+1])
  //   each carry X (row: group = rowGroup[i+1]; column c: group = colGroup[c]):
  //     if s > X.level:  X.score -= s - X.level, X.level = s   (a stiffer structure step)
  //     cand = cur - gapPen - group - s;  if cand > X.score: X = {cand, D, s}   (strict)
  //     X.score -= gapSizePen                                  (one more skipped position)
  // The row carry thus links T to (i+1, k > j+1), a column carry to (k > i+1, c).
  for (int i = rows - 2; i >= 0; --i) {
    SumCell* const row = matrix + static_cast<std::size_t>(i) * cols;
    const SumCell* const below = row + cols;
    const std::int32_t belowStart = (i + 1) * cols;
    const std::int32_t rowStructMin = std::min(rowStruct[i], rowStruct[i + 1]);
    const std::int32_t rowGapCharge = add32(gapPen, rowGroup[i + 1]);
    std::int32_t rowScore = kCarryFloor;
    std::int32_t rowLevel = 0;
    std::int32_t rowNext = kNoCell;

    for (int j = cols - 2; j >= 0; --j) {
      const int c = j + 1;
      const std::int32_t cur = below[c].score;
      const std::int32_t diag = belowStart + c;
      ColCarry& cc = col[c];
      SumCell& target = row[j];

      const bool colUsable = cc.next != kNoCell;
      const bool rowUsable = rowNext != kNoCell;
      if ((cur >= cc.score || !colUsable) && (cur >= rowScore || !rowUsable)) {
        target.score = add32(target.score, cur);
        target.next = diag;
      } else if (colUsable && (cc.score > rowScore || !rowUsable)) {
        target.score = add32(target.score, cc.score);
        target.next = cc.next;
      } else {
        target.score = add32(target.score, rowScore);
        target.next = rowNext;
      }

      const std::int32_t s = add32(cc.structMin, rowStructMin);

      if (s > rowLevel) {
        rowScore = sub32(rowScore, sub32(s, rowLevel));
        rowLevel = s;
      }
      const std::int32_t rowCand = sub32(sub32(cur, rowGapCharge), s);
      if (rowCand > rowScore) {
        rowScore = rowCand;
        rowNext = diag;
        rowLevel = s;
      }
      rowScore = sub32(rowScore, gapSizePen);

      if (s > cc.level) {
        cc.score = sub32(cc.score, sub32(s, cc.level));
        cc.level = s;
      }
      const std::int32_t colCand = sub32(sub32(cur, cc.gapCharge), s);
      if (colCand > cc.score) {
        cc.score = colCand;
        cc.next = diag;
        cc.level = s;
      }
      cc.score = sub32(cc.score, gapSizePen);
    }
  }
}

std::int32_t find_path_start(const SumCell* matrix, int rows, int cols) {
  return edge_path_start(rows, cols, [matrix](std::int32_t cell) { return matrix[cell].score; });
}
