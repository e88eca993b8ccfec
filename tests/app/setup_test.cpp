// The interactive program run as a user runs it: in a scratch directory, with
// the answers to its menus on standard input.
#include <map>
#include <set>
#include <sstream>

#include "seq/seq_record.hpp"
#include "shell/text_input.hpp"
#include "support/test_support.hpp"

using ::testing::HasSubstr;
using testsupport::error_frame;
using testsupport::read_golden;
using testsupport::RunResult;
using testsupport::TempDir;

namespace {

// A parameter file whose weight file does not exist: the run stops in the
// driver, after the temporary parameter file has been written.
const std::string kUserParms = "# test parameters\nRAVLIN:SCOR_MATRIX none.wts\nRAVLIN:RES_LINE_LEN 80\n";

const std::string kThreeSeqs =
    ">SEQA first protein\nMKVLAAGIVG\n\n"
    ">SEQB second protein\nMKVLSAGIVG\nCCHHHHHHCC\n\n"
    ">SEQC third protein\nMRVLAGGLVG\n";

RunResult ravlin(const TempDir& dir, const std::string& args, const std::string& answers) {
  return testsupport::run_program(RAVLIN_BIN, args, answers, dir.path());
}

// Every input file the menu and option cases use; ravlin.parms only when asked.
void write_inputs(const TempDir& dir, bool defaultParms) {
  if (defaultParms) dir.write("ravlin.parms", kUserParms);
  dir.write("mine.parms", kUserParms);
  dir.write("first.parms", "# first\nRAVLIN:SCOR_MATRIX none.wts\n");
  dir.write("second.parms", "# second\nRAVLIN:SCOR_MATRIX none.wts\n");
  dir.write("open.parms", "RAVLIN:SCOR_MATRIX none.wts  # no newline");
  dir.write("seqs.txt", kThreeSeqs);
  dir.write("x", kThreeSeqs);
  dir.write("one.txt", ">ONLY a lone protein\nMKVLAAGIVG\n");
  dir.write("seqs.mv", "PSEQ\nnfirst\nAM1\nrMKVLAAGIVG\n\nPSEQ\nnsecond\nAM2\nrMKVLSAGIVG\nSCCHHHHHHCC\n\n");
}

// The aligned residues and anchors of the Molvane layout of a report, by id.
struct AlignedRow {
  std::string residues;
  std::string anchors;
};

std::map<std::string, AlignedRow> molvane_rows(const std::string& report) {
  std::map<std::string, AlignedRow> rows;
  std::istringstream in(report.substr(report.find("\nMultiple Alignment\n")));
  std::string id;
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with('A')) id = line.substr(1);
    if (line.starts_with('r')) rows[id].residues += line.substr(1);
    if (line.starts_with('G')) rows[id].anchors += line.substr(1);
  }
  return rows;
}

// The shipped parameter file with every shipped weight file, and an example.
void copy_shipped(const TempDir& dir, const std::string& example) {
  for (const auto& entry : std::filesystem::directory_iterator(testsupport::source_path("data")))
    if (entry.path().extension() != ".md")
      dir.write(entry.path().filename().string(), testsupport::read_file(entry.path()));
  dir.write(std::filesystem::path(example).filename().string(),
            testsupport::read_file(testsupport::source_path(example)));
}

}  // namespace

