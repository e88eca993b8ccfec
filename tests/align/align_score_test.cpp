#include "align/align_score.hpp"

#include <string>
#include <tuple>
#include <vector>

#include "support/test_support.hpp"

namespace {

// A small table: A 4, C 9, D 6 on the diagonal, X negative as in BLOSUM62.
ScoreTable small_table() {
  ScoreTable table{};
  const std::tuple<char, char, int> pairs[] = {{'A', 'A', 4},  {'C', 'C', 9},  {'D', 'D', 6},  {'A', 'C', 0},
                                               {'A', 'D', -2}, {'C', 'D', -3}, {'X', 'X', -1}, {'X', 'A', 1}};
  for (const auto& [x, y, value] : pairs) {
    table[(x - 'A') * kTableDim + (y - 'A')] = value;
    table[(y - 'A') * kTableDim + (x - 'A')] = value;
  }
  return table;
}

// Rows of equal length; len < 0 takes that length.
AlignRecord record_of(const std::vector<std::string>& rows, int len = -1) {
  AlignRecord record;
  record.numSeqs = static_cast<int>(rows.size());
  record.alignLen = len >= 0 ? len : rows.empty() ? 0 : static_cast<int>(rows[0].size());
  for (std::size_t k = 0; k < rows.size(); ++k) record.seqs.push_back({static_cast<int>(k), rows[k], "", ""});
  return record;
}

}  // namespace

TEST(ScorAlignPct, PercentOverTheOverlapRegion) {
  const struct {
    const char* what;
    std::vector<std::string> rows;
    int len;
    double pct;
    int overlapStart, overlapEnd;
  } cases[] = {
      {"identical", {"ACDA", "ACDA"}, -1, 100.0, 1, 4},
      {"overhangs at both ends are not counted", {"ACD ", " CDD"}, -1, 100.0, 2, 3},
      {"a gap opposite C adds C's self score to the reference only", {"ACDA", "A DA"}, -1, 14 * 100.0 / 23, 1, 4},
      {"A against D adds -2, and the smaller self score 4 to the reference", {"AAC", "ADC"}, -1, 11 * 100.0 / 17, 1, 3},
      {"all pairs are summed before dividing", {"AAC", "AAC", "ADC"}, -1, (17 + 11 + 11) * 100.0 / (3 * 17), 1, 3},
      {"no overlap", {"AA  ", "  CC"}, -1, 0.0, 3, 2},
      {"lower-case letters are not residues", {"aACD", "CACD"}, -1, 100.0, 2, 4},
      {"nor facing a residue", {"AcD", "ACD"}, -1, 10 * 100.0 / 19, 1, 3},
      {"a residue in column 1 is found by the backward scan", {"AA", " A"}, -1, 100.0, 2, 2},
      {"strings shorter than the length are read only to their end", {"ACD", "AC"}, 10, 100.0, 1, 2},
      {"no sequences give the initial region", {}, 5, 0.0, 1, 6},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    AlignRecord record = record_of(c.rows, c.len);
    EXPECT_DOUBLE_EQ(scor_align_pct(small_table(), record, record.alignLen), c.pct);
    EXPECT_EQ(record.overlapStart, c.overlapStart);
    EXPECT_EQ(record.overlapEnd, c.overlapEnd);
  }
}

TEST(ScorAlignPct, SequenceWithoutResiduesInTheScannedColumnsIsAProgramCheck) {
  const struct {
    std::vector<std::string> rows;
    const char* module;
    const char* message;
  } cases[] = {
      {{"ACD", " c "}, "pct_start_align", "Program check: len = 3"},
      {{"", ""}, "pct_start_align", "Program check: len = 0"},
      // The backward scan never examines column 0.
      {{"AAAA", "A   "}, "pct_end_align", "Program check: len = 4"},
      {{"A", "A"}, "pct_end_align", "Program check: len = 1"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.rows[0] + "/" + c.rows[1]);
    AlignRecord record = record_of(c.rows);
    EXPECT_RAISES(scor_align_pct(small_table(), record, record.alignLen),
                  testsupport::error_frame(1, c.module, c.message));
  }
}
