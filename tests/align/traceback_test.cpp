#include "align/traceback.hpp"

#include <string>
#include <vector>

#include "support/test_support.hpp"

using testsupport::error_frame;

namespace {

constexpr std::int32_t N = kNoCell;

// Two templates with room for maxLen + 1 characters and a guard behind each.
struct Templates {
  explicit Templates(int maxLen)
      : first(maxLen + 1 + kGuard, '#'), second(maxLen + 1 + kGuard, '#'), room(maxLen + 1) {}
  std::span<char> firstSpan() { return {first.data(), static_cast<std::size_t>(room)}; }
  std::span<char> secondSpan() { return {second.data(), static_cast<std::size_t>(room)}; }
  std::string firstText(int len) const { return first.substr(0, len); }
  std::string secondText(int len) const { return second.substr(0, len); }
  bool guardsIntact() const {
    return first.substr(room) == std::string(kGuard, '#') && second.substr(room) == std::string(kGuard, '#');
  }
  static constexpr int kGuard = 8;
  std::string first, second;
  int room;
};

// A matrix whose only meaningful content is its links.
std::vector<SumCell> linked(int rows, int cols, const std::vector<std::pair<int, int>>& links) {
  std::vector<SumCell> m(static_cast<std::size_t>(rows * cols), SumCell{0, N});
  for (const auto& [from, to] : links) m[from].next = to;
  return m;
}

}  // namespace

TEST(FindBestAlign, WorkedExampleSkipsTwoColumns) {
  // (0,0) links to (1,3) in a 2 x 4 matrix.
  const auto m = linked(2, 4, {{0, 7}});
  Templates t(10);
  const int len = find_best_align(0, m.data(), 2, 4, t.firstSpan(), t.secondSpan(), 10);
  EXPECT_EQ(len, 4);
  EXPECT_EQ(t.firstText(5), std::string("X  X\0", 5));
  EXPECT_EQ(t.secondText(5), std::string("XXXX\0", 5));
}

TEST(FindBestAlign, NullStartPutsTheRowOperandFirst) {
  const auto m = linked(2, 3, {});
  Templates t(10);
  const int len = find_best_align(N, m.data(), 2, 3, t.firstSpan(), t.secondSpan(), 10);
  EXPECT_EQ(len, 5);
  EXPECT_EQ(t.firstText(5), "XX   ");
  EXPECT_EQ(t.secondText(5), "  XXX");
}

TEST(FindBestAlign, StartBelowRowZeroLeadsWithTheRowOperand) {
  // Start (3,0) of a 4 x 2 matrix: three rows face blanks first; column 1 trails.
  const auto m = linked(4, 2, {});
  Templates t(10);
  const int len = find_best_align(6, m.data(), 4, 2, t.firstSpan(), t.secondSpan(), 10);
  EXPECT_EQ(len, 5);
  EXPECT_EQ(t.firstText(len), "XXXX ");
  EXPECT_EQ(t.secondText(len), "   XX");
}

TEST(FindBestAlign, DiagonalRunLeavesTheLongerOperandsTailFacingBlanks) {
  const auto m = linked(2, 4, {{0, 5}});
  Templates t(10);
  const int len = find_best_align(0, m.data(), 2, 4, t.firstSpan(), t.secondSpan(), 10);
  EXPECT_EQ(len, 4);
  EXPECT_EQ(t.firstText(len), "XX  ");
  EXPECT_EQ(t.secondText(len), "XXXX");
}

TEST(FindBestAlign, ExactlyTheLimitIsAcceptedWithinTheBuffers) {
  const auto m = linked(3, 3, {});
  Templates t(6);
  EXPECT_EQ(find_best_align(N, m.data(), 3, 3, t.firstSpan(), t.secondSpan(), 6), 6);
  EXPECT_EQ(t.first[6], '\0');
  EXPECT_TRUE(t.guardsIntact());
}

TEST(FindBestAlign, LengthKeepsCountingPastShortBuffers) {
  // With a limit above the buffers nothing is written past them, yet the
  // whole length is returned.
  const auto m = linked(3, 3, {});
  Templates t(3);
  EXPECT_EQ(find_best_align(N, m.data(), 3, 3, t.firstSpan(), t.secondSpan(), 100), 6);
  EXPECT_EQ(t.firstText(4), "XXX ");
  EXPECT_TRUE(t.guardsIntact());
}

TEST(FindBestAlignDeathTest, OneOverTheLimitIsFatalAndNamesTheLimit) {
  const auto m = linked(4, 3, {});
  Templates t(6);
  EXPECT_FATAL_OUTPUT(find_best_align(N, m.data(), 4, 3, t.firstSpan(), t.secondSpan(), 6),
                      error_frame(1, "find_best_align", "Alignment size exceeded, len = 6\n"));
}
