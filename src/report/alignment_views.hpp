// The run's records as the report and the other writers see them: the print
// options and the views of the pairs, the sequences and the finished
// multiple alignment.
#pragma once

#include <span>
#include <vector>

#include "align/align_score.hpp"
#include "malign/run_settings.hpp"
#include "report/alignment_view.hpp"
#include "seq/seq_record.hpp"

// residueTable: the run's prepared residue table, which must outlive the options.
PrintOptions run_print_options(const RunSettings& settings, const ScoreTable& residueTable);

// The sequences' labels, in print order (byInput 1: input order, else
// alignment order) or, for align_order_rows, always in alignment order.
std::vector<ViewRow> print_order_rows(std::span<const SeqRecord> seqs, std::span<const int> alignOrder, int byInput);
std::vector<ViewRow> align_order_rows(std::span<const SeqRecord> seqs, std::span<const int> alignOrder);

AlignmentView pair_view(std::span<const SeqRecord> seqs, const AlignRecord& pair);
// The multiple alignment in print order, with its consensus at consensusPercent.
AlignmentView malign_view(std::span<const SeqRecord> seqs, const AlignRecord& malign, std::span<const int> alignOrder,
                          int byInput, int consensusPercent);

// Maps a print position to a member position of the multiple alignment.
int get_malign_index(std::span<const int> alignOrder, int index, int byInput);
