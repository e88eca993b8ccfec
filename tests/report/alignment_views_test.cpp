// What the whole runs' reports do not reach: long ids, near matches, a
// consensus over blank columns, an alignment without an overlap region.
// Whole sections are kept as files under tests/golden/report.
#include "report/alignment_views.hpp"

#include <ctime>
#include <functional>

#include "matrix/weight_matrix.hpp"
#include "report/line_printers.hpp"
#include "report/report_sections.hpp"
#include "shell/text_input.hpp"
#include "support/test_support.hpp"

namespace {

std::string printed(const std::function<void(std::FILE*)>& write) {
  const UniqueFile file(std::tmpfile());
  write(file.get());
  return testsupport::text_of(file.get());
}

class AlignmentViewsTest : public testing::Test {
 protected:
  void SetUp() override {
    settings_.resLineLen = 5;
    settings_.printFormat = 0;
    settings_.nearMatchScore = 2;
    seqs_.resize(3);
  }

  PrintOptions options() const { return run_print_options(settings_, settings_.wtMatrix); }

  SeqRecord& put_seq(int i, std::optional<std::string> acc, std::optional<std::string> title = {}, int hasSRes = 0) {
    SeqRecord& record = seqs_[static_cast<std::size_t>(i)];
    record.acc = std::move(acc);
    record.title = std::move(title);
    record.hasSRes = hasSRes;
    for (int k = 0; k < kResNumsLen; ++k) record.resNums.push_back(k);
    return record;
  }

  const std::vector<int> order{2, 0, 1};
  RunSettings settings_;
  std::vector<SeqRecord> seqs_;
};

// An id longer than its 12 columns is printed whole, pushing the line right;
// without a numbering table the count is the number.
TEST_F(AlignmentViewsTest, LongIdPushesTheResidueLineRight) {
  ViewRow row;
  row.id = "LONGACCESSION1";
  int count = 0;
  EXPECT_EQ(printed([&](std::FILE* f) { print_res_line(f, row, "A C", 0, 3, &count, settings_.resLineLen); }),
            " LONGACCESSION1: A C        2\n");
}

TEST_F(AlignmentViewsTest, MalignIndexCheckAndDate) {
  EXPECT_THROW(get_malign_index(order, 5, 1), RunFailure);
  const auto calendar_now = [] {
    const std::time_t now = std::time(nullptr);
    char text[64];
    std::strftime(text, sizeof text, "%a %b %e %H:%M:%S %Y\n", std::localtime(&now));
    return std::string(text);
  };
  const std::string before = calendar_now(), date = get_date(), after = calendar_now();
  EXPECT_TRUE(date == before || date == after) << date;
}

TEST_F(AlignmentViewsTest, PairwiseSection) {
  put_seq(0, "Q0", "zero");
  put_seq(1, "Q1", std::nullopt, 1);
  settings_.wtMatrix[('C' - 'A') * 32 + ('S' - 'A')] = 3;  // near match, only in this orientation
  settings_.wtMatrix[('D' - 'A') * 32 + ('E' - 'A')] = 1;  // below nearMatchScore
  const AlignRecord pair{2, 7, 1, 7, 57.5, 67.5, {{1, "ACDaK G", "HH- CT ", ""}, {0, "ASEaK G", "", ""}}};
  // The counters restart for each pair.
  const auto section = [&](std::FILE* f) {
    print_pairwise_head(f);
    for (int k = 0; k < 2; ++k) print_pair_alignment(f, pair_view(seqs_, pair), options());
  };
  EXPECT_EQ(printed(section), testsupport::read_golden("report/pairwise.txt"));
  settings_.resLineLen = 0;
  EXPECT_EQ(printed(section).find("Match"), std::string::npos);
}

TEST_F(AlignmentViewsTest, Statistics) {
  AlignRecord malign{3, 12, 3, 10, 45.678, 0.0, {}};
  const auto print = [&] {
    return printed([&](std::FILE* f) { print_statistics(f, malign_view(seqs_, malign, order, 0, 0)); });
  };
  const std::string head = "\nStatistics\n**********\n\n   Total length for the multiple alignment: 12\n";
  const std::string tail = "\n   Percent Sequence Homology in overlap region: 45.68   \n\n";
  // One column is no region; a longer one is printed in the whole runs.
  malign.overlapStart = malign.overlapEnd = 4;
  EXPECT_EQ(print(), head + "   No Region where all sequences overlap." + tail);
}

// A letter everywhere, 'Z' over blank columns, ties to the later letter;
// members in the order they were added (2, 0, 1), where only 0 has a structure.
TEST_F(AlignmentViewsTest, MultipleAlignmentConsensusOverBlankColumns) {
  put_seq(0, "M0", std::nullopt, 1);
  put_seq(1, "M1", "one");
  put_seq(2, "M2", "two");
  const AlignRecord malign{
      .numSeqs = 3,
      .alignLen = 6,
      .seqs = {
          {2, "AC  GK", "XX  XX", "--  --"}, {0, "AD  GY", "HH  CC", "-1  --"}, {1, "CD  GWQQ", "XX  XX", "--  --"}}};
  const auto print = [&] {
    return printed([&](std::FILE* f) { print_mult_align(f, malign_view(seqs_, malign, order, 0, 0), options()); });
  };
  settings_.resLineLen = 4;
  EXPECT_EQ(print(), testsupport::read_golden("report/mult_align_consensus_0.txt"));
  // No columns to a block: the heading alone.
  settings_.resLineLen = 0;
  EXPECT_EQ(print(), "\nMultiple Alignment\n******************\n");
}

}  // namespace
