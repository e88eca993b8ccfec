// The shipped weight file as the runs read it. A parameter file's faults come
// back as values: ravlin-align reports one (tests/cli/align_command_test.cpp)
// and ravlin-batch each (tests/app/batch_test.cpp).
#include "malign/run_settings.hpp"

#include <sstream>
#include <string>

#include "support/test_support.hpp"

namespace {

int cell(const ScoreTable& table, char x, char y) { return table[(x - 'A') * kTableDim + (y - 'A')]; }

void expect_cells(const ScoreTable& table, const std::string& cells) {
  std::istringstream words(cells);
  for (std::string w; words >> w;) EXPECT_EQ(cell(table, w[0], w[1]), std::stoi(w.substr(2))) << w;
}

}  // namespace

TEST(ShippedWeightFile, HoldsBlosum62AndAStructureTableThatRewardsLikeStructures) {
  auto stream = open_file(testsupport::source_path("data/ravlin.wts").string(), "r");
  ASSERT_TRUE(stream);
  RunSettings settings;
  ParmsRead read;
  ASSERT_EQ(read_weight_file(stream.get(), settings, read), std::nullopt);
  EXPECT_GT(settings.midStructPen, settings.endStructPen);
  const ScoreTable& structures = settings.ssMatrix;
  // BLOSUM62 as published; the whole runs with these files find every key.
  expect_cells(settings.wtMatrix, "AA4 WW11 CC9 WF1 IV3 DL-4 BD4 ZE4 XX-1 PF-4 JA0");
  for (char s : std::string("HBCT")) EXPECT_GT(cell(structures, s, s), 0) << s;
  EXPECT_LT(cell(structures, 'H', 'B'), 0);
  for (char s : std::string("HBCTX")) EXPECT_EQ(cell(structures, 'X', s), 0) << s;
}
