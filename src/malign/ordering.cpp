#include "malign/ordering.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "seq/seq_record.hpp"

namespace {

bool ranks_before_pivot(double score, double pivot, int descending) {
  return descending != 0 ? score > pivot : score < pivot;
}

bool pivot_ranks_before(double pivot, double score, int descending) {
  return descending != 0 ? pivot > score : pivot < score;
}

// Appends value to the order while there is room; returns the new count.
int append_to_order(std::span<int> alignOrder, int count, int value) {
  if (count >= 0 && static_cast<std::size_t>(count) < alignOrder.size()) alignOrder[count] = value;
  return count + 1;
}

bool already_placed(std::span<const int> alignOrder, int count, int value) {
  const int placed = std::min(count, static_cast<int>(alignOrder.size()));
  return member_of_align(alignOrder.data(), placed, value) == 1;
}

bool has_structure_flag(std::span<const SeqRecord> seqs, int seqIndex, int flag) {
  return seqIndex >= 0 && static_cast<std::size_t>(seqIndex) < seqs.size() && seqs[seqIndex].hasSRes == flag;
}

}  // namespace

// The exact partition scheme matters: it fixes the order of pairs with equal
// scores, and with it the order in which sequences join the alignment.
int sort_align(AlignRecord* records, int lo, int hi, int descending) {
  if (records == nullptr || hi < lo) return 0;
  for (;;) {
    const double pivot = records[(lo + hi) / 2].alignScore;
    int i = lo;
    int j = hi;
    do {
      while (i < hi && ranks_before_pivot(records[i].alignScore, pivot, descending)) ++i;
      while (j > lo && pivot_ranks_before(pivot, records[j].alignScore, descending)) --j;
      if (i > j) break;
      std::swap(records[i], records[j]);
      ++i;
      --j;
    } while (i <= j);
    if (lo < j) sort_align(records, lo, j, descending);
    // The right part is taken by iteration so that the recursion stays shallow.
    if (i >= hi) return 1;
    lo = i;
  }
}

int member_of_align(const int* list, int count, int value) {
  for (int k = 0; k < count; ++k)
    if (list[k] == value) return 1;
  return 0;
}

void order_against_seq(std::span<const AlignRecord> sortedPairs, int chosen, int n, std::span<int> alignOrder) {
  int count = append_to_order(alignOrder, 0, chosen);
  for (const AlignRecord& pair : sortedPairs) {
    if (count >= n) break;
    if (pair.seqs.size() < 2) continue;
    const int a = pair.seqs[0].seqIndex;
    const int b = pair.seqs[1].seqIndex;
    if (a == chosen) count = append_to_order(alignOrder, count, b);
    if (b == chosen) count = append_to_order(alignOrder, count, a);
  }
}

void order_computed(std::span<const AlignRecord> sortedPairs, std::span<const SeqRecord> seqs,
                    std::span<int> alignOrder) {
  const int n = static_cast<int>(seqs.size());
  int count = 0;
  for (const AlignRecord& pair : sortedPairs) {
    if (count >= n) break;
    if (pair.seqs.size() < 2) continue;
    int a = pair.seqs[0].seqIndex;
    int b = pair.seqs[1].seqIndex;
    // A sequence with a known secondary structure goes in first.
    if (has_structure_flag(seqs, a, 0) && has_structure_flag(seqs, b, 1)) std::swap(a, b);
    if (!already_placed(alignOrder, count, a)) count = append_to_order(alignOrder, count, a);
    if (!already_placed(alignOrder, count, b)) count = append_to_order(alignOrder, count, b);
  }
}
