#include "shell/parms.hpp"

#include <string>
#include <vector>

#include "support/test_support.hpp"

using testsupport::error_frame;
using testsupport::TempDir;

namespace {

// An open stream over text, kept in a temporary file.
UniqueFile stream_of(const TempDir& dir, const std::string& text) {
  return open_file(dir.write("parms", text).string(), "r");
}

std::vector<std::string> all_keys(std::FILE* stream, const char* prefix, int n) {
  std::vector<std::string> keys;
  std::string key;
  while (read_parm_key(stream, prefix, n, key) == 1) keys.push_back(key);
  return keys;
}

}  // namespace

TEST(ReadParmKey, FindsKeysAndSkipsCommentLines) {
  TempDir dir;
  auto stream = stream_of(dir,
                          "Free text RAVLIN:STRUCT_BIAS 5 is not a key here\n"
                          "\n"
                          "RAVLIN:GAP 1 trailing remark RAVLIN:SKIPPED\n"
                          "  RAVLINX 7 ignored with its line RAVLIN:ALSO_SKIPPED\n"
                          "RAVLIN:LAST\n");
  // After a key the caller reads a value; here the value words are comment
  // words, so the rest of their lines goes too.
  EXPECT_EQ(all_keys(stream.get(), "RAVLIN", 6), (std::vector<std::string>{"RAVLIN:GAP", "RAVLINX", "RAVLIN:LAST"}));
}

TEST(ReadParmKey, EmptyFileHasNoKey) {
  TempDir dir;
  auto stream = stream_of(dir, "");
  std::string key;
  EXPECT_EQ(read_parm_key(stream.get(), "RAVLIN", 6, key), 0);
}

TEST(ReadParmKey, KeyDeepInAnOverLongLineIsStillFound) {
  TempDir dir;
  // The skip reads at most 254 characters, so the rest of a long comment
  // line is scanned as words again.
  const std::string comment = "note" + std::string(254, ' ') + "KEY:GAP_PEN 8\n";
  auto stream = stream_of(dir, comment);
  std::string key;
  ASSERT_EQ(read_parm_key(stream.get(), "KEY", 3, key), 1);
  EXPECT_EQ(key, "KEY:GAP_PEN");
  int value = 0;
  EXPECT_EQ(read_parm_int(stream.get(), &value, 0, 500, key), 1);
  EXPECT_EQ(value, 8);
}

TEST(ReadParmInt, ValueMayFollowOnTheNextLineAndBoundsAreInclusive) {
  TempDir dir;
  auto stream = stream_of(dir, "RAVLIN:STRUCT_BIAS\n   -100\nRAVLIN:INC_GAP_PEN 100\n");
  std::string key;
  int value = 0;
  ASSERT_EQ(read_parm_key(stream.get(), "RAVLIN", 6, key), 1);
  EXPECT_EQ(read_parm_int(stream.get(), &value, -100, 100, key), 1);
  EXPECT_EQ(value, -100);
  ASSERT_EQ(read_parm_key(stream.get(), "RAVLIN", 6, key), 1);
  EXPECT_EQ(read_parm_int(stream.get(), &value, 0, 100, key), 1);
  EXPECT_EQ(value, 100);
}

TEST(ReadParmInt, BoundsAndMissingValuesAreFatal) {
  TempDir dir;
  int value = 0;
  auto low = stream_of(dir, "-101");
  EXPECT_FATAL_OUTPUT(
      read_parm_int(low.get(), &value, -100, 100, "RAVLIN:STRUCT_BIAS"),
      error_frame(1, "read_parm_int", "Parm key = 'RAVLIN:STRUCT_BIAS' Lower bound exceeded: -101 < -100\n"));
  auto high = stream_of(dir, " 503 ");
  EXPECT_FATAL_OUTPUT(
      read_parm_int(high.get(), &value, 1, 502, "RAVLIN:SEQ_SELECT"),
      error_frame(1, "read_parm_int", "Parm key = 'RAVLIN:SEQ_SELECT' Upper bound exceeded: 503 > 502\n"));
  auto word = stream_of(dir, "RAVLIN:NEXT 5");
  EXPECT_FATAL_OUTPUT(
      read_parm_int(word.get(), &value, 0, 1, "RAVLIN:PRINT_FORMAT"),
      error_frame(1, "read_parm_int", "Parm key = 'RAVLIN:PRINT_FORMAT' Missing or non-numeric value\n"));
  // A number too large for an int is held at the limit, never wrapped into range.
  auto huge = stream_of(dir, "4294967297");
  EXPECT_FATAL_OUTPUT(
      read_parm_int(huge.get(), &value, -100, 100, "RAVLIN:STRUCT_BIAS"),
      error_frame(1, "read_parm_int", "Parm key = 'RAVLIN:STRUCT_BIAS' Upper bound exceeded: 2147483647 > 100\n"));
  auto empty = stream_of(dir, "\n  \n");
  EXPECT_FATAL_OUTPUT(
      read_parm_int(empty.get(), &value, 0, 1, "RAVLIN:PRINT_FORMAT"),
      error_frame(1, "read_parm_int", "Parm key = 'RAVLIN:PRINT_FORMAT' Missing or non-numeric value\n"));
}

