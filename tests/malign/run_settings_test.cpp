// The settings of a run as its files give them: the shipped weight file, and
// what a parameter file that lacks keys or breaks a bound gives back.
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

TEST(ReadParmsFile, FaultsAndMissingKeysComeBackAsValues) {
  const struct {
    std::string parms;
    std::string expected;  // the failure's frame
  } cases[] = {
      {"RAVLIN:STRUCT_BIAS -101\n",
       testsupport::error_frame(1, "read_parm_int",
                                "Parm key = 'RAVLIN:STRUCT_BIAS' Lower bound exceeded: -101 < -100\n")},
      {"RAVLIN:SCOR_MATRIX /nonexistent.wts\n",
       testsupport::error_frame(1, "read_parm_fname2",
                                "Parmkey = 'RAVLIN:SCOR_MATRIX' Cannot open file: '/nonexistent.wts'.\n")},
      // The check order names the weight file before its keys.
      {"RAVLIN:STRUCT_BIAS 0\n",
       testsupport::error_frame(1, "check_ravlin_parms", "Missing Parameter: RAVLIN:SCOR_MATRIX\n")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.parms);
    RunSettings settings;
    ParmsRead read;
    std::optional<Failure> failure = read_parms_file(testsupport::stream_of(c.parms).get(), nullptr, settings, read);
    if (!failure) failure = check_ravlin_parms(settings, read, false);
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(testsupport::error_frame(1, failure->module, failure->message), c.expected);
  }
}
