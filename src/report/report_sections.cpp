// Sections: header, pairwise alignments, sequences, percent homology,
// statistics, multiple alignment; then the pairwise blocks' helpers.
#include "report/report_sections.hpp"

#include <algorithm>
#include <cstring>

#include "report/alignment_writers.hpp"
#include "report/line_printers.hpp"
#include "shell/version.hpp"

namespace {

constexpr int kIdWidth = 12;

const char* true_false(bool flag) { return flag ? "TRUE " : "FALSE"; }

bool is_upper_letter(char ch) { return ch >= 'A' && ch <= 'Z'; }

void write_blanks(std::FILE* stream, int count) {
  for (int i = 0; i < count; ++i) std::fputc(' ', stream);
}

char match_mark(char x, char y, const PrintOptions& options) {
  if (!is_upper_letter(x) || !is_upper_letter(y)) return ' ';
  if (x == y) return '|';
  const ScoreTable& table = *options.residueTable;
  return table[static_cast<std::size_t>((x - 'A') * kTableDim + (y - 'A'))] >= options.nearMatchScore ? '*' : ' ';
}

void print_match_line(std::FILE* stream, const std::string& first, const std::string& second, int start, int len,
                      const PrintOptions& options) {
  std::fputs("    Match: ", stream);
  for (int c = start; c < start + len; ++c)
    std::fputc(match_mark(first[static_cast<std::size_t>(c)], second[static_cast<std::size_t>(c)], options), stream);
  std::fputs("\n", stream);
  std::fflush(stream);
}

void print_pair_head(std::FILE* stream, const AlignmentView& pair) {
  for (int k = 1; k <= 2; ++k) {
    const ViewRow& row = pair.rows[static_cast<std::size_t>(k - 1)];
    std::fprintf(stream, " Sequence %d ", k);
    std::fprintf(stream, "ID=%s  ", row.id.c_str());
    std::fprintf(stream, "%s\n", row.title.c_str());
  }
  std::fprintf(stream, " Percent Sequence Homology: %6.2f\n", pair.pctHomol);
  std::fprintf(stream, " Alignment Score..........: %6.2f\n", pair.alignScore);
}

void print_pair_blocks(std::FILE* stream, const AlignmentView& pair, const PrintOptions& options) {
  const ViewRow& one = pair.rows[0];
  const ViewRow& two = pair.rows[1];
  const int lineLen = options.resLineLen;
  int count1 = 0;
  int count2 = 0;
  int remaining = pair.width;
  if (lineLen < 1) return;  // no block could ever shorten the rest
  for (int start = 0; remaining > 0; start += lineLen) {
    const int len = std::min(remaining, lineLen);
    remaining -= len;
    std::fputs("\n", stream);
    print_res_line(stream, one, one.residues.c_str(), start, len, &count1, lineLen);
    if (one.hasStructure) print_struct_line(stream, one.structure.c_str(), start, len);
    print_match_line(stream, one.residues, two.residues, start, len, options);
    print_res_line(stream, two, two.residues.c_str(), start, len, &count2, lineLen);
    if (two.hasStructure) print_struct_line(stream, two.structure.c_str(), start, len);
  }
}

}  // namespace

void print_report_header(std::FILE* stream, const PrintOptions& options) {
  print_divide(stream, '-', options.resLineLen);
  std::fprintf(stream, "   Program.......: ravlin (version %s)\n", kVersion);
  std::fputs("   Description...: multiple sequence alignment program\n", stream);
  std::fprintf(stream, "   Date..........: %s", get_date().c_str());
  std::fputs("\n", stream);
  std::fprintf(stream, "   P  Scoring Mat: %s\n", options.scoreFile.c_str());
  std::fprintf(stream, "   Gap Penalty...: %-3d", options.gapPen);
  std::fprintf(stream, "  Structure Bias: %-3d", options.structBias);
  std::fprintf(stream, "  Line Length...: %-3d\n", options.resLineLen);
  std::fprintf(stream, "   Gap Size Pen..: %-3d", options.gapSizePen);
  std::fprintf(stream, "  IncGap Percent: %-3d", options.incGapPen);
  std::fprintf(stream, "  Print Pct Hom.: %s\n", true_false(options.printPctHom));
  std::fprintf(stream, "   Mid Struct Pen: %-3d", options.midStructPen);
  std::fprintf(stream, "  NearMatchScore: %-3d", options.nearMatchScore);
  std::fprintf(stream, "  Print Sorted..: %s\n", true_false(options.printSorted));
  std::fprintf(stream, "   End Struct Pen: %-3d", options.endStructPen);
  std::fprintf(stream, "  BlankMatchScor: %-3d", options.blankMatch);
  std::fprintf(stream, "  Print Pairwise: %s\n", true_false(options.printPairs));
  std::fprintf(stream, "   Consensus %%...: %-3d\n", options.consensusPercent);
  std::fputs("\n", stream);
  print_divide(stream, '-', options.resLineLen);
  std::fflush(stream);
}

