// The interactive program run as a user runs it: in a scratch directory, with
// the answers to its menus on standard input.
#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <vector>

#include "support/test_support.hpp"

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using testsupport::error_frame;
using testsupport::run_command;
using testsupport::RunResult;
using testsupport::shell_quote;
using testsupport::TempDir;

namespace {

const std::string kStars(50, '*');

const std::string kBanner = "\n\n" + kStars + "\n" +
                            "\n"
                            " Program.: ravlin_x - Version 6.0 (c)\n"
                            "\n"
                            " Authors.: the ravlin developers\n"
                            "           (see the contributors in the project's history)\n"
                            " Location: an open-source project, developed in public\n"
                            " Dept....: Protein Sequence and Structure Analysis\n"
                            "\n"
                            " Supported by the volunteer time of its contributors,\n"
                            " by the institutions that let their staff work on it,\n"
                            " and by the users who send problem reports and fixes.\n"
                            "\n" +
                            kStars + "\n\n";

const std::string kParmsMenu =
    "\n Program cannot find the parameter file."
    "\n    1) I wish to enter a parameter file now."
    "\n    2) I wish to exit this program."
    "\n"
    "\n>> ";

const std::string kFormatMenu =
    "\n"
    "\n What is the format of your ravlin sequence datafile:\n"
    "\n    1) Text-based Format"
    "\n    2) Molvanes Format"
    "\n    0) I am not ready, exit the program."
    "\n"
    "\n Enter a number (then press return).\n "
    "\n>> ";

const std::string kThreeSeqs =
    ">SEQA first protein\nMKVLAAGIVG\n\n"
    ">SEQB second protein\nMKVLSAGIVG\nCCHHHHHHCC\n\n"
    ">SEQC third protein\nMRVLAGGLVG\n";

// A parameter file whose weight file does not exist: the run stops in the
// driver, after the temporary parameter file has been written.
const std::string kUserParms = "# test parameters\nRAVLIN:SCOR_MATRIX none.wts\nRAVLIN:RES_LINE_LEN 80\n";

std::string selection_menu(const std::vector<std::string>& titles) {
  std::string menu = "\n\n Number of sequences to align: " + std::to_string(titles.size()) + "\n" +
                     "\n Choose a sequence to align against:\n\n";
  for (std::size_t k = 0; k < titles.size(); ++k) menu += "   " + std::to_string(k + 1) + ") " + titles[k] + "\n";
  const std::size_t n = titles.size();
  menu += "\n Alternatively,  choose another method of ordering the alignment: \n\n";
  menu += "   " + std::to_string(n + 1) + ") Computer decides on ordering of sequences\n";
  menu += "   " + std::to_string(n + 2) + ") Align sequences in the order they were input\n";
  return menu + "\n>> ";
}

std::string appended_keys(int printFormat, int dataFormat, const std::string& dataFile, int select) {
  return "\nRAVLIN:ASCII_FLAG 1\nRAVLIN:RES_LINE_LEN 50\nRAVLIN:PRINT_FORMAT " + std::to_string(printFormat) +
         "\nRAVLIN:DATA_FORMAT " + std::to_string(dataFormat) + "\n\nRAVLIN:DATA_FILE " + dataFile +
         "\nRAVLIN:SEQ_SELECT " + std::to_string(select) + "\n";
}

// Runs ravlin in dir. Nothing is expected on standard error: that is where a
// sanitizer build reports a fault.
RunResult ravlin(const TempDir& dir, const std::string& args, const std::string& answers) {
  const TempDir errDir;
  const auto errFile = errDir.file("stderr");
  const RunResult run =
      run_command(shell_quote(RAVLIN_BIN) + " " + args + " 2>" + shell_quote(errFile.string()), answers, dir.path());
  EXPECT_EQ(testsupport::read_file(errFile), "") << "ravlin " << args;
  return run;
}

}  // namespace

TEST(Setup, ParameterMenuRejectsABadAnswerAndExitsOnTwo) {
  TempDir dir;
  const RunResult run = ravlin(dir, "", "abc\n2\n");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, kBanner + kParmsMenu + "\n Error, illegal menu option.\n\n" + kParmsMenu);
}

TEST(Setup, ParameterMenuTakesATypedNameAndRetriesOneThatDoesNotOpen) {
  TempDir dir;
  dir.write("mine.parms", kUserParms);
  const std::string ask = "\n Enter name of the parameters file: ";
  const RunResult run = ravlin(dir, "", "1\nnothere.parms\n1\nmine.parms\n0\n");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, kBanner + kParmsMenu + ask + kParmsMenu + ask + kFormatMenu);

  const RunResult ended = ravlin(dir, "", "");
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.out, kBanner + kParmsMenu + error_frame(1, "check_parms_file", "Unexpected end of input"));
}

