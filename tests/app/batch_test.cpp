// End-to-end runs of ravlin-batch on tiny inputs whose alignments were
// worked out by hand.
//
// The weight file scores 5 for a letter against itself, 2 for D against E
// (a near match, NEAR_MATCH 2) and 0 otherwise; gaps cost 3 + 1 a position;
// blanks score 0. The three sequences differ by one deletion and one shift:
//   SEQA ACDEFGHIKLMN (structure CCHHHHHHCCCC)
//   SEQB ACDEF HIKLMN (no G)
//   SEQC  CDEFGHIKLMNP (no leading A, a trailing P; numbered 201-212)
// Pairs: (C,A) 11 matches, 100.00, score 110.00 with A's structure bonus;
// (B,A) 55 of 60 = 91.67, score 101.67; (C,B) 50 of 55 = 90.91. Sorted:
// (C,A), (B,A), (C,B). The multiple alignment is always
//   A "ACDEFGHIKLMN ", C " CDEFGHIKLMNP", B "ACDEF HIKLMN "
// whatever the order: overlap columns 2-12, homology 155 of 165 = 93.94.
#include <string>
#include <utility>
#include <vector>

#include "support/test_support.hpp"

namespace {

using testsupport::error_frame;
using testsupport::mask_date;
using testsupport::RunResult;
using testsupport::shell_quote;
using testsupport::TempDir;

const char* const kWeights =
    "Tiny weights for hand-checked runs\n"
    "KEY:GAP_PEN 3\n"
    "KEY:GAP_PEN_SIZE 1\n"
    "KEY:MID_GAP_PEN 0\n"
    "KEY:END_GAP_PEN 0\n"
    "KEY:NEAR_MATCH 2\n"
    "KEY:BLANK_MATCH 0\n"
    "KEY:WT_PMAT 13\n"
    "  A C D E F G H I K L M N P\n"
    "A 5\n"
    "C 0 5\n"
    "D 0 0 5\n"
    "E 0 0 2 5\n"
    "F 0 0 0 0 5\n"
    "G 0 0 0 0 0 5\n"
    "H 0 0 0 0 0 0 5\n"
    "I 0 0 0 0 0 0 0 5\n"
    "K 0 0 0 0 0 0 0 0 5\n"
    "L 0 0 0 0 0 0 0 0 0 5\n"
    "M 0 0 0 0 0 0 0 0 0 0 5\n"
    "N 0 0 0 0 0 0 0 0 0 0 0 5\n"
    "P 0 0 0 0 0 0 0 0 0 0 0 0 5\n"
    "\n"
    "KEY:WT_SMAT 2\n"
    "  H C\n"
    "H 2\n"
    "C 0 2\n"
    "\n";

const char* const kSeqsText =
    ">SEQA alpha protein\n"
    "ACDEFGHIKLMN\n"
    "CCHHHHHHCCCC\n"
    "\n"
    ">SEQB beta protein\n"
    "ACDEFHIKLMN\n"
    "\n"
    ">SEQC gamma protein [201-212]\n"
    "CDEFGHIKLMNP\n";

using Keys = std::vector<std::pair<std::string, std::string>>;

// Computed order, every print flag on, text blocks of 10 columns.
Keys full_keys() {
  return {{"RAVLIN:SCOR_MATRIX", "tiny.wts"}, {"RAVLIN:STRUCT_BIAS", "10"},  {"RAVLIN:INC_GAP_PEN", "0"},
          {"RAVLIN:PRINT_PCT_HOM", "1"},      {"RAVLIN:PRINT_ORDER", "0"},   {"RAVLIN:CONSENSUS_PCT", "50"},
          {"RAVLIN:ASCII_FLAG", "1"},         {"RAVLIN:RES_LINE_LEN", "10"}, {"RAVLIN:PRINT_FORMAT", "0"},
          {"RAVLIN:PRINT_PAIRWISE", "1"},     {"RAVLIN:DATA_FORMAT", "5"},   {"RAVLIN:DATA_FILE", "seqs.txt"},
          {"RAVLIN:SEQ_SELECT", "4"}};
}

Keys with(Keys keys, const std::string& key, const std::string& value) {
  for (auto& entry : keys)
    if (entry.first == key) {
      entry.second = value;
      return keys;
    }
  keys.emplace_back(key, value);
  return keys;
}

Keys without(Keys keys, const std::string& key) {
  std::erase_if(keys, [&](const auto& entry) { return entry.first == key; });
  return keys;
}

std::string parms_text(const Keys& keys) {
  std::string text = "Parameters of a hand-checked run\n";
  for (const auto& [key, value] : keys) text += key + " " + value + "\n";
  return text;
}

// Layout of the report's lines for 10-column blocks.
std::string divider(int lineLen) { return "\n" + std::string(static_cast<std::size_t>(lineLen) + 30, '-') + "\n\n"; }

std::string padded_left(const std::string& text, std::size_t width) {
  return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::string res_line(const std::string& id, const std::string& residues, int number) {
  return " " + padded_left(id, 12) + ": " + residues + std::string(10 - residues.size(), ' ') +
         padded_left(std::to_string(number), 7) + "\n";
}

std::string struct_line(const std::string& codes) { return "       Struct: " + codes + "\n"; }
std::string match_line(const std::string& marks) { return "    Match: " + marks + "\n"; }
std::string summary_line(const std::string& letters) { return "      Summary: " + letters + "\n"; }

std::string seq_row(int num, const std::string& acc, const std::string& title) {
  return "   " + padded_left(std::to_string(num), 3) + "   " + acc + "   " + std::string(12 - acc.size(), ' ') + title +
         "\n";
}

std::string statistics_abc() {
  return "\nStatistics\n**********\n\n"
         "   Total length for the multiple alignment: 13\n"
         "   Region where sequences overlap: 2 - 12 (length = 11)\n"
         "   Percent Sequence Homology in overlap region: 93.94   \n"
         "\n";
}

std::string expected_computed_order_report() {
  std::string r = divider(10);
  r += "   Program.......: ravlin (version 6.0)\n";
  r += "   Description...: multiple sequence alignment program\n";
  r += "   Date..........: <date>\n\n";
  r += "   P  Scoring Mat: tiny.wts\n";
  r += "   Gap Penalty...: 3    Structure Bias: 10   Line Length...: 10 \n";
  r += "   Gap Size Pen..: 1    IncGap Percent: 0    Print Pct Hom.: TRUE \n";
  r += "   Mid Struct Pen: 0    NearMatchScore: 2    Print Sorted..: TRUE \n";
  r += "   End Struct Pen: 0    BlankMatchScor: 0    Print Pairwise: TRUE \n";
  r += "   Consensus %...: 50 \n";
  r += "\n" + divider(10);

  r += "\nPairwise Alignments\n*******************\n\n";
  // (C,A): C shifted by one against A, A's first residue and C's P at the ends.
  r += " Sequence 1 ID=SEQC  gamma protein [201-212]\n";
  r += " Sequence 2 ID=SEQA  alpha protein\n";
  r += " Percent Sequence Homology: 100.00\n";
  r += " Alignment Score..........: 110.00\n";
  r += "\n" + res_line("SEQC", " CDEFGHIKL", 209) + match_line(" |||||||||") + res_line("SEQA", "ACDEFGHIKL", 10) +
       struct_line("cchhhhhhcc");
  r += "\n" + res_line("SEQC", "MNP", 212) + match_line("|| ") + res_line("SEQA", "MN ", 12) + struct_line("cc ");
  r += divider(10);
  // (B,A): the gap in B faces G.
  r += " Sequence 1 ID=SEQB  beta protein\n";
  r += " Sequence 2 ID=SEQA  alpha protein\n";
  r += " Percent Sequence Homology:  91.67\n";
  r += " Alignment Score..........: 101.67\n";
  r += "\n" + res_line("SEQB", "ACDEF HIKL", 9) + match_line("||||| ||||") + res_line("SEQA", "ACDEFGHIKL", 10) +
       struct_line("cchhhhhhcc");
  r += "\n" + res_line("SEQB", "MN", 11) + match_line("||") + res_line("SEQA", "MN", 12) + struct_line("cc");
  r += divider(10);
  // (C,B): both the shift and the gap.
  r += " Sequence 1 ID=SEQC  gamma protein [201-212]\n";
  r += " Sequence 2 ID=SEQB  beta protein\n";
  r += " Percent Sequence Homology:  90.91\n";
  r += " Alignment Score..........:  90.91\n";
  r += "\n" + res_line("SEQC", " CDEFGHIKL", 209) + match_line(" |||| ||||") + res_line("SEQB", "ACDEF HIKL", 9);
  r += "\n" + res_line("SEQC", "MNP", 212) + match_line("|| ") + res_line("SEQB", "MN ", 11);
  r += divider(10);

  // Computed order: the best pair (C,A) with A first for its structure, then B.
  r += "\nSequences\n*********\n\n   Num   Acc#       Sequence Title\n";
  r += seq_row(1, "SEQA", "alpha protein") + seq_row(2, "SEQC", "gamma protein [201-212]") +
       seq_row(3, "SEQB", "beta protein") + "\n";

  r += "\nPairwise Percent Sequence Homology\n**********************************\n\n";
  r += std::string(13, ' ') + "         SEQA         SEQC         SEQB\n";
  r += "         SEQA       100.00       100.00        91.67\n";
  r += "         SEQC       100.00       100.00        90.91\n";
  r += "         SEQB        91.67        90.91       100.00\n";
  r += "\n";

  r += statistics_abc();
  r += "\nMultiple Alignment\n******************\n";
  r += "\n" + res_line("SEQA", "ACDEFGHIKL", 10) + struct_line("cchhhhhhcc") + res_line("SEQC", " CDEFGHIKL", 209) +
       res_line("SEQB", "ACDEF HIKL", 9) + summary_line("ACDEFGHIKL");
  r += "\n" + res_line("SEQA", "MN ", 12) + struct_line("cc ") + res_line("SEQC", "MNP", 212) +
       res_line("SEQB", "MN ", 11) + summary_line("MN-");
  return r;
}

class BatchTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_.write("tiny.wts", kWeights);
    dir_.write("seqs.txt", kSeqsText);
  }

