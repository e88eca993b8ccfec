#include "malign/ordering.hpp"

#include "shell/errors.hpp"

int sort_align(AlignRecord* records, int lo, int hi, int descending) {
  fatal_err("sort_align", "not built yet");
}

int member_of_align(const int* list, int count, int value) {
  fatal_err("member_of_align", "not built yet");
}

void order_against_seq(std::span<const AlignRecord> sortedPairs, int chosen, int n, std::span<int> alignOrder) {
  fatal_err("order_against_seq", "not built yet");
}

void order_computed(std::span<const AlignRecord> sortedPairs, int n, std::span<int> alignOrder) {
  fatal_err("order_computed", "not built yet");
}
