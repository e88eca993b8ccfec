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
    int reach;
    std::vector<std::int32_t> expected;
  } cases[] = {
      {"HHHH", 1, {E, M, M, E}},
      {"CHHC", 1, {0, E, E, 0}},
      {"H", 1, {E}},
      // Blanks and other codes neither draw nor end a penalty.
      {" HH ", 1, {0, M, M, 0}},
      {"EHhGH", 1, {0, M, 0, 0, E}},
      // Reach 2: an edge or a 'C' within two positions gives endPen.
      {"HHHHHH", 2, {E, E, M, M, E, E}},
      {"HHHHHCH", 2, {E, E, M, E, E, 0, E}},
      {"HHH", 0, {M, M, M}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.sRes + " reach " + std::to_string(c.reach));
    std::vector<std::int32_t> out(c.sRes.size(), -1);
    calc_struct_scores(c.sRes.data(), static_cast<int>(c.sRes.size()), out.data(), M, E, c.reach);
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
