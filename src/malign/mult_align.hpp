// Progressive multiple alignment against a profile of the growing group.
#pragma once

#include <span>

#include "align/align_score.hpp"
#include "malign/run_settings.hpp"
#include "seq/seq_record.hpp"

// Builds the multiple alignment of seqs, joined in alignOrder, into malign.
// settings.wtMatrix is the run's prepared residue table. A failure (an
// alignment wider than the column limit, exhausted memory) is raised as
// RunFailure.
void build_mult_align(const RunSettings& settings, std::span<const SeqRecord> seqs, std::span<const int> alignOrder,
                      AlignRecord& malign);
void add_dSeq_malign(AlignRecord& malign, int seqIndex, const SeqRecord& seq, const char* templ, int len);

// Gap penalty in force after `step` additions: pen raised by step times
// incPct percent (integer product, sum in double, truncated toward zero).
int grow_gap_pen(int pen, int step, int incPct);
