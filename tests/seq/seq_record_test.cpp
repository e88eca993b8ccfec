#include "seq/seq_record.hpp"

#include <string>

#include "shell/text_input.hpp"
#include "support/test_support.hpp"

using testsupport::error_frame;
using testsupport::TempDir;

using testsupport::stream_of;

namespace {

std::string rest_of(std::FILE* stream) {
  std::rewind(stream);
  std::string text;
  for (int ch; (ch = std::fgetc(stream)) != EOF;) text.push_back(static_cast<char>(ch));
  return text;
}

// count entries of the text-based format, named S1, S2, ...
std::string text_entries(int count) {
  std::string text;
  for (int k = 1; k <= count; ++k) text += ">S" + std::to_string(k) + " seq " + std::to_string(k) + "\nMKVW\n\n";
  return text;
}

}  // namespace

TEST(ReadSeq, GivesFillersAndNumberingToRecordsThatLackThem) {
  // The keyboard reader leaves them out; read_seq adds them.
  const UniqueFile in = stream_of("typed\nMKVW$");
  const UniqueFile out(std::tmpfile());
  SeqRecord record;
  record.hasSRes = 1;  // a flag without its string is not believed
  ASSERT_EQ(read_seq(in.get(), out.get(), record, kFormatKeyboard, 3, 4000), 1);
  EXPECT_EQ(record.sRes, "XXXX");
  EXPECT_EQ(record.uRes, "----");
  EXPECT_EQ(record.hasSRes, 0);
  ASSERT_EQ(record.resNums.size(), 4000u);
  EXPECT_EQ(record.resNums[4], 4);
}

TEST(ReadSeqDeathTest, IllegalFormatCodes) {
  SeqRecord record;
  for (int format : {0, 7, -1})
    EXPECT_FATAL_OUTPUT(read_seq(stdin, stdout, record, format, 3, 4000),
                        error_frame(1, "read_seq", "Illegal sequence format: " + std::to_string(format) + "\n"));
}

TEST(MreadSeq, CountsOnFromWhereTheTableStandsToTheEndOfInput) {
  std::vector<SeqRecord> records(5);
  int count = 1;
  EXPECT_EQ(mread_seq(stream_of(text_entries(3)).get(), stdout, records, count, 5, kFormatText, 3, 4000), -1);
  EXPECT_EQ(count, 4);
  EXPECT_EQ(records[3].acc, "S3");
}

TEST(MreadSeq, AFullTableStillGetsOneRead) {
  std::vector<SeqRecord> roomy(501), full(500);
  int count = 500;
  EXPECT_EQ(mread_seq(stream_of(text_entries(2)).get(), stdout, roomy, count, 500, kFormatText, 3, 4000), 1);
  EXPECT_EQ(count, 501);
  EXPECT_EQ(roomy[500].acc, "S1");
  // Without room for it the entry is read and dropped, never written past the table.
  count = 500;
  EXPECT_EQ(mread_seq(stream_of(text_entries(2)).get(), stdout, full, count, 500, kFormatText, 3, 4000), 1);
  EXPECT_EQ(count, 501);
  EXPECT_FALSE(full[499].acc.has_value());
}

TEST(MgetSeqs, ReadsAtMostMaxSeqsAndNoMoreThanTheTableHolds) {
  TempDir dir;
  const auto path = dir.write("many.seq", text_entries(600));
  std::vector<SeqRecord> records(500), few(3);
  const UniqueFile out(std::tmpfile());
  int numSeqs = 0;
  EXPECT_EQ(mget_seqs(path.string(), out.get(), records, kFormatText, 500, 3, 4000, numSeqs), 1);
  EXPECT_EQ(numSeqs, 500);
  EXPECT_EQ(records[499].acc, "S500");
  EXPECT_EQ(rest_of(out.get()), "\nNumber of sequences to align: 500");
  EXPECT_EQ(mget_seqs(path.string(), out.get(), few, kFormatText, 500, 3, 4000, numSeqs), 1);
  EXPECT_EQ(numSeqs, 3);
}

TEST(MgetSeqsDeathTest, FewerThanTwoSequences) {
  TempDir dir;
  std::vector<SeqRecord> records(500);
  int numSeqs = 0;
  for (int count : {1, 0}) {
    const auto path = dir.write("data.seq", text_entries(count));
    EXPECT_FATAL_OUTPUT(mget_seqs(path.string(), stdout, records, kFormatText, 500, 3, 4000, numSeqs),
                        "\nNumber of sequences to align: " + std::to_string(count) +
                            error_frame(1, "mget_seqs", "Must have 2 or more sequences to align."));
  }
}

TEST(FreeSeq, ReleasesTextsButKeepsNumbering) {
  SeqRecord record;
  record.acc = record.title = record.organism = record.reference = "t";
  record.sRes = record.uRes = record.pRes = "MKV";
  record.resNums.assign(4000, 7);
  free_seq(record);
  EXPECT_FALSE(record.acc || record.title || record.organism || record.reference || record.sRes || record.uRes);
  EXPECT_TRUE(record.pRes.empty());
  EXPECT_EQ(record.resNums.size(), 4000u);
}

TEST(GetSeq, PromptsForAFileAndShowsTheProtein) {
  TempDir dir;
  const auto path = dir.write("one.seq", ">A kinase\nMKVWL\n");
  SeqRecord record;
  const UniqueFile out(std::tmpfile());
  EXPECT_EQ(get_seq(stream_of(path.string() + "\n").get(), out.get(), record, kFormatText, 3, 4000), 1);
  EXPECT_EQ(rest_of(out.get()),
            "\n Enter the name of the sequence file.\n\n>> \nProtein: kinase\nNumber of amino acids: 5\n");

  testing::internal::CaptureStdout();
  EXPECT_EQ(get_seq(stream_of(dir.file("none.seq").string()).get(), out.get(), record, kFormatText, 3, 4000), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            error_frame(0, "get_seq", "Cannot open data file: " + dir.file("none.seq").string()));
}

TEST(GetTopNum, AsksAgainUntilInRange) {
  const UniqueFile out(std::tmpfile());
  EXPECT_EQ(get_top_num(stream_of("9 abc 4\n").get(), out.get(), 1, 5), 4);
  const std::string prompt = "\n Enter a number from 1 to 5.\n\n>> ";
  EXPECT_EQ(rest_of(out.get()), prompt + "\n Error, 9 is not between 1 and 5.\n" + prompt +
                                    "\n Error, 0 is not between 1 and 5.\n" + prompt);
  EXPECT_EQ(get_top_num(stream_of("").get(), out.get(), 1, 5), -1);
}
