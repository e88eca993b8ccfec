// End-to-end runs of ravlin-batch on tiny inputs whose alignments were
// worked out by hand.
//
// The weight file (golden batch/tiny.wts) scores 5 for a letter against
// itself, 2 for D against E (a near match, NEAR_MATCH 2) and 0 otherwise; gaps
// cost 3 + 1 a position; blanks score 0. The three sequences of batch/seqs.txt
// differ by one deletion and one shift:
//   SEQA ACDEFGHIKLMN (structure CCHHHHHHCCCC)
//   SEQB ACDEF HIKLMN (no G)
//   SEQC  CDEFGHIKLMNP (no leading A, a trailing P; numbered 201-212)
// Pairs: (C,A) 11 matches, 100.00, score 110.00 with A's structure bonus;
// (B,A) 55 of 60 = 91.67, score 101.67; (C,B) 50 of 55 = 90.91. Sorted:
// (C,A), (B,A), (C,B). The multiple alignment is always
//   A "ACDEFGHIKLMN ", C " CDEFGHIKLMNP", B "ACDEF HIKLMN "
// whatever the order: overlap columns 2-12, homology 155 of 165 = 93.94.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "support/test_support.hpp"

namespace {

using namespace std::string_literals;
using ::testing::HasSubstr;
using testsupport::error_frame;
using testsupport::read_golden;
using testsupport::RunResult;
using testsupport::TempDir;

using Keys = std::vector<std::pair<std::string, std::string>>;

// Computed order, every print flag on, text blocks of 10 columns.
const Keys kFullKeys = {{"SCOR_MATRIX", "tiny.wts"}, {"STRUCT_BIAS", "10"},  {"INC_GAP_PEN", "0"},
                        {"PRINT_PCT_HOM", "1"},      {"PRINT_ORDER", "0"},   {"CONSENSUS_PCT", "50"},
                        {"ASCII_FLAG", "1"},         {"RES_LINE_LEN", "10"}, {"PRINT_FORMAT", "0"},
                        {"PRINT_PAIRWISE", "1"},     {"DATA_FORMAT", "5"},   {"DATA_FILE", "seqs.txt"},
                        {"SEQ_SELECT", "4"}};

// The full keys with some values changed; an empty value drops the key.
// Keys are named without their "RAVLIN:" prefix.
std::string parms_text(const Keys& changes) {
  Keys keys = kFullKeys;
  for (const auto& [key, value] : changes) {
    for (auto& entry : keys)
      if (entry.first == key) entry.second = value;
  }
  std::string text = "Parameters of a hand-checked run\n";
  for (const auto& [key, value] : keys)
    if (!value.empty()) text += "RAVLIN:" + key + " " + value + "\n";
  return text;
}

const std::string kCountLine = "\nNumber of sequences to align: 3";
const std::string kPairsProgress = "\nProcessing pairwise alignments\n...";
const std::string kMultDone = "\nDoing Multiple Alignment\nDone\n";
const std::string kTooLong = error_frame(1, "find_best_align", "Alignment size exceeded, len = 3500\n");

class BatchTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_.write("tiny.wts", read_golden("batch/tiny.wts"));
    dir_.write("seqs.txt", read_golden("batch/seqs.txt"));
  }

  RunResult run(const Keys& changes, const std::string& report = "report.txt") {
    dir_.write("parms", parms_text(changes));
    return testsupport::run_program(RAVLIN_BATCH_BIN, "parms " + report, "", dir_.path());
  }

  std::string report() { return testsupport::mask_date(dir_.read("report.txt")); }

  TempDir dir_;
};

