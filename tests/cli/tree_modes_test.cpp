// Whole runs of ravlin-align's strategies: the guide tree's joins against
// the designed one-by-one order, anchors and gap-free groups in every mode,
// and the same bytes whatever the workers and kernel.
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/test_support.hpp"

namespace {

using testsupport::RunResult;
using testsupport::TempDir;

// id -> aligned row ('-' for gaps), from FASTA of one line or more a row.
std::map<std::string, std::string> fasta_rows(const std::string& text) {
  std::map<std::string, std::string> rows;
  std::istringstream lines(text);
  std::string line, id;
  while (std::getline(lines, line)) {
    if (line.empty()) continue;
    if (line[0] == '>')
      id = line.substr(1, line.find(' ') - 1);
    else
      rows[id] += line;
  }
  return rows;
}

std::string example(const std::string& name) { return testsupport::source_path("examples/" + name).string(); }

RunResult align(const TempDir& dir, const std::string& args) {
  return testsupport::run_program(RAVLIN_ALIGN_BIN, "-q " + args, "", dir.path());
}

// Two subfamilies, a and b, where b lacks four residues: a1 and b1 share
// DGL at residues 5-7 and K, C and A near their ends, so the true alignment
// puts b's gap after its 13th residue. Adding the sequences one by one in the
// order of their pair scores shifts b by three columns; joining the two
// pairs as groups finds it.
TEST(TreeModes, SubfamiliesMeetAsGroups) {
  const std::string input =
      ">a1\nHIQHDGLQNSRGVHPQEVCKCCHA\n>a2\nDIIHDGLQRSRGVHPFQVCKCCTA\n"
      ">b1\nKYFLDGLNNSVPIVWKCITA\n>b2\nKYFLDYYLGSVRIPVSCITC\n";
  const std::string truth =
      ">a1\nHIQHDGLQNSRGVHPQEVCKCCHA\n>a2\nDIIHDGLQRSRGVHPFQVCKCCTA\n"
      ">b1\nKYFLDGLNNSVPI----VWKCITA\n>b2\nKYFLDYYLGSVRI----PVSCITC\n";
  const TempDir dir;
  dir.write("in.fa", input);
  EXPECT_EQ(align(dir, "--mode tree in.fa").out, truth);
  EXPECT_EQ(align(dir, "--mode consistency in.fa").out, truth);
  EXPECT_NE(align(dir, "--mode designed in.fa").out, truth);
}

// Every residue of one anchor number stands in one column, and no gap
// opens inside a gap-free group, whichever strategy aligned them.
TEST(TreeModes, AnchorsAndGroupsHoldInEveryMode) {
  const std::map<std::string, std::string> marks =
      fasta_rows(testsupport::read_file(example("pla2_anchored.anchors.fa")));
  for (const char* mode : {"designed", "tree", "consistency"}) {
    SCOPED_TRACE(mode);
    const TempDir dir;
    const RunResult run =
        align(dir, std::string("--mode ") + mode + " " + example("pla2_anchored.fa") + " -s " +
                       example("pla2_anchored.ss.fa") + " --anchors " + example("pla2_anchored.anchors.fa"));
    ASSERT_EQ(run.status, 0);
    const std::map<std::string, std::string> rows = fasta_rows(run.out);
    ASSERT_EQ(rows.size(), marks.size());
    std::map<char, std::vector<std::size_t>> anchorColumns;
    for (const auto& [id, row] : rows) {
      const std::string& mark = marks.at(id);
      std::size_t residue = 0, previousColumn = 0;
      for (std::size_t column = 0; column < row.size(); ++column) {
        if (row[column] == '-') continue;
        const char m = mark[residue];
        if (m >= '1' && m <= '5') anchorColumns[m].push_back(column);
        if (m == '*' && residue > 0 && mark[residue - 1] == '*') {
          EXPECT_EQ(column, previousColumn + 1) << id << " group split at residue " << residue + 1;
        }
        previousColumn = column;
        ++residue;
      }
    }
    ASSERT_FALSE(anchorColumns.empty());
    for (const auto& [anchor, columns] : anchorColumns)
      for (const std::size_t column : columns) EXPECT_EQ(column, columns.front()) << "anchor " << anchor;
  }
}

TEST(TreeModes, SameBytesOnAnyWorkersAndKernel) {
  const TempDir dir;
  const std::string args = "-f sto " + example("gluts.fa") + " -s " + example("gluts.ss.fa");
  const RunResult one = align(dir, "--mode consistency -t 1 " + args);
  ASSERT_EQ(one.status, 0);
  EXPECT_NE(one.out.find("#=GC confidence"), std::string::npos);
  for (const char* run : {"--mode consistency -t 2 ", "--mode consistency -t 7 ", "-t 7 "})
    EXPECT_EQ(align(dir, run + args).out, one.out) << run;
  const RunResult scalar = testsupport::run_command(
      "RAVLIN_KERNEL=scalar " + testsupport::shell_quote(RAVLIN_ALIGN_BIN) + " -q -t 2 " + args, "", dir.path());
  EXPECT_EQ(scalar.out, one.out);
  EXPECT_EQ(align(dir, "--mode tree -t 1 " + args).out, align(dir, "--mode tree -t 7 " + args).out);
}

}  // namespace
