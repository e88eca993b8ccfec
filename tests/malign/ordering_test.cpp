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
  AlignRecord record;
  record.numSeqs = 2;
  record.alignScore = score;
  record.overlapStart = tag;
  record.seqs.resize(2);
  record.seqs[0].seqIndex = a;
  record.seqs[1].seqIndex = b;
  return record;
}

std::vector<AlignRecord> tagged(const std::vector<double>& scores) {
  std::vector<AlignRecord> records;
  for (std::size_t k = 0; k < scores.size(); ++k) records.push_back(pair_record(0, 0, scores[k], static_cast<int>(k)));
  return records;
}

std::vector<int> tags_of(const std::vector<AlignRecord>& records) {
  std::vector<int> tags;
  for (const AlignRecord& record : records) tags.push_back(record.overlapStart);
  return tags;
}

std::vector<int> walk_against(const std::vector<AlignRecord>& pairs, int chosen, int n) {
  std::vector<int> order(kMaxSeqs, -7);
  order_against_seq(pairs, chosen, n, order);
  order.resize(static_cast<std::size_t>(n) + 1);
  return order;
}

std::vector<int> walk_computed(const std::vector<AlignRecord>& pairs, int n) {
  std::vector<int> order(kMaxSeqs, -7);
  order_computed(pairs, n, order);
  order.resize(static_cast<std::size_t>(n) + 1);
  return order;
}

void set_structures(const std::vector<int>& flags) {
  for (std::size_t k = 0; k < flags.size(); ++k) mySeq[k].hasSRes = flags[k];
}

// Worked by hand through the partition scheme: pivot 5 (record 2); records
// 0 and 4 swap, then 2 and 3; the left part 0..2 and the right part 3..4
// are partitioned again.
TEST(SortAlign, EqualScoresFollowThePartitionSchemeDescending) {
  std::vector<AlignRecord> records = tagged({5, 7, 5, 9, 5});
  sort_align(records.data(), 0, 4, 1);
  EXPECT_EQ(tags_of(records), (std::vector<int>{3, 1, 4, 0, 2}));
}

TEST(SortAlign, EqualScoresFollowThePartitionSchemeAscending) {
  std::vector<AlignRecord> records = tagged({5, 7, 5, 9, 5});
  sort_align(records.data(), 0, 4, 0);
  EXPECT_EQ(tags_of(records), (std::vector<int>{2, 4, 0, 1, 3}));
}

// All equal: every comparison stops both scans, so the records are exchanged
// pairwise from the outside in and then within each half.
TEST(SortAlign, AllEqualScoresAreNotLeftInInputOrder) {
  std::vector<AlignRecord> records = tagged({1, 1, 1, 1});
  sort_align(records.data(), 0, 3, 1);
  EXPECT_EQ(tags_of(records), (std::vector<int>{2, 3, 0, 1}));
}

TEST(SortAlign, SortsOnlyTheGivenRangeAndKeepsWholeRecords) {
  std::vector<AlignRecord> records = {pair_record(9, 9, 100.0, 0), pair_record(1, 0, 10.0, 1),
                                      pair_record(2, 0, 30.0, 2), pair_record(2, 1, 20.0, 3)};
  sort_align(records.data(), 1, 3, 1);
  EXPECT_EQ(tags_of(records), (std::vector<int>{0, 2, 3, 1}));
  EXPECT_EQ(records[1].seqs[0].seqIndex, 2);
  EXPECT_EQ(records[1].seqs[1].seqIndex, 0);
  EXPECT_EQ(records[3].seqs[0].seqIndex, 1);
}

TEST(SortAlign, OneRecordAndAnEmptyRange) {
  std::vector<AlignRecord> one = {pair_record(1, 0, 3.5, 7)};
  sort_align(one.data(), 0, 0, 1);
  EXPECT_EQ(one[0].overlapStart, 7);
  EXPECT_EQ(one[0].alignScore, 3.5);
  // No record at all must not be read.
  sort_align(nullptr, 0, -1, 1);
}

TEST(MemberOfAlign, FindsOnlyAmongTheFirstCount) {
  const int list[] = {4, 2, 9};
  EXPECT_EQ(member_of_align(list, 3, 9), 1);
  EXPECT_EQ(member_of_align(list, 2, 9), 0);
  EXPECT_EQ(member_of_align(list, 0, 4), 0);
  EXPECT_EQ(member_of_align(list, -1, 4), 0);
}

// Sorted pairs of four sequences used by the walks below.
std::vector<AlignRecord> four_sorted_pairs() {
  return {pair_record(3, 1, 60), pair_record(2, 0, 50), pair_record(3, 2, 40),
          pair_record(1, 0, 30), pair_record(2, 1, 20), pair_record(3, 0, 10)};
}

TEST(OrderAgainstSeq, ChosenSequenceFirstThenPartnersByScore) {
  // Partners of 2 in rank order: 0 (pair 2,0), 3 (pair 3,2), 1 (pair 2,1).
  EXPECT_EQ(walk_against(four_sorted_pairs(), 2, 4), (std::vector<int>{2, 0, 3, 1, -7}));
  EXPECT_EQ(walk_against(four_sorted_pairs(), 0, 4), (std::vector<int>{0, 2, 1, 3, -7}));
}

TEST(OrderComputed, BestPairSeedsThenFirstOccurrence) {
  set_structures({0, 0, 0, 0});
  EXPECT_EQ(walk_computed(four_sorted_pairs(), 4), (std::vector<int>{3, 1, 2, 0, -7}));
}

TEST(OrderComputed, SequenceWithStructureIsPlacedFirst) {
  const std::vector<AlignRecord> pairs = {pair_record(2, 0, 50), pair_record(1, 0, 40), pair_record(2, 1, 30)};
  set_structures({1, 0, 0});
  EXPECT_EQ(walk_computed(pairs, 3), (std::vector<int>{0, 2, 1, -7}));
  set_structures({0, 0, 0});
  EXPECT_EQ(walk_computed(pairs, 3), (std::vector<int>{2, 0, 1, -7}));
  // Both with structure: no exchange.
  set_structures({1, 0, 1});
  EXPECT_EQ(walk_computed(pairs, 3), (std::vector<int>{2, 0, 1, -7}));
  set_structures({0, 0, 0});
}

}  // namespace
