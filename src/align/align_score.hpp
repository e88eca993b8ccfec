// Alignment records, the overlap region, percent homology and pair scores.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "align/align_status.hpp"
#include "matrix/weight_matrix.hpp"
#include "shell/limits.hpp"

struct AlignedSeq {
  std::int32_t seqIndex = 0;  // index into the run's sequences
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

// In: two aligned strings of at least n characters (or shorter, NUL-ended).
// Out: the table scores summed over positions where both hold a residue.
std::int32_t pct_homol_score(const ScoreTable& table, const char* s1, const char* s2, int n);
// Out: the self-score reference of the same positions (see pct_homol_score).
std::int32_t pct_perfect_score(const ScoreTable& table, const char* s1, const char* s2, int n);
// In: a record whose numSeqs aligned strings hold len columns.
// Out: overlapStart, overlapEnd set and pct the percent homology over the
// overlap; or noFirstResidue / noLastResidue for a string without residues
// (the record's overlap then is left as it was).
AlignStatus calc_align_pct(const ScoreTable& table, AlignRecord& record, int len, double& pct);
// The designed routine: calc_align_pct, a failure reported as fatal.
double scor_align_pct(const ScoreTable& table, AlignRecord& record, int len);
// Out: pct plus bias for each structure flag that is exactly 1.
double scor_pair_align(double pct, int hasStruct1, int hasStruct2, int bias);
