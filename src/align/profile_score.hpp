// Profile scores of the progressive stage: the growing alignment acts as one
// operand whose column p scores against residue q the sum of its members'
// table scores.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "align/sum_matrix.hpp"
#include "matrix/weight_matrix.hpp"

// One member of the alignment: its aligned strings (alignLen columns each)
// and which of the structure and grouping strings are real.
struct ProfileMember {
  const std::string* aRes;
  const std::string* aSRes;
  const std::string* aURes;
  int hasSRes;
  int hasURes;
};

// The tables and structure penalties a profile step uses.
struct ProfileTables {
  const ScoreTable* wtTable;
  const ScoreTable* ssTable;
  int midPen;
  int endPen;
};

// In: the members, the new sequence's residue codes dSeqNums[seqLen] (anchors
// set) and structure codes dsSeqNums[seqLen], whether it has a structure;
// matrix cells already cleared.
// Out: each cell (p, q) of the alignLen x seqLen matrix gains the members'
// residue scores (and structure scores, for members with a structure when the
// new sequence has one); msNums[p] gains every member's structure penalty;
// mPenGroup[p] is set to the group charge where a member's grouping string
// forbids a gap.
void calc_profile_scores(std::span<const ProfileMember> members, int alignLen, int seqLen,
                         const std::int32_t* dSeqNums, const std::int32_t* dsSeqNums, int newHasSRes,
                         const ProfileTables& tables, std::int32_t* msNums, std::int32_t* mPenGroup, SumCell* matrix);
