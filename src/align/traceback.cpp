#include "align/traceback.hpp"

#include <cstddef>

#include "shell/errors.hpp"

namespace {

// Writes one template column; a column beyond the buffer is counted by the
// caller but not stored.
void put_column(std::span<char> first, std::span<char> second, int at, char firstCh, char secondCh) {
  if (at < 0) return;
  const std::size_t pos = static_cast<std::size_t>(at);
  if (pos < first.size()) first[pos] = firstCh;
  if (pos < second.size()) second[pos] = secondCh;
}

int insert_gap_run(int from, int to, int len, std::span<char> first, std::span<char> second, char firstCh,
                   char secondCh) {
  if (from >= to) return len;
  for (int k = 0; k < to - from; ++k) put_column(first, second, len + k, firstCh, secondCh);
  return len + (to - from);
}

// Links only ever point forward inside the matrix; anything else ends the path.
bool follows_path(std::int32_t cell, std::int32_t from, long long cells) { return cell > from && cell < cells; }

}  // namespace

int insert_dSeq_gap(int from, int to, int len, std::span<char> first, std::span<char> second) {
  return insert_gap_run(from, to, len, first, second, 'X', ' ');
}

int insert_mSeq_gap(int from, int to, int len, std::span<char> first, std::span<char> second) {
  return insert_gap_run(from, to, len, first, second, ' ', 'X');
}

int find_best_align(std::int32_t start, const SumCell* matrix, int rows, int cols, std::span<char> first,
                    std::span<char> second, int maxLen) {
  const long long cells = (rows > 0 && cols > 0) ? static_cast<long long>(rows) * cols : 0;
  int len = 0;
  int prevRow = -1;
  int prevCol = -1;
  for (std::int32_t cell = start; follows_path(cell, -1, cells);) {
    const int row = cell / cols;
    const int col = cell % cols;
    // A link never skips rows and columns at once, so only one gap kind is checked.
    if (row > prevRow + 1)
      len = insert_dSeq_gap(prevRow + 1, row, len, first, second);
    else if (col > prevCol + 1)
      len = insert_mSeq_gap(prevCol + 1, col, len, first, second);
    put_column(first, second, len, 'X', 'X');
    ++len;
    prevRow = row;
    prevCol = col;
    const std::int32_t next = matrix[cell].next;
    if (!follows_path(next, cell, cells)) break;
    cell = next;
  }
  // The row operand's unpaired tail goes before the column operand's.
  if (rows > prevRow + 1) len = insert_dSeq_gap(prevRow + 1, rows, len, first, second);
  if (cols > prevCol + 1) len = insert_mSeq_gap(prevCol + 1, cols, len, first, second);

  // The message names the limit, not the length reached.
  if (len > maxLen) fatal_err("find_best_align", "Alignment size exceeded, len = %d\n", maxLen);
  put_column(first, second, len, '\0', '\0');
  return len;
}