  RunResult run(const Keys& keys, const std::string& report = "report.txt") {
    dir_.write("parms", parms_text(keys));
    return testsupport::run_command(shell_quote(RAVLIN_BATCH_BIN) + " parms " + shell_quote(report), "", dir_.path());
  }

  std::string report() { return mask_date(dir_.read("report.txt")); }

  bool report_exists() { return std::filesystem::exists(dir_.file("report.txt")); }

  TempDir dir_;
};

const std::string kCountLine = "\nNumber of sequences to align: 3";
const std::string kPairsProgress = "\nProcessing pairwise alignments\n...";
const std::string kMultDone = "\nDoing Multiple Alignment\nDone\n";

TEST_F(BatchTest, ComputedOrderWithEveryPrintFlag) {
  const RunResult result = run(full_keys());
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, kCountLine + kPairsProgress + kMultDone);
  EXPECT_EQ(report(), expected_computed_order_report());
}

// Against sequence 2 (SEQB): B first, then its partners by score, A (91.67)
// before C (90.91). The members are printed in input order; a consensus of
// 100 percent leaves the columns where a sequence has a gap unmarked.
TEST_F(BatchTest, AgainstAChosenSequenceInInputPrintOrder) {
  Keys keys = with(full_keys(), "RAVLIN:SEQ_SELECT", "2");
  keys = with(keys, "RAVLIN:PRINT_ORDER", "1");
  keys = with(keys, "RAVLIN:PRINT_PAIRWISE", "0");
  keys = with(keys, "RAVLIN:PRINT_PCT_HOM", "0");
  keys = with(keys, "RAVLIN:CONSENSUS_PCT", "100");
  keys = with(keys, "RAVLIN:INC_GAP_PEN", "50");
  const RunResult result = run(keys);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, kCountLine + kPairsProgress + kMultDone);

  std::string r = divider(10);
  r += "   Program.......: ravlin (version 6.0)\n";
  r += "   Description...: multiple sequence alignment program\n";
  r += "   Date..........: <date>\n\n";
  r += "   P  Scoring Mat: tiny.wts\n";
  r += "   Gap Penalty...: 3    Structure Bias: 10   Line Length...: 10 \n";
  r += "   Gap Size Pen..: 1    IncGap Percent: 50   Print Pct Hom.: FALSE\n";
  r += "   Mid Struct Pen: 0    NearMatchScore: 2    Print Sorted..: FALSE\n";
  r += "   End Struct Pen: 0    BlankMatchScor: 0    Print Pairwise: FALSE\n";
  r += "   Consensus %...: 100\n";
  r += "\n" + divider(10);
  r += "\nSequences\n*********\n\n   Num   Acc#       Sequence Title\n";
  r += seq_row(1, "SEQA", "alpha protein") + seq_row(2, "SEQB", "beta protein") +
       seq_row(3, "SEQC", "gamma protein [201-212]") + "\n";
  r += statistics_abc();
  r += "\nMultiple Alignment\n******************\n";
  r += "\n" + res_line("SEQA", "ACDEFGHIKL", 10) + struct_line("cchhhhhhcc") + res_line("SEQB", "ACDEF HIKL", 9) +
       res_line("SEQC", " CDEFGHIKL", 209) + summary_line("-CDEF-HIKL");
  r += "\n" + res_line("SEQA", "MN ", 12) + struct_line("cc ") + res_line("SEQB", "MN ", 11) +
       res_line("SEQC", "MNP", 212) + summary_line("MN-");
  EXPECT_EQ(report(), r);
}