TEST(Setup, FormatMenuRepeatsUntilAnswered) {
  TempDir dir;
  dir.write("ravlin.parms", kUserParms);
  RunResult run = ravlin(dir, "", "0\n");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, kBanner + kFormatMenu);

  run = ravlin(dir, "", "7\n-1\nabc\n");  // a non-number counts as 0
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, kBanner + kFormatMenu + kFormatMenu + kFormatMenu);

  run = ravlin(dir, "", "7\n");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out,
            kBanner + kFormatMenu + kFormatMenu + error_frame(1, "get_ravlin_format", "Unexpected end of input"));
}

TEST(Setup, DataFileIsAskedForOnceThenFatal) {
  TempDir dir;
  dir.write("ravlin.parms", kUserParms);
  const RunResult run = ravlin(dir, "", "1\nmissing.txt\n");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, kBanner + kFormatMenu + "\n Enter your ravlin sequence datafile.\n\n>> " +
                         error_frame(1, "open_data_file", "Cannot open data file: missing.txt"));
}

TEST(Setup, SelectionMenuListsTitlesAndRejectsAnAnswerOutOfRange) {
  TempDir dir;
  dir.write("ravlin.parms", kUserParms);
  dir.write("seqs.txt", kThreeSeqs);
  const RunResult run = ravlin(dir, "-d seqs.txt", "1\n6\n");
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, StartsWith(kBanner + kFormatMenu + "data name = seqs.txt\n"));
  EXPECT_THAT(run.out, EndsWith(selection_menu({"first protein", "second protein", "third protein"}) +
                                error_frame(1, "read_menu_num", "Range error, Input=-1 where Min=1, Max=5\n")));

  const RunResult zero = ravlin(dir, "-d seqs.txt", "1\nfirst\n");
  EXPECT_EQ(zero.status, 1);
  EXPECT_THAT(zero.out, HasSubstr("Range error, Input=-1 where Min=1, Max=5\n"));
}

TEST(Setup, FewerThanTwoSequencesEndTheRun) {
  TempDir dir;
  dir.write("ravlin.parms", kUserParms);
  dir.write("one.txt", ">ONLY a lone protein\nMKVLAAGIVG\n");
  const RunResult run = ravlin(dir, "-d one.txt", "1\n");
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, EndsWith("\n\n Number of sequences to align: 1" +
                                error_frame(1, "read_seq_select", "Must have 2 or more sequences to align.")));
}

TEST(Setup, OutputFileIsAskedForOnceThenFatal) {
  TempDir dir;
  dir.write("ravlin.parms", kUserParms);
  dir.write("seqs.txt", kThreeSeqs);
  const RunResult run = ravlin(dir, "-d seqs.txt", "1\n4\nno/such/dir/out.txt\n");
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, EndsWith(selection_menu({"first protein", "second protein", "third protein"}) +
                                "\n Enter output filename.\n\n>> " +
                                error_frame(1, "get_output_file", "Cannot open output file: 'no/such/dir/out.txt'\n")));
  EXPECT_FALSE(std::filesystem::exists(dir.file("ravlin.parms.tmp")));
}

TEST(Setup, TemporaryParameterFileIsTheUserFileThenTheChoices) {
  TempDir dir;
  dir.write("ravlin.parms", kUserParms);
  dir.write("seqs.txt", kThreeSeqs);
  // The typed output name is created before any alignment work.
  ravlin(dir, "", "1\nseqs.txt\n4\nreport.txt\n");
  EXPECT_TRUE(std::filesystem::exists(dir.file("report.txt")));
  // The user's line length of 80 is overridden by the appended 50.
  EXPECT_EQ(dir.read("ravlin.parms.tmp"), kUserParms + appended_keys(0, 5, "seqs.txt", 4));

  // No final newline: the appended blank line keeps the first key apart.
  const std::string unterminated = "RAVLIN:SCOR_MATRIX none.wts  # no newline";
  dir.write("open.parms", unterminated);
  ravlin(dir, "-o out.txt -i open.parms -d seqs.txt -molvane", "1\n5\n");
  EXPECT_EQ(dir.read("ravlin.parms.tmp"), unterminated + appended_keys(1, 5, "seqs.txt", 5));
}

