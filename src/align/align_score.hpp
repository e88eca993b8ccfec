// Alignment records, the overlap region, percent homology and pair scores.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "matrix/weight_matrix.hpp"
#include "shell/limits.hpp"

struct AlignedSeq {
  std::int32_t seqIndex = 0;  // index into mySeq
  std::string aRes;           // aligned residues, blanks for gaps
  std::string aSRes;          // aligned structure codes
  std::string aURes;          // aligned grouping symbols
};

struct AlignRecord {
  std::int32_t numSeqs = 0;
  std::int32_t alignLen = 0;
  std::int32_t overlapStart = 0;  // counted from 1
  std::int32_t overlapEnd = 0;    // counted from 1
  double pctHomol = 0.0;
  double alignScore = 0.0;
  std::vector<AlignedSeq> seqs;
};

using PctHomTable = std::array<std::array<double, kMaxSeqs>, kMaxSeqs>;

std::int32_t pct_homol_score(const ScoreTable& table, const char* s1, const char* s2, int n);
std::int32_t pct_perfect_score(const ScoreTable& table, const char* s1, const char* s2, int n);
double scor_align_pct(const ScoreTable& table, AlignRecord& record, int len);
double scor_pair_align(double pct, int hasStruct1, int hasStruct2, int bias);