// SEQ_SELECT 502 with three sequences is input order; with no pairs or
// homology to print, no pair is aligned. Without ASCII_FLAG the three
// printing keys may be missing: Molvane layout, line length 0.
TEST_F(BatchTest, InputOrderWithoutPairsInTheMolvaneLayout) {
  Keys keys = with(full_keys(), "RAVLIN:SEQ_SELECT", "502");
  keys = with(keys, "RAVLIN:PRINT_PCT_HOM", "0");
  keys = with(keys, "RAVLIN:ASCII_FLAG", "0");
  keys = without(keys, "RAVLIN:PRINT_PAIRWISE");
  keys = without(keys, "RAVLIN:PRINT_FORMAT");
  keys = without(keys, "RAVLIN:RES_LINE_LEN");
  const RunResult result = run(keys);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, kCountLine + kMultDone);

  std::string r = divider(0);
  r += "   Program.......: ravlin (version 6.0)\n";
  r += "   Description...: multiple sequence alignment program\n";
  r += "   Date..........: <date>\n\n";
  r += "   P  Scoring Mat: tiny.wts\n";
  r += "   Gap Penalty...: 3    Structure Bias: 10   Line Length...: 0  \n";
  r += "   Gap Size Pen..: 1    IncGap Percent: 0    Print Pct Hom.: FALSE\n";
  r += "   Mid Struct Pen: 0    NearMatchScore: 2    Print Sorted..: TRUE \n";
  r += "   End Struct Pen: 0    BlankMatchScor: 0    Print Pairwise: FALSE\n";
  r += "   Consensus %...: 50 \n";
  r += "\n" + divider(0);
  r += "\nSequences\n*********\n\n   Num   Acc#       Sequence Title\n";
  r += seq_row(1, "SEQA", "alpha protein") + seq_row(2, "SEQB", "beta protein") +
       seq_row(3, "SEQC", "gamma protein [201-212]") + "\n";
  r += statistics_abc();
  r += "\nMultiple Alignment\n******************\n";
  r += "PSEQ\nnalpha protein\nASEQA\nrACDEFGHIKLMN \nSCCHHHHHHCCCC \nG------------ \n\n";
  r += "PSEQ\nnbeta protein\nASEQB\nrACDEF HIKLMN \nSXXXXX XXXXXX \nG----- ------ \n\n";
  r += "PSEQ\nngamma protein [201-212]\nASEQC\nr CDEFGHIKLMNP\nS XXXXXXXXXXXX\nG ------------\n\n";
  EXPECT_EQ(report(), r);
}

