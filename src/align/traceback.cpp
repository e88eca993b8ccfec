#include "align/traceback.hpp"

#include "shell/errors.hpp"

namespace {

int insert_gap_run(int from, int to, int len, std::span<char> first, std::span<char> second, char firstCh,
                   char secondCh) {
  if (from >= to) return len;
  for (int k = 0; k < to - from; ++k) put_template_column(first, second, len + k, firstCh, secondCh);
  return len + (to - from);
}

}  // namespace

int insert_dSeq_gap(int from, int to, int len, std::span<char> first, std::span<char> second) {
  return insert_gap_run(from, to, len, first, second, 'X', ' ');
}

int insert_mSeq_gap(int from, int to, int len, std::span<char> first, std::span<char> second) {
  return insert_gap_run(from, to, len, first, second, ' ', 'X');
}

AlignStatus end_templates(int len, int maxLen, std::span<char> first, std::span<char> second) {
  // The message names the limit, not the length reached.
  if (len > maxLen) return {AlignFault::alignTooLong, maxLen};
  put_template_column(first, second, len, '\0', '\0');
  return {};
}

AlignStatus trace_best_align(std::int32_t start, const SumCell* matrix, int rows, int cols, std::span<char> first,
                             std::span<char> second, int maxLen, int& len) {
  return trace_path(
      start, rows, cols, [matrix](std::int32_t cell) { return matrix[cell].next; }, first, second, maxLen, len);
}
