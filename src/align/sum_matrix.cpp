#include "align/sum_matrix.hpp"

#include "shell/errors.hpp"

void sm_mat_init(SumCell* matrix, int rows, int cols, int clearScores) {
  fatal_err("sm_mat_init", "not built yet");
}

void sm_mat_score(const ScoreTable& table, SumCell* matrix, int rows, int cols, const std::int32_t* rowCodes, const std::int32_t* colCodes) {
  fatal_err("sm_mat_score", "not built yet");
}

void sm_mat_add_score(const ScoreTable& table, SumCell* matrix, int rows, int cols, const std::int32_t* rowCodes, const std::int32_t* colCodes) {
  fatal_err("sm_mat_add_score", "not built yet");
}

void sm_mat_sum(SumCell* matrix, int rows, int cols, const std::int32_t* rowStruct, const std::int32_t* colStruct, const std::int32_t* rowGroup, const std::int32_t* colGroup, int gapPen, int gapSizePen) {
  fatal_err("sm_mat_sum", "not built yet");
}

std::int32_t find_path_start(const SumCell* matrix, int rows, int cols) {
  fatal_err("find_path_start", "not built yet");
}
