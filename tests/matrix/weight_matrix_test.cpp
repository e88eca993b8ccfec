#include "matrix/weight_matrix.hpp"

#include <map>
#include <string>

#include "shell/parms.hpp"
#include "support/test_support.hpp"

using testsupport::error_frame;

namespace {

// An open stream over text, in an anonymous temporary file.
UniqueFile stream_of(const std::string& text) {
  UniqueFile stream(std::tmpfile());
  std::fwrite(text.data(), 1, text.size(), stream.get());
  std::rewind(stream.get());
  return stream;
}

int cell(const ScoreTable& table, char x, char y) { return table[(x - 'A') * kTableDim + (y - 'A')]; }

ScoreTable read_section(const std::string& text) {
  ScoreTable table;
  table.fill(99);  // the reader must clear what a previous section left
  auto stream = stream_of(text);
  EXPECT_EQ(read_matrix_file(stream.get(), table), 1);
  return table;
}

std::string fatal(const std::string& message) { return error_frame(1, "read_matrix_file", message); }

// Reads text as a section in a death test, expecting message.
#define EXPECT_SECTION_FAILS(text, message)                                               \
  do {                                                                                    \
    ScoreTable table{};                                                                   \
    const std::string input = (text);                                                     \
    EXPECT_FATAL_OUTPUT(read_matrix_file(stream_of(input).get(), table), fatal(message)); \
  } while (0)

const std::string kExample =
    " 4\n"
    "# residue scores\n"
    "   A  C  D  E\n"
    "A  2\n"
    "C -2 12\n"
    "D  0 -5  4\n"
    "E  0 -5  3  4\n"
    "\n";

// A section of count rows labelled A, B, ... (wrapping after Z) whose cell
// values are all 1.
std::string section_of(int count) {
  std::string text = std::to_string(count) + "\nlabels\n";
  for (int r = 0; r < count; ++r) {
    text += static_cast<char>('A' + r % 26);
    for (int j = 0; j <= r; ++j) text += " 1";
    text += "\n";
  }
  return text + "\n";
}

}  // namespace

TEST(ReadMatrixFile, LoadsLowerTriangleSymmetricallyAndClearsTheRest) {
  const ScoreTable table = read_section(kExample);
  EXPECT_EQ(cell(table, 'A', 'A'), 2);
  EXPECT_EQ(cell(table, 'C', 'C'), 12);
  EXPECT_EQ(cell(table, 'C', 'D'), -5);
  EXPECT_EQ(cell(table, 'D', 'C'), -5);
  EXPECT_EQ(cell(table, 'E', 'D'), 3);
  EXPECT_EQ(cell(table, 'D', 'E'), 3);
  EXPECT_EQ(cell(table, 'W', 'W'), 0);
  EXPECT_EQ(cell(table, 'A', 'W'), 0);
  EXPECT_EQ(table[26 * kTableDim + 26], 0);
  EXPECT_EQ(table[31 * kTableDim + 31], 0);
}

TEST(ReadMatrixFile, RowLabelsNotTheHeadingDecideColumns) {
  // Lower-case labels, rows out of alphabetical order, a heading that lies,
  // a plus sign and a trailing remark.
  const ScoreTable table = read_section(" 3\n\n   nonsense heading\nw +50\na -50 4 tryptophan\nc 1 0 9 cys\n\n");
  EXPECT_EQ(cell(table, 'W', 'W'), 50);
  EXPECT_EQ(cell(table, 'A', 'W'), -50);
  EXPECT_EQ(cell(table, 'W', 'A'), -50);
  EXPECT_EQ(cell(table, 'A', 'A'), 4);
  EXPECT_EQ(cell(table, 'C', 'W'), 1);
  EXPECT_EQ(cell(table, 'C', 'A'), 0);
  EXPECT_EQ(cell(table, 'C', 'C'), 9);
}

TEST(ReadMatrixFile, RepeatedLabelOverwritesItsFirstRow) {
  const ScoreTable table = read_section("3\nA B\nA 1\nB 2 3\nA 4 5 6\n\n");
  EXPECT_EQ(cell(table, 'A', 'A'), 6);
  EXPECT_EQ(cell(table, 'A', 'B'), 5);
  EXPECT_EQ(cell(table, 'B', 'B'), 3);
}