TEST(Setup, MolvaneDataAndLayoutAreWrittenAsTheirCodes) {
  TempDir dir;
  dir.write("ravlin.parms", kUserParms);
  dir.write("seqs.mv",
            "PSEQ\nnfirst\nAM1\nrMKVLAAGIVG\n\n"
            "PSEQ\nnsecond\nAM2\nrMKVLSAGIVG\nSCCHHHHHHCC\n\n");
  const RunResult run = ravlin(dir, "-molvane -d seqs.mv -o out.txt", "2\n1\n");
  EXPECT_THAT(run.out, HasSubstr(selection_menu({"first", "second"})));
  EXPECT_EQ(dir.read("ravlin.parms.tmp"), kUserParms + appended_keys(1, 3, "seqs.mv", 1));
}

TEST(Setup, OptionsAreSearchedOneByOneOverAllWords) {
  TempDir dir;
  dir.write("first.parms", "# first\nRAVLIN:SCOR_MATRIX none.wts\n");
  dir.write("second.parms", "# second\nRAVLIN:SCOR_MATRIX none.wts\n");
  dir.write("x", kThreeSeqs);

  // -i twice: the first wins. "-o -d x": the output is named "-d", the data x.
  RunResult run = ravlin(dir, "-i first.parms -i second.parms -o -d x", "1\n4\n");
  EXPECT_THAT(run.out, HasSubstr("data name = x\n"));
  EXPECT_THAT(run.out, Not(HasSubstr("Enter output filename")));
  EXPECT_TRUE(std::filesystem::exists(dir.file("-d")));
  EXPECT_EQ(dir.read("ravlin.parms.tmp"), "# first\nRAVLIN:SCOR_MATRIX none.wts\n" + appended_keys(0, 5, "x", 4));

  // A value option as the last word is ignored: -i keeps the default name,
  // -d and -o leave their names to be typed.
  run = ravlin(dir, "-i", "2\n");
  EXPECT_EQ(run.out, kBanner + kParmsMenu);
  run = ravlin(dir, "-i first.parms -d", "1\nx\n4\n");
  EXPECT_THAT(run.out, HasSubstr("\n Enter your ravlin sequence datafile.\n\n>> data name = x\n"));
  run = ravlin(dir, "-i first.parms -d x -o", "1\n4\nout.txt\n");
  EXPECT_THAT(run.out, HasSubstr("\n Enter output filename.\n"));
  EXPECT_TRUE(std::filesystem::exists(dir.file("out.txt")));

  // A name far longer than a file name can be is simply not found.
  const std::string longName(300, 'n');
  run = ravlin(dir, "-i first.parms -d " + longName, "1\nx\n4\nout.txt\n");
  EXPECT_THAT(run.out, HasSubstr("\n Enter your ravlin sequence datafile.\n\n>> data name = x\n"));
}

// ---- Whole runs of the shipped examples -----------------------------------

namespace {

struct Entry {
  std::string id;
  std::string residues;
  std::string anchors;  // the anchor and group line, when there is one
};

bool only_of(const std::string& line, const std::string& allowed) {
  return !line.empty() && line.find_first_not_of(allowed) == std::string::npos;
}

// The ids and residues of a text-format file as the converter writes it.
std::vector<Entry> read_text_entries(const std::string& text) {
  std::vector<Entry> entries;
  std::istringstream in(text);
  std::string line;
  bool inEntry = false;
  while (std::getline(in, line)) {
    if (!line.empty() && line[0] == '>') {
      entries.push_back({line.substr(1, line.find(' ') - 1), "", ""});
      inEntry = true;
    } else if (line.empty()) {
      inEntry = false;
    } else if (inEntry && only_of(line, "*-12345")) {
      entries.back().anchors += line;
    } else if (inEntry && !only_of(line, "BCHTX")) {
      entries.back().residues += line;
    }
  }
  return entries;
}

std::vector<Entry> read_molvane_entries(const std::string& text) {
  std::vector<Entry> entries;
  std::istringstream in(text);
  std::string line;
  while (std::getline(in, line)) {
    if (line == "PSEQ") entries.push_back({"", "", ""});
    if (entries.empty() || line.empty()) continue;
    if (line[0] == 'A') entries.back().id = line.substr(1);
    if (line[0] == 'r') entries.back().residues += line.substr(1);
  }
  return entries;
}

std::string section(const std::string& report, const std::string& head) {
  const auto at = report.find("\n" + head + "\n");
  if (at == std::string::npos) return "";
  return report.substr(at + 1);
}

// Aligned rows of the block layout: " " + id in 12 columns + ": " + 50
// columns + a 7-wide residue number. Gaps stay as blanks.
std::map<std::string, std::string> aligned_rows(const std::string& alignment) {
  std::map<std::string, std::string> rows;
  std::istringstream in(alignment);
  std::string line;
  while (std::getline(in, line)) {
    if (line.size() < 15 || line[13] != ':' || line[0] != ' ') continue;
    std::string id = line.substr(1, 12);
    id.erase(0, id.find_first_not_of(' '));
    if (id == "Struct" || id == "Summary") continue;
    std::string block = line.substr(15, std::min<std::size_t>(50, line.size() - 15));
    rows[id] += block;
  }
  return rows;
}

std::string without_blanks(std::string text) {
  std::erase(text, ' ');
  return text;
}

// The column at which the residue with the given 1-based number stands.
std::size_t column_of(const std::string& row, int number) {
  int seen = 0;
  for (std::size_t c = 0; c < row.size(); ++c) {
    if (row[c] != ' ' && ++seen == number) return c;
  }
  return std::string::npos;
}

void copy_shipped(const TempDir& dir, const std::string& example) {
  for (const std::string& rel :
       std::vector<std::string>{"data/ravlin.parms", "data/ravlin.wts", "examples/" + example}) {
    const auto from = testsupport::source_path(rel);
    dir.write(from.filename().string(), testsupport::read_file(from));
  }
}

}  // namespace

