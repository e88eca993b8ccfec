// Group-to-group alignment: two alignments of disjoint sets of sequences
// aligned to each other as profiles, each kept as it is (gaps are only added
// as whole columns). A column pair scores the weighted average of its
// members' residue and structure table scores, plus, under consistency, the
// support the pair library and its extension through third sequences give
// the residue pairs it would make; anchors attract their partners, gaps are
// dearer inside the members' helices and strands and inside gap-free groups,
// and a gap is charged for the members it opens in, so columns that are mostly
// gaps already cost little to skip.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "matrix/weight_matrix.hpp"
#include "seq/seq_record.hpp"
#include "treealign/pair_library.hpp"
#include "treealign/seq_codes.hpp"

// An alignment of some of the sequences: the column of each member's residues.
struct Group {
  std::vector<int> members;                     // sequence indices
  std::vector<std::vector<std::int32_t>> cols;  // cols[k][x]: column of residue x of members[k]
  int len = 0;
};

struct GroupScoring {
  ScoreTable wtTable{}, ssTable{};  // residue table prepared as the run scores with it
  int gapOpen = 0, gapLength = 0;   // table units
  int scale = 16;                   // integer score units per table unit
  double tableWeight = 1.0;         // share of the substitution scores
  double libraryWeight = 0.0;       // table units a fully supported residue pair adds (0: no consistency)
  // When given (kCodes x kCodes odds ratios), a column pair's residues score
  // by log-expectation: the log of the odds ratio expected of a residue of
  // one column against one of the other, times the two columns' shares of
  // members with a residue. Averaging odds before the log weighs what the
  // columns' residues have in common, where the sum of pairs lets their
  // many unlike pairs drown it.
  std::vector<double> expectedOdds;
  double expectationWeight = 0;  // table units per half bit
  double expectationBonus = 0;   // table units a pair of full columns adds
};

// What every join of one run reads.
struct JoinContext {
  std::span<const SeqCodes> codes;
  std::span<const std::int64_t> weights;  // sequence weights
  const PairLibrary* library = nullptr;   // maps needed when libraryWeight > 0
  std::vector<int> thirds;                // sequences the library is extended through
  GroupScoring scoring;
};

// What a join reads of one side, column by column: built from a group's
// members, or (in large runs) carried from join to join without them.
struct GroupProfile {
  int len = 0;
  std::int64_t weight = 0;             // the members' weights summed
  std::int64_t ssWeight = 0;           // the same over members with structure
  std::vector<std::int64_t> res, ss;   // weighted code counts, len x 27
  std::vector<std::int64_t> penSum;    // weighted structure penalties of members with structure
  std::vector<std::int32_t> groupPen;  // scaled gap charge where a gap-free group forbids a gap
  std::vector<char> anchor;            // an anchor digit in the column (the first member's), or 0
};

// Where each column of the two sides went in their join.
struct JoinPath {
  int len = 0;
  std::vector<std::int32_t> toA, toB;
};

// A group of one sequence.
Group single_group(int seq, int numRes);

// The alignment a file gives: seqs[k]'s residues in the columns of rows[k]
// that are not '-'; every row is as wide as the first.
Group group_of_rows(std::span<const int> seqs, std::span<const std::string> rows);

// In: two groups of disjoint members. Out: one group holding both; a
// kernel fault (exhausted memory) is raised.
Group join_groups(const JoinContext& context, const Group& a, const Group& b);

// The profile of a group's members.
GroupProfile group_profile(const JoinContext& context, const Group& group);

// In: the two sides' profiles; their groups when the library scores the
// join (else null). Out: the join's path; a kernel fault is raised.
JoinPath align_profiles(const JoinContext& context, const GroupProfile& a, const GroupProfile& b, const Group* groupA,
                        const Group* groupB);

// The profile of the joined group, the same as group_profile of its members
// would give, in time linear in the columns.
GroupProfile joined_profile(const GroupProfile& a, const GroupProfile& b, const JoinPath& path);

// The part of a group made of the given members (in the group's order), its
// columns without any of their residues removed.
Group sub_group(const Group& group, const std::vector<char>& keep);
