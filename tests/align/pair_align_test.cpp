#include "align/pair_align.hpp"

#include <string>
#include <tuple>
#include <utility>

#include "shell/errors.hpp"
#include "support/test_support.hpp"

using testsupport::error_frame;

namespace {

constexpr int kGapPen = 3, kGapSizePen = 1, kMidPen = 100, kEndPen = 50, kBias = 10;

// Hand-checkable tables: a letter scores same with itself, other with any
// other letter; blanks and other characters score 0.
ScoreTable identity_table(int same, int other) {
  ScoreTable table{};
  for (int x = 0; x < 26; ++x)
    for (int y = 0; y < 26; ++y) table[x * kTableDim + y] = x == y ? same : other;
  return table;
}

const ScoreTable kResTable = identity_table(6, -1);
const ScoreTable kNoStructTable{};

SeqRecord make_seq(const std::string& res, const std::string& sRes = "") {
  SeqRecord seq;
  seq.pRes = res;
  seq.numRes = static_cast<std::int32_t>(res.size());
  seq.hasSRes = sRes.empty() ? 0 : 1;
  seq.sRes = sRes.empty() ? std::string(res.size(), 'X') : sRes;
  return seq;
}

AlignRecord align(const SeqRecord& a, const SeqRecord& b, const ScoreTable& ssTable = kNoStructTable,
                  int keepStrings = 1, const ScoreTable& resTable = kResTable) {
  AlignRecord record;
  record.seqs.resize(2);
  record.seqs[0].seqIndex = 1;
  record.seqs[1].seqIndex = 0;
  AlignWorkspace ws;
  const PairParams params{&resTable, &ssTable, kGapPen, kGapSizePen, kMidPen, kEndPen, 1, kBias, keepStrings};
  const AlignStatus status = align_pair(ws, record, a, b, params);
  if (align_failed(status)) report_align_fault(status);
  return record;
}

// Insulin A chain, residues 1-14 (human), and the same stretch without the Thr at 8.
const std::string kInsulinA = "GIVEQCCTSICSLY";
const std::string kInsulinAdelT = "GIVEQCCSICSLY";

}  // namespace

// A single deletion placed opposite the missing residue, its percent over the
// overlap and a score without structure are pinned by ravlin-batch's
// hand-checked reports (SEQB against SEQA and SEQC).
TEST(PairAlign, MissingOrShortStructureAlignsAsXFillers) {
  // A record without sRes, or with one shorter than its residues, aligns as
  // if the missing codes were 'X' fillers.
  SeqRecord a = make_seq(kInsulinA);
  a.sRes.reset();
  const AlignRecord s = align(a, make_seq(kInsulinAdelT, "CCCC"));
  EXPECT_EQ(s.seqs[1].aRes, "GIVEQCC SICSLY");
  EXPECT_EQ(s.seqs[1].aSRes, "CCCCXXX XXXXXX");
}

TEST(PairAlign, HelixInTheShorterSequenceMovesTheGapToTheHelixStart) {
  // B's structure CCCCHHHHHHHCC gives its positions the penalties
  // 0 0 0 0 50 100 100 100 100 100 50 0 0. A gap in B between its positions
  // p-1 and p is charged min(pen[p-1], pen[p]) on top of 3 + 1, so the gap
  // opposite T (p = 7) now costs 104: 78 - 104 = -26. Opposite Q (p = 4) it
  // costs 4 and leaves two mismatches (A's C-Q, T-C): 11 x 6 - 2 - 4 = 60.
  // The other placements: p = 3 gives 53, p = 9 gives -40, p = 11 gives 46,
  // the ungapped 36. Only B has a structure: the structure table, which would
  // ruin every pair here, is not used, and the bonus is added once.
  const ScoreTable ruinous = identity_table(-50, -50);
  const AlignRecord r = align(make_seq(kInsulinA), make_seq(kInsulinAdelT, "CCCCHHHHHHHCC"), ruinous);
  EXPECT_EQ(r.seqs[0].aRes, "GIVEQCCTSICSLY");
  EXPECT_EQ(r.seqs[1].aRes, "GIVE QCCSICSLY");
  EXPECT_EQ(r.seqs[1].aSRes, "CCCC HHHHHHHCC");
  EXPECT_TRUE(r.seqs[0].aSRes.empty());
  EXPECT_DOUBLE_EQ(r.pctHomol, 6400.0 / 84.0);
  EXPECT_DOUBLE_EQ(r.alignScore, r.pctHomol + kBias);

  // Without the strings, the numbers stay.
  const AlignRecord d = align(make_seq(kInsulinA), make_seq(kInsulinAdelT, "CCCCHHHHHHHCC"), ruinous, 0);
  for (const AlignedSeq& s : d.seqs) EXPECT_TRUE(s.aRes.empty() && s.aSRes.empty());
  EXPECT_EQ(std::tie(d.alignLen, d.overlapStart, d.overlapEnd, d.pctHomol, d.alignScore),
            std::tie(r.alignLen, r.overlapStart, r.overlapEnd, r.pctHomol, r.alignScore));
}

TEST(PairAlign, StructureTableAppliesWhenBothSequencesHaveStructure) {
  // With -50 for every structure pair, every cell sums below zero: no path
  // starts, and A then B face blanks; the two do not overlap (0 percent).
  const ScoreTable ruinous = identity_table(-50, -50);
  const AlignRecord r = align(make_seq("GIVEQCCTS", "CHHHHHHHC"), make_seq("GIVEQCC", "CHHHHHC"), ruinous);
  EXPECT_EQ(r.alignLen, 16);
  EXPECT_EQ(r.seqs[0].aRes, "GIVEQCCTS       ");
  EXPECT_EQ(r.seqs[1].aRes, "         GIVEQCC");
  EXPECT_EQ(r.seqs[0].aSRes, "CHHHHHHHC       ");
  EXPECT_EQ(r.seqs[1].aSRes, "         CHHHHHC");
  EXPECT_DOUBLE_EQ(r.pctHomol, 0.0);
  EXPECT_DOUBLE_EQ(r.alignScore, 2.0 * kBias);
}

TEST(PairAlignDeathTest, AlignmentOfExactlyTheLimitIsAcceptedOneColumnMoreIsFatal) {
  // Nothing scores above zero, so the two sequences stand one after the other.
  const ScoreTable negative = identity_table(-1, -1);
  const std::string half(kMaxAlignLen / 2, 'A');
  const AlignRecord r = align(make_seq(half), make_seq(half), kNoStructTable, 1, negative);
  EXPECT_EQ(r.alignLen, kMaxAlignLen);
  EXPECT_EQ(r.seqs[0].aRes, half + std::string(half.size(), ' '));
  EXPECT_RAISES(align(make_seq(half + "A"), make_seq(half), kNoStructTable, 1, negative),
                error_frame(1, "find_best_align", format_text("Alignment size exceeded, len = %d\n", kMaxAlignLen)));
}
