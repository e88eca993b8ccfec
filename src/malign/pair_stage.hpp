// The pairwise stage: every pair of sequences aligned, on as many workers as
// asked for, with the same records, progress and errors as one worker gives.
#pragma once

#include <span>

#include "align/align_score.hpp"
#include "align/pair_align.hpp"

// Workers of the pairwise stage: n >= 1 uses n, 0 (the default) lets the
// RAVLIN_THREADS environment variable decide, and failing that every
// available core.
void set_pair_threads(int n);
// The number of workers the next pairwise stage will use (at least 1).
int pair_threads();

// In: n sequences of mySeq, pairs with n(n-1)/2 records whose seqs tables and
// indices are set (pair k = (i, j), i = 1 .. n-1, j = 0 .. i-1 in that order).
// Out: every record filled; one '.' per pair on standard output, in pair
// order. The first pair that fails, in pair order, ends the run with its
// fatal report after the dots of the pairs before it.
void align_all_pairs(std::span<AlignRecord> pairs, int n, const PairParams& params);
