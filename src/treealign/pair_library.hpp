// Every pair of sequences aligned once with full dynamic programming and the
// run's structure-aware scores. The pairs' identities give the guide tree;
// their aligned residues are the library that consistency scoring and the
// column confidence read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "malign/pair_stage.hpp"
#include "matrix/weight_matrix.hpp"
#include "seq/seq_record.hpp"
#include "treealign/pair_posterior.hpp"
#include "treealign/seq_codes.hpp"

// The scores of one pairwise alignment (tables borrowed; penalties in table
// units; the structure penalties come with each sequence's codes).
struct PairScoring {
  const ScoreTable* wtTable;
  const ScoreTable* ssTable;
  int gapOpen, gapLength;
};

// One aligned pair (i, j), i > j.
struct PairMap {
  std::vector<std::int32_t> iToJ;  // residue of j aligned with each residue of i, -1 where none
  std::vector<std::int32_t> jToI;  // the same from j's side
  std::int32_t aligned = 0;        // residue pairs in one column
  std::int32_t identical = 0;      // of them, pairs of the same letter
  SparseMap iLikely, jLikely;      // each residue's likely partners, when asked for
};

struct PairLibrary {
  int n = 0;
  bool keepsMaps = false;      // the residue maps are kept (else only the counts)
  bool keepsLikely = false;    // so are the likely partners
  std::vector<PairMap> pairs;  // pair (i, j), i > j, at i (i - 1) / 2 + j
};

inline std::size_t pair_index(int i, int j) {
  if (i < j) std::swap(i, j);
  return static_cast<std::size_t>(i) * static_cast<std::size_t>(i - 1) / 2 + static_cast<std::size_t>(j);
}

// Identity of a pair in thousandths of its aligned residue pairs.
int pair_identity(const PairLibrary& library, int a, int b);

// The residues of b aligned with those of a (indexed by a's residue), or null
// when the maps were not kept.
const std::int32_t* pair_partners(const PairLibrary& library, int a, int b);

// The likely partners of a's residues in b, or null when not kept.
const SparseMap* likely_partners(const PairLibrary& library, int a, int b);

// In: the sequences and their codes, the scores, whether to keep the residue
// maps, the models of the likely partners to keep (none: keep none), workers.
// Out: every pair aligned; progress(done, total) called on the calling thread.
// Exhausted memory is raised as RunFailure.
// In: the sequences and their codes, the scores, some of the sequences
// (seeds), workers. Out: each sequence's distance to each seed, one minus the
// identity of their full alignment (0 to itself), n x seeds row by row; the
// same on any number of workers. Exhausted memory is raised as RunFailure.
std::vector<float> seed_distances(std::span<const SeqRecord> seqs, std::span<const SeqCodes> codes,
                                  const PairScoring& scoring, std::span<const int> seeds, int threads);

PairLibrary build_pair_library(std::span<const SeqRecord> seqs, std::span<const SeqCodes> codes,
                               const PairScoring& scoring, bool keepMaps, std::span<const PosteriorModel> likely,
                               int threads, const PairDone& progress);
