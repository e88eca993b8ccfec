#include "align/align_score.hpp"

#include "shell/errors.hpp"

std::int32_t pct_homol_score(const ScoreTable& table, const char* s1, const char* s2, int n) {
  fatal_err("pct_homol_score", "not built yet");
}

std::int32_t pct_perfect_score(const ScoreTable& table, const char* s1, const char* s2, int n) {
  fatal_err("pct_perfect_score", "not built yet");
}

double scor_align_pct(const ScoreTable& table, AlignRecord& record, int len) {
  fatal_err("scor_align_pct", "not built yet");
}

double scor_pair_align(double pct, int hasStruct1, int hasStruct2, int bias) {
  fatal_err("scor_pair_align", "not built yet");
}
