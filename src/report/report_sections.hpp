// The report's sections, in the order the report holds them. Each reads the
// alignment view or the rows it is given and the print options.
#pragma once

#include <cstdio>
#include <span>

#include "align/align_score.hpp"
#include "malign/run.hpp"
#include "report/alignment_view.hpp"

void print_report_header(std::FILE* stream, const PrintOptions& options);
// The pairwise section: its head, then each pair (a view of two rows) in
// ranked order.
void print_pairwise_head(std::FILE* stream);
void print_pair_alignment(std::FILE* stream, const AlignmentView& pair, const PrintOptions& options);
// rows: the sequences' labels in print order.
void print_sequences_section(std::FILE* stream, std::span<const ViewRow> rows);
// rows: the sequences' labels in alignment order; pctHom indexed by seqIndex.
void print_pct_hom_section(std::FILE* stream, std::span<const ViewRow> rows, const PctHomTable& pctHom);
void print_statistics(std::FILE* stream, const AlignmentView& view);
void print_mult_align(std::FILE* stream, const AlignmentView& view, const PrintOptions& options);