// Runs that end at a menu or prompt, compared whole: no temporary parameter
// file is left behind by any of them.
TEST(Setup, MenusAndPromptsUpToTheirEnd) {
  const std::string banner = read_golden("setup/banner.txt");
  const std::string parmsMenu = read_golden("setup/parms_menu.txt");
  const std::string formatMenu = read_golden("setup/format_menu.txt");
  const std::string selection = read_golden("setup/selection_three.txt");
  const std::string askParms = "\n Enter name of the parameters file: ";
  const std::string seqsRead = banner + formatMenu + "data name = seqs.txt\n";
  const std::string rangeError =
      seqsRead + selection + error_frame(1, "read_menu_num", "Range error, Input=-1 where Min=1, Max=5\n");
  const struct {
    bool defaultParms;
    const char* args;
    const char* answers;
    int status;
    std::string out;
  } cases[] = {
      {false, "", "abc\n2\n", 0, banner + parmsMenu + "\n Error, illegal menu option.\n\n" + parmsMenu},
      // A typed name that does not open is asked for again.
      {false, "", "1\nnothere.parms\n1\nmine.parms\n0\n", 0,
       banner + parmsMenu + askParms + parmsMenu + askParms + formatMenu},
      {false, "", "", 1, banner + parmsMenu + error_frame(1, "check_parms_file", "Unexpected end of input")},
      // A value option as the last word is ignored: -i keeps the default name.
      {false, "-i", "2\n", 0, banner + parmsMenu},
      {true, "", "0\n", 0, banner + formatMenu},
      // The format menu repeats until answered; a non-number counts as 0.
      {true, "", "7\n-1\nabc\n", 0, banner + formatMenu + formatMenu + formatMenu},
      {true, "", "7\n", 1,
       banner + formatMenu + formatMenu + error_frame(1, "get_ravlin_format", "Unexpected end of input")},
      // The data file is asked for once.
      {true, "", "1\nmissing.txt\n", 1,
       banner + formatMenu + "\n Enter your ravlin sequence datafile.\n\n>> " +
           error_frame(1, "open_data_file", "Cannot open data file: missing.txt")},
      // An answer out of range at the selection menu: the message shows -1.
      {true, "-d seqs.txt", "1\n6\n", 1, rangeError},
      {true, "-d one.txt", "1\n", 1,
       banner + formatMenu + "data name = one.txt\n\n\n Number of sequences to align: 1" +
           error_frame(1, "read_seq_select", "Must have 2 or more sequences to align.")},
      // The output file is asked for once.
      {true, "-d seqs.txt", "1\n4\nno/such/dir/out.txt\n", 1,
       seqsRead + selection + "\n Enter output filename.\n\n>> " +
           error_frame(1, "get_output_file", "Cannot open output file: 'no/such/dir/out.txt'\n")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string("ravlin ") + c.args + " <<< " + c.answers);
    const TempDir dir;
    write_inputs(dir, c.defaultParms);
    const RunResult run = ravlin(dir, c.args, c.answers);
    EXPECT_EQ(run.status, c.status);
    EXPECT_EQ(run.out, c.out);
    EXPECT_FALSE(std::filesystem::exists(dir.file("ravlin.parms.tmp")));
  }
}

