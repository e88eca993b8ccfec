// Progressive multiple alignment against a profile of the growing group.
#pragma once

#include <span>

#include "align/align_score.hpp"
#include "seq/seq_record.hpp"

extern AlignRecord mar;

// Builds the multiple alignment in mar, then prints its statistics and the
// alignment to the report.
void do_mult_align(std::span<const int> alignOrder);
// Builds it only.
void build_mult_align(std::span<const int> alignOrder);
void add_dSeq_malign(int seqIndex, const SeqRecord& seq, const char* templ, int len);

// Gap penalty in force after `step` additions: pen raised by step times
// incPct percent (integer product, sum in double, truncated toward zero).
int grow_gap_pen(int pen, int step, int incPct);