TEST(ReadParmDouble, KeepsItsMessagesIncludingTheUpperBoundsLessThanSign) {
  TempDir dir;
  double value = 0.0;
  auto good = stream_of(dir, "2.5");
  EXPECT_EQ(read_parm_double(good.get(), &value, 0.0, 3.0, "KEY:X"), 1);
  EXPECT_DOUBLE_EQ(value, 2.5);
  auto low = stream_of(dir, "-0.5");
  EXPECT_FATAL_OUTPUT(
      read_parm_double(low.get(), &value, 0.0, 3.0, "KEY:X"),
      error_frame(1, "read_parm_double", "Parm key = 'KEY:X' Lower bound exceeded: -0.500000 < 0.000000\n"));
  auto high = stream_of(dir, "4");
  EXPECT_FATAL_OUTPUT(
      read_parm_double(high.get(), &value, 0.0, 3.0, "KEY:X"),
      error_frame(1, "read_parm_double", "Parm key = 'KEY:X' Upper bound exceeded: 4.000000 < 3.000000\n"));
  for (const char* text : {"", "nan"}) {
    auto missing = stream_of(dir, text);
    EXPECT_FATAL_OUTPUT(read_parm_double(missing.get(), &value, 0.0, 3.0, "KEY:X"),
                        error_frame(1, "read_parm_double", "Parm key = 'KEY:X' Missing or non-numeric value\n"));
  }
}

TEST(ReadParmString, ReadsOneWordOrReportsEndOfInput) {
  TempDir dir;
  auto stream = stream_of(dir, "  data/seqs.txt tail");
  std::string word;
  EXPECT_EQ(read_parm_string(stream.get(), word), 1);
  EXPECT_EQ(word, "data/seqs.txt");
  EXPECT_EQ(read_parm_string(stream.get(), word), 1);
  EXPECT_EQ(read_parm_string(stream.get(), word), EOF);
}

TEST(ReadParmFname, OpensTheNamedFileOrEndsTheRun) {
  TempDir dir;
  const auto weights = dir.write("weights.wts", "KEY:GAP_PEN 1\n");
  auto good = stream_of(dir, weights.string() + "\n");
  std::string path;
  EXPECT_EQ(read_parm_fname(good.get(), path, "RAVLIN:SCOR_MATRIX"), 1);
  EXPECT_EQ(path, weights.string());

  auto again = stream_of(dir, weights.string());
  UniqueFile opened = read_parm_fname2(again.get(), path, "RAVLIN:SCOR_MATRIX");
  ASSERT_TRUE(opened);
  std::string word;
  EXPECT_TRUE(read_word(opened.get(), word));
  EXPECT_EQ(word, "KEY:GAP_PEN");

  const std::string missing = (dir.path() / std::string(300, 'n')).string();
  auto bad = stream_of(dir, missing);
  EXPECT_FATAL_OUTPUT(
      read_parm_fname(bad.get(), path, "RAVLIN:SCOR_MATRIX"),
      error_frame(1, "read_parm_fname", "Parmkey = 'RAVLIN:SCOR_MATRIX' Cannot open file: '" + missing + "'.\n"));
  auto bad2 = stream_of(dir, "no-such.wts");
  EXPECT_FATAL_OUTPUT(
      read_parm_fname2(bad2.get(), path, "RAVLIN:SCOR_MATRIX"),
      error_frame(1, "read_parm_fname2", "Parmkey = 'RAVLIN:SCOR_MATRIX' Cannot open file: 'no-such.wts'.\n"));
}

TEST(GetParmsFile, MissingFileIsFatal) {
  EXPECT_FATAL_OUTPUT(get_parms_file("/nonexistent/ravlin.parms"),
                      error_frame(1, "get_parms_file", "Cannot open parameter file: /nonexistent/ravlin.parms\n"));
}
