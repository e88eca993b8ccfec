#include "align/align_score.hpp"

#include <string>
#include <vector>

#include "support/test_support.hpp"

using testsupport::error_frame;

namespace {

void set_pair(ScoreTable& table, char x, char y, int value) {
  table[(x - 'A') * kTableDim + (y - 'A')] = value;
  table[(y - 'A') * kTableDim + (x - 'A')] = value;
}

// A small table: A 4, C 9, D 6 on the diagonal, X negative as in BLOSUM62.
ScoreTable small_table() {
  ScoreTable table{};
  set_pair(table, 'A', 'A', 4);
  set_pair(table, 'C', 'C', 9);
  set_pair(table, 'D', 'D', 6);
  set_pair(table, 'A', 'C', 0);
  set_pair(table, 'A', 'D', -2);
  set_pair(table, 'C', 'D', -3);
  set_pair(table, 'X', 'X', -1);
  set_pair(table, 'X', 'A', 1);
  return table;
}

AlignRecord record_of(const std::vector<std::string>& rows) {
  AlignRecord record;
  record.numSeqs = static_cast<int>(rows.size());
  record.alignLen = rows.empty() ? 0 : static_cast<int>(rows[0].size());
  for (std::size_t k = 0; k < rows.size(); ++k) record.seqs.push_back({static_cast<int>(k), rows[k], "", ""});
  return record;
}

double pct_of(const std::vector<std::string>& rows, AlignRecord* out = nullptr) {
  AlignRecord record = record_of(rows);
  const double pct = scor_align_pct(small_table(), record, record.alignLen);
  if (out != nullptr) *out = record;
  return pct;
}

}  // namespace

TEST(ScorAlignPct, IdenticalSequencesScoreHundred) {
  AlignRecord record;
  EXPECT_DOUBLE_EQ(pct_of({"ACDA", "ACDA"}, &record), 100.0);
  EXPECT_EQ(record.overlapStart, 1);
  EXPECT_EQ(record.overlapEnd, 4);
  EXPECT_DOUBLE_EQ(pct_of({"ACDA", "ACDA", "ACDA"}), 100.0);
}

TEST(ScorAlignPct, CountsOnlyTheOverlapRegion) {
  AlignRecord record;
  // The first sequence's A and the second's D hang over the ends.
  EXPECT_DOUBLE_EQ(pct_of({"ACD ", " CDD"}, &record), 100.0);
  EXPECT_EQ(record.overlapStart, 2);
  EXPECT_EQ(record.overlapEnd, 3);
}

TEST(ScorAlignPct, GapsAndMismatchesLowerThePercentage) {
  // A gap opposite C adds C's self score to the reference only.
  EXPECT_DOUBLE_EQ(pct_of({"ACDA", "A DA"}), 14 * 100.0 / 23);
  // A against D adds -2, and the smaller self score 4 to the reference.
  EXPECT_DOUBLE_EQ(pct_of({"AAC", "ADC"}), 11 * 100.0 / 17);
  // Three sequences: every pair is summed before dividing.
  EXPECT_DOUBLE_EQ(pct_of({"AAC", "AAC", "ADC"}), (17 + 11 + 11) * 100.0 / (17 + 17 + 17));
}

TEST(ScorAlignPct, SequencesThatDoNotOverlapScoreZero) {
  AlignRecord record;
  EXPECT_DOUBLE_EQ(pct_of({"AA  ", "  CC"}, &record), 0.0);
  EXPECT_EQ(record.overlapStart, 3);
  EXPECT_EQ(record.overlapEnd, 2);
}

TEST(ScorAlignPct, LowerCaseLettersAreNotResidues) {
  AlignRecord record;
  EXPECT_DOUBLE_EQ(pct_of({"aACD", "CACD"}, &record), 100.0);
  EXPECT_EQ(record.overlapStart, 2);
  EXPECT_DOUBLE_EQ(pct_of({"AcD", "AcD"}), 100.0);
  EXPECT_DOUBLE_EQ(pct_of({"AcD", "ACD"}), 10 * 100.0 / 19);
}