TEST(ShippedExamples, TextExampleRunsThroughTheMenusToAFullReport) {
  TempDir dir;
  copy_shipped(dir, "gluts.txt");
  const auto entries = read_text_entries(dir.read("gluts.txt"));
  ASSERT_EQ(entries.size(), 14u);

  // No options: every name is typed; 15 lets the program choose the order.
  const RunResult run = ravlin(dir, "", "1\ngluts.txt\n15\ngluts.report\n");
  ASSERT_EQ(run.status, 0) << run.out;
  EXPECT_THAT(run.out, EndsWith("\nDone\n"));
  const std::string report = dir.read("gluts.report");
  EXPECT_THAT(report, HasSubstr("   Program.......: ravlin (version 6.0)\n"));
  EXPECT_THAT(report, HasSubstr("   P  Scoring Mat: ravlin.wts\n"));
  EXPECT_THAT(report, HasSubstr("Line Length...: 50 "));
  EXPECT_THAT(report, Not(HasSubstr("\nPairwise Alignments\n")));
  const std::string sequences = section(report, "Sequences");
  const std::string homology = section(report, "Pairwise Percent Sequence Homology");
  const std::string statistics = section(report, "Statistics");
  const std::string alignment = section(report, "Multiple Alignment");
  ASSERT_FALSE(alignment.empty());
  // Each section starts after the one before it.
  EXPECT_TRUE(sequences.size() > homology.size() && homology.size() > statistics.size() &&
              statistics.size() > alignment.size());
  EXPECT_THAT(statistics, HasSubstr("   Total length for the multiple alignment: "));

  const auto rows = aligned_rows(alignment);
  EXPECT_EQ(rows.size(), entries.size());
  std::size_t width = 0;
  for (const Entry& entry : entries) {
    EXPECT_THAT(sequences, HasSubstr(entry.id + "   ")) << entry.id;
    ASSERT_TRUE(rows.count(entry.id)) << entry.id;
    EXPECT_EQ(without_blanks(rows.at(entry.id)), entry.residues) << entry.id;
    if (width == 0) width = rows.at(entry.id).size();
    EXPECT_EQ(rows.at(entry.id).size(), width) << entry.id;
  }
  EXPECT_THAT(alignment, HasSubstr("      Struct: "));
  EXPECT_THAT(alignment, HasSubstr("     Summary: "));
}

