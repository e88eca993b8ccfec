// Ranking of pair records and the walks that give the order of addition.
#include "malign/ordering.hpp"

#include <string>
#include <vector>

#include "seq/seq_record.hpp"
#include "support/test_support.hpp"

namespace {

// A pair record (a, b) with a score; overlapStart carries a tag so that
// records with equal scores can be told apart after the sort.
AlignRecord pair_record(int a, int b, double score, int tag = 0) {
  return AlignRecord{
      .numSeqs = 2, .overlapStart = tag, .alignScore = score, .seqs = {{a, {}, {}, {}}, {b, {}, {}, {}}}};
}

// The expected orders were worked by hand through the partition scheme: equal
// scores stop both scans and are exchanged, so ties do not keep input order.
TEST(SortAlign, FollowsThePartitionScheme) {
  const struct {
    std::vector<double> scores;
    int lo, hi, descending;
    std::vector<int> tags;
  } cases[] = {
      {{5, 7, 5, 9, 5}, 0, 4, 1, {3, 1, 4, 0, 2}},
      {{5, 7, 5, 9, 5}, 0, 4, 0, {2, 4, 0, 1, 3}},
      {{1, 1, 1, 1}, 0, 3, 1, {2, 3, 0, 1}},
      {{100, 10, 30, 20}, 1, 3, 1, {0, 2, 3, 1}},  // only the given range
      {{3.5}, 0, 0, 1, {0}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.scores));
    std::vector<AlignRecord> records;
    for (std::size_t k = 0; k < c.scores.size(); ++k) {
      const int tag = static_cast<int>(k);
      records.push_back(pair_record(tag, 10 + tag, c.scores[k], tag));
    }
    sort_align(records.data(), c.lo, c.hi, c.descending);
    for (std::size_t k = 0; k < records.size(); ++k) {
      const int tag = c.tags[k];
      EXPECT_EQ(records[k].overlapStart, tag);  // whole records move
      EXPECT_EQ(records[k].alignScore, c.scores[static_cast<std::size_t>(tag)]);
      EXPECT_EQ(records[k].seqs[0].seqIndex, tag);
      EXPECT_EQ(records[k].seqs[1].seqIndex, 10 + tag);
    }
  }
  sort_align(nullptr, 0, -1, 1);  // no record at all must not be read
}

// chosen -1 is the computed order; the entry after the n filled is untouched.
TEST(Ordering, WalksOverTheSortedPairs) {
  const std::vector<AlignRecord> four = {pair_record(3, 1, 60), pair_record(2, 0, 50), pair_record(3, 2, 40),
                                         pair_record(1, 0, 30), pair_record(2, 1, 20), pair_record(3, 0, 10)};
  const std::vector<AlignRecord> three = {pair_record(2, 0, 50), pair_record(1, 0, 40), pair_record(2, 1, 30)};
  const struct {
    const char* what;
    const std::vector<AlignRecord>& pairs;
    std::vector<int> structures;
    int chosen;
    std::vector<int> expected;
  } cases[] = {
      {"partners of 2 by score", four, {0, 0, 0, 0}, 2, {2, 0, 3, 1, -7}},
      {"partners of 0 by score", four, {0, 0, 0, 0}, 0, {0, 2, 1, 3, -7}},
      {"best pair seeds, then first occurrence", four, {0, 0, 0, 0}, -1, {3, 1, 2, 0, -7}},
      {"structure placed first", three, {1, 0, 0}, -1, {0, 2, 1, -7}},
      {"both with structure: no exchange", three, {1, 0, 1}, -1, {2, 0, 1, -7}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const int n = static_cast<int>(c.structures.size());
    std::vector<SeqRecord> seqs(static_cast<std::size_t>(n));
    for (int k = 0; k < n; ++k) seqs[static_cast<std::size_t>(k)].hasSRes = c.structures[static_cast<std::size_t>(k)];
    std::vector<int> order(kMaxSeqs, -7);
    if (c.chosen < 0) {
      order_computed(c.pairs, seqs, order);
    } else {
      order_against_seq(c.pairs, c.chosen, n, order);
    }
    order.resize(static_cast<std::size_t>(n) + 1);
    EXPECT_EQ(order, c.expected);
  }
}

}  // namespace
