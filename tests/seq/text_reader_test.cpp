#include "seq/text_reader.hpp"

#include <string>
#include <vector>

#include "shell/text_input.hpp"
#include "support/test_support.hpp"

using testsupport::error_frame;

using testsupport::stream_of;

namespace {

SeqRecord read_one(const std::string& text, int minRes = 3, int maxRes = 4000) {
  const UniqueFile in = stream_of(text);
  SeqRecord record;
  EXPECT_EQ(read_seq_text(in.get(), record, minRes, maxRes), 1);
  return record;
}

using Header = std::pair<std::string, std::string>;

Header code_and_title(const std::string& header) {
  const SeqRecord record = read_one(header + "\nMKV\n");
  return {record.acc.value_or("(none)"), record.title.value_or("(none)")};
}

// count residue numbers from index from, for an entry under header.
std::vector<int> numbers(const std::string& header, std::size_t from, std::size_t count) {
  const auto nums = read_one(header + "\nMKVW\n").resNums;
  if (nums.size() < from + count) return {};
  return std::vector<int>(nums.begin() + from, nums.begin() + from + count);
}

}  // namespace

// Entries as the whole runs read them; here what they do not show: the lines
// after an entry's empty line are skipped up to the next '>', and the last
// entry needs no final line end.
TEST(ReadSeqText, LinesBetweenEntriesAreSkipped) {
  const UniqueFile in = stream_of(">TRX1 x\nMVKQ\n\nWWWW\n>TRX2 y\ngailv\n>TRX3 x\nGGG");
  SeqRecord record;
  for (const char* residues : {"MVKQ", "GAILV", "GGG"}) {
    ASSERT_EQ(read_seq_text(in.get(), record, 3, 4000), 1);
    EXPECT_EQ(record.pRes, residues);
  }
  EXPECT_EQ(read_seq_text(in.get(), record, 3, 4000), -1);
}

TEST(ReadSeqText, HeaderCodesAndTitles) {
  EXPECT_EQ(code_and_title(">title something"), Header("", "something"));  // a "title" code stands for none
  EXPECT_EQ(code_and_title(">TITL x"), Header("TITL", "x"));
  EXPECT_EQ(code_and_title("> ABC \t  a title "), Header("ABC", "a title "));
  EXPECT_EQ(code_and_title(">\n\n  AbC12"), Header("AbC12", ""));             // line ends before the code are skipped
  EXPECT_EQ(code_and_title(">ABCDEFGHIJKL t"), Header("ABCDEFGHIJKL", "t"));  // 12 characters fit
}

TEST(ReadSeqText, ResidueNumberingFromHeaderRanges) {
  EXPECT_EQ(numbers(">A x [5-3] [10-12]", 0, 5), (std::vector<int>{0, 10, 11, 12, 4}));
  // The piece before the first '[' counts too; the closing bracket is optional.
  EXPECT_EQ(numbers(">A 12-14 kinase [ -2--1", 0, 7), (std::vector<int>{0, 12, 13, 14, -2, -1, 6}));
  EXPECT_EQ(numbers(">A [7 -9]", 1, 1), std::vector<int>{1});  // the hyphen must follow the first number directly
  EXPECT_EQ(numbers(">A [ 7- 9]", 1, 1), std::vector<int>{7});
  EXPECT_EQ(numbers(">A [10001-2000000000]", 3999, 1), std::vector<int>{13999});  // beyond the table: dropped
}

TEST(ReadSeqText, ClassifiesDataLines) {
  // A blank-only line does not end the entry; a line of only B/C/H/T/X is
  // structure and a line of only '-' is anchors, wherever they stand.
  const SeqRecord record =
      read_one(">A x\n# a comment with *** and HHH\nMKVL TW\n   \t \nhhhhcc\n------\nCHTAX\nCCCCC\n1*\n---\n");
  EXPECT_EQ(record.pRes, "MKVLTWCHTAX");
  EXPECT_EQ(record.sRes, "HHHHCCCCCCC");
  EXPECT_EQ(record.uRes, "------1*---");
  EXPECT_EQ(record.hasSRes + record.hasURes, 2);
}

TEST(ReadSeqText, LongLinesAreReadInPiecesOf254) {
  // Exactly 254 characters: the line end then starts an empty line, which ends the entry.
  EXPECT_EQ(read_one(">A x\n" + std::string(254, 'W') + "\nMKV\n").pRes, std::string(254, 'W'));
  // A comment read covers the '#' and 254 more; the rest is a further line.
  EXPECT_EQ(read_one(">A x\n#" + std::string(254, 'x') + "acde\n").pRes, "ACDE");
  // The rest of an overlong header is read as data.
  const SeqRecord record = read_one(">A " + std::string(253, 't') + "MKVW\n");
  EXPECT_EQ(record.title, std::string(252, 't'));
  EXPECT_EQ(record.pRes, "MKVW");
}

TEST(ReadSeqTextDeathTest, EveryMessage) {
  EXPECT_EQ(read_one(">A x\n" + std::string(4000, 'G') + "\n").numRes, 4000);
  const struct {
    std::string text;
    int maxRes;
    const char* module;
    std::string message;
  } cases[] = {
      {"text >", 4000, "read_seq_id_str", "Expecting sequence but EOF found."},
      {">ABCDEFGHIJKLM x\nMKV\n", 4000, "read_seq_id_str", "Sequence ID code too long at: ABCDEFGHIJKLM"},
      {">A x\nACDE*\n", 4000, "read_seq_data", "Illegal input line: ACDE*\n"},
      {">A x\nACDE\r\n", 4000, "read_seq_data", "Illegal input line: ACDE\r\n"},
      // The number shown is 4000 whatever maxRes is, and a larger maxRes is held to 4000.
      {">A x\nACDEFG\n", 5, "read_seq_data", "Sequence has > 4000 amino acids"},
      {">A x\n" + std::string(4001, 'G') + "\n", 9000, "read_seq_data", "Sequence has > 4000 amino acids"},
      {">A x\nMK\n", 4000, "store_seq_data", "Sequence has < 3 amino acids."},
      {">A x\n>B y\nMKV\n", 4000, "store_seq_data", "Sequence has < 3 amino acids."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    EXPECT_RAISES(read_one(c.text, 3, c.maxRes), error_frame(1, c.module, c.message));
  }
}
