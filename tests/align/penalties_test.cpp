#include "align/penalties.hpp"

#include <string>
#include <vector>

#include "support/test_support.hpp"

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

namespace {

constexpr int kMid = 7;
constexpr int kEnd = 3;

std::vector<std::int32_t> struct_scores(const std::string& sRes, int reach = 1) {
  std::vector<std::int32_t> out(sRes.size(), -1);
  calc_struct_scores(sRes.data(), static_cast<int>(sRes.size()), out.data(), kMid, kEnd, reach);
  return out;
}

std::vector<std::int32_t> indices(const std::string& text) {
  std::vector<std::int32_t> out(text.size(), -1);
  codes_to_indices(text.data(), static_cast<int>(text.size()), out.data(), 26);
  return out;
}

}  // namespace

TEST(CodesToIndices, LettersMapToTheirOffsetEverythingElseToOther) {
  EXPECT_THAT(indices("AZMW"), ElementsAre(0, 25, 12, 22));
  EXPECT_THAT(indices("- *1a z@[\x80"), ElementsAreArray(std::vector<std::int32_t>(10, 26)));
  std::vector<std::int32_t> out{-1};
  codes_to_indices("Q", 1, out.data(), 99);
  codes_to_indices("q", 0, out.data(), 99);  // n of 0 writes nothing
  EXPECT_THAT(out, ElementsAre(16));
}

TEST(CalcStructScores, RunEndsDrawTheEndPenaltyInsideTheMiddlePenalty) {
  EXPECT_THAT(struct_scores("HHHH"), ElementsAre(kEnd, kMid, kMid, kEnd));
  EXPECT_THAT(struct_scores("CHHC"), ElementsAre(0, kEnd, kEnd, 0));
  EXPECT_THAT(struct_scores("H"), ElementsAre(kEnd));
  EXPECT_THAT(struct_scores("BBTBXBB"), ElementsAre(kEnd, kEnd, 0, kEnd, 0, kEnd, kEnd));
}

TEST(CalcStructScores, BlanksAndOtherCodesNeitherDrawNorEndAPenalty) {
  EXPECT_THAT(struct_scores(" HH "), ElementsAre(0, kMid, kMid, 0));
  EXPECT_THAT(struct_scores("EHhGH"), ElementsAre(0, kMid, 0, 0, kEnd));
}

TEST(CalcStructScores, LongerReachLooksFurtherForEndsAndEdges) {
  // Reach 2: a string edge within two positions gives endPen, as does a 'C'
  // two positions away; the middle of a long run keeps midPen.
  EXPECT_THAT(struct_scores("HHHHHH", 2), ElementsAre(kEnd, kEnd, kMid, kMid, kEnd, kEnd));
  EXPECT_THAT(struct_scores("HHHHHCH", 2), ElementsAre(kEnd, kEnd, kMid, kEnd, kEnd, 0, kEnd));
  EXPECT_THAT(struct_scores("HHH", 0), ElementsAre(kMid, kMid, kMid));
}

TEST(CalcAnchorGroupPen, GapsMayOpenOnlyBesideDashesAndAnchors) {
  const std::string uRes = "ab-cd";
  std::vector<std::int32_t> codes(5, 1);
  std::vector<std::int32_t> pen(5, 0);
  calc_anchor_group_pen(uRes.data(), 5, codes.data(), pen.data(), 5000);
  EXPECT_THAT(pen, ElementsAre(0, 5000, 0, 0, 5000));
  EXPECT_THAT(codes, ElementsAre(1, 1, 1, 1, 1));
}

TEST(CalcAnchorGroupPen, DigitsOneToFiveAreAnchorsOthersAreGroupCharacters) {
  const std::string uRes = "x1590-3";
  std::vector<std::int32_t> codes(uRes.size(), 4);
  std::vector<std::int32_t> pen(uRes.size(), -2);  // untouched positions keep what they held
  calc_anchor_group_pen(uRes.data(), static_cast<int>(uRes.size()), codes.data(), pen.data(), 5000);
  EXPECT_THAT(codes, ElementsAre(4, 27, 31, 4, 4, 4, 29));
  EXPECT_THAT(pen, ElementsAre(-2, -2, -2, 5000, 5000, -2, -2));
}
