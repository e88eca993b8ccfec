#include "seq/text_reader.hpp"

#include <string>

#include "shell/text_input.hpp"
#include "support/test_support.hpp"

using testsupport::error_frame;

namespace {

// A stream positioned at the start of text (which may hold any bytes).
UniqueFile stream_of(const std::string& text) {
  UniqueFile stream(std::tmpfile());
  std::fwrite(text.data(), 1, text.size(), stream.get());
  std::rewind(stream.get());
  return stream;
}

SeqRecord read_one(const std::string& text, int minRes = 3, int maxRes = 4000) {
  const UniqueFile in = stream_of(text);
  SeqRecord record;
  EXPECT_EQ(read_seq_text(in.get(), record, minRes, maxRes), 1);
  return record;
}

// Reads one entry from text; for the statements that end the run.
void read_text(const std::string& text, int minRes = 3, int maxRes = 4000) {
  const UniqueFile in = stream_of(text);
  SeqRecord record;
  read_seq_text(in.get(), record, minRes, maxRes);
}

const char* const kExample =
    "Free text before the first entry is ignored.\n"
    ">TRX1 thioredoxin, human [101-120]\n"
    "MVKQIESKTA FQEALDAAGD\n"
    "CCCCBBBBBHHHHHHHTTCC\n"
    "-----*****11111-----\n"
    "\n"
    ">TRX2 thioredoxin, bacterial\n"
    "# residues only; no structure, no anchors\n"
    "SDKIIHLTDDSFDTDVLKAD\n"
    "gailvdfwae\n";

}  // namespace

TEST(ReadSeqText, ReadsEntriesWithAndWithoutStructureAndAnchors) {
  const UniqueFile in = stream_of(kExample);
  SeqRecord first;
  first.organism = "kept";
  ASSERT_EQ(read_seq_text(in.get(), first, 3, 4000), 1);
  EXPECT_EQ(first.acc, "TRX1");
  EXPECT_EQ(first.title, "thioredoxin, human [101-120]");
  EXPECT_EQ(first.numRes, 20);
  EXPECT_EQ(first.pRes, "MVKQIESKTAFQEALDAAGD");
  EXPECT_EQ(first.sRes, "CCCCBBBBBHHHHHHHTTCC");
  EXPECT_EQ(first.uRes, "-----*****11111-----");
  EXPECT_EQ(first.hasSRes + first.hasURes, 2);
  EXPECT_EQ(first.organism, "kept");
  ASSERT_EQ(first.resNums.size(), 4000u);
  EXPECT_EQ(std::vector<int>(first.resNums.begin(), first.resNums.begin() + 2), (std::vector<int>{0, 101}));
  EXPECT_EQ(std::vector<int>(first.resNums.begin() + 20, first.resNums.begin() + 22), (std::vector<int>{120, 21}));

  SeqRecord second;
  ASSERT_EQ(read_seq_text(in.get(), second, 3, 4000), 1);
  EXPECT_EQ(second.title, "thioredoxin, bacterial");
  EXPECT_EQ(second.pRes, "SDKIIHLTDDSFDTDVLKADGAILVDFWAE");
  EXPECT_EQ(second.sRes, std::string(30, 'X'));
  EXPECT_EQ(second.uRes, std::string(30, '-'));
  EXPECT_EQ(second.hasSRes + second.hasURes, 0);
  EXPECT_EQ(read_seq_text(in.get(), second, 3, 4000), -1);
}

TEST(ReadSeqText, EntryBoundariesAndPushBack) {
  // Directly followed by the next header: the '>' is left for the next call.
  UniqueFile in = stream_of(">A one\nMKV\n>B two\nGGG");
  SeqRecord record;
  ASSERT_EQ(read_seq_text(in.get(), record, 3, 4000), 1);
  EXPECT_EQ(std::fgetc(in.get()), '>');

  // Ended by an empty line: the line end is left, and residue lines up to the
  // next '>' are skipped.
  in = stream_of(">A one\nMKV\n\nWWWW\nYYYY\n>B two\nGGG");
  ASSERT_EQ(read_seq_text(in.get(), record, 3, 4000), 1);
  EXPECT_EQ(std::fgetc(in.get()), '\n');
  ASSERT_EQ(read_seq_text(in.get(), record, 3, 4000), 1);
  EXPECT_EQ(record.acc, "B");
  EXPECT_EQ(record.pRes, "GGG");  // last entry without a final line end
  EXPECT_EQ(read_seq_text(in.get(), record, 3, 4000), -1);

  EXPECT_EQ(read_seq_text(stream_of("").get(), record, 3, 4000), -1);
  EXPECT_EQ(read_seq_text(stream_of("no entries here\n").get(), record, 3, 4000), -1);
}

TEST(ReadSeqText, HeaderCodesAndTitles) {
  SeqRecord record = read_one(">title something\nMKV\n");
  EXPECT_EQ(record.acc, "");
  EXPECT_EQ(record.title, "something");
  EXPECT_EQ(read_one(">Title2 x\nMKV\n").acc, "");
  EXPECT_EQ(read_one(">TITL x\nMKV\n").acc, "TITL");

  record = read_one("> ABC \t  a title \nMKV\n");
  EXPECT_EQ(record.acc, "ABC");
  EXPECT_EQ(record.title, "a title ");
  record = read_one(">\n\n  AbC12\nMKV\n");  // line ends before the code are skipped
  EXPECT_EQ(record.acc, "AbC12");
  EXPECT_EQ(record.title, "");
  EXPECT_EQ(read_one(">ABCDEFGHIJKL t\nMKV\n").acc, "ABCDEFGHIJKL");
}

