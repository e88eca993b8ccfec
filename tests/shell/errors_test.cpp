#include "shell/errors.hpp"

#include "support/test_support.hpp"

// The frame every fatal path of the programs ends with, spelled out once here
// rather than through the tests' own error_frame.
TEST(ShowErr, FatalLevelPrintsTheFrameAndExitsWithStatusOne) {
  const std::string expected =
      "\n**************************************************\n\n"
      " Fatal Error Detected!\n\n"
      " Module.: mget_seqs\n"
      " Message: Must have 2 or more sequences to align.\n\n"
      "**************************************************\n\n";
  EXPECT_EQ(testsupport::error_frame(1, "mget_seqs", "Must have 2 or more sequences to align."), expected);
  EXPECT_FATAL_OUTPUT(show_err(1, "mget_seqs", "Must have 2 or more sequences to align."), expected);
}

TEST(CheckedAllocation, ExhaustionEndsTheRunWithTheMemoryFrame) {
  const std::string frame =
      "\n**************************************************\n\n"
      " Fatal Error: Out of memory...aborting\n"
      " Module: calc_pair_align: sm\n\n"
      "**************************************************\n\n";
  const std::size_t huge = static_cast<std::size_t>(-1) / 2;
  // A sanitizer build may note the failed request on standard error first.
  EXPECT_EXIT((testsupport::stdout_to_stderr(), checked_vector<int>(huge, "calc_pair_align: sm")),
              testing::ExitedWithCode(1), testing::EndsWith(frame));
}