TEST(ScorAlignPct, NoSequencesGiveTheInitialRegion) {
  AlignRecord record;
  record.numSeqs = 0;
  EXPECT_DOUBLE_EQ(scor_align_pct(small_table(), record, 5), 0.0);
  EXPECT_EQ(record.overlapStart, 1);
  EXPECT_EQ(record.overlapEnd, 6);
}

TEST(ScorAlignPct, StringsShorterThanTheLengthAreReadOnlyToTheirEnd) {
  AlignRecord record = record_of({"ACD", "AC"});
  EXPECT_DOUBLE_EQ(scor_align_pct(small_table(), record, 10), 100.0);
  EXPECT_EQ(record.overlapEnd, 2);
}

TEST(ScorAlignPct, SequenceWithoutResiduesIsAProgramCheck) {
  AlignRecord blank = record_of({"ACD", " c "});
  EXPECT_FATAL_OUTPUT(scor_align_pct(small_table(), blank, 3),
                      error_frame(1, "pct_start_align", "Program check: len = 3"));
  AlignRecord empty = record_of({"", ""});
  EXPECT_FATAL_OUTPUT(scor_align_pct(small_table(), empty, 0),
                      error_frame(1, "pct_start_align", "Program check: len = 0"));
}

TEST(ScorAlignPct, BackwardScanNeverExaminesColumnZero) {
  AlignRecord onlyFirst = record_of({"AAAA", "A   "});
  EXPECT_FATAL_OUTPUT(scor_align_pct(small_table(), onlyFirst, 4),
                      error_frame(1, "pct_end_align", "Program check: len = 4"));
  AlignRecord single = record_of({"A", "A"});
  EXPECT_FATAL_OUTPUT(scor_align_pct(small_table(), single, 1),
                      error_frame(1, "pct_end_align", "Program check: len = 1"));
  // A residue in column 1 is found.
  EXPECT_DOUBLE_EQ(pct_of({"AA", " A"}), 100.0);
}

TEST(PctScores, SumOnlyOverLetterPairsWithinN) {
  const ScoreTable table = small_table();
  EXPECT_EQ(pct_homol_score(table, "ACD", "ADD", 3), 4 - 3 + 6);
  EXPECT_EQ(pct_homol_score(table, "ACD", "ADD", 2), 4 - 3);
  EXPECT_EQ(pct_homol_score(table, "A-D", "AD ", 3), 4);
  EXPECT_EQ(pct_homol_score(table, "ACD", "ACD", 0), 0);
  EXPECT_EQ(pct_perfect_score(table, "ACD", "ACD", -1), 0);
  EXPECT_EQ(pct_perfect_score(table, "ACD", "A D", 3), 4 + 9 + 6);
  EXPECT_EQ(pct_perfect_score(table, "AC ", "DA ", 3), 4 + 4);
}

TEST(PctScores, NegativeDiagonal) {
  const ScoreTable table = small_table();
  // A residue with a negative self score facing a gap adds max(0, d) = 0.
  EXPECT_EQ(pct_perfect_score(table, "X", " ", 1), 0);
  EXPECT_EQ(pct_perfect_score(table, " ", "X", 1), 0);
  // Two residues both non-zero: the smaller, here the negative one.
  EXPECT_EQ(pct_perfect_score(table, "X", "X", 1), -1);
  EXPECT_EQ(pct_perfect_score(table, "X", "A", 1), -1);
  // A zero self score (a letter not in the table) yields the other one.
  EXPECT_EQ(pct_perfect_score(table, "W", "A", 1), 4);
  EXPECT_EQ(pct_perfect_score(table, "W", "X", 1), 0);
}

TEST(ScorPairAlign, AddsTheBiasForEachStructure) {
  EXPECT_DOUBLE_EQ(scor_pair_align(57.5, 1, 0, 10), 67.5);
  EXPECT_DOUBLE_EQ(scor_pair_align(57.5, 0, 1, 10), 67.5);
  EXPECT_DOUBLE_EQ(scor_pair_align(57.5, 1, 1, 10), 77.5);
  EXPECT_DOUBLE_EQ(scor_pair_align(57.5, 2, -1, 10), 57.5);
  EXPECT_DOUBLE_EQ(scor_pair_align(57.5, 1, 1, -5), 47.5);
}