TEST(ReadMatrixFile, LineAfterLastRowIsSwallowed) {
  auto stream = stream_of(" 1\nA\nA 5\nKEY:WT_SMAT 3\nKEY:BLANK_MATCH 0\n");
  ScoreTable table{};
  read_matrix_file(stream.get(), table);
  std::string key;
  ASSERT_EQ(read_parm_key(stream.get(), "KEY", 3, key), 1);
  EXPECT_EQ(key, "KEY:BLANK_MATCH");
}

TEST(ReadMatrixFile, LastSectionMayEndAtEndOfFile) { EXPECT_EQ(cell(read_section("1\nA\nA 7"), 'A', 'A'), 7); }

TEST(ReadMatrixFile, CodeCountBounds) {
  EXPECT_EQ(cell(read_section(section_of(1)), 'A', 'A'), 1);
  const ScoreTable full = read_section(section_of(32));
  EXPECT_EQ(cell(full, 'A', 'Z'), 1);
  EXPECT_EQ(cell(full, 'F', 'F'), 1);
  // The message does not echo the bad count.
  EXPECT_SECTION_FAILS(section_of(0), "Illegal number of codes: ");
  EXPECT_SECTION_FAILS(section_of(33), "Illegal number of codes: ");
  EXPECT_SECTION_FAILS("many\nA\nA 1\n", "Illegal number of codes: ");
  EXPECT_SECTION_FAILS("", "Illegal number of codes: ");
}

TEST(ReadMatrixFile, ScoreBounds) {
  EXPECT_EQ(cell(read_section("2\nA B\nA -50\nB 50 0\n\n"), 'A', 'B'), 50);
  EXPECT_SECTION_FAILS("2\nA B\nA -51\nB 0 0\n\n", "Min score violated at A -51\n");
  EXPECT_SECTION_FAILS("2\nA B\nA 0\nB 51 0\n\n", "Max score violated at B 51 0\n");
  EXPECT_SECTION_FAILS("1\nA\nA 99999999999999\n\n", "Max score violated at A 99999999999999\n");
  EXPECT_SECTION_FAILS("1\nA\nA -99999999999999\n\n", "Min score violated at A -99999999999999\n");
}

TEST(ReadMatrixFile, TokenWithoutNumberKeepsPreviousCellValue) {
  // A blank before the newline makes the bare newline a value token.
  const ScoreTable table = read_section("2\nA B\nA 7\nB -3 \n\n");
  EXPECT_EQ(cell(table, 'B', 'A'), -3);
  EXPECT_EQ(cell(table, 'B', 'B'), -3);
  // The very first cell has no previous value: it gets 0.
  EXPECT_EQ(cell(read_section("1\nA\nA x\n\n"), 'A', 'A'), 0);
}

TEST(ReadMatrixFile, RowShapeErrors) {
  EXPECT_SECTION_FAILS("2\nA B\nA 1\nB 2\n\n", "Trouble reading matrix at B 2\n");
  EXPECT_SECTION_FAILS("2\nA B\nA 1 2\nB 2 3\n\n", "Input check, line too long at A 1 2\n");
  EXPECT_SECTION_FAILS(kExample.substr(0, kExample.find("A  2")) + "A  2 -2  0  0\n",
                       "Input check, line too long at A  2 -2  0  0\n");
  // Tabs do not separate tokens.
  EXPECT_SECTION_FAILS("1\nA\nA\t2\n\n", "Illegal amino acid label length: A\t2\n");
  EXPECT_SECTION_FAILS("1\nA\nAla 2\n\n", "Illegal amino acid label length: Ala");
  EXPECT_SECTION_FAILS("1\nA\n1 2\n\n", "Illegal amino acid character: 1 2\n");
}

TEST(ReadMatrixFile, BlankAndCommentLinesAreAllowedOnlyBeforeTheLabelLine) {
  EXPECT_EQ(cell(read_section("1\n\n   \n# remark\n  #another\nA\nA 3\n\n"), 'A', 'A'), 3);
  EXPECT_SECTION_FAILS("2\nA B\nA 1\n\nB 2 3\n\n", "Illegal amino acid character: \n");
  EXPECT_SECTION_FAILS("2\nA B\nA 1\n# x\nB 2 3\n\n", "Illegal amino acid character: # x\n");
  EXPECT_SECTION_FAILS("2\nA B\nA 1\n#remark\nB 2 3\n\n", "Illegal amino acid label length: #remark\n");
}

