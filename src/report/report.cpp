#include "report/report.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <ctime>
#include <new>
#include <vector>

#include "matrix/weight_matrix.hpp"
#include "shell/errors.hpp"
#include "shell/run_params.hpp"
#include "shell/version.hpp"

namespace {

const char* const kProgramCheck = "Program check, see programmer.";
constexpr int kIdWidth = 12;
constexpr int kBigIdFrom = 100;  // from here on the default id drops its underscore

// An absent text is shown as the empty text.
const char* text_or_empty(const std::optional<std::string>& text) { return text ? text->c_str() : ""; }

const SeqRecord& seq_at(int seqIndex, const char* module) {
  if (seqIndex < 0 || seqIndex >= static_cast<int>(mySeq.size())) fatal_err(module, "%s", kProgramCheck);
  return mySeq[static_cast<std::size_t>(seqIndex)];
}

// The aligned strings are read by column up to alignLen; a short one is
// shown with blanks rather than read past its end.
std::string columns_of(const std::string& text, int len) {
  std::string shown = text;
  if (len > 0 && static_cast<int>(shown.size()) < len) shown.resize(static_cast<std::size_t>(len), ' ');
  return shown;
}

void write_blanks(std::FILE* stream, int count) {
  for (int i = 0; i < count; ++i) std::fputc(' ', stream);
}

void write_line_label(std::FILE* stream, const char* label) {
  std::fputc(' ', stream);
  print_seq_id(stream, label);
  std::fputs(": ", stream);
}

bool is_upper_letter(char ch) { return ch >= 'A' && ch <= 'Z'; }

int residue_number(const SeqRecord& record, int count) {
  if (count >= 0 && count < static_cast<int>(record.resNums.size()))
    return record.resNums[static_cast<std::size_t>(count)];
  return count;
}

int members_of(const AlignRecord& malign) {
  return std::clamp(malign.numSeqs, 0, static_cast<int>(malign.seqs.size()));
}

// The member printed at print position p, or a program check when the
// order does not name one.
std::size_t member_index(const AlignRecord& malign, std::span<const int> alignOrder, int p) {
  const int k = get_malign_index(alignOrder, p, printOrderFlag);
  if (k < 0 || k >= members_of(malign)) fatal_err("get_malign_index", "%s", kProgramCheck);
  return static_cast<std::size_t>(k);
}

int order_entry(std::span<const int> alignOrder, int k) {
  if (k < 0 || k >= static_cast<int>(alignOrder.size())) fatal_err("get_malign_index", "%s", kProgramCheck);
  return alignOrder[static_cast<std::size_t>(k)];
}

int listed_seqs(std::span<const int> alignOrder) { return std::min(multAlignNum, static_cast<int>(alignOrder.size())); }

const char* true_false(bool flag) { return flag ? "TRUE " : "FALSE"; }

char match_mark(char x, char y) {
  if (!is_upper_letter(x) || !is_upper_letter(y)) return ' ';
  if (x == y) return '|';
  return wtMatrix[static_cast<std::size_t>((x - 'A') * kTableDim + (y - 'A'))] >= nearMatchScore ? '*' : ' ';
}

void print_match_line(std::FILE* stream, const std::string& first, const std::string& second, int start, int len) {
  std::fputs("    Match: ", stream);
  for (int c = start; c < start + len; ++c)
    std::fputc(match_mark(first[static_cast<std::size_t>(c)], second[static_cast<std::size_t>(c)]), stream);
  std::fputs("\n", stream);
  std::fflush(stream);
}

void print_pair_head(std::FILE* stream, const AlignRecord& pair) {
  for (int k = 1; k <= 2; ++k) {
    const SeqRecord& record = seq_at(pair.seqs[static_cast<std::size_t>(k - 1)].seqIndex, "print_pairwise_section");
    std::fprintf(stream, " Sequence %d ", k);
    std::fprintf(stream, "ID=%s  ", text_or_empty(record.acc));
    std::fprintf(stream, "%s\n", text_or_empty(record.title));
  }
  std::fprintf(stream, " Percent Sequence Homology: %6.2f\n", pair.pctHomol);
  std::fprintf(stream, " Alignment Score..........: %6.2f\n", pair.alignScore);
}

void print_pair_blocks(std::FILE* stream, const AlignRecord& pair) {
  const AlignedSeq& one = pair.seqs[0];
  const AlignedSeq& two = pair.seqs[1];
  const bool oneStruct = seq_at(one.seqIndex, "print_pairwise_section").hasSRes == 1;
  const bool twoStruct = seq_at(two.seqIndex, "print_pairwise_section").hasSRes == 1;
  const std::string res1 = columns_of(one.aRes, pair.alignLen);
  const std::string res2 = columns_of(two.aRes, pair.alignLen);
  const std::string struct1 = oneStruct ? columns_of(one.aSRes, pair.alignLen) : std::string();
  const std::string struct2 = twoStruct ? columns_of(two.aSRes, pair.alignLen) : std::string();
  int count1 = 0;
  int count2 = 0;
  int remaining = pair.alignLen;
  if (resLineLen < 1) return;  // no block could ever shorten the rest
  for (int start = 0; remaining > 0; start += resLineLen) {
    const int len = std::min(remaining, resLineLen);
    remaining -= len;
    std::fputs("\n", stream);
    print_res_line(stream, one.seqIndex, res1.c_str(), start, len, &count1);
    if (oneStruct) print_struct_line(stream, struct1.c_str(), start, len);
    print_match_line(stream, res1, res2, start, len);
    print_res_line(stream, two.seqIndex, res2.c_str(), start, len, &count2);
    if (twoStruct) print_struct_line(stream, struct2.c_str(), start, len);
  }
}

// Ties go to the later letter; an all-blank column yields 'Z' with count 0.
char consensus_letter(const std::vector<std::string>& residues, int column, double threshold) {
  std::array<int, 26> counts{};
  for (const std::string& res : residues) {
    const char ch = res[static_cast<std::size_t>(column)];
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

void print_consensus_line(std::FILE* stream, const std::vector<std::string>& residues, int start, int len,
                          double threshold) {
  write_line_label(stream, "Summary");
  for (int c = start; c < start + len; ++c) std::fputc(consensus_letter(residues, c, threshold), stream);
  std::fputs("\n", stream);
  std::fflush(stream);
}

void print_mult_blocks(std::FILE* stream, const AlignRecord& malign, std::span<const int> alignOrder) {
  const int numSeqs = members_of(malign);
  const double threshold = malign.numSeqs * consensusPercent * 0.01;
  std::vector<std::string> residues;
  std::vector<std::string> structures;
  for (int m = 0; m < numSeqs; ++m) {
    const AlignedSeq& member = malign.seqs[static_cast<std::size_t>(m)];
    residues.push_back(columns_of(member.aRes, malign.alignLen));
    structures.push_back(columns_of(member.aSRes, malign.alignLen));
  }
  std::vector<int> counts(static_cast<std::size_t>(numSeqs), 0);
  int remaining = malign.alignLen;
  if (remaining < 1 || resLineLen < 1) return;
  for (int start = 0; remaining > 0; start += resLineLen) {
    const int len = std::min(remaining, resLineLen);
    remaining -= len;
    std::fputs("\n", stream);
    for (int p = 0; p < numSeqs; ++p) {
      const std::size_t k = member_index(malign, alignOrder, p);
      const int seqIndex = malign.seqs[k].seqIndex;
      print_res_line(stream, seqIndex, residues[k].c_str(), start, len, &counts[k]);
      if (seq_at(seqIndex, "print_mult_align").hasSRes == 1)
        print_struct_line(stream, structures[k].c_str(), start, len);
    }
    print_consensus_line(stream, residues, start, len, threshold);
  }
}

std::string copy_text(const std::string& text, const char* module) {
  try {
    return text;
  } catch (const std::bad_alloc&) {
    out_of_memory(module);
  }
}

// Cut (or filled with blanks) to exactly len characters.
std::string aligned_copy(const std::string& text, int len, const char* module) {
  std::string copy = copy_text(text, module);
  copy.resize(static_cast<std::size_t>(std::max(len, 0)), ' ');
  return copy;
}

void print_mult_molvane(std::FILE* stream, const AlignRecord& malign, std::span<const int> alignOrder) {
  const int numSeqs = members_of(malign);
  for (int p = 0; p < numSeqs; ++p) {
    const AlignedSeq& member = malign.seqs[member_index(malign, alignOrder, p)];
    const SeqRecord& source = seq_at(member.seqIndex, "print_mult_align");
    SeqRecord record;
    record.title = copy_text(source.title.value_or(""), "print_sequence");
    record.acc = copy_text(source.acc.value_or(""), "print_sequence");
    record.pRes = aligned_copy(member.aRes, malign.alignLen, "print_sequence");
    record.sRes = aligned_copy(member.aSRes, malign.alignLen, "print_sequence");
    record.uRes = aligned_copy(member.aURes, malign.alignLen, "print_sequence");
    record.numRes = malign.alignLen;
    print_seq_lumark(stream, record);
  }
}

}  // namespace

void print_seq_id(std::FILE* stream, const char* id) {
  if (id == nullptr) id = "";
  write_blanks(stream, kIdWidth - static_cast<int>(std::strlen(id)));
  std::fputs(id, stream);
}

void print_divide(std::FILE* stream, char ch) {
  std::fputs("\n", stream);
  for (int i = 0; i < resLineLen + 30; ++i) std::fputc(ch, stream);
  std::fputs("\n\n", stream);
}

void print_res_line(std::FILE* stream, int seqIndex, const char* alignedText, int start, int len, int* count) {
  const SeqRecord& record = seq_at(seqIndex, "print_res_line");
  write_line_label(stream, text_or_empty(record.acc));
  // An empty block ends the line here, without even its newline.
  if (len <= 0) return;
  for (int i = start; i < start + len; ++i) {
    const char ch = alignedText != nullptr ? alignedText[i] : ' ';
    std::fputc(ch, stream);
    if (ch != ' ') ++*count;
  }
  // Padding keeps the residue numbers of a short last block in their column.
  write_blanks(stream, resLineLen - len);
  std::fprintf(stream, "%7d\n", residue_number(record, *count));
  std::fflush(stream);
}

void print_struct_line(std::FILE* stream, const char* structText, int start, int len) {
  write_line_label(stream, "Struct");
  if (len <= 0) return;
  // Lower case sets structure lines apart from the residue lines.
  for (int i = start; i < start + len; ++i) {
    const char ch = structText != nullptr ? structText[i] : ' ';
    std::fputc(is_upper_letter(ch) ? ch - 'A' + 'a' : ch, stream);
  }
  std::fputs("\n", stream);
  std::fflush(stream);
}

void print_seq_lumark(std::FILE* stream, const SeqRecord& record) {
  std::fputs("PSEQ\n", stream);
  if (record.title) std::fprintf(stream, "n%s\n", record.title->c_str());
  if (record.acc) std::fprintf(stream, "A%s\n", record.acc->c_str());
  std::fprintf(stream, "r%s\n", record.pRes.c_str());
  if (record.sRes) std::fprintf(stream, "S%s\n", record.sRes->c_str());
  if (record.uRes) std::fprintf(stream, "G%s\n", record.uRes->c_str());
  std::fputs("\n", stream);
}

void set_seq_id_str(std::span<const int> alignOrder) {
  const int n = std::min({multAlignNum, static_cast<int>(alignOrder.size()), static_cast<int>(mySeq.size())});
  for (int i = 0; i < n; ++i) {
    SeqRecord& record = mySeq[static_cast<std::size_t>(i)];
    if (record.acc) continue;
    // The number is that of the sequence at position i of the order, not i.
    const int number = alignOrder[static_cast<std::size_t>(i)] + 1;
    try {
      record.acc = format_text(number < kBigIdFrom ? "Seq_%d" : "Seq%d", number);
    } catch (const std::bad_alloc&) {
      out_of_memory("set_seq_id_str:acc");
    }
  }
}

std::string get_date() {
  const std::time_t now = std::time(nullptr);
  const std::tm* local = std::localtime(&now);
  if (local == nullptr) return "\n";
  return std::asctime(local);
}

int get_malign_index(std::span<const int> alignOrder, int index, int byInput) {
  if (byInput == 0) return index;
  const auto at = std::find(alignOrder.begin(), alignOrder.end(), index);
  if (at == alignOrder.end()) fatal_err("get_malign_index", "%s", kProgramCheck);
  return static_cast<int>(at - alignOrder.begin());
}

void print_report_header(std::FILE* stream) {
  print_divide(stream, '-');
  std::fprintf(stream, "   Program.......: ravlin (version %s)\n", kVersion);
  std::fputs("   Description...: multiple sequence alignment program\n", stream);
  std::fprintf(stream, "   Date..........: %s", get_date().c_str());
  std::fputs("\n", stream);
  std::fprintf(stream, "   P  Scoring Mat: %s\n", wtMatFname.c_str());
  std::fprintf(stream, "   Gap Penalty...: %-3d", gapPen);
  std::fprintf(stream, "  Structure Bias: %-3d", structBias);
  std::fprintf(stream, "  Line Length...: %-3d\n", resLineLen);
  std::fprintf(stream, "   Gap Size Pen..: %-3d", gapSizePen);
  std::fprintf(stream, "  IncGap Percent: %-3d", incGapPen);
  std::fprintf(stream, "  Print Pct Hom.: %s\n", true_false(printPctHomFlag != 0));
  std::fprintf(stream, "   Mid Struct Pen: %-3d", midStructPen);
  std::fprintf(stream, "  NearMatchScore: %-3d", nearMatchScore);
  // Sorted printing means alignment order, the inverse of the flag.
  std::fprintf(stream, "  Print Sorted..: %s\n", true_false(printOrderFlag == 0));
  std::fprintf(stream, "   End Struct Pen: %-3d", endStructPen);
  std::fprintf(stream, "  BlankMatchScor: %-3d", blankMatch);
  std::fprintf(stream, "  Print Pairwise: %s\n", true_false(printPairsFlag != 0));
  std::fprintf(stream, "   Consensus %%...: %-3d\n", consensusPercent);
  std::fputs("\n", stream);
  print_divide(stream, '-');
  std::fflush(stream);
}

void print_pairwise_section(std::FILE* stream, std::span<const AlignRecord> pairs) {
  std::fputs("\n", stream);
  std::fputs("Pairwise Alignments\n", stream);
  std::fputs("*******************\n\n", stream);
  for (const AlignRecord& pair : pairs) {
    if (pair.seqs.size() < 2) fatal_err("print_pairwise_section", "%s", kProgramCheck);
    print_pair_head(stream, pair);
    print_pair_blocks(stream, pair);
    print_divide(stream, '-');
    std::fflush(stream);
  }
  std::fflush(stream);
}

void print_sequences_section(std::FILE* stream, std::span<const int> alignOrder) {
  std::fputs("\n", stream);
  std::fputs("Sequences\n", stream);
  std::fputs("*********\n\n", stream);
  std::fputs("   Num   Acc#       Sequence Title\n", stream);
  const int n = listed_seqs(alignOrder);
  for (int p = 0; p < n; ++p) {
    const int k = get_malign_index(alignOrder, p, printOrderFlag);
    const SeqRecord& record = seq_at(order_entry(alignOrder, k), "print_sequences_section");
    const char* acc = text_or_empty(record.acc);
    std::fprintf(stream, "   %3d   ", p + 1);
    std::fprintf(stream, "%s   ", acc);
    write_blanks(stream, kIdWidth - static_cast<int>(std::strlen(acc)));
    std::fprintf(stream, "%s\n", text_or_empty(record.title));
  }
  std::fputs("\n", stream);
  std::fflush(stream);
}

void print_pct_hom_section(std::FILE* stream, std::span<const int> alignOrder, const PctHomTable& pctHom) {
  std::fputs("\n", stream);
  std::fputs("Pairwise Percent Sequence Homology\n", stream);
  std::fputs("**********************************\n\n", stream);
  // Always in alignment order, whatever the print order says.
  const int n = listed_seqs(alignOrder);
  std::vector<int> seqs;
  for (int i = 0; i < n; ++i) {
    const int s = alignOrder[static_cast<std::size_t>(i)];
    if (s < 0 || s >= kMaxSeqs) fatal_err("print_pct_hom_section", "%s", kProgramCheck);
    seqs.push_back(s);
  }
  write_blanks(stream, 13);
  for (int s : seqs) {
    std::fputs(" ", stream);
    print_seq_id(stream, text_or_empty(seq_at(s, "print_pct_hom_section").acc));
  }
  std::fputs("\n", stream);
  for (int i = 0; i < n; ++i) {
    const auto si = static_cast<std::size_t>(seqs[static_cast<std::size_t>(i)]);
    std::fputs(" ", stream);
    print_seq_id(stream, text_or_empty(mySeq[si].acc));
    for (int j = 0; j < n; ++j) {
      const auto sj = static_cast<std::size_t>(seqs[static_cast<std::size_t>(j)]);
      write_blanks(stream, 6);
      std::fprintf(stream, " %6.2f", i == j ? 100.0 : pctHom[si][sj]);
    }
    std::fputs("\n", stream);
  }
  std::fputs("\n", stream);
  std::fflush(stream);
}

void print_statistics(std::FILE* stream, const AlignRecord& malign) {
  std::fputs("\n", stream);
  std::fputs("Statistics\n", stream);
  std::fputs("**********\n\n", stream);
  std::fprintf(stream, "   Total length for the multiple alignment: %d\n", malign.alignLen);
  // A single shared column does not count as an overlap region.
  if (malign.overlapEnd > malign.overlapStart)
    std::fprintf(stream, "   Region where sequences overlap: %d - %d (length = %d)", malign.overlapStart,
                 malign.overlapEnd, malign.overlapEnd - malign.overlapStart + 1);
  else
    std::fputs("   No Region where all sequences overlap.", stream);
  std::fputs("\n", stream);
  std::fprintf(stream, "   Percent Sequence Homology in overlap region: %-8.2f\n", malign.pctHomol);
  std::fputs("\n", stream);
  std::fflush(stream);
}

void print_mult_align(std::FILE* stream, const AlignRecord& malign, std::span<const int> alignOrder) {
  std::fputs("\n", stream);
  std::fputs("Multiple Alignment\n", stream);
  std::fputs("******************\n", stream);
  if (printFormat == 1)
    print_mult_molvane(stream, malign, alignOrder);
  else
    print_mult_blocks(stream, malign, alignOrder);
  std::fflush(stream);
}
