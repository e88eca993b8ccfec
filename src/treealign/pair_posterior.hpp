// How likely each residue pair of two sequences is to be aligned: every
// alignment of the pair weighed by exp(score / temperature) under the run's
// structure-aware scores (free end gaps), summed by a forward and a backward
// pass, each residue pair's share of the total kept where it is not
// negligible. Several good alignments of a pair all count, each as much as
// its score makes it likely, where a single best alignment counts one.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "matrix/weight_matrix.hpp"
#include "treealign/seq_codes.hpp"

// The likely partners of each residue of one sequence in another: residue x's
// links are partner[start[x]] .. partner[start[x + 1] - 1], with their
// probabilities in thousandths.
struct SparseMap {
  std::vector<std::int32_t> start;
  std::vector<std::int32_t> partner;
  std::vector<std::int16_t> prob;
};

// The weights of the sum: a score s counts exp(s / temperature).
struct PosteriorModel {
  std::vector<double> wtWeight, ssWeight;  // exp(table score / temperature), kTableDim x kTableDim
  int gapOpen = 0, gapLength = 0;          // table units, as the pairwise alignments charge them
  double temperature = 10.0;
  int leastProb = 10;  // thousandths below which a pair is dropped
  // The same for the mean of several models: the mean spreads a residue's
  // links over every model's partners, and the faint ones only cost time.
  int leastMeanProb = 40;
};

PosteriorModel posterior_model(const ScoreTable& wtTable, const ScoreTable& ssTable, int gapOpen, int gapLength,
                               double temperature);

// Scratch of one worker, grown as pairs need it.
struct PosteriorWorkspace {
  std::vector<double> forward, emission, intoGap, chainA, chainB, nextM, nextX, nextY, thisM, thisX, thisY;
  std::vector<int> forwardExp;
};

// e^x from additions and multiplications alone, so that it gives the same
// bits on every machine (the system's exp may not).
double portable_exp(double x);
// log2 x (x > 0) from additions, multiplications and divisions alone, for
// the same reason.
double portable_log2(double x);

// In: two sequences' codes, the models (each pair's likelihood is the mean
// of theirs). Out: each residue's likely partners, from a's side and from b's.
void pair_posteriors(PosteriorWorkspace& ws, const SeqCodes& a, const SeqCodes& b,
                     std::span<const PosteriorModel> models, SparseMap& aToB, SparseMap& bToA);