// Runs that get past the output file: the temporary parameter file is the
// user's file then the choices, and options are searched one by one over
// all the words.
TEST(Setup, OptionsAndTheTemporaryParameterFile) {
  const std::string dataPrompt = "\n Enter your ravlin sequence datafile.\n\n>> data name = x\n";
  const struct {
    std::string args;
    const char* answers;
    const char* tmpGolden;  // the expected ravlin.parms.tmp, if checked
    std::string outHas;
    const char* created;  // the report, created before any alignment work
  } cases[] = {
      // The user's line length of 80 is overridden by the appended 50.
      {"", "1\nseqs.txt\n4\nreport.txt\n", "setup/parms_tmp_override.txt", "", "report.txt"},
      // No final newline: the appended blank line keeps the first key apart.
      {"-o out.txt -i open.parms -d seqs.txt -molvane", "1\n5\n", "setup/parms_tmp_unterminated.txt", "", "out.txt"},
      // Molvane data and layout are written as their codes.
      {"-molvane -d seqs.mv -o out.txt", "2\n1\n", "setup/parms_tmp_molvane.txt",
       read_golden("setup/selection_two.txt"), "out.txt"},
      // -i twice: the first wins. "-o -d x": the output is named "-d", the data x.
      {"-i first.parms -i second.parms -o -d x", "1\n4\n", "setup/parms_tmp_first.txt", "data name = x\n", "-d"},
      // A name far longer than a file name can be is simply not found.
      {"-i first.parms -d " + std::string(300, 'n'), "1\nx\n4\nout.txt\n", nullptr, dataPrompt, nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE("ravlin " + c.args);
    const TempDir dir;
    write_inputs(dir, true);
    const RunResult run = ravlin(dir, c.args, c.answers);
    EXPECT_THAT(run.out, HasSubstr(c.outHas));
    if (c.tmpGolden != nullptr) {
      EXPECT_EQ(dir.read("ravlin.parms.tmp"), read_golden(c.tmpGolden));
    }
    if (c.created != nullptr) {
      EXPECT_TRUE(std::filesystem::exists(dir.file(c.created)));
    }
  }
}

// Every input is one row of the alignment, all rows of one width, and
// residues under one anchor number stand in one column. The inputs are read
// as a run reads them.
TEST(ShippedExamples, WholeRunsKeepEveryResidueAndAnchor) {
  const struct {
    const char* example;
    int format;
    int count;
    const char* args;
    const char* answers;
    std::size_t anchors;
  } cases[] = {
      // Every name typed; 15 lets the program choose the order.
      {"gluts.txt", kFormatText, 14, "-molvane", "1\ngluts.txt\n15\nrun.report\n", 0},
      // Anchor 1 marks the catalytic His, anchor 2 the Asp behind it.
      {"pla2_anchored.txt", kFormatText, 6, "-molvane -d pla2_anchored.txt -o run.report", "1\n7\n", 2},
      // 14 keeps the input order.
      {"lysozyme.molvane", kFormatMolvane, 12, "-molvane -d lysozyme.molvane -o run.report", "2\n14\n", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.example);
    TempDir dir;
    copy_shipped(dir, std::string("examples/") + c.example);
    std::vector<SeqRecord> seqs;
    const UniqueFile quiet(std::tmpfile());
    ASSERT_EQ(
        mget_seqs(dir.file(c.example).string(), seqs, kMaxSeqs, {c.format, kMinRes, kMaxRes, quiet.get(), nullptr}),
        std::nullopt);
    const int count = static_cast<int>(seqs.size());
    ASSERT_EQ(count, c.count);
    const RunResult run = ravlin(dir, c.args, c.answers);
    ASSERT_EQ(run.status, 0) << run.out;
    EXPECT_THAT(run.out, ::testing::EndsWith("\nDone\n"));
    const auto rows = molvane_rows(dir.read("run.report"));
    EXPECT_EQ(rows.size(), static_cast<std::size_t>(count));
    std::map<char, std::set<std::size_t>> anchorColumns;
    for (int k = 0; k < count; ++k) {
      const SeqRecord& input = seqs[static_cast<std::size_t>(k)];
      SCOPED_TRACE(input.acc.value_or(""));
      ASSERT_TRUE(rows.count(input.acc.value_or("")));
      const AlignedRow& row = rows.at(input.acc.value_or(""));
      EXPECT_EQ(row.residues.size(), rows.begin()->second.residues.size());
      std::string residues = row.residues;
      std::erase(residues, ' ');
      EXPECT_EQ(residues, input.pRes);
      for (std::size_t col = 0; col < row.anchors.size(); ++col) {
        if (row.anchors[col] >= '1' && row.anchors[col] <= '5') anchorColumns[row.anchors[col]].insert(col);
      }
    }
    EXPECT_EQ(anchorColumns.size(), c.anchors);
    for (const auto& [anchor, columns] : anchorColumns) EXPECT_EQ(columns.size(), 1u) << "anchor " << anchor;
  }
}

// SEQB has a structure, so the computed order puts it first.
TEST(ShippedExamples, TinyRunGivesTheHandCheckedReport) {
  TempDir dir;
  copy_shipped(dir, "examples/gluts.txt");
  dir.write("two.txt", ">SEQA first protein\nMKVLAAGIVG\n\n>SEQB second protein\nMKVLAAGIVG\nCCHHHHHHCC\n");
  const RunResult run = ravlin(dir, "-d two.txt -o two.report", "1\n3\n");
  ASSERT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(testsupport::mask_date(dir.read("two.report")), read_golden("setup/two_seq_report.txt"));
}
