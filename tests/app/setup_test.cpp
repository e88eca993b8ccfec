// The interactive program run as a user runs it: in a scratch directory, with
// the answers to its menus on standard input.
#include <map>
#include <set>
#include <sstream>
#include <vector>

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

// Reading the shipped examples and the reports of their runs.

struct Entry {
  std::string id;
  std::string residues;
  std::string anchors;  // the anchor and group line, when there is one
};

bool only_of(const std::string& line, const std::string& allowed) {
  return !line.empty() && line.find_first_not_of(allowed) == std::string::npos;
}

// The ids, residues and anchor lines of a file as the converter writes it,
// or of the Molvane layout of a report (ids on 'A' lines, residues on 'r').
std::vector<Entry> read_entries(const std::string& text, bool molvane) {
  std::vector<Entry> entries;
  std::istringstream in(text);
  std::string line;
  bool inEntry = false;
  while (std::getline(in, line)) {
    if (line == "PSEQ" || (!molvane && line.starts_with('>'))) {
      entries.push_back({molvane ? "" : line.substr(1, line.find(' ') - 1), "", ""});
      inEntry = true;
    } else if (line.empty()) {
      inEntry = false;
    } else if (inEntry && molvane) {
      if (line[0] == 'A') entries.back().id = line.substr(1);
      if (line[0] == 'r') entries.back().residues += line.substr(1);
    } else if (inEntry && only_of(line, "*-12345")) {
      entries.back().anchors += line;
    } else if (inEntry && !only_of(line, "BCHTX")) {
      entries.back().residues += line;
    }
  }
  return entries;
}

std::string section(const std::string& report, const std::string& head) {
  const auto at = report.find("\n" + head + "\n");
  return at == std::string::npos ? "" : report.substr(at + 1);
}

// The aligned rows of a report by id, gaps as blanks. The block layout is
// " " + id in 12 columns + ": " + 50 columns + a 7-wide residue number.
std::map<std::string, std::string> aligned_rows(const std::string& report, bool molvane) {
  const std::string alignment = section(report, "Multiple Alignment");
  std::map<std::string, std::string> rows;
  if (molvane) {
    for (const Entry& entry : read_entries(alignment, true)) rows[entry.id] = entry.residues;
    return rows;
  }
  std::istringstream in(alignment);
  std::string line;
  while (std::getline(in, line)) {
    if (line.size() < 15 || line[13] != ':' || line[0] != ' ') continue;
    std::string id = line.substr(1, 12);
    id.erase(0, id.find_first_not_of(' '));
    if (id != "Struct" && id != "Summary") rows[id] += line.substr(15, std::min<std::size_t>(50, line.size() - 15));
  }
  return rows;
}

// The column at which the residue with the given 1-based number stands.
std::size_t column_of(const std::string& row, std::size_t number) {
  std::size_t seen = 0;
  for (std::size_t c = 0; c < row.size(); ++c) {
    if (row[c] != ' ' && ++seen == number) return c;
  }
  return std::string::npos;
}

void copy_shipped(const TempDir& dir, const std::string& example) {
  for (const std::string& rel : {std::string("data/ravlin.parms"), std::string("data/ravlin.wts"), example}) {
    const auto from = testsupport::source_path(rel);
    dir.write(from.filename().string(), testsupport::read_file(from));
  }
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
      // An answer out of range, or none (read as -1), at the selection menu.
      {true, "-d seqs.txt", "1\n6\n", 1, rangeError},
      {true, "-d seqs.txt", "1\nfirst\n", 1, rangeError},
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
      // A value option as the last word leaves its name to be typed.
      {"-i first.parms -d", "1\nx\n4\n", nullptr, dataPrompt, nullptr},
      {"-i first.parms -d x -o", "1\n4\nout.txt\n", nullptr, "\n Enter output filename.\n", "out.txt"},
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
// residues under one anchor number stand in one column.
TEST(ShippedExamples, WholeRunsKeepEveryResidueAndAnchor) {
  const struct {
    const char* example;
    std::size_t count;
    const char* args;
    const char* answers;
    const char* report;
    bool molvane;
    std::size_t anchors;
  } cases[] = {
      // No options: every name is typed; 15 lets the program choose the order.
      {"gluts.txt", 14, "", "1\ngluts.txt\n15\ngluts.report\n", "gluts.report", false, 0},
      // Anchor 1 marks the catalytic His, anchor 2 the Asp behind it.
      {"pla2_anchored.txt", 6, "-d pla2_anchored.txt -o pla2.report", "1\n7\n", "pla2.report", false, 2},
      // 14 keeps the input order; the report is in the Molvane layout.
      {"lysozyme.molvane", 12, "-molvane -d lysozyme.molvane -o lyso.report", "2\n14\n", "lyso.report", true, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.example);
    TempDir dir;
    copy_shipped(dir, std::string("examples/") + c.example);
    const auto entries = read_entries(dir.read(c.example), c.molvane);
    ASSERT_EQ(entries.size(), c.count);
    const RunResult run = ravlin(dir, c.args, c.answers);
    ASSERT_EQ(run.status, 0) << run.out;
    EXPECT_THAT(run.out, ::testing::EndsWith("\nDone\n"));
    const std::string report = dir.read(c.report);
    const auto rows = aligned_rows(report, c.molvane);
    EXPECT_EQ(rows.size(), entries.size());
    std::map<char, std::set<std::size_t>> anchorColumns;
    for (const Entry& entry : entries) {
      SCOPED_TRACE(entry.id);
      EXPECT_THAT(section(report, "Sequences"), HasSubstr(entry.id + "   "));
      ASSERT_TRUE(rows.count(entry.id));
      const std::string& row = rows.at(entry.id);
      std::string residues = row;
      std::erase(residues, ' ');
      EXPECT_EQ(residues, entry.residues);
      EXPECT_EQ(row.size(), rows.begin()->second.size());
      for (std::size_t at = 0; at < entry.anchors.size(); ++at) {
        if (entry.anchors[at] >= '1' && entry.anchors[at] <= '5')
          anchorColumns[entry.anchors[at]].insert(column_of(row, at + 1));
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