// Each ordering choice, both layouts and each print flag, against reports
// checked by hand.
TEST_F(BatchTest, WholeRunsGiveTheHandCheckedReports) {
  const struct {
    const char* golden;
    Keys changes;
    std::string out;
  } cases[] = {
      {"batch/computed_order.txt", {}, kCountLine + kPairsProgress + kMultDone},
      // Against sequence 2 (SEQB): B first, then its partners by score, A
      // (91.67) before C (90.91). The members are printed in input order; a
      // consensus of 100 percent leaves the columns where a sequence has a gap
      // unmarked.
      {"batch/chosen_sequence.txt",
       {{"SEQ_SELECT", "2"},
        {"PRINT_ORDER", "1"},
        {"PRINT_PAIRWISE", "0"},
        {"PRINT_PCT_HOM", "0"},
        {"CONSENSUS_PCT", "100"},
        {"INC_GAP_PEN", "50"}},
       kCountLine + kPairsProgress + kMultDone},
      // SEQ_SELECT 502 with three sequences is input order; with no pairs or
      // homology to print, no pair is aligned. Without ASCII_FLAG the three
      // printing keys may be missing: Molvane layout, line length 0.
      {"batch/molvane_layout.txt",
       {{"SEQ_SELECT", "502"},
        {"PRINT_PCT_HOM", "0"},
        {"ASCII_FLAG", "0"},
        {"PRINT_PAIRWISE", ""},
        {"PRINT_FORMAT", ""},
        {"RES_LINE_LEN", ""}},
       kCountLine + kMultDone},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.golden);
    const RunResult result = run(c.changes);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, c.out);
    EXPECT_EQ(report(), read_golden(c.golden));
  }
  // ASCII_FLAG is never required itself.
  EXPECT_EQ(run({{"ASCII_FLAG", ""}}).status, 0);
}

// Molvane input without accession lines: the default ids are given after
// the computed order (0, 2, 1) is known, numbered by alignOrder[i] + 1.
TEST_F(BatchTest, MolvaneInputGetsDefaultIdsFromTheOrder) {
  dir_.write("seqs.mol",
             "PSEQ\nnalpha protein\nrACDEFGHIKLMN\nSCCHHHHHHCCCC\n\n"
             "PSEQ\nnbeta protein\nrACDEFHIKLMN\n\n"
             "PSEQ\nngamma protein\nrCDEFGHIKLMNP\n\n");
  EXPECT_EQ(run({{"DATA_FORMAT", "3"}, {"DATA_FILE", "seqs.mol"}}).status, 0);
  const std::string text = report();
  EXPECT_THAT(text, HasSubstr("   Num   Acc#       Sequence Title\n"
                              "     1   Seq_1          alpha protein\n"
                              "     2   Seq_2          gamma protein\n"
                              "     3   Seq_3          beta protein\n"));
  EXPECT_THAT(text, HasSubstr(" Sequence 1 ID=Seq_2  gamma protein\n Sequence 2 ID=Seq_1  alpha protein\n"));
}

// PIR input (no structure, no groups): ACDEFGHIKL against ACDEFHIKL, 45 of 50.
// SEQ_SELECT 4 is input order for two sequences; the print flags still ask
// for the pair. The lower-case residue of the third entry ends the reading
// there without a word.
TEST_F(BatchTest, PirInputRunsThroughTheDriver) {
  dir_.write("seqs.pir",
             "\\\\\\ a database header line\n"
             "ENTRY           PA1       #type complete\nTITLE           first pir entry\nSEQUENCE\n"
             "                5        10\n      1 A C D E F G H I K L\n///\n"
             "ENTRY           PA2       #type complete\nTITLE           second pir entry\nSEQUENCE\n"
             "                5        10\n      1 A C D E F H I K L\n///\n"
             "ENTRY           PA3       #type complete\nTITLE           third\nSEQUENCE\n"
             "                5        10\n      1 A C D E F G H i K L\n///\n");
  const RunResult result = run({{"DATA_FORMAT", "1"}, {"DATA_FILE", "seqs.pir"}, {"PRINT_FORMAT", "1"}});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "\nNumber of sequences to align: 2\nProcessing pairwise alignments\n." + kMultDone);
  const std::string text = report();
  EXPECT_THAT(text, HasSubstr("   Region where sequences overlap: 1 - 10 (length = 10)\n"
                              "   Percent Sequence Homology in overlap region: 90.00   \n"));
  EXPECT_THAT(text, ::testing::EndsWith("\nMultiple Alignment\n******************\n"
                                        "PSEQ\nnfirst pir entry\nAPA1\nrACDEFGHIKL\nSXXXXXXXXXX\nG----------\n\n"
                                        "PSEQ\nnsecond pir entry\nAPA2\nrACDEF HIKL\nSXXXXX XXXX\nG----- ----\n\n"));
}

std::string missing(const std::string& key) {
  return kCountLine + error_frame(1, "check_ravlin_parms", "Missing Parameter: " + key + "\n");
}