// Molvane input without accession lines: the default ids are given after
// the computed order (0, 2, 1) is known, numbered by alignOrder[i] + 1.
TEST_F(BatchTest, MolvaneInputGetsDefaultIdsFromTheOrder) {
  dir_.write("seqs.mol",
             "PSEQ\nnalpha protein\nrACDEFGHIKLMN\nSCCHHHHHHCCCC\n\n"
             "PSEQ\nnbeta protein\nrACDEFHIKLMN\n\n"
             "PSEQ\nngamma protein\nrCDEFGHIKLMNP\n\n");
  Keys keys = with(full_keys(), "RAVLIN:DATA_FORMAT", "3");
  keys = with(keys, "RAVLIN:DATA_FILE", "seqs.mol");
  const RunResult result = run(keys);
  EXPECT_EQ(result.status, 0);
  const std::string text = report();
  EXPECT_THAT(text, ::testing::HasSubstr("   Num   Acc#       Sequence Title\n" + seq_row(1, "Seq_1", "alpha protein") +
                                         seq_row(2, "Seq_2", "gamma protein") + seq_row(3, "Seq_3", "beta protein")));
  EXPECT_THAT(text, ::testing::HasSubstr("\n" + res_line("Seq_1", "ACDEFGHIKL", 10) + struct_line("cchhhhhhcc") +
                                         res_line("Seq_2", " CDEFGHIKL", 9) + res_line("Seq_3", "ACDEF HIKL", 9) +
                                         summary_line("ACDEFGHIKL")));
  EXPECT_THAT(text, ::testing::HasSubstr(" Sequence 1 ID=Seq_2  gamma protein\n Sequence 2 ID=Seq_1  alpha protein\n"));
}

