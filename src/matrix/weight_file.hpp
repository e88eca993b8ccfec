// A whole weight file: its "KEY:" keys, the two score tables and the gap
// penalties, read in file order (a later key overrides an earlier one).
#pragma once

#include <array>
#include <cstdio>

#include "matrix/weight_matrix.hpp"

// In the order in which a run reports missing keys.
enum WeightKey {
  kWeightResidues,
  kWeightStructure,
  kWeightGapPen,
  kWeightGapSize,
  kWeightMidStruct,
  kWeightEndStruct,
  kWeightNearMatch,
  kWeightBlankMatch,
  kWeightKeyCount
};

inline constexpr std::array<const char*, kWeightKeyCount> kWeightKeyNames = {
    "KEY:WT_PMAT",     "KEY:WT_SMAT",     "KEY:GAP_PEN",    "KEY:GAP_PEN_SIZE",
    "KEY:MID_GAP_PEN", "KEY:END_GAP_PEN", "KEY:NEAR_MATCH", "KEY:BLANK_MATCH"};

struct WeightSettings {
  ScoreTable residues{};
  ScoreTable structure{};
  int gapPen = 0;
  int gapSizePen = 0;
  int midStructPen = 0;
  int endStructPen = 0;
  int nearMatchScore = 0;
  int blankMatch = 0;
};

using WeightKeysFound = std::array<int, kWeightKeyCount>;

// Reads every key of the weight file into settings; found[key] is the result
// of its last read (1 when read). Values out of their bounds and faulty
// tables are fatal, as every parameter-file fault is.
void read_weight_file(std::FILE* stream, WeightSettings& settings, WeightKeysFound& found);
