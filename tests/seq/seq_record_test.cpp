#include "seq/seq_record.hpp"

#include <string>

#include "shell/text_input.hpp"
#include "support/test_support.hpp"

using testsupport::error_frame;
using testsupport::TempDir;

namespace {

UniqueFile stream_of(const std::string& text) {
  UniqueFile stream(std::tmpfile());
  std::fwrite(text.data(), 1, text.size(), stream.get());
  std::rewind(stream.get());
  return stream;
}

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

const int kText = kFormatText;

}  // namespace

TEST(ReadSeq, DispatchesToTheReaderAndFillsDefaults) {
  const UniqueFile in = stream_of(">A one [7-9]\nMKVW\n>B two\nGGG\n");
  SeqRecord record;
  ASSERT_EQ(read_seq(in.get(), stdout, record, kText, 3, 4000), 1);
  EXPECT_EQ(record.acc, "A");
  EXPECT_EQ(record.resNums[1], 7);  // the reader's own numbering is kept
  EXPECT_EQ(record.resNums[4], 4);
  ASSERT_EQ(read_seq(in.get(), stdout, record, kText, 3, 4000), 1);
  EXPECT_EQ(record.pRes, "GGG");
  EXPECT_EQ(read_seq(in.get(), stdout, record, kText, 3, 4000), -1);
}

TEST(ReadSeq, GivesFillersToRecordsThatLackThem) {
  const UniqueFile in = stream_of("typed\nMKVW$");
  const UniqueFile out(std::tmpfile());
  SeqRecord record;
  ASSERT_EQ(read_seq(in.get(), out.get(), record, kFormatKeyboard, 3, 4000), 1);
  EXPECT_EQ(record.sRes, "XXXX");
  EXPECT_EQ(record.uRes, "----");
  ASSERT_EQ(record.resNums.size(), 4000u);
  EXPECT_EQ(record.resNums[4], 4);
}

TEST(ReadSeqDeathTest, IllegalFormatCodes) {
  SeqRecord record;
  for (int format : {0, 7, -1})
    EXPECT_FATAL_OUTPUT(read_seq(stdin, stdout, record, format, 3, 4000),
                        error_frame(1, "read_seq", "Illegal sequence format: " + std::to_string(format) + "\n"));
}

TEST(FillMissingFields, AddsNumberingAndFillersOnlyWhereAbsent) {
  SeqRecord bare;
  bare.numRes = 4;
  bare.hasSRes = 1;  // a flag without its string is not believed
  fill_missing_fields(bare);
  ASSERT_EQ(bare.resNums.size(), 4000u);
  EXPECT_EQ(bare.resNums[0], 0);
  EXPECT_EQ(bare.resNums[1], 1);
  EXPECT_EQ(bare.resNums[3999], 3999);
  EXPECT_EQ(bare.sRes, "XXXX");
  EXPECT_EQ(bare.uRes, "----");
  EXPECT_EQ(bare.hasSRes, 0);
  EXPECT_EQ(bare.hasURes, 0);

  SeqRecord full;
  full.numRes = 2;
  full.sRes = "HH";
  full.uRes = "11";
  full.hasSRes = 1;
  full.hasURes = 1;
  full.resNums.assign(4000, 42);
  fill_missing_fields(full);
  EXPECT_EQ(full.sRes, "HH");
  EXPECT_EQ(full.uRes, "11");
  EXPECT_EQ(full.hasSRes, 1);
  EXPECT_EQ(full.hasURes, 1);
  EXPECT_EQ(full.resNums[1], 42);
}

TEST(MreadSeq, StopsAtEndOfInputOrAtTheLimit) {
  std::vector<SeqRecord> records(5);
  UniqueFile in = stream_of(text_entries(3));
  int count = 1;  // starts behind the records already filled
  EXPECT_EQ(mread_seq(in.get(), stdout, records, count, 5, kText, 3, 4000), -1);
  EXPECT_EQ(count, 4);
  EXPECT_FALSE(records[0].acc.has_value());
  EXPECT_EQ(records[1].acc, "S1");
  EXPECT_EQ(records[3].acc, "S3");

  in = stream_of(text_entries(3));
  count = 0;
  EXPECT_EQ(mread_seq(in.get(), stdout, records, count, 2, kText, 3, 4000), 1);
  EXPECT_EQ(count, 2);
  SeqRecord next;  // the third entry is left unread
  ASSERT_EQ(read_seq(in.get(), stdout, next, kText, 3, 4000), 1);
  EXPECT_EQ(next.acc, "S3");
}

TEST(MreadSeq, AFullTableStillGetsOneRead) {
  std::vector<SeqRecord> roomy(501);
  UniqueFile in = stream_of(text_entries(2));
  int count = 500;
  EXPECT_EQ(mread_seq(in.get(), stdout, roomy, count, 500, kText, 3, 4000), 1);
  EXPECT_EQ(count, 501);
  EXPECT_EQ(roomy[500].acc, "S1");

  // Without room for it the entry is read and dropped, never written past the table.
  std::vector<SeqRecord> full(500);
  in = stream_of(text_entries(2));
  count = 500;
  EXPECT_EQ(mread_seq(in.get(), stdout, full, count, 500, kText, 3, 4000), 1);
  EXPECT_EQ(count, 501);
  EXPECT_FALSE(full[499].acc.has_value());
}