// PIR input (no structure, no groups): ACDEFGHIKL against ACDEFHIKL, 45 of 50.
TEST_F(BatchTest, PirInputRunsThroughTheDriver) {
  dir_.write("seqs.pir",
             "ENTRY           PA1       #type complete\n"
             "TITLE           first pir entry\n"
             "SEQUENCE\n"
             "                5        10\n"
             "      1 A C D E F G H I K L\n"
             "///\n"
             "ENTRY           PA2       #type complete\n"
             "TITLE           second pir entry\n"
             "SEQUENCE\n"
             "                5        10\n"
             "      1 A C D E F H I K L\n"
             "///\n");
  Keys keys = with(full_keys(), "RAVLIN:DATA_FORMAT", "1");
  keys = with(keys, "RAVLIN:DATA_FILE", "seqs.pir");
  keys = with(keys, "RAVLIN:PRINT_FORMAT", "1");
  // SEQ_SELECT 4 is input order for two sequences; the print flags still ask for the pair.
  const RunResult result = run(keys);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "\nNumber of sequences to align: 2\nProcessing pairwise alignments\n." + kMultDone);
  const std::string text = report();
  EXPECT_THAT(text, ::testing::HasSubstr("   Region where sequences overlap: 1 - 10 (length = 10)\n"
                                         "   Percent Sequence Homology in overlap region: 90.00   \n"));
  EXPECT_THAT(text, ::testing::EndsWith("\nMultiple Alignment\n******************\n"
                                        "PSEQ\nnfirst pir entry\nAPA1\nrACDEFGHIKL\nSXXXXXXXXXX\nG----------\n\n"
                                        "PSEQ\nnsecond pir entry\nAPA2\nrACDEF HIKL\nSXXXXX XXXX\nG----- ----\n\n"));
}

