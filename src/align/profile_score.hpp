// Profile scores of the progressive stage: the growing alignment acts as one
// operand whose column p scores against residue q the sum of its members'
// table scores.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "align/align_status.hpp"
#include "align/band_align.hpp"
#include "align/kernel_select.hpp"
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
// dsSeqNums[seqLen], whether it has a structure.
// Out: scores[p * seqLen + q] = the members' residue scores (plus structure
// scores, for members with a structure when the new sequence has one)
// against residue q of the new sequence; msNums[p] gains every member's structure penalty;
// mPenGroup[p] is set to the group charge where a member's grouping string
// forbids a gap.
void calc_profile_scores(const AlignProfile& profile, std::span<const ProfileMember> members, int alignLen, int seqLen,
                         const std::int32_t* dSeqNums, const std::int32_t* dsSeqNums, int newHasSRes,
                         const ProfileTables& tables, std::int32_t* msNums, std::int32_t* mPenGroup,
                         std::int32_t* scores);

// Scratch of one progressive step's alignment, reused from step to step.
struct StepWorkspace {
  std::vector<SumCell> matrix;
  std::vector<ColCarry> carries;
  BandWorkspace band;
};

// In: pair scores [rows][cols] (alignment columns by new residues), the
// structure and group penalties of both sides, the gap penalties in force,
// the kernel, template buffers and the column limit.
// Out: the templates and len, as sum_matrix_cells, find_path_start and
// trace_best_align give them on the scalar kernel; or the failure
// (alignTooLong, outOfMemory).
AlignStatus align_profile_step(StepWorkspace& ws, KernelKind kind, const std::int32_t* scores, int rows, int cols,
                               const std::int32_t* rowStruct, const std::int32_t* colStruct,
                               const std::int32_t* rowGroup, const std::int32_t* colGroup, int gapPen, int gapSizePen,
                               std::span<char> first, std::span<char> second, int maxLen, int& len);