void print_pairwise_head(std::FILE* stream) {
  std::fputs("\n", stream);
  std::fputs("Pairwise Alignments\n", stream);
  std::fputs("*******************\n\n", stream);
}

void print_pair_alignment(std::FILE* stream, const AlignmentView& pair, const PrintOptions& options) {
  print_pair_head(stream, pair);
  print_pair_blocks(stream, pair, options);
  print_divide(stream, '-', options.resLineLen);
  std::fflush(stream);
}

void print_sequences_section(std::FILE* stream, std::span<const ViewRow> rows) {
  std::fputs("\n", stream);
  std::fputs("Sequences\n", stream);
  std::fputs("*********\n\n", stream);
  std::fputs("   Num   Acc#       Sequence Title\n", stream);
  int number = 0;
  for (const ViewRow& row : rows) {
    std::fprintf(stream, "   %3d   ", ++number);
    std::fprintf(stream, "%s   ", row.id.c_str());
    write_blanks(stream, kIdWidth - static_cast<int>(std::strlen(row.id.c_str())));
    std::fprintf(stream, "%s\n", row.title.c_str());
  }
  std::fputs("\n", stream);
  std::fflush(stream);
}

void print_pct_hom_section(std::FILE* stream, std::span<const ViewRow> rows, const PctHomTable& pctHom) {
  std::fputs("\n", stream);
  std::fputs("Pairwise Percent Sequence Homology\n", stream);
  std::fputs("**********************************\n\n", stream);
  write_blanks(stream, 13);
  for (const ViewRow& row : rows) {
    std::fputs(" ", stream);
    print_seq_id(stream, row.id.c_str());
  }
  std::fputs("\n", stream);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    std::fputs(" ", stream);
    print_seq_id(stream, rows[i].id.c_str());
    const auto si = static_cast<std::size_t>(rows[i].seqIndex);
    for (std::size_t j = 0; j < rows.size(); ++j) {
      const auto sj = static_cast<std::size_t>(rows[j].seqIndex);
      write_blanks(stream, 6);
      std::fprintf(stream, " %6.2f", i == j ? 100.0 : pctHom.at(si, sj));
    }
    std::fputs("\n", stream);
  }
  std::fputs("\n", stream);
  std::fflush(stream);
}

void print_statistics(std::FILE* stream, const AlignmentView& view) {
  std::fputs("\n", stream);
  std::fputs("Statistics\n", stream);
  std::fputs("**********\n\n", stream);
  std::fprintf(stream, "   Total length for the multiple alignment: %d\n", view.width);
  // A single shared column does not count as an overlap region.
  if (view.overlapEnd > view.overlapStart)
    std::fprintf(stream, "   Region where sequences overlap: %d - %d (length = %d)", view.overlapStart, view.overlapEnd,
                 view.overlapEnd - view.overlapStart + 1);
  else
    std::fputs("   No Region where all sequences overlap.", stream);
  std::fputs("\n", stream);
  std::fprintf(stream, "   Percent Sequence Homology in overlap region: %-8.2f\n", view.pctHomol);
  std::fputs("\n", stream);
  std::fflush(stream);
}

void print_mult_align(std::FILE* stream, const AlignmentView& view, const PrintOptions& options) {
  std::fputs("\n", stream);
  std::fputs("Multiple Alignment\n", stream);
  std::fputs("******************\n", stream);
  if (options.molvaneLayout)
    write_molvane_layout(stream, view);
  else
    write_blocks_layout(stream, view, options);
  std::fflush(stream);
}