// The data formats that end before any alignment: Swiss-Prot is refused,
// and an empty compressed file holds no sequence.
TEST_F(BatchTest, SwissProtAndCompressedFormatsAreReached) {
  dir_.write("empty", "");
  Keys keys = with(full_keys(), "RAVLIN:DATA_FILE", "empty");
  RunResult result = run(with(keys, "RAVLIN:DATA_FORMAT", "2"));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, error_frame(1, "read_seq_sprot", "Not supporting swiss-prot at this time\n"));
  result = run(with(keys, "RAVLIN:DATA_FORMAT", "4"));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "\nNumber of sequences to align: 0" +
                            error_frame(1, "mget_seqs", "Must have 2 or more sequences to align."));
}

std::string missing(const std::string& key) {
  return kCountLine + error_frame(1, "check_ravlin_parms", "Missing Parameter: " + key + "\n");
}

TEST_F(BatchTest, MissingKeysAreNamedInTheFixedOrder) {
  RunResult result = run(without(full_keys(), "RAVLIN:SCOR_MATRIX"));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, missing("RAVLIN:SCOR_MATRIX"));
  EXPECT_FALSE(report_exists());

  result = run(without(without(full_keys(), "RAVLIN:SEQ_SELECT"), "RAVLIN:INC_GAP_PEN"));
  EXPECT_EQ(result.out, missing("RAVLIN:INC_GAP_PEN"));
  result = run(without(full_keys(), "RAVLIN:SEQ_SELECT"));
  EXPECT_EQ(result.out, missing("RAVLIN:SEQ_SELECT"));

  dir_.write("nosize.wts", std::string(kWeights).replace(std::string(kWeights).find("KEY:GAP_PEN_SIZE"), 3, "XYZ"));
  result = run(without(with(full_keys(), "RAVLIN:SCOR_MATRIX", "nosize.wts"), "RAVLIN:CONSENSUS_PCT"));
  EXPECT_EQ(result.out, missing("KEY:GAP_PEN_SIZE"));
}

// PRINT_FORMAT, PRINT_PAIRWISE and RES_LINE_LEN count only when ASCII_FLAG is 1.
TEST_F(BatchTest, AsciiFlagMakesThePrintingKeysRequired) {
  const Keys keys = without(without(full_keys(), "RAVLIN:PRINT_PAIRWISE"), "RAVLIN:PRINT_PCT_HOM");
  EXPECT_EQ(run(keys).out, missing("RAVLIN:PRINT_PAIRWISE"));
  EXPECT_EQ(run(with(keys, "RAVLIN:ASCII_FLAG", "0")).out, missing("RAVLIN:PRINT_PCT_HOM"));
  EXPECT_EQ(run(without(without(full_keys(), "RAVLIN:RES_LINE_LEN"), "RAVLIN:PRINT_FORMAT")).out,
            missing("RAVLIN:PRINT_FORMAT"));
  EXPECT_EQ(run(without(full_keys(), "RAVLIN:RES_LINE_LEN")).out, missing("RAVLIN:RES_LINE_LEN"));
  // Never required itself.
  EXPECT_EQ(run(without(full_keys(), "RAVLIN:ASCII_FLAG")).status, 0);
}

