// A guide tree for large families without aligning every pair: each
// sequence placed by its distances to some seed sequences (from its
// alignments to them, or from the short words they share), the family split
// in two by those places until the parts are small, and each part joined by
// average linkage on how far apart its members' places lie (or, with words,
// on their word distances).
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "seq/seq_record.hpp"
#include "treealign/guide_tree.hpp"

// Words of two kinds, counted together (any other letter ends a word): six
// residues over six classes (AGPST, C, DENQ, HKR, ILMV, FWY), which distant
// relatives still share, and three of the twenty standard residues, which
// tell near relatives apart. Each distinct word with how often it occurs, in
// word order.
inline constexpr int kClassWordLength = 6;
inline constexpr int kLetterWordLength = 3;
struct KmerCount {
  std::uint32_t word;
  std::uint32_t count;
};
std::vector<KmerCount> kmer_counts(const std::string& residues);

// 1 - shared / fewer, where shared sums the lesser count of each word the two
// have, and fewer is the smaller of their word totals; 1 when either has none.
double kmer_distance(std::span<const KmerCount> a, std::span<const KmerCount> b);

// Each sequence's distances to the given seeds, n x seeds row by row.
using SeedDistances = std::function<std::vector<float>(std::span<const int> seeds)>;

// In: the sequences, workers, and optionally the distances of aligned
// sequences to seeds. Out: a tree of the same shape of record as upgma_tree
// gives (leaf k is sequence k), the same on any worker count. With aligned
// distances, sequences are placed by those instead of their words, and a
// part's members are joined on how far apart their places lie.
GuideTree kmer_tree(std::span<const SeqRecord> seqs, int threads, const SeedDistances& aligned = {});
