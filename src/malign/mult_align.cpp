#include "malign/mult_align.hpp"

#include "shell/errors.hpp"

AlignRecord mar;

void do_mult_align(std::span<const int> alignOrder) {
  fatal_err("do_mult_align", "not built yet");
}

void add_dSeq_malign(int seqIndex, const SeqRecord& seq, const char* templ, int len) {
  fatal_err("add_dSeq_malign", "not built yet");
}
