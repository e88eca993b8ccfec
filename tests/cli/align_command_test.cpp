// End-to-end runs of ravlin-align in a temporary directory.
//
// The three sequences below are those of the hand-worked batch example (see
// tests/app/batch_test.cpp): with its weight file (tiny.wts: 5 for a letter
// against itself, gaps 3 + 1 a position) their alignment is
//   SEQA ACDEFGHIKLMN-   SEQB ACDEF-HIKLMN-   SEQC -CDEFGHIKLMNP
// whatever the order, which every input format must reproduce.
#include <string>

#include "support/test_support.hpp"

namespace {

using ::testing::HasSubstr;
using testsupport::RunResult;
using testsupport::shell_quote;
using testsupport::TempDir;

const std::string kAligned = ">SEQA first\nACDEFGHIKLMN-\n>SEQB\nACDEF-HIKLMN-\n>SEQC third one\n-CDEFGHIKLMNP\n";

struct AlignRun {
  RunResult result;
  std::string err;
};

AlignRun align(const TempDir& dir, const std::string& args, const std::string& stdinText = "") {
  const std::string command = shell_quote(RAVLIN_ALIGN_BIN) + " " + args + " 2>stderr.txt";
  AlignRun run{testsupport::run_command(command, stdinText, dir.path()), ""};
  run.err = dir.read("stderr.txt");
  return run;
}

void add_weights(const TempDir& dir) { dir.write("tiny.wts", testsupport::read_golden("batch/tiny.wts")); }

// A run that fails, for the tests that it leaves nothing behind.
struct FailingRun {
  const char* what;
  std::string input;  // in.fa
  std::string how;    // ravlin-align's arguments, or a whole shell command
  int status;
  std::string message;
};

// Files in the run's directory, to see that the run left none behind.
std::size_t file_count(const TempDir& dir) {
  std::size_t files = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(dir.path())) ++files;
  return files;
}