TEST_F(BatchTest, WeightFileFaults) {
  RunResult result = run(with(full_keys(), "RAVLIN:SCOR_MATRIX", "missing.wts"));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out,
            error_frame(1, "read_parm_fname2", "Parmkey = 'RAVLIN:SCOR_MATRIX' Cannot open file: 'missing.wts'.\n"));

  const std::string weights = kWeights;
  dir_.write("nosmat.wts", weights.substr(0, weights.find("KEY:WT_SMAT")));
  result = run(with(full_keys(), "RAVLIN:SCOR_MATRIX", "nosmat.wts"));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, missing("KEY:WT_SMAT"));
}

TEST_F(BatchTest, SequenceFaultsComeFromTheReader) {
  RunResult result = run(without(full_keys(), "RAVLIN:DATA_FORMAT"));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, error_frame(1, "read_seq", "Illegal sequence format: 0\n"));

  result = run(with(full_keys(), "RAVLIN:DATA_FILE", "absent.txt"));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, error_frame(1, "mget_seqs", "Cannot open data file: absent.txt"));
  result = run(without(full_keys(), "RAVLIN:DATA_FILE"));
  EXPECT_EQ(result.out, error_frame(1, "mget_seqs", "Cannot open data file: "));

  dir_.write("one.txt", ">ONLY one sequence\nACDEF\n");
  result = run(with(full_keys(), "RAVLIN:DATA_FILE", "one.txt"));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "\nNumber of sequences to align: 1" +
                            error_frame(1, "mget_seqs", "Must have 2 or more sequences to align."));
}

TEST_F(BatchTest, ValueOutOfBoundsAndUncreatableReport) {
  RunResult result = run(with(full_keys(), "RAVLIN:RES_LINE_LEN", "2"));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out,
            error_frame(1, "read_parm_int", "Parm key = 'RAVLIN:RES_LINE_LEN' Lower bound exceeded: 2 < 3\n"));

  result = run(full_keys(), "nodir/report.txt");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, kCountLine + error_frame(1, "ravlin_main", "Cannot open output file: 'nodir/report.txt'\n"));
}

// 1800 residues A against 1800 D, which score nothing against them: no path
// start, so the alignment would be 3600 columns long.
TEST_F(BatchTest, AlignmentLongerThanTheLimitEndsTheRun) {
  std::string text = ">LONGA\n";
  for (int line = 0; line < 30; ++line) text += std::string(60, 'A') + "\n";
  text += "\n>LONGD\n";
  for (int line = 0; line < 30; ++line) text += std::string(60, 'D') + "\n";
  dir_.write("long.txt", text);
  Keys keys = with(full_keys(), "RAVLIN:DATA_FILE", "long.txt");
  keys = with(keys, "RAVLIN:PRINT_PAIRWISE", "0");
  keys = with(keys, "RAVLIN:PRINT_PCT_HOM", "0");
  // Two sequences: 3 is the computed order, which needs the pairs.
  RunResult result = run(with(keys, "RAVLIN:SEQ_SELECT", "3"));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "\nNumber of sequences to align: 2\nProcessing pairwise alignments\n" +
                            error_frame(1, "find_best_align", "Alignment size exceeded, len = 3500\n"));
  // In input order the pairs are skipped and the multiple alignment hits it.
  result = run(with(keys, "RAVLIN:SEQ_SELECT", "4"));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "\nNumber of sequences to align: 2\nDoing Multiple Alignment" +
                            error_frame(1, "find_best_align", "Alignment size exceeded, len = 3500\n"));
}

TEST_F(BatchTest, WrongArgumentsPrintTheUsage) {
  for (const std::string args : {"", " parms", " parms report extra"}) {
    const RunResult result =
        testsupport::run_command(shell_quote(RAVLIN_BATCH_BIN) + args + " 2> usage.txt", "", dir_.path());
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(dir_.read("usage.txt"), ::testing::StartsWith("usage: ravlin-batch PARMS REPORT\n"));
    EXPECT_THAT(dir_.read("usage.txt"), ::testing::HasSubstr("RAVLIN:SEQ_SELECT"));
  }
}

}  // namespace
