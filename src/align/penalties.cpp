#include "align/penalties.hpp"

#include "shell/errors.hpp"

void codes_to_indices(const char* str, int n, std::int32_t* out, int other) {
  fatal_err("codes_to_indices", "not built yet");
}

void calc_struct_scores(const char* sRes, int n, std::int32_t* out, int midPen, int endPen, int reach) {
  fatal_err("calc_struct_scores", "not built yet");
}

void calc_anchor_group_pen(const char* uRes, int n, std::int32_t* codes, std::int32_t* groupPen, int pen) {
  fatal_err("calc_anchor_group_pen", "not built yet");
}