TEST(AlignCommand, EveryInputFormatGivesTheSameAlignment) {
  const struct {
    const char* what;
    std::string input;
    std::string args;
    std::string expected;
  } cases[] = {
      {"FASTA: lower case, final '*', blank lines",
       ">SEQA first\nACDEFG\nHIKLMN\n\n>SEQB\nacdefhiklmn*\n>SEQC third one\nCDEFGHIKLMNP\n", "", kAligned},
      {"aligned FASTA with CRLF line ends",
       ">SEQA first\r\nACDEFGHIKLMN\r\n>SEQB\r\nACDEF-HIK.LMN\r\n>SEQC third one\r\nCDEFGHIKLMNP\r\n", "", kAligned},
      {"Stockholm, descriptions on #=GS DE lines",
       "# STOCKHOLM 1.0\n#=GS SEQA DE first\n#=GS SEQC DE third\n#=GS SEQC DE one\nSEQA ACDEFGHIKLMN\nSEQB "
       "ACDEF-HIKLMN\nSEQC CDEFGHIKLMNP\n//\n",
       "", kAligned},
      {"PIR layout", ">P1;SEQA\nfirst\nACDEFGHIKLMN*\n>P1;SEQB\n\nACDEFHIKLMN*\n>P1;SEQC\nthird one\nCDEFGHIKLMNP*\n",
       "", kAligned},
      {"ravlin's text format, with a structure line", testsupport::read_golden("batch/seqs.txt"), "",
       ">SEQA alpha protein\nACDEFGHIKLMN-\n>SEQB beta protein\nACDEF-HIKLMN-\n>SEQC gamma protein [201-212]\n"
       "-CDEFGHIKLMNP\n"},
      {"Molvane", "PSEQ\nnfirst\nASEQA\nrACDEFGHIKLMN\n\nPSEQ\nASEQB\nrACDEFHIKLMN\n\nPSEQ\nASEQC\nrCDEFGHIKLMNP\n\n",
       "", ">SEQA first\nACDEFGHIKLMN-\n>SEQB\nACDEF-HIKLMN-\n>SEQC\n-CDEFGHIKLMNP\n"},
      {"rows in the alignment's order",
       ">SEQA first\nACDEFGHIKLMN\n>SEQB\nACDEFHIKLMN\n>SEQC third one\nCDEFGHIKLMNP\n",
       "--output-order aligned --order SEQC",
       ">SEQC third one\n-CDEFGHIKLMNP\n>SEQA first\nACDEFGHIKLMN-\n>SEQB\nACDEF-HIKLMN-\n"},
      {"Clustal", ">SEQA\nACDEFGHIKLMN\n>SEQB\nACDEFHIKLMN\n>SEQC\nCDEFGHIKLMNP\n", "-f ALN",
       "CLUSTAL multiple sequence alignment by ravlin-align 6.0\n\n\nSEQA      ACDEFGHIKLMN-\nSEQB      ACDEF-HIKLMN-\n"
       "SEQC      -CDEFGHIKLMNP\n           **** ****** \n\n"},
      // Every residue pair of a column is one the pairwise alignments make (9), but P stands alone (0).
      {"Stockholm with the structure used and the columns' confidence", testsupport::read_golden("batch/seqs.txt"),
       "-f sto",
       "# STOCKHOLM 1.0\n#=GS SEQA DE alpha protein\n#=GS SEQB DE beta protein\n#=GS SEQC DE gamma protein "
       "[201-212]\nSEQA            ACDEFGHIKLMN-\n#=GR SEQA SS    CCHHHHHHCCCC.\nSEQB            ACDEF-HIKLMN-\n"
       "SEQC            -CDEFGHIKLMNP\n#=GC SS_cons    CCHHHHHHCCCC.\n#=GC confidence 9999999999990\n//\n"},
      // The checksums are those EMBOSS's seqret and Clustal Omega write for these rows.
      {"MSF", kAligned, "-f msf",
       "!!AA_MULTIPLE_ALIGNMENT 1.0\n\n MSF: 13  Type: P  Check: 1510  ..\n\n Name: SEQA  Len: 13  Check: 7399  "
       "Weight: 1.00\n Name: SEQB  Len: 13  Check: 7249  Weight: 1.00\n Name: SEQC  Len: 13  Check: 6862  Weight: "
       "1.00\n\n//\n\n      1           13\nSEQA  ACDEFGHIKL MN~\nSEQB  ACDEF.HIKL MN~\nSEQC  ~CDEFGHIKL MNP\n"},
      // The last column has a residue in one row of three: an insert column.
      {"A2M", kAligned, "-f a2m", ">SEQA first\nACDEFGHIKLMN.\n>SEQB\nACDEF-HIKLMN.\n>SEQC third one\n-CDEFGHIKLMNp\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const TempDir dir;
    add_weights(dir);
    dir.write("in.txt", c.input);
    const AlignRun run = align(dir, "-q --weights tiny.wts " + c.args + " in.txt");
    EXPECT_EQ(run.result.status, 0) << run.err;
    EXPECT_EQ(run.result.out, c.expected);
    EXPECT_EQ(run.err, "");
  }
}

// Every failure: status, a message that says what is wrong, and an output
// file that is neither created nor touched.
TEST(AlignCommand, FailuresLeaveNothingBehind) {
  const std::string good = ">a\nACDEFG\n>b\nACDFG\n";
  const FailingRun cases[] = {
      {"no input", good, "", 2, "ravlin-align: no input file given\nusage: ravlin-align"},
      {"unknown option", good, "--frobnicate in.fa", 2, "unknown option --frobnicate"},
      {"bad thread count", good, "--threads 0 in.fa", 2, "--threads takes a whole number from 1 to 256"},
      {"unknown output format", good, "-f msa in.fa", 2,
       "unknown output format 'msa' (fasta, clustal, stockholm, msf, phylip, a2m, report, molvane, html, svg)"},
      {"a short name is for output only", good, "--informat sto in.fa", 2,
       "unknown input format 'sto' (fasta, clustal, stockholm, text, molvane, pir)"},
      {"no header at all", "ACD\nACDEF\n", "--informat fasta in.fa", 1, "in.fa line 1: residues before"},
      {"a digit", ">a\nACD1EF\n>b\nACDEF\n", "in.fa", 1, "in.fa line 2: '1' in sequence a is not a residue letter"},
      {"empty sequence", ">a\n>b\nACDEF\n", "in.fa", 1, "sequence a has no residues"},
      {"duplicate id", ">a\nACDEF\n>a\nACDEG\n", "in.fa", 1, "the id a is given to sequences 1 and 2"},
      {"unknown order id", good, "--order zz in.fa", 1, "--order zz: no sequence has that id"},
      {"missing input", good, "nothere.fa", 1, "cannot read nothere.fa"},
      {"output over the input", good, "-o in.fa --force in.fa", 1, "the output in.fa is also an input file"},
      {"existing output", good, "-o keep.txt in.fa", 1, "the output keep.txt exists already; give --force"},
      {"full disk", good, "-o /dev/full --force in.fa", 1, "cannot write /dev/full"},
      {"structure only for an unknown id", good, "-o out.fa --ss zz.ss.fa in.fa", 1,
       "zz.ss.fa gives structure for zz, which is not an input sequence"},
      {"structure of the wrong length", good, "-o out.fa --ss a.ss.fa in.fa", 1,
       "structure for a in a.ss.fa has 3 states but the sequence has 6 residues"},
      {"a parameter out of its bounds", good, "-o out.fa --params bad.parms in.fa", 1,
       "bad.parms: Parm key = 'RAVLIN:STRUCT_BIAS' Lower bound exceeded: -101 < -100"},
      // Nothing pairs (W against P), so the pair would need 3,600 columns.
      {"more columns than the designed strategy holds",
       ">a\n" + std::string(1800, 'W') + "\n>b\n" + std::string(1800, 'P') + "\n", "--mode designed -o out.fa in.fa", 1,
       "an alignment holds at most 3,500 columns"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    TempDir dir;
    dir.write("in.fa", c.input);
    dir.write("keep.txt", "precious\n");
    dir.write("zz.ss.fa", ">zz\nHHHH\n");
    dir.write("a.ss.fa", ">a\nHHH\n");
    dir.write("bad.parms", "RAVLIN:STRUCT_BIAS -101\n");
    const AlignRun run = align(dir, "-q " + c.how);
    EXPECT_EQ(run.result.status, c.status);
    EXPECT_THAT(run.err, HasSubstr(c.message));
    EXPECT_EQ(run.result.out, "");
    EXPECT_EQ(dir.read("keep.txt"), "precious\n");
    EXPECT_EQ(file_count(dir), 6u) << "only stderr.txt and the files written here";
  }
}

// An alignment's text without its gaps and line ends: the input's, when
// every row came back whole and in order.
std::string flattened(std::string text) {
  std::erase(text, '-');
  std::erase(text, '\n');
  return text;
}

// 500 sequences of 3 residues, all different, none made only of structure
// letters (which ravlin's text format would take for a structure line).
std::string many_tiny_sequences() {
  const std::string letters = "ADEFGKLMNPQRSVWY";
  std::string text;
  for (std::size_t k = 0; k < 500; ++k)
    text +=
        ">s" + std::to_string(k) + "\n" + letters[k % 16] + letters[k / 16 % 16] + letters[(k / 256 + k) % 16] + "\n";
  return text;
}

// Inputs that other aligners stumble on end in an alignment or in a clear
// message, in ravlin-align and in ravlin-batch (which reads them as ravlin's
// text format, where a line of structure letters such as all X is the
// entry's structure, not its residues).
TEST(AlignCommand, DegenerateInputsAlign) {
  const std::string fourThousand = [] {
    std::string residues;
    for (int k = 0; k < 4000; ++k) residues.push_back("ACDEFGHIKLMNPQRSTVWY"[k * 7 % 20]);
    return residues;
  }();
  const std::string tooLong = "Alignment size exceeded, len = 3500";
  const std::string fewerThanTwo = "Must have 2 or more sequences to align.";
  const std::string tooShort = "Sequence has < 3 amino acids.";
  const struct {
    const char* what;
    std::string input;
    std::string expected;                   // ravlin-align's alignment; empty: only its rows are checked
    std::string message;                    // ravlin-align's error instead of an alignment
    std::string batchModule, batchMessage;  // ravlin-batch's fatal error; empty: a report
  } cases[] = {
      {"empty file", "", "", "in.fa is empty; give a file of sequences", "mget_seqs", fewerThanTwo},
      {"one sequence", ">only\nMKV\n", ">only\nMKV\n", "", "mget_seqs", fewerThanTwo},
      {"three identical", ">a\nMKVL\n>b\nMKVL\n>c\nMKVL\n", ">a\nMKVL\n>b\nMKVL\n>c\nMKVL\n", "", "", ""},
      // Two copies of 4,000 residues make 4,000 columns: more than the designed strategy's 3,500.
      {"two identical of 4,000 residues", ">a\n" + fourThousand + "\n>b\n" + fourThousand + "\n", "", "",
       "find_best_align", tooLong + "\n"},
      {"BA, BB and BC", ">BA\nBA\n>BB\nBB\n>BC\nBC\n", "", "sequence BA has 2 residues; ravlin aligns sequences of 3",
       "store_seq_data", tooShort},
      {"500 of 3 residues", many_tiny_sequences(), "", "", "", ""},
      {"4,000 copies of one letter", ">w\n" + std::string(4000, 'W') + "\n", "", "", "mget_seqs", fewerThanTwo},
      // X scores nothing against itself: pairing ties with sliding the ends
      // apart, and a tie goes to pairing.
      {"all X", ">a\nXXXX\n>b\nXXXX\n", ">a\nXXXX\n>b\nXXXX\n", "", "store_seq_data", tooShort},
      // In BLOSUM62 the six matches after the gap (+32) outweigh its charge
      // inside the helix (11 + 1 + 10), where sliding past gives -10.
      {"a structure line of only helices", ">a first\nACDEFGHIKLMN\nHHHHHHHHHHHH\n\n>b second\nACDEFHIKLMN\n",
       ">a first\nACDEFGHIKLMN\n>b second\nACDEF-HIKLMN\n", "", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    TempDir dir;
    dir.write("in.fa", c.input);
    const AlignRun run = align(dir, "-q in.fa");
    if (!c.message.empty()) {
      EXPECT_EQ(run.result.status, 1);
      EXPECT_THAT(run.err, HasSubstr("ravlin-align: error: "));
      EXPECT_THAT(run.err, HasSubstr(c.message));
      EXPECT_EQ(run.result.out, "");
    } else {
      EXPECT_EQ(run.result.status, 0) << run.err;
      EXPECT_EQ(c.expected.empty() ? flattened(run.result.out) : run.result.out,
                c.expected.empty() ? flattened(c.input) : c.expected);
    }

    dir.write("ravlin.wts", testsupport::read_file(testsupport::source_path("data/ravlin.wts")));
    dir.write("run.parms",
              "RAVLIN:SCOR_MATRIX ravlin.wts\nRAVLIN:STRUCT_BIAS 10\nRAVLIN:INC_GAP_PEN 5\nRAVLIN:PRINT_PCT_HOM 1\n"
              "RAVLIN:PRINT_ORDER 0\nRAVLIN:CONSENSUS_PCT 50\nRAVLIN:ASCII_FLAG 1\nRAVLIN:RES_LINE_LEN 50\n"
              "RAVLIN:PRINT_FORMAT 0\nRAVLIN:PRINT_PAIRWISE 0\nRAVLIN:DATA_FORMAT 5\nRAVLIN:DATA_FILE in.fa\n"
              "RAVLIN:SEQ_SELECT 1\n");
    const RunResult batch = testsupport::run_program(RAVLIN_BATCH_BIN, "run.parms batch.report", "", dir.path());
    if (c.batchModule.empty()) {
      EXPECT_EQ(batch.status, 0);
      EXPECT_THAT(batch.out, ::testing::EndsWith("\nDoing Multiple Alignment\nDone\n"));
    } else {
      EXPECT_EQ(batch.status, 1);
      EXPECT_THAT(batch.out, HasSubstr(testsupport::error_frame(1, c.batchModule, c.batchMessage)));
    }
  }
}

// A run stopped by Ctrl-C, or whose standard output is full, leaves no file
// behind and says why.
TEST(AlignCommand, StoppedRunsLeaveNothingBehind) {
  std::string slow;  // takes seconds to align
  for (int k = 0; k < 120; ++k) {
    slow += ">s" + std::to_string(k) + "\n";
    for (int r = 0; r < 300; ++r) slow.push_back("ACDEFGHIKLMNPQRSTVWY"[(r * r + k * r + k) % 20]);
    slow += "\n";
  }
  const std::string bin = shell_quote(RAVLIN_ALIGN_BIN);
  const std::string interrupted = "ravlin-align: error: interrupted; no output was written\n";
  const FailingRun cases[] = {
      // Interrupted once the temporary file exists.
      {"Ctrl-C while writing a file", slow,
       "{ " + bin +
           " -q -o out.fa in.fa 2>stderr.txt & pid=$!; for i in $(seq 200); do ls -a | grep -q ravlin- && "
           "break; sleep 0.05; done; kill -INT $pid; wait $pid; }",
       128 + 2, interrupted},
      {"Ctrl-C before standard output gets the alignment", slow,
       "{ " + bin +
           " in.fa 2>stderr.txt & pid=$!; for i in $(seq 200); do grep -q pairwise stderr.txt && break; sleep 0.05; "
           "done; kill -INT $pid; wait $pid; }",
       128 + 2,
       "ravlin-align: shipped settings for the consistency mode (ravlin-consistency)\n"
       "ravlin-align: mode consistency (120 sequences, 643 million residue pairs; consistency up to 1,000 million, "
       "tree up to 400 sequences)\n"
       "ravlin-align: no sequence has structure: the likely pairs also weigh the ravlin-nostruct table\n"
       "ravlin-align: pairwise alignments ...\n" +
           interrupted},
      {"full standard output", ">a\nACDEFG\n>b\nACDFG\n", "{ " + bin + " -q in.fa >/dev/full 2>stderr.txt; }", 1,
       "ravlin-align: error: cannot write the alignment to standard output (No space left on device)\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    TempDir dir;
    dir.write("in.fa", c.input);
    const RunResult run = testsupport::run_command(c.how, "", dir.path());
    EXPECT_EQ(run.status, c.status);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(dir.read("stderr.txt"), c.message);
    EXPECT_EQ(file_count(dir), 2u) << "only in.fa and stderr.txt";
  }
}

// The report is the one ravlin-batch writes for the same parameter file.
TEST(AlignCommand, ReportEqualsTheBatchReport) {
  const TempDir dir;
  add_weights(dir);
  dir.write("seqs.txt", testsupport::read_golden("batch/seqs.txt"));
  dir.write("run.parms",
            "RAVLIN:SCOR_MATRIX tiny.wts\nRAVLIN:STRUCT_BIAS 10\nRAVLIN:INC_GAP_PEN 0\nRAVLIN:PRINT_PCT_HOM 1\n"
            "RAVLIN:PRINT_ORDER 0\nRAVLIN:CONSENSUS_PCT 50\nRAVLIN:ASCII_FLAG 1\nRAVLIN:RES_LINE_LEN 10\n"
            "RAVLIN:PRINT_FORMAT 0\nRAVLIN:PRINT_PAIRWISE 1\nRAVLIN:DATA_FORMAT 5\nRAVLIN:DATA_FILE seqs.txt\n"
            "RAVLIN:SEQ_SELECT 4\n");
  testsupport::run_program(RAVLIN_BATCH_BIN, "run.parms batch.report", "", dir.path());
  const AlignRun run = align(dir, "-q --params run.parms -f report -o align.report seqs.txt");
  ASSERT_EQ(run.result.status, 0) << run.err;
  EXPECT_EQ(testsupport::mask_date(dir.read("align.report")), testsupport::mask_date(dir.read("batch.report")));
}

TEST(AlignCommand, HelpVersionAndStandardStreams) {
  TempDir dir;
  const AlignRun help = align(dir, "--help");
  EXPECT_EQ(help.result.status, 0);
  EXPECT_THAT(help.result.out, HasSubstr("usage: ravlin-align [options] INPUT"));
  const AlignRun version = align(dir, "-V");
  EXPECT_EQ(version.result.out, "ravlin-align 6.0\n");
  // Standard input to a file; progress on standard error only.
  const AlignRun piped = align(dir, "-o out.fa -", ">a\nMKVLA\n>b\nMKVA\n");
  EXPECT_EQ(piped.result.status, 0);
  EXPECT_EQ(dir.read("out.fa"), ">a\nMKVLA\n>b\nMKVA-\n");  // an end gap is free, an inner one costs 11
  EXPECT_THAT(piped.err, HasSubstr("ravlin-align: joins up the guide tree done"));
}

std::string example(const std::string& name) { return shell_quote(testsupport::source_path("examples/" + name)); }

// Structure and anchors from their own files give the alignment that the same
// structure and anchor lines in ravlin's own formats give.
TEST(AlignCommand, StructureFilesMatchStructureLines) {
  const struct {
    const char* what;
    std::string withFiles;
    std::string withLines;
  } cases[] = {
      {"DSSP letters", example("gluts.fa") + " --ss " + example("gluts.ss.fa"), "gluts.txt"},
      {"structure and anchors",
       example("pla2_anchored.fa") + " -s " + example("pla2_anchored.ss.fa") + " --anchors " +
           example("pla2_anchored.anchors.fa"),
       "pla2_anchored.txt"},
      {"Molvane structure", example("lysozyme.fa") + " --ss " + example("lysozyme.ss.fa"), "lysozyme.molvane"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    TempDir dir;
    const AlignRun files = align(dir, "-q -f sto " + c.withFiles);
    const AlignRun lines = align(dir, "-q -f sto " + example(c.withLines));
    EXPECT_EQ(files.result.status, 0) << files.err;
    EXPECT_EQ(files.result.out, lines.result.out);
    // The Stockholm output carries the structure back in.
    dir.write("round.sto", files.result.out);
    EXPECT_EQ(align(dir, "-q -f sto round.sto").result.out, lines.result.out);
  }
}

}  // namespace
