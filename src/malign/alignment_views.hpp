// The run's records as the report and the other writers see them: the print
// options and the views of the pairs, the sequences and the finished
// multiple alignment, built from the run's state.
#pragma once

#include <span>
#include <vector>

#include "align/align_score.hpp"
#include "report/alignment_view.hpp"

PrintOptions run_print_options();

// The sequences' labels, in print order (byInput 1: input order, else
// alignment order) or, for align_order_rows, always in alignment order.
std::vector<ViewRow> print_order_rows(std::span<const int> alignOrder, int byInput);
std::vector<ViewRow> align_order_rows(std::span<const int> alignOrder);

AlignmentView pair_view(const AlignRecord& pair);
// The multiple alignment in print order, with its consensus at consensusPercent.
AlignmentView malign_view(const AlignRecord& malign, std::span<const int> alignOrder, int byInput,
                          int consensusPercent);

// Default ids ("Seq_%d" / "Seq%d") for the first multAlignNum records of mySeq
// that have no accession; the number is that of the sequence at position i
// of the order, not i.
void set_seq_id_str(std::span<const int> alignOrder);
// Maps a print position to a member position of the multiple alignment.
int get_malign_index(std::span<const int> alignOrder, int index, int byInput);
