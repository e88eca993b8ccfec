// Profile scores of the progressive stage: the growing alignment acts as one
// operand whose column p scores against residue q the sum of its members'
// table scores.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

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

// The alignment as a profile: per column, the members' summed table scores
// against each of the 32 codes (wt[p * 32 + q], ss likewise over the members
// that have a structure). Sums wrap at 32 bits like the matrix cells they
// become, so the order in which members are added does not matter.
struct AlignProfile {
  std::vector<std::uint32_t> wt, ss;
  int len = 0;        // columns
  int members = 0;    // members summed in wt
  int ssMembers = 0;  // members summed in ss
};

// In: a profile of alignLen columns (empty for the first member) and a new
// member whose aligned strings hold alignLen columns.
// Out: the member's residue codes (anchors set) scored into wt, its
// structure codes into ss when it has a structure.
void add_profile_member(AlignProfile& profile, const ProfileMember& member, int alignLen, const ProfileTables& tables);

// In: the profile and the alignment's template of newLen columns from the
// traceback ('X' where an old column stands, ' ' for a new gap column).
// Out: the profile of the re-gapped members: old columns moved, each gap
// column scoring as a blank of every member.
void regap_profile(AlignProfile& profile, const char* templ, int newLen, const ProfileTables& tables);

// In: the profile and members of an alignment of alignLen columns, the new
// sequence's residue codes dSeqNums[seqLen] (anchors set) and structure codes
// dsSeqNums[seqLen], whether it has a structure; matrix cells cleared.
// Out: each cell (p, q) of the alignLen x seqLen matrix gains the members'
// residue scores (and structure scores, for members with a structure when the
// new sequence has one); msNums[p] gains every member's structure penalty;
// mPenGroup[p] is set to the group charge where a member's grouping string
// forbids a gap.
void calc_profile_scores(const AlignProfile& profile, std::span<const ProfileMember> members, int alignLen,
                         int seqLen, const std::int32_t* dSeqNums, const std::int32_t* dsSeqNums, int newHasSRes,
                         const ProfileTables& tables, std::int32_t* msNums, std::int32_t* mPenGroup, SumCell* matrix);
