#include "matrix/weight_matrix.hpp"

#include <map>
#include <sstream>
#include <string>
#include <tuple>

#include "shell/parms.hpp"
#include "support/test_support.hpp"

using testsupport::stream_of;

namespace {

// Codes past 'Z' are reached with the characters after it ('[' is code 26).
int cell(const ScoreTable& table, char x, char y) { return table[(x - 'A') * kTableDim + (y - 'A')]; }

// Checks the cells given as "XY<value>" words, e.g. "AW-50 CC9".
void expect_cells(const ScoreTable& table, const std::string& cells) {
  std::istringstream words(cells);
  for (std::string w; words >> w;) EXPECT_EQ(cell(table, w[0], w[1]), std::stoi(w.substr(2))) << w;
}

// A section of count rows labelled A, B, ... (wrapping after Z), every value 1.
std::string section_of(int count) {
  std::string text = std::to_string(count) + "\nlabels\n";
  for (int r = 0; r < count; ++r) {
    text += static_cast<char>('A' + r % 26);
    for (int j = 0; j <= r; ++j) text += " 1";
    text += "\n";
  }
  return text + "\n";
}

const std::string kExample = " 4\n# residue scores\n   A  C  D  E\nA  2\nC -2 12\nD  0 -5  4\nE  0 -5  3  4\n\n";

}  // namespace

TEST(ReadMatrixFile, GoodSections) {
  // Expected cells as "XY<value>" words.
  const std::tuple<const char*, std::string, std::string> cases[] = {
      {"lower triangle mirrored, the rest cleared", kExample, "AA2 CC12 CD-5 DC-5 ED3 DE3 WW0 AW0 [[0 ``0"},
      {"row labels, not the heading, decide columns; '+' and a trailing remark",
       " 3\n\n   nonsense heading\nw +50\na -50 4 tryptophan\nc 1 0 9 cys\n\n", "WW50 AW-50 WA-50 AA4 CW1 CA0 CC9"},
      {"a repeated label overwrites its first row", "3\nA B\nA 1\nB 2 3\nA 4 5 6\n\n", "AA6 AB5 BB3"},
      {"the last section may end at the end of the file", "1\nA\nA 7", "AA7"},
      {"32 codes", section_of(32), "AZ1 FF1"},
      // A blank before the newline makes the bare newline a value token.
      {"a token without a number keeps the previous value", "2\nA B\nA 7\nB -3 \n\n", "BA-3 BB-3"},
      {"the very first cell has no previous value", "1\nA\nA x\n\n", "AA0"},
      {"blank and remark lines before the label line", "1\n\n   \n# remark\n  #another\nA\nA 3\n\n", "AA3"},
  };
  for (const auto& [what, text, cells] : cases) {
    SCOPED_TRACE(what);
    ScoreTable table;
    table.fill(99);  // the reader must clear what a previous section left
    EXPECT_EQ(read_matrix_file(stream_of(text).get(), table), 1);
    expect_cells(table, cells);
  }
}

TEST(ReadMatrixFile, EachFaultHasItsMessage) {
  const std::string farValue = "A" + std::string(253, ' ');  // its value lies beyond a 254-character read
  const std::pair<std::string, std::string> cases[] = {
      // The message does not echo the bad count.
      {section_of(0), "Illegal number of codes: "},
      {section_of(33), "Illegal number of codes: "},
      // One past the scores of +-50 read above.
      {"2\nA B\nA -51\nB 0 0\n\n", "Min score violated at A -51\n"},
      {"2\nA B\nA 0\nB 51 0\n\n", "Max score violated at B 51 0\n"},
      {"1\nA\nA 99999999999999\n\n", "Max score violated at A 99999999999999\n"},
      {"2\nA B\nA 1 2\nB 2 3\n\n", "Input check, line too long at A 1 2\n"},
      {"1\nA\nA\t2\n\n", "Illegal amino acid label length: A\t2\n"},  // tabs do not separate tokens
      {"1\nA\n1 2\n\n", "Illegal amino acid character: 1 2\n"},
      // Blank and remark lines are allowed only before the label line.
      {"2\nA B\nA 1\n# x\nB 2 3\n\n", "Illegal amino acid character: # x\n"},
      {"2\n\n# only remarks\n", "Unexpected EOF, no amino acid label line found"},
      // After a row, the buffer holds that row up to its label.
      {"3\nA B C\nA 1\nB 2 3\n", "Unexpected EOF at: B, count = 2"},
      // A remark longer than a line read: its tail is taken for the label line,
      // so the real label line becomes row 0, its label token with the newline.
      {"1\n#" + std::string(300, 'x') + "\nA\nA 1\n\n", "Illegal amino acid label length: A\n"},
      {"1\nA\n" + farValue + "5\n\n", "Trouble reading matrix at " + farValue},
  };
  for (const auto& c : cases) {
    const std::string& text = c.first;
    const std::string& message = c.second;
    SCOPED_TRACE(text);
    ScoreTable table{};
    EXPECT_RAISES(read_matrix_file(stream_of(text).get(), table),
                  testsupport::error_frame(1, "read_matrix_file", message));
  }
}

TEST(ReadMatrixFile, LineAfterLastRowIsSwallowed) {
  auto stream = stream_of(" 1\nA\nA 5\nKEY:WT_SMAT 3\nKEY:BLANK_MATCH 0\n");
  ScoreTable table{};
  read_matrix_file(stream.get(), table);
  std::string key;
  ASSERT_EQ(read_parm_key(stream.get(), "KEY", 3, key), 1);
  EXPECT_EQ(key, "KEY:BLANK_MATCH");
}
