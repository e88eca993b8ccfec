#include "report/report.hpp"

#include <ctime>

#include "matrix/weight_matrix.hpp"
#include "seq/molvane_reader.hpp"
#include "shell/run_params.hpp"
#include "shell/text_input.hpp"
#include "support/test_support.hpp"

using testsupport::error_frame;

namespace {

std::string blanks(int n) { return std::string(static_cast<std::size_t>(n), ' '); }
// A residue or structure line's start: " ", the id right-aligned in 12, ": ".
std::string lead(const std::string& id) { return " " + blanks(12 - static_cast<int>(id.size())) + id + ": "; }
std::string divider(int dashes) { return "\n" + std::string(static_cast<std::size_t>(dashes), '-') + "\n\n"; }

template <class Write>
std::string printed(Write write) {
  UniqueFile file(std::tmpfile());
  write(file.get());
  std::fflush(file.get());
  std::rewind(file.get());
  std::string text;
  for (int ch = std::fgetc(file.get()); ch != EOF; ch = std::fgetc(file.get())) text.push_back(static_cast<char>(ch));
  return text;
}

AlignedSeq member(int seqIndex, std::string aRes, std::string aSRes = "", std::string aURes = "") {
  return AlignedSeq{seqIndex, std::move(aRes), std::move(aSRes), std::move(aURes)};
}

class ReportTest : public testing::Test {
 protected:
  void SetUp() override {
    for (SeqRecord& record : mySeq) record = SeqRecord{};
    multAlignNum = 0;
    resLineLen = 5;
    printOrderFlag = printFormat = printPairsFlag = printPctHomFlag = 0;
    consensusPercent = 0;
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

  // Three members added in the order 2, 0, 1; only sequence 0 has a structure.
  static AlignRecord three_members() {
    put_seq(0, "M0", std::nullopt, 1);
    put_seq(1, "M1", "one");
    put_seq(2, "M2", "two");
    multAlignNum = 3;
    AlignRecord malign;
    malign.numSeqs = 3;
    malign.alignLen = 6;
    malign.seqs = {member(2, "AC  GK", "XX  XX", "--  --"), member(0, "AD  GY", "HH  CC", "-1  --"),
                   member(1, "CD  GWQQ", "XX  XX", "--  --")};
    return malign;
  }

  const std::vector<int> order{2, 0, 1};
};

}  // namespace

TEST_F(ReportTest, SeqIdAndDivider) {
  EXPECT_EQ(printed([](std::FILE* f) { print_seq_id(f, "P1"); }), blanks(10) + "P1");
  EXPECT_EQ(printed([](std::FILE* f) { print_seq_id(f, "ABCDEFGHIJKL"); }), "ABCDEFGHIJKL");
  resLineLen = 3;
  EXPECT_EQ(printed([](std::FILE* f) { print_divide(f, '-'); }), divider(33));
}

TEST_F(ReportTest, ResidueLines) {
  SeqRecord& record = put_seq(0, "P1");
  for (int k = 0; k < kResNumsLen; ++k) record.resNums[static_cast<std::size_t>(k)] = 10 * k;
  int count = 0;
  const std::string text = "AB CDE";
  EXPECT_EQ(printed([&](std::FILE* f) { print_res_line(f, 0, text.c_str(), 0, 5, &count); }),
            lead("P1") + "AB CD" + "     40\n");
  EXPECT_EQ(printed([&](std::FILE* f) { print_res_line(f, 0, text.c_str(), 5, 1, &count); }),
            lead("P1") + "E" + blanks(4) + "     50\n");
  EXPECT_EQ(printed([&](std::FILE* f) { print_res_line(f, 0, text.c_str(), 0, 0, &count); }), lead("P1"));
  EXPECT_EQ(count, 5);
  // Past the numbering table, or without one, the count is the number.
  count = 3998;
  EXPECT_EQ(printed([&](std::FILE* f) { print_res_line(f, 0, "AB", 0, 1, &count); }),
            lead("P1") + "A    " + "  39990\n");
  EXPECT_EQ(printed([&](std::FILE* f) { print_res_line(f, 0, "AB", 1, 1, &count); }),
            lead("P1") + "B    " + "   4000\n");
  put_seq(1, "LONGACCESSION1").resNums.clear();
  count = 0;
  EXPECT_EQ(printed([&](std::FILE* f) { print_res_line(f, 1, "A C", 0, 3, &count); }),
            " LONGACCESSION1: A C  " + std::string("      2\n"));
}

TEST_F(ReportTest, StructureLinesAreLowerCaseAndUnpadded) {
  EXPECT_EQ(printed([](std::FILE* f) { print_struct_line(f, "xHh -B", 1, 5); }), lead("Struct") + "hh -b\n");
  EXPECT_EQ(printed([](std::FILE* f) { print_struct_line(f, "HH", 0, 0); }), lead("Struct"));
}

TEST_F(ReportTest, DefaultIdsComeFromTheOrder) {
  mySeq[2].acc = "KEEP";
  multAlignNum = 5;
  set_seq_id_str(std::vector<int>{2, 0, 1, 98, 99});
  const char* const expected[] = {"Seq_3", "Seq_1", "KEEP", "Seq_99", "Seq100"};
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(mySeq[i].acc, expected[i]);
  EXPECT_EQ(mySeq[5].acc, std::nullopt);  // only the records read get an id
}

TEST_F(ReportTest, MalignIndexAndDate) {
  EXPECT_EQ(get_malign_index(order, 2, 0), 2);
  EXPECT_EQ(get_malign_index(order, 0, 1), 1);
  EXPECT_EQ(get_malign_index(order, 2, 1), 0);
  EXPECT_FATAL_OUTPUT(get_malign_index(order, 5, 1),
                      error_frame(1, "get_malign_index", "Program check, see programmer."));
  const auto calendar_now = [] {
    const std::time_t now = std::time(nullptr);
    char text[64];
    std::strftime(text, sizeof text, "%a %b %e %H:%M:%S %Y\n", std::localtime(&now));
    return std::string(text);
  };
  const std::string before = calendar_now(), date = get_date(), after = calendar_now();
  EXPECT_TRUE(date == before || date == after) << date;
}

TEST_F(ReportTest, Header) {
  gapPen = 10, structBias = -5, gapSizePen = 2, incGapPen = 0, midStructPen = 100, endStructPen = 50;
  nearMatchScore = 3, blankMatch = 0, consensusPercent = 75, printPctHomFlag = 1, printOrderFlag = 1;
  wtMatFname = "weights/ravlin.wts";
  const std::string text = printed([](std::FILE* f) { print_report_header(f); });
  EXPECT_EQ(testsupport::mask_date(text), divider(35) + "   Program.......: ravlin (version 6.0)\n" +
                                              "   Description...: multiple sequence alignment program\n" +
                                              "   Date..........: <date>\n\n" +
                                              "   P  Scoring Mat: weights/ravlin.wts\n" +
                                              "   Gap Penalty...: 10   Structure Bias: -5   Line Length...: 5  \n" +
                                              "   Gap Size Pen..: 2    IncGap Percent: 0    Print Pct Hom.: TRUE \n" +
                                              "   Mid Struct Pen: 100  NearMatchScore: 3    Print Sorted..: FALSE\n" +
                                              "   End Struct Pen: 50   BlankMatchScor: 0    Print Pairwise: FALSE\n" +
                                              "   Consensus %...: 75 \n" + "\n" + divider(35));
  printPctHomFlag = 0, printOrderFlag = 0, printPairsFlag = 1;
  EXPECT_THAT(printed([](std::FILE* f) { print_report_header(f); }),
              testing::AllOf(testing::HasSubstr("Pct Hom.: FALSE\n"), testing::HasSubstr("Sorted..: TRUE \n"),
                             testing::HasSubstr("Pairwise: TRUE \n")));
}

TEST_F(ReportTest, PairwiseSection) {
  put_seq(0, "Q0", "zero");
  put_seq(1, "Q1", std::nullopt, 1);
  wtMatrix[('C' - 'A') * 32 + ('S' - 'A')] = 3;  // near match, only in this orientation
  wtMatrix[('D' - 'A') * 32 + ('E' - 'A')] = 1;  // below nearMatchScore
  AlignRecord pair{2, 7, 1, 7, 57.5, 67.5, {member(1, "ACDaK G", "HH- CT "), member(0, "ASEaK G")}};
  const std::string one =
      " Sequence 1 ID=Q1  \n Sequence 2 ID=Q0  zero\n"
      " Percent Sequence Homology:  57.50\n Alignment Score..........:  67.50\n"
      "\n" +
      lead("Q1") + "ACDaK      5\n" + lead("Struct") + "hh- c\n" + "    Match: |*  |\n" + lead("Q0") +
      "ASEaK      5\n" + "\n" + lead("Q1") + " G   " + "      6\n" + lead("Struct") + "t \n" + "    Match:  |\n" +
      lead("Q0") + " G   " + "      6\n" + divider(35);
  const std::vector<AlignRecord> pairs{pair, pair};  // the counters restart for each pair
  EXPECT_EQ(printed([&](std::FILE* f) { print_pairwise_section(f, pairs); }),
            "\nPairwise Alignments\n*******************\n\n" + one + one);
  resLineLen = 0;
  EXPECT_EQ(printed([&](std::FILE* f) { print_pairwise_section(f, pairs); }).find("Match"), std::string::npos);
}

TEST_F(ReportTest, SequencesAndHomologyTables) {
  put_seq(0, "A0", "t0");
  put_seq(1, "LONGACCESSION1", "t1");
  put_seq(2, "");
  multAlignNum = 3;
  const std::string head = "\nSequences\n*********\n\n   Num   Acc#       Sequence Title\n";
  const std::string row0 = "A0   " + blanks(10) + "t0\n", row1 = "LONGACCESSION1   t1\n",
                    row2 = "   " + blanks(12) + "\n";
  EXPECT_EQ(printed([&](std::FILE* f) { print_sequences_section(f, order); }),
            head + "     1   " + row2 + "     2   " + row0 + "     3   " + row1 + "\n");
  printOrderFlag = 1;
  EXPECT_EQ(printed([&](std::FILE* f) { print_sequences_section(f, order); }),
            head + "     1   " + row0 + "     2   " + row1 + "     3   " + row2 + "\n");

  mySeq[1].acc = "A1", mySeq[2].acc = "A2";
  auto pct = std::make_unique<PctHomTable>();
  (*pct)[2][0] = 12.5, (*pct)[0][2] = 21.0, (*pct)[2][1] = 7.25, (*pct)[1][2] = 3.0, (*pct)[0][1] = 50.0;
  (*pct)[1][0] = 60.0, (*pct)[2][2] = 55.0;
  const auto cell = [](const char* value) { return blanks(6) + " " + value; };
  const std::string id = " " + blanks(10);
  EXPECT_EQ(printed([&](std::FILE* f) { print_pct_hom_section(f, order, *pct); }),
            "\nPairwise Percent Sequence Homology\n**********************************\n\n" + blanks(13) + id + "A2" +
                id + "A0" + id + "A1\n" + id + "A2" + cell("100.00") + cell(" 12.50") + cell("  7.25") + "\n" + id +
                "A0" + cell(" 21.00") + cell("100.00") + cell(" 50.00") + "\n" + id + "A1" + cell("  3.00") +
                cell(" 60.00") + cell("100.00") + "\n\n");
}

TEST_F(ReportTest, Statistics) {
  AlignRecord malign{3, 12, 3, 10, 45.678, 0.0, {}};
  const std::string head = "\nStatistics\n**********\n\n   Total length for the multiple alignment: 12\n";
  const std::string tail = "\n   Percent Sequence Homology in overlap region: 45.68   \n\n";
  EXPECT_EQ(printed([&](std::FILE* f) { print_statistics(f, malign); }),
            head + "   Region where sequences overlap: 3 - 10 (length = 8)" + tail);
  malign.overlapStart = malign.overlapEnd = 4;
  EXPECT_EQ(printed([&](std::FILE* f) { print_statistics(f, malign); }),
            head + "   No Region where all sequences overlap." + tail);
}

TEST_F(ReportTest, MultipleAlignmentBlocksAndConsensus) {
  const AlignRecord malign = three_members();
  resLineLen = 4;
  const auto blocks = [&](const std::string& summary1, const std::string& summary2) {
    return "\nMultiple Alignment\n******************\n\n" + lead("M2") + "AC        2\n" + lead("M0") +
           "AD        2\n" + lead("Struct") + "hh  \n" + lead("M1") + "CD        2\n" + lead("Summary") + summary1 +
           "\n\n" + lead("M2") + "GK  " + "      4\n" + lead("M0") + "GY  " + "      4\n" + lead("Struct") + "cc\n" +
           lead("M1") + "GW  " + "      4\n" + lead("Summary") + summary2 + "\n";
  };
  // 0 percent: a letter everywhere, 'Z' over blank columns, ties to the later letter.
  EXPECT_EQ(printed([&](std::FILE* f) { print_mult_align(f, malign, order); }), blocks("ADZZ", "GY"));
  consensusPercent = 100;
  EXPECT_EQ(printed([&](std::FILE* f) { print_mult_align(f, malign, order); }), blocks("----", "G-"));

  printOrderFlag = 1;
  const std::string byInput = printed([&](std::FILE* f) { print_mult_align(f, malign, order); });
  EXPECT_LT(byInput.find(lead("M0")), byInput.find(lead("M1")));
  EXPECT_LT(byInput.find(lead("M1")), byInput.find(lead("M2")));
  resLineLen = 0;
  EXPECT_EQ(printed([&](std::FILE* f) { print_mult_align(f, malign, order); }),
            "\nMultiple Alignment\n******************\n");
}

TEST_F(ReportTest, MolvaneLayout) {
  SeqRecord record;
  record.acc = "X1", record.organism = "not written", record.pRes = "ABC", record.uRes = "---";
  EXPECT_EQ(printed([&](std::FILE* f) { print_seq_lumark(f, record); }), "PSEQ\nAX1\nrABC\nG---\n\n");

  const AlignRecord malign = three_members();
  printFormat = 1;
  EXPECT_EQ(printed([&](std::FILE* f) { print_mult_align(f, malign, order); }),
            "\nMultiple Alignment\n******************\n"
            "PSEQ\nntwo\nAM2\nrAC  GK\nSXX  XX\nG--  --\n\n"
            "PSEQ\nn\nAM0\nrAD  GY\nSHH  CC\nG-1  --\n\n"
            "PSEQ\nnone\nAM1\nrCD  GW\nSXX  XX\nG--  --\n\n");
}

TEST_F(ReportTest, MolvaneLayoutReadsBackAsGappedSequences) {
  AlignRecord malign = three_members();
  malign.seqs[0].aRes = "ac  g ";  // lower case and a trailing gap column
  printFormat = 1;
  const std::string text = printed([&](std::FILE* f) { print_mult_align(f, malign, order); });
  UniqueFile in(std::tmpfile());
  std::fputs(text.c_str(), in.get());
  std::rewind(in.get());
  const char* const titles[] = {"two", "", "one"};
  const char* const residues[] = {"AC  G ", "AD  GY", "CD  GW"};  // blanks read back as residues
  for (std::size_t m = 0; m < 3; ++m) {
    SeqRecord back;
    ASSERT_EQ(read_seq_molvane(in.get(), back, 3, 4000), 1);
    EXPECT_EQ(back.acc, mySeq[static_cast<std::size_t>(malign.seqs[m].seqIndex)].acc);
    EXPECT_EQ(back.title, titles[m]);
    EXPECT_EQ(back.pRes, residues[m]);
    EXPECT_EQ(back.numRes, 6);
    EXPECT_EQ(back.sRes, malign.seqs[m].aSRes);
    EXPECT_EQ(back.uRes, malign.seqs[m].aURes);
    EXPECT_EQ(back.hasSRes + back.hasURes, 2);  // a filler structure comes back as given
  }
  SeqRecord none;
  EXPECT_EQ(read_seq_molvane(in.get(), none, 3, 4000), -1);
}
