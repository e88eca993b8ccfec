#include "shell/parms.hpp"

#include <string>
#include <vector>

#include "support/test_support.hpp"

using testsupport::error_frame;
using testsupport::stream_of;

namespace {

std::vector<std::string> all_keys(std::FILE* stream, const char* prefix, int n) {
  std::vector<std::string> keys;
  std::string key;
  while (read_parm_key(stream, prefix, n, key) == 1) keys.push_back(key);
  return keys;
}

}  // namespace

TEST(ReadParmKey, FindsKeysAndSkipsCommentLines) {
  auto stream = stream_of(
      "Free text RAVLIN:STRUCT_BIAS 5 is not a key here\n"
      "\n"
      "RAVLIN:GAP 1 trailing remark RAVLIN:SKIPPED\n"
      "  RAVLINX 7 ignored with its line RAVLIN:ALSO_SKIPPED\n"
      "RAVLIN:LAST\n");
  // After a key the caller reads a value; here the value words are comment
  // words, so the rest of their lines goes too.
  EXPECT_EQ(all_keys(stream.get(), "RAVLIN", 6), (std::vector<std::string>{"RAVLIN:GAP", "RAVLINX", "RAVLIN:LAST"}));
}

TEST(ReadParmKey, KeyDeepInAnOverLongLineIsStillFound) {
  // The skip reads at most 254 characters, so the rest of a long comment
  // line is scanned as words again.
  const std::string comment = "note" + std::string(254, ' ') + "KEY:GAP_PEN 8\n";
  auto stream = stream_of(comment);
  std::string key;
  ASSERT_EQ(read_parm_key(stream.get(), "KEY", 3, key), 1);
  EXPECT_EQ(key, "KEY:GAP_PEN");
  int value = 0;
  EXPECT_EQ(read_parm_int(stream.get(), &value, 0, 500, key), 1);
  EXPECT_EQ(value, 8);
}

TEST(ReadParmInt, ValueMayFollowOnTheNextLineAndBoundsAreInclusive) {
  auto stream = stream_of("RAVLIN:STRUCT_BIAS\n   -100\nRAVLIN:INC_GAP_PEN 100\n");
  std::string key;
  int value = 0;
  ASSERT_EQ(read_parm_key(stream.get(), "RAVLIN", 6, key), 1);
  EXPECT_EQ(read_parm_int(stream.get(), &value, -100, 100, key), 1);
  EXPECT_EQ(value, -100);
  ASSERT_EQ(read_parm_key(stream.get(), "RAVLIN", 6, key), 1);
  EXPECT_EQ(read_parm_int(stream.get(), &value, 0, 100, key), 1);
  EXPECT_EQ(value, 100);
}

// The lower bound is fixed by a whole run.
TEST(ReadParmInt, BoundsAndMissingValuesAreFatal) {
  int value = 0;
  auto high = stream_of(" 503 ");
  EXPECT_RAISES(read_parm_int(high.get(), &value, 1, 502, "RAVLIN:SEQ_SELECT"),
                error_frame(1, "read_parm_int", "Parm key = 'RAVLIN:SEQ_SELECT' Upper bound exceeded: 503 > 502\n"));
  auto word = stream_of("RAVLIN:NEXT 5");
  EXPECT_RAISES(read_parm_int(word.get(), &value, 0, 1, "RAVLIN:PRINT_FORMAT"),
                error_frame(1, "read_parm_int", "Parm key = 'RAVLIN:PRINT_FORMAT' Missing or non-numeric value\n"));
  // A number too large for an int is held at the limit, never wrapped into range.
  auto huge = stream_of("4294967297");
  EXPECT_RAISES(
      read_parm_int(huge.get(), &value, -100, 100, "RAVLIN:STRUCT_BIAS"),
      error_frame(1, "read_parm_int", "Parm key = 'RAVLIN:STRUCT_BIAS' Upper bound exceeded: 2147483647 > 100\n"));
}

TEST(GetParmsFile, MissingFileIsFatal) {
  EXPECT_RAISES(get_parms_file("/nonexistent/ravlin.parms"),
                error_frame(1, "get_parms_file", "Cannot open parameter file: /nonexistent/ravlin.parms\n"));
}