TEST(ReadSeqText, ResidueNumberingFromHeaderRanges) {
  auto nums = read_one(">A x [5-3] [10-12]\nMKVW\n").resNums;
  EXPECT_EQ(std::vector<int>(nums.begin(), nums.begin() + 5), (std::vector<int>{0, 10, 11, 12, 4}));

  // The piece before the first '[' counts too; the closing bracket is optional.
  nums = read_one(">A 12-14 kinase [ -2--1\nMKV\n").resNums;
  EXPECT_EQ(std::vector<int>(nums.begin(), nums.begin() + 7), (std::vector<int>{0, 12, 13, 14, -2, -1, 6}));

  // The hyphen must follow the first number directly.
  EXPECT_EQ(read_one(">A [7 -9]\nMKV\n").resNums[1], 1);
  EXPECT_EQ(read_one(">A [ 7- 9]\nMKV\n").resNums[1], 7);

  // Numbers beyond the table are dropped.
  nums = read_one(">A [10001-2000000000]\nMKV\n").resNums;
  ASSERT_EQ(nums.size(), 4000u);
  EXPECT_EQ(nums[3999], 13999);
}

TEST(ReadSeqText, ClassifiesDataLines) {
  const SeqRecord record = read_one(
      ">A x\n"
      "# a comment with *** and HHH\n"
      "MKVL TW\n"
      "   \t \n"
      "hhhhcc\n"
      "------\n"
      "CHTAX\n"
      "CCCCC\n"
      "1*\n"
      "---\n");
  // A blank-only line does not end the entry; a line of only B/C/H/T/X is
  // structure and a line of only '-' is anchors, wherever they stand.
  EXPECT_EQ(record.pRes, "MKVLTWCHTAX");
  EXPECT_EQ(record.sRes, "HHHHCCCCCCC");
  EXPECT_EQ(record.numRes, 11);
  EXPECT_EQ(record.hasSRes, 1);
  EXPECT_EQ(record.uRes, "------1*---");
  EXPECT_EQ(record.hasURes, 1);
}

TEST(ReadSeqText, LongLinesAreReadInPiecesOf254) {
  // Exactly 254 characters: the line end then starts an empty line.
  const UniqueFile in = stream_of(">A x\n" + std::string(254, 'W') + "\nMKV\n");
  SeqRecord record;
  ASSERT_EQ(read_seq_text(in.get(), record, 3, 4000), 1);
  EXPECT_EQ(record.numRes, 254);
  EXPECT_EQ(read_seq_text(in.get(), record, 3, 4000), -1);

  record = read_one(">A x\n" + std::string(300, 'A') + "\n" + std::string(300, 'H') + "\n");
  EXPECT_EQ(record.numRes, 300);
  EXPECT_EQ(record.sRes, std::string(300, 'H'));

  // A comment read covers the '#' and 254 more; the rest is a further line.
  EXPECT_EQ(read_one(">A x\n#" + std::string(254, 'x') + "acde\n").pRes, "ACDE");
  EXPECT_EQ(read_one(">A x\n#" + std::string(253, 'x') + "\nMKV\n").pRes, "MKV");

  // The rest of an overlong header is read as data.
  record = read_one(">A " + std::string(253, 't') + "MKVW\n");
  EXPECT_EQ(record.title, std::string(252, 't'));
  EXPECT_EQ(record.pRes, "MKVW");
}

TEST(ReadSeqTextDeathTest, EveryMessage) {
  EXPECT_FATAL_OUTPUT(read_text("text >"), error_frame(1, "read_seq_id_str", "Expecting sequence but EOF found."));
  EXPECT_FATAL_OUTPUT(read_text(">ABCDEFGHIJKLM x\nMKV\n"),
                      error_frame(1, "read_seq_id_str", "Sequence ID code too long at: ABCDEFGHIJKLM"));
  EXPECT_FATAL_OUTPUT(read_text(">A x\nACDE*\n"), error_frame(1, "read_seq_data", "Illegal input line: ACDE*\n"));
  EXPECT_FATAL_OUTPUT(read_text(">A x\nACDE\r\n"), error_frame(1, "read_seq_data", "Illegal input line: ACDE\r\n"));
  // The number shown is 4000 whatever maxRes is.
  EXPECT_FATAL_OUTPUT(read_text(">A x\nACDEFG\n", 3, 5),
                      error_frame(1, "read_seq_data", "Sequence has > 4000 amino acids"));
  EXPECT_EQ(read_one(">A x\n" + std::string(4000, 'G') + "\n").numRes, 4000);
  // maxRes above the room of 4000 is held to it.
  EXPECT_FATAL_OUTPUT(read_text(">A x\n" + std::string(4001, 'G') + "\n", 3, 9000),
                      error_frame(1, "read_seq_data", "Sequence has > 4000 amino acids"));
  EXPECT_EQ(read_one(">A x\nMKV\n").numRes, 3);
  EXPECT_FATAL_OUTPUT(read_text(">A x\nMK\n"), error_frame(1, "store_seq_data", "Sequence has < 3 amino acids."));
  EXPECT_FATAL_OUTPUT(read_text(">A x\n>B y\nMKV\n"),
                      error_frame(1, "store_seq_data", "Sequence has < 3 amino acids."));
  EXPECT_FATAL_OUTPUT(read_text(">A x\nMKVW\nHHH\n"),
                      error_frame(1, "store_seq_data", "Primary/secondary structures do not line up."));
  EXPECT_FATAL_OUTPUT(read_text(">A x\nMKVW\n-----\n"),
                      error_frame(1, "store_seq_data", "Primary/anchor symbols do not line up."));
}
