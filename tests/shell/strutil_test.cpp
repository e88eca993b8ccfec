#include "shell/strutil.hpp"

#include <string>
#include <vector>

#include "support/test_support.hpp"

using testsupport::error_frame;

TEST(StrMatchBlanks, LaysTheTextIntoThePatternsGaps) {
  char out[6] = {};
  str_match_blanks("ABC", 3, "X X X", 5, ' ', out);
  EXPECT_EQ(std::string(out, 5), "A B C");

  // Leading and trailing gaps, and a pattern whose own letters are never copied.
  char wide[8] = {};
  str_match_blanks("MK", 2, "  QQ   ", 7, ' ', wide);
  EXPECT_EQ(std::string(wide, 7), "  MK   ");
}

TEST(StrMatchBlanks, WritesNothingForAnEmptyPattern) {
  char out[2] = {'#', '#'};
  str_match_blanks("", 0, "", 0, ' ', out);
  EXPECT_EQ(out[0], '#');
}

TEST(StrMatchBlanks, MismatchedCountsAreAProgramCheck) {
  char out[8] = {};
  EXPECT_FATAL_OUTPUT(str_match_blanks("ABC", 3, "XX XX", 5, ' ', out),
                      error_frame(1, "str_match_blanks", "Program check: inStr = ABC"));
}

TEST(CaseAndBlanks, ToUpperFoldsOnlyLowerCaseLetters) {
  char text[] = "gAil-vd 1\xe9z";
  to_upper(text, text);
  EXPECT_STREQ(text, "GAIL-VD 1\xe9Z");
}

TEST(CaseAndBlanks, RemoveBlanksKeepsCarriageReturns) {
  char out[16];
  EXPECT_EQ(remove_blanks("A C\tD\r\n", 7, out), 4);
  EXPECT_STREQ(out, "ACD\r");
  EXPECT_EQ(remove_blanks("ABC", 0, out), 0);
  EXPECT_STREQ(out, "");
  EXPECT_EQ(remove_blanks("ABC", -4, out), 0);
}

TEST(Counting, CountsOnlyWithinTheLength) {
  EXPECT_EQ(count_chars_in_string("A A A", 5, ' '), 2);
  EXPECT_EQ(count_chars_in_string("A A A", 2, ' '), 1);
  EXPECT_EQ(count_chars_in_string("A A A", -1, ' '), 0);
  EXPECT_EQ(string_match_num("ACDE", "ACXEF", 4, 5), 3);
  EXPECT_EQ(string_match_num("ACDE", "ACXEF", 0, 5), 0);
}

TEST(Conversions, StrScanAndCharsToNums) {
  char text[] = "A-B-C";
  str_scan(text, 3, '-', ' ');
  EXPECT_STREQ(text, "A B-C");

  std::vector<std::int32_t> codes(5);
  chars_to_nums(5, "AZa \xc1", codes.data());
  EXPECT_EQ(codes, (std::vector<std::int32_t>{0, 25, 26, 26, 26}));
}

TEST(Conversions, CalcAlignStrlenMeasuresTheInnerPart) {
  int lead = -1;
  int end = -1;
  EXPECT_EQ(calc_align_strlen("  AB C   ", &lead, &end), 4);
  EXPECT_EQ(lead, 2);
  EXPECT_EQ(end, 6);
  EXPECT_EQ(calc_align_strlen("ABC", &lead, &end), 3);
  EXPECT_EQ(lead, 0);
  EXPECT_EQ(end, 3);
}
