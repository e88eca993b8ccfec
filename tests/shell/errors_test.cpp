#include "shell/errors.hpp"

#include "support/test_support.hpp"

using testsupport::error_frame;

TEST(ShowErr, WarningPrintsFrameAndReturns) {
  for (int level : {0, 2}) {
    testing::internal::CaptureStdout();
    show_err(level, "read_seq_pir", "Unable to read accession for sequence\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              error_frame(0, "read_seq_pir", "Unable to read accession for sequence\n"));
  }
}
