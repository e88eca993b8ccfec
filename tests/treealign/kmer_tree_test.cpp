// The distances behind the large-family guide tree, on cases counted by
// hand. Words: six-residue words over classes and three-letter words over
// the residues count together, other letters break words, and the distance
// is over the smaller word total. Seeds: one minus the identity of each
// sequence's alignment to each seed, row by row.
#include "treealign/kmer_tree.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "treealign/pair_library.hpp"

namespace {

struct DistanceCase {
  std::string a, b;
  double distance;
};

TEST(KmerTree, DistanceCountsSharedWordsOverTheFewer) {
  const DistanceCase cases[] = {
      {"AAAAAA", "GGGGGG", 0.8},  // one class word shared; AAA x4 against GGG x4: 1 of 5
      {"ACDEFG", "ACDEFH", 0.4},  // class words differ in the last; ACD CDE DEF shared: 3 of 5
      {"AAXAAA", "aaa", 0.0},     // X ends a word: each has AAA once; case does not matter
      {"AAAAAAA", "AAAA", 0.0},   // AAA x2 in the fewer, both shared
      {"AC", "ACDEF", 1.0},       // too short for any word
      {"LLLLLL", "FFFFFF", 1.0},  // I L M V against F W Y: nothing shared
  };
  for (const DistanceCase& c : cases) {
    EXPECT_DOUBLE_EQ(kmer_distance(kmer_counts(c.a), kmer_counts(c.b)), c.distance) << c.a << " " << c.b;
    EXPECT_DOUBLE_EQ(kmer_distance(kmer_counts(c.b), kmer_counts(c.a)), c.distance) << c.b << " " << c.a;
  }
}

TEST(KmerTree, SeedDistanceIsOneMinusTheAlignedIdentity) {
  ScoreTable table{}, none{};
  for (int x = 0; x < kTableDim; ++x)
    for (int y = 0; y < kTableDim; ++y) table[static_cast<std::size_t>(x * kTableDim + y)] = x == y ? 30 : -5;
  std::vector<SeqRecord> seqs;
  std::vector<SeqCodes> codes;
  for (const std::string text : {"ACDEFGHIK", "ACDEWGHIK", "ACDEGHIK", "ACDEFGHIK"}) {
    SeqRecord& seq = seqs.emplace_back();
    seq.pRes = text;
    seq.numRes = static_cast<int>(text.size());
    codes.push_back(seq_codes(seq, 0, 0));
  }
  const std::vector<int> seeds = {0, 2};
  // Row by row, against seeds 0 and 2. 0: itself; a gap for F, 8 of 8 alike.
  // 1: W for F, 8 of 9 alike; W faces the gap, 8 of 8. 2: 8 of 8; itself.
  // 3: the same residues as seed 0.
  const std::vector<float> expected = {0, 0, static_cast<float>(1.0 - 8.0 / 9), 0, 0, 0, 0, 0};
  for (const int threads : {1, 3})
    EXPECT_EQ(seed_distances(seqs, codes, PairScoring{&table, &none, 60, 0}, seeds, threads), expected);
}

}  // namespace
