// Group-to-group alignment: two alignments of disjoint sets of sequences
// aligned to each other as profiles, each kept as it is (gaps are only added
// as whole columns). A column pair scores the weighted average of its
// members' residue and structure table scores, plus, under consistency, the
// support the pair library and its extension through third sequences give
// the residue pairs it would make; anchors attract their partners, gaps are
// dearer inside the members' helices and strands and inside gap-free groups.
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
};

// What every join of one run reads.
struct JoinContext {
  std::span<const SeqCodes> codes;
  std::span<const std::int64_t> weights;  // sequence weights
  const PairLibrary* library = nullptr;   // maps needed when libraryWeight > 0
  std::vector<int> thirds;                // sequences the library is extended through
  GroupScoring scoring;
};

// A group of one sequence.
Group single_group(int seq, int numRes);

// The alignment a file gives: seqs[k]'s residues in the columns of rows[k]
// that are not '-'; every row is as wide as the first.
Group group_of_rows(std::span<const int> seqs, std::span<const std::string> rows);

// In: two groups of disjoint members. Out: one group holding both; a
// kernel fault (exhausted memory) is raised.
Group join_groups(const JoinContext& context, const Group& a, const Group& b);

// The part of a group made of the given members (in the group's order), its
// columns without any of their residues removed.
Group sub_group(const Group& group, const std::vector<char>& keep);
