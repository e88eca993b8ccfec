// The pairwise stage: every pair of sequences aligned, on as many workers as
// asked for, with the same records, progress and errors as one worker gives.
#pragma once

#include <cstddef>
#include <functional>
#include <span>

#include "align/align_score.hpp"
#include "align/pair_align.hpp"
#include "seq/seq_record.hpp"

// Called after each pair, in pair order, on the calling thread.
using PairDone = std::function<void(std::size_t done, std::size_t total)>;

// The workers a stage uses: requested when it is at least 1; else the
// RAVLIN_THREADS environment variable, and failing that every available core.
int pair_threads(int requested);

// In: the sequences, pairs with n(n-1)/2 records whose seqs tables and indices
// are set (pair k = (i, j), i = 1 .. n-1, j = 0 .. i-1 in that order).
// Out: every record filled, pairDone called for each pair in pair order. The
// first pair that fails, in pair order, is raised as RunFailure after the
// calls for the pairs before it.
void align_all_pairs(std::span<AlignRecord> pairs, std::span<const SeqRecord> seqs, const PairParams& params,
                     int threads, const PairDone& pairDone);
