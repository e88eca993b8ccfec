// The word distance behind the large-family guide tree, on cases counted by
// hand: residues of one class share words, other letters break words, and
// the distance is over the smaller word total.
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
      {"AAAAA", "GGGGG", 0.0},        // A and G are one class: two words 0000 each
      {"ACDEH", "ACDEF", 0.5},        // ACDE shared; CDEH and CDEF differ in the last class
      {"AAAAAA", "AAAAC", 0.5},       // 0000 x3 against 0000, 0001: one shared of the fewer two
      {"AAAXAAAA", "SSSS", 0.0},      // X ends a word: only the last four make one
      {"ACD", "ACDEF", 1.0},          // too short for any word
      {"LLLLLLLL", "FFFFFFFF", 1.0},  // I L M V against F W Y: nothing shared
  };
  for (const DistanceCase& c : cases) {
    EXPECT_DOUBLE_EQ(kmer_distance(kmer_counts(c.a), kmer_counts(c.b)), c.distance) << c.a << " " << c.b;
    EXPECT_DOUBLE_EQ(kmer_distance(kmer_counts(c.b), kmer_counts(c.a)), c.distance) << c.b << " " << c.a;
  }
}

}  // namespace
