#include "align/traceback.hpp"

#include "shell/errors.hpp"

int insert_dSeq_gap(int from, int to, int len, std::span<char> first, std::span<char> second) {
  fatal_err("insert_dSeq_gap", "not built yet");
}

int insert_mSeq_gap(int from, int to, int len, std::span<char> first, std::span<char> second) {
  fatal_err("insert_mSeq_gap", "not built yet");
}

int find_best_align(std::int32_t start, const SumCell* matrix, int rows, int cols, std::span<char> first, std::span<char> second, int maxLen) {
  fatal_err("find_best_align", "not built yet");
}
