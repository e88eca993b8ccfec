// ravlin-batch on compressed PIR files written by the pir_comp_write tool.
#include <string>

#include "support/test_support.hpp"

using ::testing::HasSubstr;
using testsupport::RunResult;
using testsupport::TempDir;

namespace {

// Writes count records to data.pir and aligns them, letting the program choose
// the order (selection n + 1 for the 500 sequences it may read).
RunResult run_on_records(const TempDir& dir, int count) {
  const std::string tool = testsupport::tool_path("pir_comp_write");
  EXPECT_EQ(testsupport::run_program(tool, std::to_string(count) + " data.pir", "", dir.path()).status, 0);
  dir.write("run.parms", "RAVLIN:SCOR_MATRIX " + testsupport::source_path("data/ravlin.wts").string() +
                             "\nRAVLIN:STRUCT_BIAS 10\nRAVLIN:INC_GAP_PEN 5\nRAVLIN:PRINT_PAIRWISE 0\n"
                             "RAVLIN:PRINT_PCT_HOM 0\nRAVLIN:PRINT_FORMAT 0\nRAVLIN:PRINT_ORDER 1\n"
                             "RAVLIN:CONSENSUS_PCT 50\nRAVLIN:RES_LINE_LEN 50\nRAVLIN:ASCII_FLAG 1\n"
                             "RAVLIN:DATA_FORMAT 4\nRAVLIN:DATA_FILE data.pir\nRAVLIN:SEQ_SELECT 501\n");
  return testsupport::run_program(RAVLIN_BATCH_BIN, "run.parms report.txt", "", dir.path());
}

// The reader's own pushed-back newline makes the call after the last record a
// failed read rather than the end of the file.
TEST(PirCompBatch, ReadingAFileToItsEndStopsTheRun) {
  TempDir dir;
  const RunResult result = run_on_records(dir, 4);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, testsupport::error_frame(1, "mget_seqs", "Cannot continue alignment until errors fixed..."));
  EXPECT_FALSE(std::filesystem::exists(dir.file("report.txt")));
}

// Reading stops at the 500th record before trying another, so the run goes on.
TEST(PirCompBatch, FiveHundredRecordsAlign) {
  TempDir dir;
  const RunResult result = run_on_records(dir, 500);
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, HasSubstr("\nNumber of sequences to align: 500"));
  EXPECT_THAT(result.out, HasSubstr("\nDone\n"));
  // Input order in the report: the first and the last record, with their titles.
  const std::string report = dir.read("report.txt");
  EXPECT_THAT(report, HasSubstr("     1   PC1000 "));
  EXPECT_THAT(report, HasSubstr("   500   PC1499 "));
  EXPECT_THAT(report, HasSubstr(" - Bacillus subtilis\n"));
  EXPECT_THAT(report, HasSubstr("Multiple Alignment"));
}

}  // namespace
