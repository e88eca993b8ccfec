// Traceback: follows the links of a summed matrix and writes two templates,
// 'X' where an operand's next position stands and ' ' where it has a gap.
// The first template belongs to the row operand, the second to the column
// operand. Writes stop at the end of the buffers; the length still counts
// every column, so an over-long alignment is caught by the limit check.
#pragma once

#include <cstdint>
#include <span>

#include "align/align_status.hpp"
#include "align/lane_kernel.hpp"
#include "align/sum_matrix.hpp"

// In: row-operand positions from .. to-1 face gaps; len columns written so far.
// Out: to - from columns of 'X' (first) over ' ' (second); returns the new length.
int insert_dSeq_gap(int from, int to, int len, std::span<char> first, std::span<char> second);
// The mirror image: column-operand positions from .. to-1 face gaps.
int insert_mSeq_gap(int from, int to, int len, std::span<char> first, std::span<char> second);

// In: start cell (element number row * cols + col, or kNoCell) of a rows x
// cols matrix, and next(cell), the successor of a cell or kNoCell.
// Out: both templates written along the path, unpaired tails last (the row
// operand's first); returns their length, which may pass the buffers.
template <class NextCell>
int walk_path(std::int32_t start, int rows, int cols, NextCell next, std::span<char> first, std::span<char> second);

// In: the length walk_path returned and the column limit.
// Out: ok with both templates NUL-terminated, or alignTooLong naming the limit.
AlignStatus end_templates(int len, int maxLen, std::span<char> first, std::span<char> second);

// walk_path then end_templates: the templates and len, or alignTooLong (the
// templates then hold the first columns only).
template <class NextCell>
AlignStatus trace_path(std::int32_t start, int rows, int cols, NextCell next, std::span<char> first,
                       std::span<char> second, int maxLen, int& len) {
  len = walk_path(start, rows, cols, next, first, second);
  return end_templates(len, maxLen, first, second);
}

// In: start from find_path_start on a summed matrix, the template buffers, the limit.
// Out: as trace_path.
AlignStatus trace_best_align(std::int32_t start, const SumCell* matrix, int rows, int cols, std::span<char> first,
                             std::span<char> second, int maxLen, int& len);

// In: edgeSum(cell), the summed total of a cell in row 0 or column 0.
// Out: the first strictly best positive of them, row 0 left to right then
// column 0 downwards; kNoCell when none is positive or there are no cells.
template <class EdgeSum>
std::int32_t edge_path_start(int rows, int cols, EdgeSum edgeSum) {
  if (rows < 1 || cols < 1) return kNoCell;
  std::int32_t best = 0;
  std::int32_t start = kNoCell;
  for (std::int32_t j = 0; j < cols; ++j)
    if (const std::int32_t sum = edgeSum(j); sum > best) best = sum, start = j;
  for (int i = 1; i < rows; ++i)
    if (const std::int32_t sum = edgeSum(i * cols); sum > best) best = sum, start = i * cols;
  return start;
}

// The successor of a cell from a vector kernel's compact entries, as its
// SumCell link would be; bit(i, j, field) reads field (lane_kernel.hpp) of
// cell (i, j). A carry's link is the cell after the last step that refreshed
// it: along the row to the right for the row carry, down the column for a
// column carry.
template <class EntryBit>
std::int32_t compact_next_cell(std::int32_t cell, int rows, int cols, EntryBit bit) {
  const int i = cell / cols, j = cell % cols;
  if (i >= rows - 1 || j >= cols - 1) return kNoCell;
  if (bit(i, j, kTookColCarry)) {
    for (int k = i + 1; k <= rows - 2; ++k)
      if (bit(k, j, kColRefreshed)) return (k + 1) * cols + j + 1;
    return kNoCell;
  }
  if (bit(i, j, kTookRowCarry)) {
    for (int k = j + 1; k <= cols - 2; ++k)
      if (bit(i, k, kRowRefreshed)) return (i + 1) * cols + k + 1;
    return kNoCell;
  }
  return (i + 1) * cols + j + 1;
}

// Writes one template column; a column beyond a buffer is not stored.
inline void put_template_column(std::span<char> first, std::span<char> second, int at, char firstCh, char secondCh) {
  if (at < 0) return;
  const auto pos = static_cast<std::size_t>(at);
  if (pos < first.size()) first[pos] = firstCh;
  if (pos < second.size()) second[pos] = secondCh;
}

template <class NextCell>
int walk_path(std::int32_t start, int rows, int cols, NextCell next, std::span<char> first, std::span<char> second) {
  const long long cells = (rows > 0 && cols > 0) ? static_cast<long long>(rows) * cols : 0;
  // Links only ever point forward inside the matrix; anything else ends the path.
  auto follows = [cells](std::int32_t cell, std::int32_t from) { return cell > from && cell < cells; };
  int len = 0;
  int prevRow = -1;
  int prevCol = -1;
  for (std::int32_t cell = start; follows(cell, -1);) {
    const int row = cell / cols;
    const int col = cell % cols;
    // A link never skips rows and columns at once, so only one gap kind is checked.
    if (row > prevRow + 1)
      len = insert_dSeq_gap(prevRow + 1, row, len, first, second);
    else if (col > prevCol + 1)
      len = insert_mSeq_gap(prevCol + 1, col, len, first, second);
    put_template_column(first, second, len, 'X', 'X');
    ++len;
    prevRow = row;
    prevCol = col;
    const std::int32_t succ = next(cell);
    if (!follows(succ, cell)) break;
    cell = succ;
  }
  if (rows > prevRow + 1) len = insert_dSeq_gap(prevRow + 1, rows, len, first, second);
  if (cols > prevCol + 1) len = insert_mSeq_gap(prevCol + 1, cols, len, first, second);
  return len;
}
