// What the whole runs' reports do not reach: long ids, near matches, a
// consensus over blank columns, an alignment without an overlap region. Whole sections are kept as files under
// tests/golden/report.
#include "malign/alignment_views.hpp"

#include <ctime>
#include <functional>

#include "matrix/weight_matrix.hpp"
#include "report/line_printers.hpp"
#include "report/report_sections.hpp"
#include "shell/run_params.hpp"
#include "shell/text_input.hpp"
#include "support/test_support.hpp"

namespace {

std::string printed(const std::function<void(std::FILE*)>& write) {
  UniqueFile file(std::tmpfile());
  write(file.get());
  std::fflush(file.get());
  std::rewind(file.get());
  std::string text;
  for (int ch = std::fgetc(file.get()); ch != EOF; ch = std::fgetc(file.get())) text.push_back(static_cast<char>(ch));
  return text;
}

class AlignmentViewsTest : public testing::Test {
 protected:
  void SetUp() override {
    for (SeqRecord& record : mySeq) record = SeqRecord{};
    multAlignNum = 0;
    resLineLen = 5;
    printOrderFlag = printFormat = printPairsFlag = printPctHomFlag = consensusPercent = 0;
    nearMatchScore = 2;
    wtMatrix.fill(0);
  }

  static SeqRecord& put_seq(int i, std::optional<std::string> acc, std::optional<std::string> title = {},
                            int hasSRes = 0) {
    SeqRecord& record = mySeq[static_cast<std::size_t>(i)];
    record.acc = std::move(acc);
    record.title = std::move(title);
    record.hasSRes = hasSRes;
    for (int k = 0; k < kResNumsLen; ++k) record.resNums.push_back(k);
    return record;
  }

  const std::vector<int> order{2, 0, 1};
};

// An id longer than its 12 columns is printed whole, pushing the line right;
// without a numbering table the count is the number.
TEST_F(AlignmentViewsTest, LongIdPushesTheResidueLineRight) {
  ViewRow row;
  row.id = "LONGACCESSION1";
  int count = 0;
  EXPECT_EQ(printed([&](std::FILE* f) { print_res_line(f, row, "A C", 0, 3, &count, resLineLen); }),
            " LONGACCESSION1: A C        2\n");
}

TEST_F(AlignmentViewsTest, DefaultIdsComeFromTheOrder) {
  mySeq[2].acc = "KEEP";
  multAlignNum = 5;
  set_seq_id_str(std::vector<int>{2, 0, 1, 98, 99});
  const char* const expected[] = {"Seq_3", "Seq_1", "KEEP", "Seq_99", "Seq100"};
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(mySeq[i].acc, expected[i]);
  EXPECT_EQ(mySeq[5].acc, std::nullopt);  // only the records read get an id
}

TEST_F(AlignmentViewsTest, MalignIndexCheckAndDate) {
  EXPECT_FATAL_OUTPUT(get_malign_index(order, 5, 1),
                      testsupport::error_frame(1, "get_malign_index", "Program check, see programmer."));
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
  wtMatrix[('C' - 'A') * 32 + ('S' - 'A')] = 3;  // near match, only in this orientation
  wtMatrix[('D' - 'A') * 32 + ('E' - 'A')] = 1;  // below nearMatchScore
  const AlignRecord pair{2, 7, 1, 7, 57.5, 67.5, {{1, "ACDaK G", "HH- CT ", ""}, {0, "ASEaK G", "", ""}}};
  // The counters restart for each pair.
  const auto section = [&](std::FILE* f) {
    print_pairwise_head(f);
    for (int k = 0; k < 2; ++k) print_pair_alignment(f, pair_view(pair), run_print_options());
  };
  EXPECT_EQ(printed(section), testsupport::read_golden("report/pairwise.txt"));
  resLineLen = 0;
  EXPECT_EQ(printed(section).find("Match"), std::string::npos);
}

TEST_F(AlignmentViewsTest, Statistics) {
  AlignRecord malign{3, 12, 3, 10, 45.678, 0.0, {}};
  const auto print = [&] {
    return printed([&](std::FILE* f) { print_statistics(f, malign_view(malign, order, 0, 0)); });
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
  multAlignNum = 3;
  const AlignRecord malign{
      .numSeqs = 3,
      .alignLen = 6,
      .seqs = {
          {2, "AC  GK", "XX  XX", "--  --"}, {0, "AD  GY", "HH  CC", "-1  --"}, {1, "CD  GWQQ", "XX  XX", "--  --"}}};
  const auto print = [&] {
    return printed([&](std::FILE* f) {
      print_mult_align(f, malign_view(malign, order, printOrderFlag, consensusPercent), run_print_options());
    });
  };
  resLineLen = 4;
  EXPECT_EQ(print(), testsupport::read_golden("report/mult_align_consensus_0.txt"));
  // No columns to a block: the heading alone.
  resLineLen = 0;
  EXPECT_EQ(print(), "\nMultiple Alignment\n******************\n");
}

}  // namespace
