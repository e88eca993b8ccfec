#include "shell/errors.hpp"

#include "support/test_support.hpp"

// Exhausted memory inside a checked allocation comes back naming its module.
TEST(CheckedAllocation, ExhaustionIsRaisedWithItsModule) {
  const std::size_t huge = static_cast<std::size_t>(-1) / 2;
  const std::optional<Failure> failure =
      capture_failure("main", [&] { checked_vector<int>(huge, "calc_pair_align: sm"); });
  ASSERT_TRUE(failure.has_value());
  EXPECT_EQ(failure->kind, FailureKind::kOutOfMemory);
  EXPECT_EQ(failure->module, "calc_pair_align: sm");
}
