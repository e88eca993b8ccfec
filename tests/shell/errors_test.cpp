#include "shell/errors.hpp"

#include "support/test_support.hpp"

using testsupport::error_frame;

TEST(ShowErr, WarningLevelsPrintTheWarningFrameAndReturn) {
  for (int level : {0, 2}) {
    testing::internal::CaptureStdout();
    show_err(level, "read_seq_pir", "Unable to read accession for sequence\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              error_frame(0, "read_seq_pir", "Unable to read accession for sequence\n"));
  }
}

TEST(ShowErr, FatalLevelPrintsTheFrameAndExitsWithStatusOne) {
  const std::string expected =
      "\n**************************************************\n\n"
      " Fatal Error Detected!\n\n"
      " Module.: mget_seqs\n"
      " Message: Must have 2 or more sequences to align.\n\n"
      "**************************************************\n\n";
  EXPECT_FATAL_OUTPUT(show_err(1, "mget_seqs", "Must have 2 or more sequences to align."), expected);
  EXPECT_FATAL_OUTPUT(fatal_err("read_seq", "Illegal sequence format: %d\n", 7),
                      error_frame(1, "read_seq", "Illegal sequence format: 7\n"));
}

TEST(ShowErrMem, KeepsItsOwnModuleLabel) {
  const std::string expected =
      "\n**************************************************\n\n"
      " Fatal Error: Out of memory...aborting\n"
      " Module: do_pairs\n\n"
      "**************************************************\n\n";
  testing::internal::CaptureStdout();
  show_err_mem("do_pairs");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), expected);
}

TEST(CheckedAllocation, ExhaustionEndsTheRunWithTheMemoryFrame) {
  testing::internal::CaptureStdout();
  show_err_mem("calc_pair_align: sm");
  const std::string frame = testing::internal::GetCapturedStdout();
  const std::size_t huge = static_cast<std::size_t>(-1) / 2;
  // A sanitizer build may note the failed request on standard error first.
  const auto endsWithFrame = testing::EndsWith(frame);
  EXPECT_EXIT((testsupport::stdout_to_stderr(), emalloc(huge, "calc_pair_align: sm")), testing::ExitedWithCode(1),
              endsWithFrame);
  EXPECT_EXIT((testsupport::stdout_to_stderr(), ecalloc(huge, 4, "calc_pair_align: sm")), testing::ExitedWithCode(1),
              endsWithFrame);
  EXPECT_EXIT((testsupport::stdout_to_stderr(), checked_vector<int>(huge, "calc_pair_align: sm")),
              testing::ExitedWithCode(1), endsWithFrame);
}

TEST(CheckedAllocation, ZeroFillsWhatItReturns) {
  auto* block = static_cast<int*>(ecalloc(16, sizeof(int), "test"));
  for (int i = 0; i < 16; ++i) EXPECT_EQ(block[i], 0);
  std::free(block);
  EXPECT_EQ(checked_string(3, 'X', "test"), "XXX");
}

TEST(Prompts, EndWithThePromptMarker) {
  testing::internal::CaptureStdout();
  show_prompt(stdout, "\n Enter output filename.\n");
  show_msg(stdout, "%d) %s\n", 3, "three");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "\n Enter output filename.\n\n>> 3) three\n");
}
