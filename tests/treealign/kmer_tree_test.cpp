// The word distance behind the large-family guide tree, on cases counted by
// hand: six-residue words over classes and three-letter words over the
// residues count together, other letters break words, and the distance is
// over the smaller word total.
#include "treealign/kmer_tree.hpp"

#include <gtest/gtest.h>

#include <string>

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

}  // namespace
