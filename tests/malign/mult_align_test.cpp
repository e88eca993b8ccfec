// Progressive multiple alignment on tiny hand-checked cases. The table
// scores 5 for a letter against itself and 0 otherwise, blanks score 0 and
// anchors 10000 against themselves, so every path sum can be added up by hand.
#include "malign/mult_align.hpp"

#include <string>
#include <vector>

#include "align/score_codes.hpp"
#include "malign/run.hpp"
#include "matrix/weight_matrix.hpp"
#include "seq/seq_record.hpp"
#include "support/test_support.hpp"

namespace {

using Rows = std::vector<std::string>;

// A sequence's residues, structure and grouping; empty texts give the fillers.
struct Seq {
  std::string res, sres = {}, ures = {};
};

class MultAlignTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int code = 0; code < 26; ++code) settings_.wtMatrix[code * kTableDim + code] = 5;
    for (int code = 27; code < kTableDim; ++code) settings_.wtMatrix[code * kTableDim + code] = kAnchorScore;
    settings_.gapPen = 3, settings_.gapSizePen = 1;
  }

  // Aligns the sequences in the given order and returns the members' residues.
  Rows align(const std::vector<Seq>& seqs, const std::vector<int>& order) {
    seqs_.clear();
    for (std::size_t k = 0; k < seqs.size(); ++k) {
      const Seq& s = seqs[k];
      SeqRecord& seq = seqs_.emplace_back();
      seq.acc = "S" + std::to_string(k);
      seq.pRes = s.res, seq.numRes = static_cast<int>(s.res.size());
      seq.hasSRes = !s.sres.empty(), seq.sRes = seq.hasSRes ? s.sres : std::string(s.res.size(), 'X');
      seq.hasURes = !s.ures.empty(), seq.uRes = seq.hasURes ? s.ures : std::string(s.res.size(), '-');
    }
    mar_ = AlignRecord{};
    build_mult_align(settings_, seqs_, order, mar_);
    Rows rows;
    for (int k = 0; k < mar_.numSeqs; ++k) rows.push_back(mar_.seqs[static_cast<std::size_t>(k)].aRes);
    return rows;
  }

  RunSettings settings_;
  std::vector<SeqRecord> seqs_;
  AlignRecord mar_;
};

// Each row's residues can be checked by adding up the path sums by hand.
TEST_F(MultAlignTest, GapsFollowThePenaltiesInForce) {
  const struct {
    const char* why;
    int gapPen, incGapPen, structPen;
    std::vector<Seq> seqs;
    Rows expected;
  } cases[] = {
      // clang-format off
      {"a group over the new sequence forbids the gap (5000): the diagonal wins",
       3, 0, 0, {{"ACDEF"}, {"ACEF", "", "****"}}, {"ACDEF", "ACEF "}},
      {"any member whose group spans C and E forbids the gap for the whole column",
       3, 0, 0, {{"ACEF"}, {"ACEF", "", "****"}, {"ACDEF"}}, {"ACEF ", "ACEF ", "ACDEF"}},
      {"structure levels sum over members: one helix member, 11 + 5 against a gain of 20",
       10, 0, 5, {{"ACEF", "HHHH"}, {"ACEF"}, {"ACDEF"}}, {"AC EF", "AC EF", "ACDEF"}},
      {"two helix members, 11 + 10 against 20",
       10, 0, 5, {{"ACEF", "HHHH"}, {"ACEF", "HHHH"}, {"ACDEF"}}, {"ACEF ", "ACEF ", "ACDEF"}},
      // ACDEF against ACEF: the gap opposite D gains the E and F matches.
      {"the first addition uses the plain penalties however large incGapPen is: 8 + 1 against 10",
       8, 100, 0, {{"ACDEF"}, {"ACEF"}}, {"ACDEF", "AC EF"}},
      {"the second uses 16 raised once by 18 percent, truncated (18.88): 18 + 1 against 20",
       16, 18, 0, {{"ACDEF"}, {"ACDEF"}, {"ACEF"}}, {"ACDEF", "ACDEF", "AC EF"}},
      {"raised by 19 percent: 19 + 1 does not pay",
       16, 19, 0, {{"ACDEF"}, {"ACDEF"}, {"ACEF"}}, {"ACDEF", "ACDEF", "ACEF "}},
      // clang-format on
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    settings_.gapPen = c.gapPen, settings_.incGapPen = c.incGapPen;
    settings_.midStructPen = settings_.endStructPen = c.structPen;
    std::vector<int> order(c.seqs.size());
    for (std::size_t k = 0; k < order.size(); ++k) order[k] = static_cast<int>(k);
    EXPECT_EQ(align(c.seqs, order), c.expected);
  }
}

// The anchor 1 on A of the first sequence and on the last A of the second
// scores 10000 in row 0, so the path is that one cell: the second sequence's
// first four residues and the first one's tail face the ends.
TEST_F(MultAlignTest, AnchorsDrawResiduesIntoOneColumn) {
  EXPECT_EQ(align({{"ACDEF", "", "1----"}, {"ACDWA", "", "----1"}}, {0, 1}), (Rows{"    ACDEF", "ACDWA    "}));
  EXPECT_EQ(mar_.seqs[0].aURes, "    1----");
  EXPECT_EQ(mar_.seqs[1].aURes, "----1    ");
  EXPECT_EQ(mar_.overlapStart, 5);
  EXPECT_EQ(mar_.overlapEnd, 5);
}

}  // namespace
