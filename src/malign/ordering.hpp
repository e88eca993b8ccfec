// Ranking of the pair records and the walks that derive the order in which
// sequences join the multiple alignment.
#pragma once

#include <span>

#include "align/align_score.hpp"
#include "seq/seq_record.hpp"

int sort_align(AlignRecord* records, int lo, int hi, int descending);
int member_of_align(const int* list, int count, int value);

// alignOrder[0] = chosen, then its partners by descending pair score.
void order_against_seq(std::span<const AlignRecord> sortedPairs, int chosen, int n, std::span<int> alignOrder);
// Greedy walk down the ranked pairs, a sequence with structure placed first.
void order_computed(std::span<const AlignRecord> sortedPairs, std::span<const SeqRecord> seqs,
                    std::span<int> alignOrder);