std::string too_few(int count) {
  return "\nNumber of sequences to align: " + std::to_string(count) +
         error_frame(1, "mget_seqs", "Must have 2 or more sequences to align.");
}

// count residues of one kind, in lines of 60.
std::string lines_of(char residue, int count) {
  std::string text;
  for (; count > 0; count -= 60) text += std::string(static_cast<std::size_t>(std::min(count, 60)), residue) + "\n";
  return text;
}

Keys long_run(const char* select) {
  return {{"DATA_FILE", "long.txt"}, {"PRINT_PAIRWISE", "0"}, {"PRINT_PCT_HOM", "0"}, {"SEQ_SELECT", select}};
}

TEST_F(BatchTest, FatalPathsOfTheDriver) {
  const std::string weights = read_golden("batch/tiny.wts");
  dir_.write("nosize.wts", std::string(weights).replace(weights.find("KEY:GAP_PEN_SIZE"), 3, "XYZ"));
  dir_.write("nosmat.wts", weights.substr(0, weights.find("KEY:WT_SMAT")));
  dir_.write("one.txt", ">ONLY one sequence\nACDEF\n");
  // 1800 residues A against 1800 D, which score nothing against them: no
  // path start, so the alignment would be 3600 columns long.
  dir_.write("long.txt", ">LONGA\n" + lines_of('A', 1800) + "\n>LONGD\n" + lines_of('D', 1800));
  dir_.write("empty", "");
  // Inputs past the reader's limits, and bytes of every value.
  std::string bytes;
  for (int k = 0; k < 512; ++k) bytes.push_back(static_cast<char>(k));
  dir_.write("wide.txt", ">A x\n" + std::string(10000, 'A') + "\n");
  dir_.write("structs.txt", ">A x\n" + lines_of('G', 4000) + std::string(4100, 'H') + "\n");
  dir_.write("anchors.txt", ">A x\n" + lines_of('G', 4000) + lines_of('*', 4001));
  dir_.write("binary", bytes);
  // Two compressed PIR records of "ACD": the newline the reader pushes back
  // makes the read after the last one a failed read, not the end of the file.
  dir_.write("two.pirc",
             "\n\0\0\x03\0\x02\x40\x0C"
             "one~A1~\n\0\0\x03\0\x02\x40\x0C"
             "two~A2~"s);
  const std::string tooMany = "Sequence has > 4000 amino acids";
  const struct {
    Keys changes;
    std::string out;
    std::string report = "report.txt";
    bool aligns = false;  // the report is opened before the alignment starts
  } cases[] = {
      // Missing keys are named in a fixed order, the weight file's own last.
      {{{"SCOR_MATRIX", ""}}, missing("RAVLIN:SCOR_MATRIX")},
      {{{"SEQ_SELECT", ""}, {"INC_GAP_PEN", ""}}, missing("RAVLIN:INC_GAP_PEN")},
      {{{"SEQ_SELECT", ""}}, missing("RAVLIN:SEQ_SELECT")},
      {{{"SCOR_MATRIX", "nosize.wts"}, {"CONSENSUS_PCT", ""}}, missing("KEY:GAP_PEN_SIZE")},
      // PRINT_FORMAT, PRINT_PAIRWISE and RES_LINE_LEN count only when ASCII_FLAG is 1.
      {{{"PRINT_PAIRWISE", ""}, {"PRINT_PCT_HOM", ""}}, missing("RAVLIN:PRINT_PAIRWISE")},
      {{{"PRINT_PAIRWISE", ""}, {"PRINT_PCT_HOM", ""}, {"ASCII_FLAG", "0"}}, missing("RAVLIN:PRINT_PCT_HOM")},
      {{{"RES_LINE_LEN", ""}, {"PRINT_FORMAT", ""}}, missing("RAVLIN:PRINT_FORMAT")},
      {{{"RES_LINE_LEN", ""}}, missing("RAVLIN:RES_LINE_LEN")},
      // The weight file.
      {{{"SCOR_MATRIX", "missing.wts"}},
       error_frame(1, "read_parm_fname2", "Parmkey = 'RAVLIN:SCOR_MATRIX' Cannot open file: 'missing.wts'.\n")},
      {{{"SCOR_MATRIX", "nosmat.wts"}}, missing("KEY:WT_SMAT")},
      // The sequences: Swiss-Prot is refused, an empty compressed file holds none.
      {{{"DATA_FORMAT", ""}}, error_frame(1, "read_seq", "Illegal sequence format: 0\n")},
      {{{"DATA_FILE", "empty"}, {"DATA_FORMAT", "2"}},
       error_frame(1, "read_seq_sprot", "Not supporting swiss-prot at this time\n")},
      {{{"DATA_FILE", "empty"}, {"DATA_FORMAT", "4"}}, too_few(0)},
      {{{"DATA_FILE", "two.pirc"}, {"DATA_FORMAT", "4"}},
       error_frame(1, "mget_seqs", "Cannot continue alignment until errors fixed...")},
      {{{"DATA_FILE", std::string(300, 'f')}},
       error_frame(1, "mget_seqs", "Cannot open data file: " + std::string(300, 'f'))},
      {{{"DATA_FILE", ""}}, error_frame(1, "mget_seqs", "Cannot open data file: ")},
      {{{"DATA_FILE", "one.txt"}}, too_few(1)},
      {{{"DATA_FILE", "wide.txt"}}, error_frame(1, "read_seq_data", tooMany)},
      {{{"DATA_FILE", "structs.txt"}},
       error_frame(1, "store_seq_data", "Primary/secondary structures do not line up.")},
      {{{"DATA_FILE", "anchors.txt"}}, error_frame(1, "store_seq_data", "Primary/anchor symbols do not line up.")},
      // The code runs from the byte behind the first '>' to the zero byte.
      {{{"DATA_FILE", "binary"}},
       error_frame(1, "read_seq_id_str", "Sequence ID code too long at: " + bytes.substr('>' + 1, 256 - '>' - 1))},
      // A value out of bounds, a report that cannot be created.
      {{{"RES_LINE_LEN", "2"}},
       error_frame(1, "read_parm_int", "Parm key = 'RAVLIN:RES_LINE_LEN' Lower bound exceeded: 2 < 3\n")},
      {{},
       kCountLine + error_frame(1, "ravlin_main", "Cannot open output file: 'nodir/report.txt'\n"),
       "nodir/report.txt"},
      // An alignment over the limit: 3 is the computed order for two
      // sequences, which needs the pairs; in input order the pairs are
      // skipped and the multiple alignment hits it.
      {long_run("3"), "\nNumber of sequences to align: 2\nProcessing pairwise alignments\n" + kTooLong, "report.txt",
       true},
      {long_run("4"), "\nNumber of sequences to align: 2\nDoing Multiple Alignment" + kTooLong, "report.txt", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(parms_text(c.changes));
    std::filesystem::remove(dir_.file("report.txt"));
    const RunResult result = run(c.changes, c.report);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, c.out);
    // A run that stops before aligning leaves no report behind.
    EXPECT_EQ(std::filesystem::exists(dir_.file("report.txt")), c.aligns);
  }
}