TEST(ShippedExamples, AnchoredResiduesEndUpInOneColumn) {
  TempDir dir;
  copy_shipped(dir, "pla2_anchored.txt");
  const auto entries = read_text_entries(dir.read("pla2_anchored.txt"));
  ASSERT_EQ(entries.size(), 6u);
  const RunResult run = ravlin(dir, "-d pla2_anchored.txt -o pla2.report", "1\n7\n");
  ASSERT_EQ(run.status, 0) << run.out;
  const auto rows = aligned_rows(section(dir.read("pla2.report"), "Multiple Alignment"));
  std::set<std::size_t> firstColumns;
  std::set<std::size_t> secondColumns;
  for (const Entry& entry : entries) {
    ASSERT_TRUE(rows.count(entry.id)) << entry.id;
    const std::string& row = rows.at(entry.id);
    EXPECT_EQ(without_blanks(row), entry.residues) << entry.id;
    // Anchor 1 marks the catalytic His, anchor 2 the Asp behind it.
    const auto first = entry.anchors.find('1');
    const auto second = entry.anchors.find('2');
    ASSERT_NE(second, std::string::npos) << entry.id;
    ASSERT_EQ(entry.residues[first], 'H') << entry.id;
    ASSERT_EQ(entry.residues[second], 'D') << entry.id;
    firstColumns.insert(column_of(row, static_cast<int>(first) + 1));
    secondColumns.insert(column_of(row, static_cast<int>(second) + 1));
  }
  EXPECT_EQ(firstColumns.size(), 1u);
  EXPECT_EQ(secondColumns.size(), 1u);
}

TEST(ShippedExamples, MolvaneExampleInTheMolvaneLayout) {
  TempDir dir;
  copy_shipped(dir, "lysozyme.molvane");
  const auto entries = read_molvane_entries(dir.read("lysozyme.molvane"));
  ASSERT_EQ(entries.size(), 12u);

  // 14 keeps the input order.
  const RunResult run = ravlin(dir, "-molvane -d lysozyme.molvane -o lyso.report", "2\n14\n");
  ASSERT_EQ(run.status, 0) << run.out;
  const std::string alignment = section(dir.read("lyso.report"), "Multiple Alignment");
  const auto aligned = read_molvane_entries(alignment);
  ASSERT_EQ(aligned.size(), entries.size());
  for (std::size_t k = 0; k < entries.size(); ++k) {
    EXPECT_EQ(without_blanks(aligned[k].residues), entries[k].residues) << entries[k].id;
    EXPECT_EQ(aligned[k].residues.size(), aligned[0].residues.size()) << entries[k].id;
  }
}

TEST(ShippedExamples, TinyRunGivesTheHandCheckedReport) {
  TempDir dir;
  copy_shipped(dir, "gluts.txt");
  dir.write("two.txt", ">SEQA first protein\nMKVLAAGIVG\n\n>SEQB second protein\nMKVLAAGIVG\nCCHHHHHHCC\n");
  const RunResult run = ravlin(dir, "-d two.txt -o two.report", "1\n3\n");
  ASSERT_EQ(run.status, 0) << run.out;

  // SEQB has a structure, so the computed order puts it first.
  const std::string dashes(80, '-');
  // 10 residues, blanks up to the line length of 50, the number of the last.
  const std::string row = "MKVLAAGIVG" + std::string(40, ' ') + "     10\n";
  const std::string expected = "\n" + dashes + "\n\n" +
                               "   Program.......: ravlin (version 6.0)\n"
                               "   Description...: multiple sequence alignment program\n"
                               "   Date..........: <date>\n"
                               "\n"
                               "   P  Scoring Mat: ravlin.wts\n"
                               "   Gap Penalty...: 11   Structure Bias: 10   Line Length...: 50 \n"
                               "   Gap Size Pen..: 1    IncGap Percent: 5    Print Pct Hom.: TRUE \n"
                               "   Mid Struct Pen: 10   NearMatchScore: 1    Print Sorted..: TRUE \n"
                               "   End Struct Pen: 4    BlankMatchScor: 0    Print Pairwise: FALSE\n"
                               "   Consensus %...: 50 \n"
                               "\n"
                               "\n" +
                               dashes + "\n\n" +
                               "\nSequences\n*********\n\n"
                               "   Num   Acc#       Sequence Title\n"
                               "     1   SEQB           second protein\n"
                               "     2   SEQA           first protein\n"
                               "\n"
                               "\nPairwise Percent Sequence Homology\n**********************************\n\n"
                               "                      SEQB         SEQA\n"
                               "         SEQB       100.00       100.00\n"
                               "         SEQA       100.00       100.00\n"
                               "\n"
                               "\nStatistics\n**********\n\n"
                               "   Total length for the multiple alignment: 10\n"
                               "   Region where sequences overlap: 1 - 10 (length = 10)\n"
                               "   Percent Sequence Homology in overlap region: 100.00  \n"
                               "\n"
                               "\nMultiple Alignment\n******************\n"
                               "\n"
                               "         SEQB: " +
                               row +
                               "       Struct: cchhhhhhcc\n"
                               "         SEQA: " +
                               row + "      Summary: MKVLAAGIVG\n";
  EXPECT_EQ(testsupport::mask_date(dir.read("two.report")), expected);
}
