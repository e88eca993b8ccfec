// Sections: print options, label rows, pair and multiple-alignment views,
// default ids and print positions; then their private helpers.
#include "report/alignment_views.hpp"

#include <algorithm>
#include <array>

#include "shell/errors.hpp"
#include "shell/strutil.hpp"

namespace {

const char* const kProgramCheck = "Program check, see programmer.";

const SeqRecord& seq_at(std::span<const SeqRecord> seqs, int seqIndex, const char* module) {
  if (seqIndex < 0 || seqIndex >= static_cast<int>(seqs.size())) raise_failure(module, "%s", kProgramCheck);
  return seqs[static_cast<std::size_t>(seqIndex)];
}

ViewRow label_row(std::span<const SeqRecord> seqs, int seqIndex, const char* module) {
  const SeqRecord& record = seq_at(seqs, seqIndex, module);
  ViewRow row;
  row.seqIndex = seqIndex;
  row.id = record.acc.value_or("");
  row.title = record.title.value_or("");
  row.header = record.header ? *record.header : row.id + (row.title.empty() ? "" : " " + row.title);
  row.name = row.header.substr(0, row.header.find_first_of(" \t"));
  row.hasStructure = record.hasSRes == 1;
  row.hasGroups = record.hasURes == 1;
  row.resNums = record.resNums;
  return row;
}

ViewRow aligned_row(std::span<const SeqRecord> seqs, const AlignedSeq& member, int width, const char* module) {
  ViewRow row = label_row(seqs, member.seqIndex, module);
  row.residues = fit_text(member.aRes, width, ' ', module);
  row.structure = fit_text(member.aSRes, width, ' ', module);
  row.groups = fit_text(member.aURes, width, ' ', module);
  return row;
}

int listed_seqs(std::span<const SeqRecord> seqs, std::span<const int> alignOrder) {
  return static_cast<int>(std::min(seqs.size(), alignOrder.size()));
}

int order_entry(std::span<const int> alignOrder, int k) {
  if (k < 0 || k >= static_cast<int>(alignOrder.size())) raise_failure("get_malign_index", "%s", kProgramCheck);
  return alignOrder[static_cast<std::size_t>(k)];
}

int members_of(const AlignRecord& malign) {
  return std::clamp(malign.numSeqs, 0, static_cast<int>(malign.seqs.size()));
}

bool is_upper_letter(char ch) { return ch >= 'A' && ch <= 'Z'; }

// Ties go to the later letter; an all-blank column yields 'Z' with count 0.
char consensus_letter(const std::vector<ViewRow>& rows, int column, double threshold) {
  std::array<int, 26> counts{};
  for (const ViewRow& row : rows) {
    const char ch = row.residues[static_cast<std::size_t>(column)];
    if (is_upper_letter(ch)) ++counts[static_cast<std::size_t>(ch - 'A')];
  }
  int best = 0;
  int bestCount = 0;
  for (int letter = 0; letter < 26; ++letter) {
    if (counts[static_cast<std::size_t>(letter)] >= bestCount) {
      best = letter;
      bestCount = counts[static_cast<std::size_t>(letter)];
    }
  }
  return static_cast<double>(bestCount) >= threshold ? static_cast<char>('A' + best) : '-';
}

std::string consensus_of(const std::vector<ViewRow>& rows, int width, double threshold) {
  std::string consensus(static_cast<std::size_t>(std::max(width, 0)), '-');
  for (int c = 0; c < width; ++c) consensus[static_cast<std::size_t>(c)] = consensus_letter(rows, c, threshold);
  return consensus;
}

}  // namespace

PrintOptions run_print_options(const RunSettings& settings, const ScoreTable& residueTable) {
  PrintOptions options;
  options.resLineLen = settings.resLineLen;
  options.molvaneLayout = settings.printFormat == 1;
  options.residueTable = &residueTable;
  options.nearMatchScore = settings.nearMatchScore;
  options.scoreFile = settings.wtMatFname;
  options.gapPen = settings.gapPen;
  options.gapSizePen = settings.gapSizePen;
  options.midStructPen = settings.midStructPen;
  options.endStructPen = settings.endStructPen;
  options.blankMatch = settings.blankMatch;
  options.structBias = settings.structBias;
  options.incGapPen = settings.incGapPen;
  options.consensusPercent = settings.consensusPercent;
  options.printPctHom = settings.printPctHomFlag != 0;
  // Sorted printing means alignment order, the inverse of the flag.
  options.printSorted = settings.printOrderFlag == 0;
  options.printPairs = settings.printPairsFlag != 0;
  return options;
}

std::vector<ViewRow> print_order_rows(std::span<const SeqRecord> seqs, std::span<const int> alignOrder, int byInput) {
  std::vector<ViewRow> rows;
  const int n = listed_seqs(seqs, alignOrder);
  for (int p = 0; p < n; ++p) {
    const int k = get_malign_index(alignOrder, p, byInput);
    rows.push_back(label_row(seqs, order_entry(alignOrder, k), "print_sequences_section"));
  }
  return rows;
}

std::vector<ViewRow> align_order_rows(std::span<const SeqRecord> seqs, std::span<const int> alignOrder) {
  std::vector<ViewRow> rows;
  const int n = listed_seqs(seqs, alignOrder);
  for (int i = 0; i < n; ++i) {
    const int s = alignOrder[static_cast<std::size_t>(i)];
    if (s < 0 || s >= kMaxSeqs) raise_failure("print_pct_hom_section", "%s", kProgramCheck);
    rows.push_back(label_row(seqs, s, "print_pct_hom_section"));
  }
  return rows;
}

AlignmentView pair_view(std::span<const SeqRecord> seqs, const AlignRecord& pair) {
  if (pair.seqs.size() < 2) raise_failure("print_pairwise_section", "%s", kProgramCheck);
  AlignmentView view;
  view.width = std::max(pair.alignLen, 0);
  view.pctHomol = pair.pctHomol;
  view.alignScore = pair.alignScore;
  for (int k = 0; k < 2; ++k)
    view.rows.push_back(
        aligned_row(seqs, pair.seqs[static_cast<std::size_t>(k)], view.width, "print_pairwise_section"));
  return view;
}

AlignmentView malign_view(std::span<const SeqRecord> seqs, const AlignRecord& malign, std::span<const int> alignOrder,
                          int byInput, int consensusPercent) {
  AlignmentView view;
  view.width = std::max(malign.alignLen, 0);
  view.overlapStart = malign.overlapStart;
  view.overlapEnd = malign.overlapEnd;
  view.pctHomol = malign.pctHomol;
  view.alignScore = malign.alignScore;
  const int members = members_of(malign);
  for (int p = 0; p < members; ++p) {
    const int k = get_malign_index(alignOrder, p, byInput);
    if (k < 0 || k >= members) raise_failure("get_malign_index", "%s", kProgramCheck);
    view.rows.push_back(aligned_row(seqs, malign.seqs[static_cast<std::size_t>(k)], view.width, "print_mult_align"));
  }
  view.consensus = consensus_of(view.rows, view.width, malign.numSeqs * consensusPercent * 0.01);
  return view;
}

int get_malign_index(std::span<const int> alignOrder, int index, int byInput) {
  if (byInput == 0) return index;
  const auto at = std::find(alignOrder.begin(), alignOrder.end(), index);
  if (at == alignOrder.end()) raise_failure("get_malign_index", "%s", kProgramCheck);
  return static_cast<int>(at - alignOrder.begin());
}