// The largest input the limits admit: 500 sequences of 4,000 residues. Any
// pair of them needs more than 3,500 columns, so the first pair ends the run.
TEST_F(BatchTest, FullTableOfLongestSequencesEndsAtTheColumnLimit) {
  std::string text;
  for (int k = 0; k < 500; ++k) {
    text += ">L" + std::to_string(k) + "\n";
    // Mixed letters, so that no line reads as a structure line.
    const std::string letters = "ACDEFGHIKLMNPQRSTVWY";
    for (int line = 0; line < 40; ++line) {
      for (int col = 0; col < 100; ++col) text += letters[(k + line + col) % letters.size()];
      text += "\n";
    }
    text += "\n";
  }
  dir_.write("full.txt", text);
  const RunResult result = run({{"DATA_FILE", "full.txt"}, {"SEQ_SELECT", "501"}});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "\nNumber of sequences to align: 500\nProcessing pairwise alignments\n" + kTooLong);
}

TEST_F(BatchTest, WrongArgumentsPrintTheUsage) {
  for (const std::string args : {"", " parms", " parms report extra"}) {
    const RunResult result =
        testsupport::run_command(testsupport::shell_quote(RAVLIN_BATCH_BIN) + args + " 2> usage.txt", "", dir_.path());
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(dir_.read("usage.txt"), ::testing::StartsWith("usage: ravlin-batch PARMS REPORT\n"));
    EXPECT_THAT(dir_.read("usage.txt"), HasSubstr("RAVLIN:SEQ_SELECT"));
  }
}

}  // namespace
