// ravlin-batch on compressed PIR files written by the pir_comp_write tool.
#include <filesystem>
#include <string>

#include "support/test_support.hpp"

using ::testing::HasSubstr;
using testsupport::error_frame;
using testsupport::run_command;
using testsupport::RunResult;
using testsupport::shell_quote;
using testsupport::TempDir;
using testsupport::tool_path;

namespace {

// Parameters of a run over data.pir, letting the program choose the order
// (selection n + 1 for the 500 sequences it may read).
const std::string kParms =
    "RAVLIN:SCOR_MATRIX " + testsupport::source_path("data/ravlin.wts").string() +
    "\n"
    "RAVLIN:STRUCT_BIAS 10\nRAVLIN:INC_GAP_PEN 5\nRAVLIN:PRINT_PAIRWISE 0\nRAVLIN:PRINT_PCT_HOM 0\n"
    "RAVLIN:PRINT_FORMAT 0\nRAVLIN:PRINT_ORDER 1\nRAVLIN:CONSENSUS_PCT 50\nRAVLIN:RES_LINE_LEN 50\n"
    "RAVLIN:ASCII_FLAG 1\nRAVLIN:DATA_FORMAT 4\nRAVLIN:DATA_FILE data.pir\nRAVLIN:SEQ_SELECT 501\n";

RunResult run_on_records(const TempDir& dir, int count) {
  const RunResult written =
      run_command(shell_quote(tool_path("pir_comp_write")) + " " + std::to_string(count) + " data.pir", "", dir.path());
  EXPECT_EQ(written.status, 0);
  dir.write("run.parms", kParms);
  return run_command(shell_quote(RAVLIN_BATCH_BIN) + " run.parms report.txt", "", dir.path());
}

TEST(PirCompBatch, ReadingAFileToItsEndStopsTheRun) {
  // The reader's own pushed-back newline makes the call after the last
  // record a failed read rather than the end of the file.
  TempDir dir;
  const RunResult result = run_on_records(dir, 4);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, error_frame(1, "mget_seqs", "Cannot continue alignment until errors fixed..."));
  EXPECT_FALSE(std::filesystem::exists(dir.file("report.txt")));
}

TEST(PirCompBatch, FiveHundredRecordsAlign) {
  // Reading stops at the 500th record before trying another, so the run goes on.
  TempDir dir;
  const RunResult result = run_on_records(dir, 500);
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, HasSubstr("\nNumber of sequences to align: 500"));
  EXPECT_THAT(result.out, HasSubstr("\nDone\n"));
  const std::string report = dir.read("report.txt");
  EXPECT_THAT(report, HasSubstr("Multiple Alignment"));
  // Input order in the report: the first and the last record, with their titles.
  EXPECT_THAT(report, HasSubstr("     1   PC1000 "));
  EXPECT_THAT(report, HasSubstr("   500   PC1499 "));
  EXPECT_THAT(report, HasSubstr(" - Bacillus subtilis\n"));
}

}  // namespace
