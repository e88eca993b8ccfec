// Likely partners on pairs whose alignment is plain by eye: every residue's
// most likely partner is the one the eye gives, and both sides' maps hold the
// same links. Also the exponential they are built from.
#include "treealign/pair_posterior.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>

#include "matrix/weight_matrix.hpp"

namespace {

SeqCodes codes_of(const std::string& text) {
  SeqRecord seq;
  seq.pRes = text;
  seq.numRes = static_cast<int>(text.size());
  return seq_codes(seq, 0, 0);
}

// Each residue of a: its most likely partner in b (-1 for none above half).
std::vector<int> best_partners(const SparseMap& map) {
  std::vector<int> best;
  for (std::size_t x = 0; x + 1 < map.start.size(); ++x) {
    int partner = -1;
    for (std::int32_t s = map.start[x]; s < map.start[x + 1]; ++s)
      if (map.prob[static_cast<std::size_t>(s)] > 500) partner = map.partner[static_cast<std::size_t>(s)];
    best.push_back(partner);
  }
  return best;
}

TEST(PairPosteriors, LikelyPartnersFollowThePlainAlignment) {
  ScoreTable table{}, none{};
  for (int x = 0; x < kTableDim; ++x)
    for (int y = 0; y < kTableDim; ++y) table[static_cast<std::size_t>(x * kTableDim + y)] = x == y ? 30 : -5;
  const PosteriorModel model = posterior_model(table, none, 60, 0, 10.0);
  struct Case {
    const char* what;
    std::string a, b;
    std::vector<int> partners;
  } cases[] = {
      {"the same sequence", "ACDEFGHIK", "ACDEFGHIK", {0, 1, 2, 3, 4, 5, 6, 7, 8}},
      {"three residues deleted inside",
       "ACDEFGHIKLMNPQ",
       "ACDEFGLMNPQ",
       {0, 1, 2, 3, 4, 5, -1, -1, -1, 6, 7, 8, 9, 10}},
      {"an end left free", "WWWWACDEFGH", "ACDEFGH", {-1, -1, -1, -1, 0, 1, 2, 3, 4, 5, 6}},
      {"an empty side", "ACD", "", {-1, -1, -1}},
  };
  for (const Case& c : cases) {
    PosteriorWorkspace ws;
    SparseMap aToB, bToA;
    pair_posteriors(ws, codes_of(c.a), codes_of(c.b), {&model, 1}, aToB, bToA);
    EXPECT_EQ(best_partners(aToB), c.partners) << c.what;
    ASSERT_EQ(aToB.partner.size(), bToA.partner.size()) << c.what;
    for (std::size_t x = 0; x + 1 < aToB.start.size(); ++x)
      for (std::int32_t s = aToB.start[x]; s < aToB.start[x + 1]; ++s) {
        const auto y = static_cast<std::size_t>(aToB.partner[static_cast<std::size_t>(s)]);
        bool found = false;
        for (std::int32_t t = bToA.start[y]; t < bToA.start[y + 1]; ++t)
          found |= bToA.partner[static_cast<std::size_t>(t)] == static_cast<std::int32_t>(x) &&
                   bToA.prob[static_cast<std::size_t>(t)] == aToB.prob[static_cast<std::size_t>(s)];
        EXPECT_TRUE(found) << c.what << ": link " << x << "-" << y;
      }
  }
}

std::map<std::pair<int, int>, int> links_of(const SparseMap& map) {
  std::map<std::pair<int, int>, int> links;
  for (std::size_t x = 0; x + 1 < map.start.size(); ++x)
    for (std::int32_t s = map.start[x]; s < map.start[x + 1]; ++s)
      links[{static_cast<int>(x), map.partner[static_cast<std::size_t>(s)]}] = map.prob[static_cast<std::size_t>(s)];
  return links;
}

// Two models: each link is the mean of the two models' (a link one model
// drops counts 0 there), kept when it reaches the least mean probability.
TEST(PairPosteriors, TwoModelsGiveTheMeanOfTheirLinks) {
  ScoreTable table{}, none{};
  for (int x = 0; x < kTableDim; ++x)
    for (int y = 0; y < kTableDim; ++y) table[static_cast<std::size_t>(x * kTableDim + y)] = x == y ? 30 : -5;
  const PosteriorModel models[] = {posterior_model(table, none, 60, 0, 10.0),
                                   posterior_model(table, none, 40, 2, 25.0)};
  const SeqCodes a = codes_of("ACDEFGHIKLMNPQ"), b = codes_of("ACDEFKLMNPQ");
  PosteriorWorkspace ws;
  SparseMap single[2], aToB, bToA;
  for (int m = 0; m < 2; ++m) pair_posteriors(ws, a, b, {&models[m], 1}, single[m], bToA);
  pair_posteriors(ws, a, b, models, aToB, bToA);
  std::map<std::pair<int, int>, int> expected;
  for (const auto& [link, prob] : links_of(single[0])) expected[link] += prob;
  for (const auto& [link, prob] : links_of(single[1])) expected[link] += prob;
  for (auto& entry : expected) entry.second = (entry.second + 1) / 2;
  std::erase_if(expected, [](const auto& entry) { return entry.second < 40; });
  EXPECT_EQ(links_of(aToB), expected);
  EXPECT_NE(links_of(single[0]), links_of(single[1]));  // the models differ, or the test proves nothing
}

TEST(PairPosteriors, PortableExpAndLogMatchTheLibrary) {
  for (const double x : {-744.0, -60.5, -1.0, -1e-9, 0.0, 0.3466, 1.0, 7.25, 100.0, 700.0})
    EXPECT_NEAR(portable_exp(x) / std::exp(x), 1.0, 4e-16) << x;
  EXPECT_EQ(portable_exp(-800.0), 0.0);
  for (const double x : {1e-300, 0.0625, 0.7071, 0.7072, 1.0, 1.4142, 3.0, 2048.0, 1e300})
    EXPECT_NEAR(portable_log2(x), std::log2(x), 1e-12) << x;
}

}  // namespace
