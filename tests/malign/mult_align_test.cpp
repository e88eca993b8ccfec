// Progressive multiple alignment on tiny hand-checked cases. The table
// scores 5 for a letter against itself and 0 otherwise, blanks score 0 and
// anchors 10000 against themselves, so every path sum can be added up by hand.
#include "malign/mult_align.hpp"

#include <cstdio>
#include <string>
#include <vector>

#include "align/pair_align.hpp"
#include "malign/run_driver.hpp"
#include "matrix/weight_matrix.hpp"
#include "seq/seq_record.hpp"
#include "shell/run_params.hpp"
#include "support/test_support.hpp"

namespace {

using testsupport::TempDir;

class MultAlignTest : public ::testing::Test {
 protected:
  void SetUp() override {
    wtMatrix.fill(0);
    ssMatrix.fill(0);
    for (int code = 0; code < 26; ++code) wtMatrix[code * kTableDim + code] = 5;
    for (int code = 27; code < kTableDim; ++code) wtMatrix[code * kTableDim + code] = kAnchorScore;
    gapPen = 3;
    gapSizePen = 1;
    incGapPen = 0;
    midStructPen = 0;
    endStructPen = 0;
    resLineLen = 60;
    printFormat = 0;
    printOrderFlag = 0;
    consensusPercent = 50;
    mar = AlignRecord{};
    outfp = std::fopen(dir_.file("report").c_str(), "w");
  }

  void TearDown() override {
    std::fclose(outfp);
    outfp = nullptr;
    for (int k = 0; k < 4; ++k) mySeq[static_cast<std::size_t>(k)] = SeqRecord{};
    multAlignNum = 0;
  }

  // Sequence k; empty structure or grouping strings give the fillers.
  static void set_seq(int k, const std::string& res, const std::string& sres = "", const std::string& ures = "") {
    SeqRecord& seq = mySeq[static_cast<std::size_t>(k)];
    seq = SeqRecord{};
    seq.acc = "S" + std::to_string(k);
    seq.title = "sequence " + std::to_string(k);
    seq.pRes = res;
    seq.numRes = static_cast<int>(res.size());
    seq.sRes = sres.empty() ? std::string(res.size(), 'X') : sres;
    seq.hasSRes = sres.empty() ? 0 : 1;
    seq.uRes = ures.empty() ? std::string(res.size(), '-') : ures;
    seq.hasURes = ures.empty() ? 0 : 1;
    seq.resNums.resize(kResNumsLen);
    for (int r = 0; r < kResNumsLen; ++r) seq.resNums[static_cast<std::size_t>(r)] = r;
    multAlignNum = std::max(multAlignNum, k + 1);
  }

  static void align(const std::vector<int>& order) {
    mar.seqs.resize(order.size());
    do_mult_align(order);
  }

  static std::vector<std::string> residues() {
    std::vector<std::string> rows;
    for (int k = 0; k < mar.numSeqs; ++k) rows.push_back(mar.seqs[static_cast<std::size_t>(k)].aRes);
    return rows;
  }

  std::string report() {
    std::fflush(outfp);
    return dir_.read("report");
  }

