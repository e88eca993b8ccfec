#include "align/penalties.hpp"

#include <string>
#include <vector>

#include "support/test_support.hpp"

using ::testing::ElementsAre;

namespace {

constexpr int M = 7;  // midPen
constexpr int E = 3;  // endPen

}  // namespace

TEST(CalcStructScores, RunEndsDrawTheEndPenaltyInsideTheMiddlePenalty) {
  const struct {
    std::string sRes;
    std::vector<std::int32_t> expected;
  } cases[] = {
      {"HHHH", {E, M, M, E}},
      {"CHHC", {0, E, E, 0}},
      {"H", {E}},
      {"BBTBXBB", {E, E, 0, E, 0, E, E}},
      // Blanks and other codes neither draw nor end a penalty.
      {" HH ", {0, M, M, 0}},
      {"EHhGH", {0, M, 0, 0, E}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.sRes);
    std::vector<std::int32_t> out(c.sRes.size(), -1);
    calc_struct_scores(c.sRes.data(), static_cast<int>(c.sRes.size()), out.data(), M, E, 1);
    EXPECT_EQ(out, c.expected);
  }
}

TEST(CalcAnchorGroupPen, GapsOpenOnlyBesideDashesAndAnchorsDigitsOneToFiveAreAnchors) {
  std::string uRes = "ab-cd";
  std::vector<std::int32_t> codes(5, 1);
  std::vector<std::int32_t> pen(5, -2);  // positions left alone keep what they held
  calc_anchor_group_pen(uRes.data(), 5, codes.data(), pen.data(), 5000);
  EXPECT_THAT(pen, ElementsAre(-2, 5000, -2, -2, 5000));
  EXPECT_THAT(codes, ElementsAre(1, 1, 1, 1, 1));

  uRes = "x1590-3";
  codes.assign(7, 4);
  pen.assign(7, -2);
  calc_anchor_group_pen(uRes.data(), 7, codes.data(), pen.data(), 5000);
  EXPECT_THAT(codes, ElementsAre(4, 27, 31, 4, 4, 4, 29));
  EXPECT_THAT(pen, ElementsAre(-2, -2, -2, 5000, 5000, -2, -2));
}
