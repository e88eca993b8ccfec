#include "shell/strutil.hpp"

#include <string>

#include "support/test_support.hpp"

TEST(StrMatchBlanks, MismatchedCountsAreAProgramCheck) {
  char out[8] = {};
  EXPECT_RAISES(str_match_blanks("ABC", 3, "XX XX", 5, ' ', out),
                testsupport::error_frame(1, "str_match_blanks", "Program check: inStr = ABC"));
}

// Folding is by byte value, whatever the locale.
TEST(CaseAndBlanks, FoldAndRemove) {
  char text[] = "gAil-vd 1\xe9z";
  to_upper(text, text);
  EXPECT_STREQ(text, "GAIL-VD 1\xe9Z");
  char out[16];
  EXPECT_EQ(remove_blanks("A C\tD\r\n", 7, out), 4);
  EXPECT_STREQ(out, "ACD\r");
  EXPECT_EQ(remove_blanks("ABC", -4, out), 0);
  EXPECT_STREQ(out, "");
}