TEST(ReadMatrixFile, EndOfFileErrors) {
  EXPECT_SECTION_FAILS("2\n\n# only remarks\n", "Unexpected EOF, no amino acid label line found");
  EXPECT_SECTION_FAILS("2\n   A  B\n", "Unexpected EOF at:    A  B\n, count = 0");
  // After a row, the buffer holds that row up to its label.
  EXPECT_SECTION_FAILS("3\nA B C\nA 1\nB 2 3\n", "Unexpected EOF at: B, count = 2");
}

TEST(ReadMatrixFile, LinesAreReadIn254CharacterPieces) {
  // A remark longer than a line read: its tail is taken for the label line,
  // so the real label line becomes row 0, its label token with the newline.
  EXPECT_SECTION_FAILS("1\n#" + std::string(300, 'x') + "\nA\nA 1\n\n", "Illegal amino acid label length: A\n");
  // A row whose value lies beyond 254 characters has no value in its first piece.
  const std::string head = "A" + std::string(253, ' ');
  EXPECT_SECTION_FAILS("1\nA\n" + head + "5\n\n", "Trouble reading matrix at " + head);
}

TEST(ShippedWeightFile, LoadsThroughTheKeyLoop) {
  auto stream = open_file(testsupport::source_path("data/ravlin.wts").string(), "r");
  ASSERT_TRUE(stream);
  // Key bounds as the run driver checks them.
  const std::map<std::string, std::pair<int, int>> scalarBounds = {
      {"KEY:GAP_PEN", {0, 500}},     {"KEY:GAP_PEN_SIZE", {0, 50}}, {"KEY:MID_GAP_PEN", {0, 500}},
      {"KEY:END_GAP_PEN", {0, 500}}, {"KEY:NEAR_MATCH", {-50, 50}}, {"KEY:BLANK_MATCH", {0, 500}}};
  std::map<std::string, int> found;
  ScoreTable residues{};
  ScoreTable structures{};
  std::string key;
  while (read_parm_key(stream.get(), "KEY", 3, key) == 1) {
    if (key == "KEY:WT_PMAT") {
      found[key] = read_matrix_file(stream.get(), residues);
    } else if (key == "KEY:WT_SMAT") {
      found[key] = read_matrix_file(stream.get(), structures);
    } else {
      const auto bounds = scalarBounds.find(key);
      ASSERT_NE(bounds, scalarBounds.end()) << key;
      int value = 0;
      ASSERT_EQ(read_parm_int(stream.get(), &value, bounds->second.first, bounds->second.second, key), 1);
      found[key] = value;
    }
  }
  EXPECT_EQ(found.size(), 8u);
  for (const auto& [name, bounds] : scalarBounds) EXPECT_TRUE(found.count(name)) << name;
  EXPECT_GT(found["KEY:MID_GAP_PEN"], found["KEY:END_GAP_PEN"]);

  // BLOSUM62 as published.
  EXPECT_EQ(cell(residues, 'A', 'A'), 4);
  EXPECT_EQ(cell(residues, 'W', 'W'), 11);
  EXPECT_EQ(cell(residues, 'C', 'C'), 9);
  EXPECT_EQ(cell(residues, 'W', 'F'), 1);
  EXPECT_EQ(cell(residues, 'I', 'V'), 3);
  EXPECT_EQ(cell(residues, 'D', 'L'), -4);
  EXPECT_EQ(cell(residues, 'B', 'D'), 4);
  EXPECT_EQ(cell(residues, 'Z', 'E'), 4);
  EXPECT_EQ(cell(residues, 'X', 'X'), -1);
  EXPECT_EQ(cell(residues, 'P', 'F'), -4);
  EXPECT_EQ(cell(residues, 'J', 'A'), 0);
  for (int x = 0; x < kTableDim; ++x) {
    for (int y = 0; y < kTableDim; ++y) {
      EXPECT_EQ(residues[x * kTableDim + y], residues[y * kTableDim + x]);
      EXPECT_EQ(structures[x * kTableDim + y], structures[y * kTableDim + x]);
    }
  }

  for (char s : std::string("HBCT")) EXPECT_GT(cell(structures, s, s), 0) << s;
  EXPECT_LT(cell(structures, 'H', 'B'), 0);
  for (char s : std::string("HBCTX")) EXPECT_EQ(cell(structures, 'X', s), 0) << s;
}
