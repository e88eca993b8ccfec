#include "report/report_writer.hpp"

#include <algorithm>

#include "report/alignment_views.hpp"
#include "report/report_sections.hpp"

void write_report_header(std::FILE* report, const RunSettings& settings) {
  const ScoreTable table = prepared_residue_table(settings);
  print_report_header(report, run_print_options(settings, table));
  std::fflush(report);
}

void write_report_before_alignment(std::FILE* report, const RunSettings& settings, const RunInput& input,
                                   const RunResult& result) {
  const ScoreTable table = prepared_residue_table(settings);
  const PrintOptions options = run_print_options(settings, table);
  if (settings.printPairsFlag == 1) {
    print_pairwise_head(report);
    for (const AlignRecord& pair : result.pairs) print_pair_alignment(report, pair_view(input.seqs, pair), options);
    std::fflush(report);
  }
  print_sequences_section(report, print_order_rows(input.seqs, result.alignOrder, settings.printOrderFlag));
  if (settings.printPctHomFlag == 1)
    print_pct_hom_section(report, align_order_rows(input.seqs, result.alignOrder), result.pctHom);
}

void write_report_alignment(std::FILE* report, const RunSettings& settings, const RunInput& input,
                            const RunResult& result) {
  const std::size_t count = std::min(input.seqs.size(), result.alignOrder.size());
  if (count < 1) return;
  const ScoreTable table = prepared_residue_table(settings);
  const AlignmentView view = malign_view(input.seqs, result.alignment, std::span(result.alignOrder).first(count),
                                         settings.printOrderFlag, settings.consensusPercent);
  print_statistics(report, view);
  print_mult_align(report, view, run_print_options(settings, table));
}