TEST(MgetSeqs, ReadsAtMostMaxSeqs) {
  TempDir dir;
  const auto path = dir.write("many.seq", text_entries(600));
  std::vector<SeqRecord> records(500);
  const UniqueFile out(std::tmpfile());
  int numSeqs = 0;
  EXPECT_EQ(mget_seqs(path.string(), out.get(), records, kText, 500, 3, 4000, numSeqs), 1);
  EXPECT_EQ(numSeqs, 500);
  EXPECT_EQ(records[499].acc, "S500");
  EXPECT_EQ(rest_of(out.get()), "\nNumber of sequences to align: 500");

  // A table smaller than maxSeqs bounds the count.
  std::vector<SeqRecord> few(3);
  numSeqs = 0;
  EXPECT_EQ(mget_seqs(path.string(), out.get(), few, kText, 500, 3, 4000, numSeqs), 1);
  EXPECT_EQ(numSeqs, 3);
}

TEST(MgetSeqsDeathTest, TooFewSequencesOrNoFile) {
  TempDir dir;
  std::vector<SeqRecord> records(500);
  int numSeqs = 0;
  const std::string tooFew = error_frame(1, "mget_seqs", "Must have 2 or more sequences to align.");
  const auto one = dir.write("one.seq", text_entries(1));
  EXPECT_FATAL_OUTPUT(mget_seqs(one.string(), stdout, records, kText, 500, 3, 4000, numSeqs),
                      "\nNumber of sequences to align: 1" + tooFew);
  const auto empty = dir.write("empty.seq", "");
  EXPECT_FATAL_OUTPUT(mget_seqs(empty.string(), stdout, records, kText, 500, 3, 4000, numSeqs),
                      "\nNumber of sequences to align: 0" + tooFew);
  // A reader's warning is followed by the end of the run.
  const auto typed = dir.write("typed.seq", "t\nmkv$");
  const UniqueFile out(std::tmpfile());
  EXPECT_FATAL_OUTPUT(mget_seqs(typed.string(), out.get(), records, kFormatKeyboard, 500, 3, 4000, numSeqs),
                      error_frame(0, "read_seq_kbd", "Illegal amino acid 'm' in t\n\n") +
                          error_frame(1, "mget_seqs", "Cannot continue alignment until errors fixed..."));
  const std::string missing = dir.file("missing.seq").string();
  EXPECT_FATAL_OUTPUT(mget_seqs(missing, stdout, records, kText, 500, 3, 4000, numSeqs),
                      error_frame(1, "mget_seqs", "Cannot open data file: " + missing));
}

TEST(FreeSeq, ReleasesTextsButKeepsNumbering) {
  SeqRecord record;
  record.acc = "A";
  record.title = "t";
  record.organism = "o";
  record.reference = "r";
  record.pRes = "MKV";
  record.sRes = "XXX";
  record.uRes = "---";
  record.numRes = 3;
  record.resNums.assign(4000, 7);
  free_seq(record);
  EXPECT_FALSE(record.acc || record.title || record.organism || record.reference || record.sRes || record.uRes);
  EXPECT_TRUE(record.pRes.empty());
  EXPECT_EQ(record.resNums.size(), 4000u);
  EXPECT_EQ(record.numRes, 3);
}

TEST(GetSeq, PromptsForAFileAndShowsTheProtein) {
  TempDir dir;
  const auto path = dir.write("one.seq", ">A kinase\nMKVWL\n");
  SeqRecord record;
  UniqueFile in = stream_of(path.string() + "\n");
  const UniqueFile out(std::tmpfile());
  EXPECT_EQ(get_seq(in.get(), out.get(), record, kText, 3, 4000), 1);
  EXPECT_EQ(rest_of(out.get()),
            "\n Enter the name of the sequence file.\n\n>> \nProtein: kinase\nNumber of amino acids: 5\n");

  in = stream_of(dir.file("none.seq").string());
  testing::internal::CaptureStdout();
  EXPECT_EQ(get_seq(in.get(), out.get(), record, kText, 3, 4000), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            error_frame(0, "get_seq", "Cannot open data file: " + dir.file("none.seq").string()));
}

TEST(GetTopNum, AsksAgainUntilInRange) {
  UniqueFile in = stream_of("9 abc 4\n");
  const UniqueFile out(std::tmpfile());
  EXPECT_EQ(get_top_num(in.get(), out.get(), 1, 5), 4);
  const std::string prompt = "\n Enter a number from 1 to 5.\n\n>> ";
  EXPECT_EQ(rest_of(out.get()), prompt + "\n Error, 9 is not between 1 and 5.\n" + prompt +
                                    "\n Error, 0 is not between 1 and 5.\n" + prompt);
  in = stream_of("");
  EXPECT_EQ(get_top_num(in.get(), out.get(), 1, 5), -1);
}
