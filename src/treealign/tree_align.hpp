// Alignment up a guide tree: every pair aligned (structure-aware), a tree by
// average linkage on the pairs' distances, the groups joined up the tree as
// profiles (optionally scored by consistency with the pair library), then
// refined by realigning the two sides of tree edges. Takes plain records and
// scores; has no column, sequence or residue limit of its own.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "align/align_score.hpp"
#include "malign/pair_stage.hpp"
#include "matrix/weight_matrix.hpp"
#include "seq/seq_record.hpp"
#include "shell/errors.hpp"

// The scores the joins and the pairs read, in the residue table's units.
struct TreeScores {
  ScoreTable wtTable{};  // residue scores, anchors and blanks included
  ScoreTable ssTable{};  // structure scores, where both residues have structure
  int gapOpen = 0, gapLength = 0;
  int midStructPen = 0, endStructPen = 0;  // a gap inside a helix or strand, at its ends
};

// kFast: the guide tree from each sequence's alignments to a hundred seeds
// (not every pair), the joins up it carrying profiles only; no refinement,
// no confidence.
enum class TreeMode { kTree, kConsistency, kFast };

// A second residue table for the likely partners (its gap opening in its
// own units).
struct SecondTable {
  ScoreTable wtTable;
  int gapOpen = 0;
};

struct TreeAlignOptions {
  TreeMode mode = TreeMode::kConsistency;
  int threads = 0;       // as the pairwise stage counts them
  int refinePasses = 1;  // passes over the tree's edges
  int maxThirds = 60;    // sequences the library is extended through, at most
  double tableWeight = 1.0;
  double libraryWeight = 40.0;
  // Temperature of the likely partners, as a share of the table's mean score
  // of a standard residue against itself; warmer when no sequence has
  // structure, whose scores alone tell true pairs from chance less sharply.
  double likelyHeat = 0.35;
  double likelyHeatWithoutStructure = 0.42;
  // Share of the run's gap opening penalty a join charges: a join's gap is
  // charged for every member it opens in, a sequence's once.
  double joinGapShare = 0.35;
  // In the consistency mode the library, not the table, carries most of a
  // join's score, and the run's full opening keeps its gaps in proportion.
  double consistencyJoinGapShare = 1.0;
  // In the fast mode, added to every residue pair's table score as a share
  // of the table's mean identity score: a residue left opposite a gap forgoes
  // it, so gaps cost by the residues they leave unpaired, as the sum of pairs
  // counts them. A large family's many scattered gaps otherwise make a gap
  // next to them nearly free, and its groups drift apart.
  double fastPairBonus = 0.56;
  // When no sequence has structure, each pair's likely partners are the mean
  // of two sums: the run's table and this one. Two tables' chance pairs
  // differ where the true ones agree, and the structure that would tell them
  // apart is missing.
  std::optional<SecondTable> secondTable{};
  double secondTableHeat = 0.6;
  // Charged per position of its gaps whatever the table's own: a sum without
  // a length charge lets a short sequence slide along a long one.
  int secondTableGapLength = 1;
  // In the fast mode, when given: a log-odds table in half bits whose odds
  // ratios score the joins' residues by log-expectation (see GroupScoring),
  // weighed at this share of the run table's scale per its own, plus a bonus
  // of this share of the run table's mean identity score for a pair of full
  // columns (the sum of pairs' fastPairBonus in its place). Without it the
  // joins sum pairs' scores in the run's table.
  std::optional<ScoreTable> expectationTable{};
  double expectationWeight = 1.3;
  double expectationBonus = 1.4;
};

enum class TreeStage { kPairs, kSeedTree, kJoins, kRefine };

struct TreeAlignProgress {
  std::function<void(TreeStage)> stageStarted;
  PairDone pairDone;
};

struct TreeAlignResult {
  AlignRecord alignment;   // rows in the tree's order; gaps are blanks
  std::vector<int> order;  // sequence of each row
  std::string confidence;  // a digit 0-9 per column: the pair library's support
};

std::optional<Failure> tree_align(const TreeScores& scores, std::span<const SeqRecord> seqs,
                                  const TreeAlignOptions& options, TreeAlignResult& result,
                                  const TreeAlignProgress& progress);

// Alignments kept as they are, joined: parts[0]'s sequences (indices into
// seqs) in the columns of their rows, then each later part joined to what
// came before as profiles, gaps added only as whole columns (every sequence
// weighs the same; no consistency). rows[p][k] is the row of parts[p][k]
// ('-' gaps), a part's rows all of one width; a sequence alone is a part of
// one row. The result's rows are in the parts' order.
std::optional<Failure> join_given_alignments(const TreeScores& scores, std::span<const SeqRecord> seqs,
                                             const std::vector<std::vector<int>>& parts,
                                             const std::vector<std::vector<std::string>>& rows,
                                             TreeAlignResult& result);