  TempDir dir_;
};

// ACDEF against ACEF: the gap opposite D costs 3 + 1 and gains the E and F
// matches (20 - 4 = 16 against 10 for the straight diagonal).
TEST_F(MultAlignTest, TwoSequencesGiveThePairwiseAlignment) {
  set_seq(0, "ACDEF");
  set_seq(1, "ACEF");
  align({0, 1});
  EXPECT_EQ(residues(), (std::vector<std::string>{"ACDEF", "AC EF"}));
  EXPECT_EQ(mar.alignLen, 5);
  EXPECT_EQ(mar.seqs[0].seqIndex, 0);
  EXPECT_EQ(mar.seqs[1].seqIndex, 1);
  EXPECT_EQ(mar.seqs[1].aSRes, "XX XX");
  EXPECT_EQ(mar.seqs[1].aURes, "-- --");

  AlignRecord pair;
  pair.seqs.resize(2);
  do_pair_align(pair, mySeq[0], mySeq[1], wtMatrix, ssMatrix, gapPen, gapSizePen, 0, 0, 1, 0, 1);
  EXPECT_EQ(pair.seqs[0].aRes, mar.seqs[0].aRes);
  EXPECT_EQ(pair.seqs[1].aRes, mar.seqs[1].aRes);
  EXPECT_EQ(pair.alignLen, mar.alignLen);
  EXPECT_EQ(pair.pctHomol, mar.pctHomol);
  // Overlap 1..5: homology 4 x 5 over a reference of 5 x 5 (D faces a gap).
  EXPECT_EQ(mar.overlapStart, 1);
  EXPECT_EQ(mar.overlapEnd, 5);
  EXPECT_DOUBLE_EQ(mar.pctHomol, 80.0);
}

// A group over the whole of ACEF forbids the gap between C and E (5000), so
// the diagonal wins and F of the first sequence faces the end.
TEST_F(MultAlignTest, GroupingOfTheNewSequenceForbidsTheGap) {
  set_seq(0, "ACDEF");
  set_seq(1, "ACEF", "", "****");
  align({0, 1});
  EXPECT_EQ(residues(), (std::vector<std::string>{"ACDEF", "ACEF "}));
  EXPECT_EQ(mar.seqs[1].aURes, "**** ");
}

// The anchor 1 on A of the first sequence and on the last A of the second
// scores 10000 in row 0, so the path is that one cell: the second sequence's
// first four residues and the first one's tail face the ends.
TEST_F(MultAlignTest, AnchorsDrawResiduesIntoOneColumn) {
  set_seq(0, "ACDEF", "", "1----");
  set_seq(1, "ACDWA", "", "----1");
  align({0, 1});
  EXPECT_EQ(residues(), (std::vector<std::string>{"    ACDEF", "ACDWA    "}));
  EXPECT_EQ(mar.seqs[0].aURes, "    1----");
  EXPECT_EQ(mar.seqs[1].aURes, "----1    ");
  EXPECT_EQ(mar.overlapStart, 5);
  EXPECT_EQ(mar.overlapEnd, 5);
}

// WWW scores nothing against ACD: no positive start, so it is appended after
// the alignment, facing blanks, and both members are re-gapped.
TEST_F(MultAlignTest, NullStartGivesLPlusNColumns) {
  set_seq(0, "ACD");
  set_seq(1, "ACD");
  set_seq(2, "WWW");
  align({0, 1, 2});
  EXPECT_EQ(residues(), (std::vector<std::string>{"ACD   ", "ACD   ", "   WWW"}));
  EXPECT_EQ(mar.alignLen, 6);
  EXPECT_EQ(mar.seqs[0].aSRes, "XXX   ");
  EXPECT_EQ(mar.seqs[1].aURes, "---   ");
  EXPECT_EQ(mar.pctHomol, 0.0);
  EXPECT_THAT(report(), ::testing::HasSubstr("   No Region where all sequences overlap.\n"));
}

// Two members ACEF; ACDEF needs a gap in the alignment opposite D: the two
// members gain 2 x 2 x 5 = 20 against a charge of 3 + 1.
TEST_F(MultAlignTest, MembersAreRegappedWhereTheAlignmentGrew) {
  set_seq(0, "ACEF", "CCHH");
  set_seq(1, "ACEF", "", "-*--");
  set_seq(2, "ACDEF");
  align({1, 0, 2});
  EXPECT_EQ(residues(), (std::vector<std::string>{"AC EF", "AC EF", "ACDEF"}));
  EXPECT_EQ(mar.seqs[0].seqIndex, 1);
  EXPECT_EQ(mar.seqs[0].aURes, "-* --");
  EXPECT_EQ(mar.seqs[1].aSRes, "CC HH");
  EXPECT_EQ(mar.seqs[1].aURes, "-- --");
  const std::string text = report();
  EXPECT_THAT(text, ::testing::HasSubstr("   Total length for the multiple alignment: 5\n"));
  EXPECT_LT(text.find("Statistics\n"), text.find("Multiple Alignment\n"));
}

// Any member whose group spans C and E forbids the gap for the whole column.
TEST_F(MultAlignTest, OneMembersGroupForbidsTheGapForAll) {
  set_seq(0, "ACEF");
  set_seq(1, "ACEF", "", "****");
  set_seq(2, "ACDEF");
  align({0, 1, 2});
  EXPECT_EQ(residues(), (std::vector<std::string>{"ACEF ", "ACEF ", "ACDEF"}));
}

// gapPen 10, size 1: the gap costs 11 + the structure level, which is
// min(mid, mid) summed over the members with a helix there: one helix
// member (5) lets the gain of 20 win, two (10) do not.
TEST_F(MultAlignTest, StructurePenaltiesAreSummedOverMembers) {
  gapPen = 10;
  midStructPen = 5;
  endStructPen = 5;
  set_seq(0, "ACEF", "HHHH");
  set_seq(1, "ACEF");
  set_seq(2, "ACDEF");
  align({0, 1, 2});
  EXPECT_EQ(residues(), (std::vector<std::string>{"AC EF", "AC EF", "ACDEF"}));

  mar = AlignRecord{};
  set_seq(1, "ACEF", "HHHH");
  align({0, 1, 2});
  EXPECT_EQ(residues(), (std::vector<std::string>{"ACEF ", "ACEF ", "ACDEF"}));
}

TEST(GrowGapPen, TruncatesAfterEachStep) {
  std::vector<int> used;
  for (int step = 0; step < 5; ++step) used.push_back(grow_gap_pen(10, step, 5));
  EXPECT_EQ(used, (std::vector<int>{10, 10, 11, 11, 12}));
  EXPECT_EQ(grow_gap_pen(3, 4, 10), 4);
  EXPECT_EQ(grow_gap_pen(10, 7, 0), 10);
}

// The first addition uses the plain penalties however large incGapPen is:
// with 8 + 1 the gap opposite D still pays (gain 10), with 16 it would not.
TEST_F(MultAlignTest, FirstAdditionUsesThePlainPenalties) {
  gapPen = 8;
  incGapPen = 100;
  set_seq(0, "ACDEF");
  set_seq(1, "ACEF");
  align({0, 1});
  EXPECT_EQ(residues(), (std::vector<std::string>{"ACDEF", "AC EF"}));
}

// Two identical members ACDEF, then ACEF: the gap pays when the penalties
// in force sum below the gain of 20. The second addition uses 16 raised once
// by incGapPen percent, truncated: 18 (from 18.88) + 1 gaps, 19 + 1 does not.
TEST_F(MultAlignTest, SecondAdditionUsesPenaltiesRaisedOnceAndTruncated) {
  gapPen = 16;
  set_seq(0, "ACDEF");
  set_seq(1, "ACDEF");
  set_seq(2, "ACEF");
  incGapPen = 18;
  align({0, 1, 2});
  EXPECT_EQ(residues(), (std::vector<std::string>{"ACDEF", "ACDEF", "AC EF"}));

  mar = AlignRecord{};
  incGapPen = 19;
  align({0, 1, 2});
  EXPECT_EQ(residues(), (std::vector<std::string>{"ACDEF", "ACDEF", "ACEF "}));
}

}  // namespace
